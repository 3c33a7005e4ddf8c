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

        function scrollTo(y: real) {
            const end = originY + contentHeight + bottomMargin - height;
            contentY = Math.max(originY, Math.min(y, end));
        }

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
        Keys.onPressed: event => {
            const page = height - Theme.space6;
            switch (event.key) {
            case Qt.Key_PageUp: scrollTo(contentY - page); break;
            case Qt.Key_PageDown: scrollTo(contentY + page); break;
            case Qt.Key_Home: scrollTo(originY); break;
            case Qt.Key_End: scrollTo(originY + contentHeight); break;
            default: return;
            }
            event.accepted = true;
        }
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Transcripts")

        delegate: TranscriptButton {
            width: ListView.view.width
        }
    }
}
