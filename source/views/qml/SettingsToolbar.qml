// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// The panes of the settings, each by its symbol and its title.
Item {
    id: toolbar

    required property SettingsWindowController controller

    objectName: "VEK.Settings.Toolbar"
    implicitHeight: row.height + 2 * Theme.space2 + 1
    Accessible.role: Accessible.PageTabList

    Row {
        id: row

        anchors.horizontalCenter: parent.horizontalCenter
        y: Theme.space2
        spacing: Theme.space1

        Repeater {
            model: toolbar.controller.items

            ToolbarItem {
                controller: toolbar.controller // qmllint disable unqualified
            }
        }
    }

    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        color: Theme.divider
    }
}
