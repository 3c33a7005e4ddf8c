// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import VEK

// A plain button that shows a symbol only; `text` is what it is called.
T.AbstractButton {
    id: button

    required property string symbol
    property int symbolSize: Theme.symbol
    property color color: Theme.secondary

    implicitWidth: Theme.control
    implicitHeight: Theme.control
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: if (button.enabled) button.clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            symbol: button.symbol
            size: button.symbolSize
            color: button.color
        }
    }
    background: Rectangle {
        radius: height / 2
        color: button.down ? Theme.pressed : button.hovered ? Theme.hover : "transparent"

        FocusRing {
            anchors.margins: 0
            radius: parent.radius
            visible: button.visualFocus
        }
    }
}
