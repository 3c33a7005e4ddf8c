// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// The transcripts below the main area.
Item {
    id: panel

    required property TranscriptsListStore store

    implicitHeight: 180

    Text {
        id: title

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.topMargin: Theme.space3
        text: qsTr("Transcripts")
        color: Theme.primary
        font.pixelSize: Theme.title3
        font.bold: true
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    // As much wider as the room beside its cells, so that they and the title stand in one line.
    TranscriptsListView {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: -Theme.space2
        anchors.rightMargin: -Theme.space2
        anchors.top: title.bottom
        anchors.topMargin: Theme.space2
        anchors.bottom: parent.bottom
        store: panel.store
    }
}
