// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// The window of updates. What it shows, and whether it is there, is its panel's to say.
FittedWindow {
    id: window

    required property UpdatePanel panel

    width: view.width
    fittingHeight: view.height
    flags: Qt.Dialog
    title: qsTr("Update VEK")
    color: Theme.window
    onClosing: panel.close()

    Shortcut {
        sequences: ["Esc", "Ctrl+W"]
        onActivated: window.panel.close()
    }

    ScrolledView {
        anchors.fill: parent
        contentHeight: view.height

        UpdateView {
            id: view

            panel: window.panel
        }
    }
}
