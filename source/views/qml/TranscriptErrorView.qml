// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// What kept a text from coming, and the way to ask for it again.
Item {
    id: view

    required property TranscriptStore store
    required property string error

    implicitHeight: column.height

    Column {
        id: column

        anchors.centerIn: parent
        width: parent.width

        Text {
            objectName: "errorText"
            width: parent.width
            leftPadding: 6
            rightPadding: 6
            bottomPadding: 6
            text: view.error
            textFormat: Text.PlainText
            color: Theme.primary
            font.pixelSize: Theme.body
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
        }
        PlainButton {
            objectName: "retryButton"
            anchors.horizontalCenter: parent.horizontalCenter
            text: qsTr("Retry")
            onClicked: view.store.refetchContentButtonClicked()
        }
    }
}
