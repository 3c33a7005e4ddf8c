// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// A plain button that shows a symbol only; `text` is what it is called.
BaseButton {
    id: button

    required property string symbol
    property int symbolSize: Theme.symbol

    implicitWidth: Theme.control
    ground.radius: height / 2
    ground.ringDistance: 0

    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            symbol: button.symbol
            size: button.symbolSize
            color: Theme.secondary
        }
    }
}
