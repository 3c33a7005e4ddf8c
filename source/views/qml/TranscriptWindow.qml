// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// The window of one opened transcript. Its title is set by who opens it.
Window {
    id: window

    required property TranscriptStore store

    width: 400
    height: 400
    minimumWidth: 300
    minimumHeight: 300
    color: Theme.window

    // Comes as a small window beside a larger one does: at once, and without a movement. Elsewhere
    // this is the desktop's to decide.
    NumberAnimation on opacity {
        running: Qt.platform.pluginName === "xcb"
        from: 0
        to: 1
        duration: Theme.quick
    }

    TranscriptView {
        objectName: "transcriptView"
        anchors.fill: parent
        store: window.store
    }

    Shortcut {
        sequence: "Ctrl+W"
        onActivated: window.close()
    }
}
