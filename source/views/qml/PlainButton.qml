// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// A button beside the one that stands out.
BaseButton {
    id: button

    property color color: Theme.primary
    property int weight: Font.Normal

    implicitWidth: Math.max(implicitContentWidth + leftPadding + rightPadding, 72)
    leftPadding: Theme.space3
    rightPadding: Theme.space3
    ground.color: Theme.group
    ground.border.color: Theme.controlOutline

    contentItem: Text {
        text: button.text
        textFormat: Text.PlainText
        font.pixelSize: Theme.body
        font.weight: button.weight
        color: button.color
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }
}
