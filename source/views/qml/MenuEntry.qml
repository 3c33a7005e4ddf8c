// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import VEK

// An entry of a menu, with the shortcut that it shows. The window that has the menu answers to it.
T.MenuItem {
    id: entry

    property string shortcut: ""

    implicitWidth: 192
    implicitHeight: Theme.control
    leftPadding: Theme.space2
    rightPadding: Theme.space2
    Accessible.role: Accessible.MenuItem
    Accessible.name: text
    Accessible.onPressAction: if (entry.enabled) entry.clicked()

    contentItem: Item {
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: entry.text
            textFormat: Text.PlainText
            font.pixelSize: Theme.body
            color: entry.highlighted ? Theme.accentText : Theme.primary
        }
        Text {
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: entry.shortcut
            textFormat: Text.PlainText
            font.pixelSize: Theme.footnote
            color: entry.highlighted ? Theme.accentText : Theme.secondary
        }
    }
    background: Rectangle {
        radius: Theme.controlRadius
        color: entry.highlighted ? Theme.accent : "transparent"
    }
}
