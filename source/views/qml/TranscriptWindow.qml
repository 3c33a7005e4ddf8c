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
