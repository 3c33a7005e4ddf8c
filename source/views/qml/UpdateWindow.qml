// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// The window of updates. What it shows, and whether it is there, is its panel's to say.
Window {
    id: window

    required property UpdatePanel panel

    readonly property real wantedHeight: view.height

    // Before it grows it has to be allowed to: window managers keep it within its bounds.
    function fit() {
        minimumHeight = 0;
        maximumHeight = wantedHeight;
        height = wantedHeight;
        minimumHeight = wantedHeight;
    }

    width: view.width
    minimumWidth: width
    maximumWidth: width
    flags: Qt.Dialog
    title: qsTr("Update VEK")
    color: Theme.window
    onClosing: panel.close()
    onWantedHeightChanged: fit()
    Component.onCompleted: fit()

    Shortcut {
        sequences: ["Esc", "Ctrl+W"]
        onActivated: window.panel.close()
    }

    UpdateView {
        id: view

        panel: window.panel
    }
}
