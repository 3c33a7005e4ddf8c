// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import VEK

// The text of an opened transcript.
Item {
    id: view

    required property TranscriptStore store

    Component.onCompleted: store.transcriptDidAppear()

    ProgressIndicator {
        objectName: "transcriptProgress"
        anchors.centerIn: parent
        visible: view.store.textState === TextState.Loading
    }

    Flickable {
        id: scroll

        anchors.fill: parent
        anchors.margins: Theme.space4
        contentHeight: text.height
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        T.ScrollBar.vertical: ThinScrollBar {}

        TextEdit {
            id: text

            objectName: "transcriptText"
            width: scroll.width - Theme.space2
            visible: view.store.textState === TextState.Content
                     || view.store.textState === TextState.Error
            readOnly: true
            selectByMouse: true
            text: view.store.text
            textFormat: TextEdit.PlainText
            color: Theme.primary
            selectionColor: Theme.accent
            selectedTextColor: Theme.accentText
            font.pixelSize: Theme.body
            wrapMode: TextEdit.Wrap
        }
    }
}
