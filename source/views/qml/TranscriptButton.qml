// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// A row of the list of transcripts; a press opens the transcript.
BaseButton {
    id: button

    required property int index
    required property var model
    required property TranscriptsListStore store
    readonly property TranscriptCell cell: contentItem as TranscriptCell

    implicitHeight: implicitContentHeight + bottomPadding
    leftPadding: Theme.space2
    rightPadding: Theme.space2
    bottomPadding: Theme.space1
    leftInset: leftPadding
    rightInset: rightPadding
    bottomInset: bottomPadding
    ground.z: 1
    ground.radius: Theme.groupRadius
    ground.ringDistance: 0
    // The list has the focus, and the row with its current item.
    focusPolicy: Qt.NoFocus
    ground.isFocused: activeFocus
    Accessible.name: cell.description
    onClicked: store.openTrasnscript(index)

    contentItem: TranscriptCell {
        transcript: button.model
        store: button.store
        viewTop: button.ListView.view ? button.ListView.view.contentY - button.y : 0
        viewHeight: button.ListView.view ? button.ListView.view.height : 0
    }
}
