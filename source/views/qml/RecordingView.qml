// SPDX-License-Identifier: MIT
import QtQuick
import VEK

ButtonColumn {
    id: view

    required property RecordingStore recordingStore
    required property TranscriptsListStore transcriptsStore

    button: recordButton
    spacing: 10

    BaseButton {
        id: recordButton

        objectName: "recordButton"
        anchors.horizontalCenter: parent.horizontalCenter
        implicitWidth: contentItem.implicitWidth
        implicitHeight: contentItem.implicitHeight
        text: view.recordingStore.isRecording ? qsTr("Stop recording") : qsTr("Record")
        scale: down ? 0.95 : 1
        ground.radius: width / 2
        ground.hoverColor: "transparent"
        ground.pressedColor: "transparent"
        onClicked: view.recordingStore.recordButtonClicked()

        contentItem: RecordSymbol {
            isRecording: view.recordingStore.isRecording
        }
        Behavior on scale {
            NumberAnimation { duration: Theme.quick }
        }
    }

    Label {
        id: elapsed

        objectName: "elapsedTime"
        width: parent.width
        height: 20
        opacity: view.recordingStore.isRecording ? 1 : 0
        font.family: Theme.clockFamily
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter

        function refresh() {
            text = view.recordingStore.elapsedTimeText();
        }
        Component.onCompleted: refresh()

        Sight { id: sight }
        Connections {
            target: view.recordingStore
            function onIsRecordingChanged() { elapsed.refresh(); }
        }
        Timer {
            objectName: "clock"
            interval: 1000
            repeat: true
            triggeredOnStart: true
            running: view.recordingStore.isRecording && sight.isSeen
            onTriggered: elapsed.refresh()
        }
    }

    FadingTextView {
        objectName: "transcript"
        width: parent.width
        height: 40
        opacity: view.recordingStore.isRecording ? 1 : 0
        text: view.recordingStore.displayedTranscript
    }
}
