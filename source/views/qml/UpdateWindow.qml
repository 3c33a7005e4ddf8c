// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// The window of updates. What it shows, and whether it is there, is its panel's to say.
Window {
    id: window

    required property UpdatePanel panel

    width: view.width
    height: view.height
    minimumWidth: width
    maximumWidth: width
    minimumHeight: height
    maximumHeight: height
    flags: Qt.Dialog
    title: qsTr("VEK Update")
    color: Theme.window
    onClosing: panel.close()

    Shortcut {
        sequences: ["Esc", "Ctrl+W"]
        onActivated: window.panel.close()
    }

    UpdateView {
        id: view

        panel: window.panel
    }
}
