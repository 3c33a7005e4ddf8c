// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import VEK

// A button beside the one that stands out.
T.Button {
    id: button

    implicitWidth: Math.max(implicitContentWidth + leftPadding + rightPadding, 72)
    implicitHeight: Theme.control
    leftPadding: Theme.space3
    rightPadding: Theme.space3
    hoverEnabled: true
    opacity: enabled ? 1 : 0.5
    Accessible.name: text
    Accessible.onPressAction: if (button.enabled) button.clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Text {
        text: button.text
        font.pixelSize: Theme.body
        color: Theme.primary
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }
    background: Rectangle {
        radius: Theme.controlRadius
        color: Theme.group
        border.color: Theme.controlOutline

        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            color: button.down ? Theme.pressed : button.hovered ? Theme.hover : "transparent"
        }
        FocusRing {
            radius: Theme.controlRadius + 3
            visible: button.visualFocus
        }
    }
}
