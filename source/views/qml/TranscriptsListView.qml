// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import VEK

// The list of transcripts; a press on one opens it.
Item {
    id: view

    required property TranscriptsListStore store

    ProgressIndicator {
        objectName: "listProgress"
        anchors.centerIn: parent
        visible: view.store.isLoading
    }

    Text {
        objectName: "noTranscripts"
        anchors.centerIn: parent
        visible: !view.store.isLoading && view.store.isEmpty
        text: qsTr("No transcripts found.")
        color: Theme.secondary
        font.pixelSize: Theme.body
    }

    ListView {
        id: list

        objectName: "transcripts"
        anchors.fill: parent
        visible: !view.store.isLoading && !view.store.isEmpty
        onVisibleChanged: if (visible) positionViewAtBeginning()
        model: view.store.transcripts
        bottomMargin: Theme.space2
        reuseItems: true
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        activeFocusOnTab: true
        highlightMoveDuration: 0
        T.ScrollBar.vertical: ThinScrollBar {}
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Transcripts")

        delegate: TranscriptButton {
            width: ListView.view.width
        }
    }
}
