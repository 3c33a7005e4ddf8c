// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import VEK

// The one button of a view that stands out.
T.Button {
    id: button

    implicitWidth: Math.max(implicitContentWidth + leftPadding + rightPadding, 88)
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
        font.weight: Font.Medium
        color: Theme.accentText
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }
    background: Rectangle {
        radius: Theme.controlRadius
        color: button.down ? Theme.accentPressed
             : button.hovered ? Theme.accentHover : Theme.accent

        FocusRing {
            radius: Theme.controlRadius + 3
            visible: button.visualFocus
        }
    }
}
