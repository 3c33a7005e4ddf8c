// SPDX-License-Identifier: MIT
import QtQuick
import VEK

Item {
    id: view

    required property TranscriptsListStore store

    ProgressIndicator {
        objectName: "listProgress"
        anchors.centerIn: parent
        visible: view.store.isLoading
    }

    Text {
        anchors.centerIn: parent
        visible: !view.store.isLoading
        text: qsTr("No transcripts found.")
        color: Theme.secondary
        font.pixelSize: Theme.body
    }
}
