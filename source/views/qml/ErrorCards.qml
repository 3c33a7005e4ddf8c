// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// The errors of the main window, each on a card of its own and the last on top. As high as what
// they hide.
Item {
    id: cards

    required property AppStore store

    component ErrorCard: ErrorView {
        /// How high the cards are that lie above this one.
        property real coverHeight: 0
        readonly property real stackHeight: Math.max(visible ? height : 0, coverHeight)

        anchors.centerIn: parent
        width: parent.width
        enabled: height > coverHeight
    }

    implicitHeight: permissionsCard.stackHeight

    ErrorCard {
        id: permissionsCard

        objectName: "permissionsError"
        coverHeight: recordingCard.stackHeight
        visible: cards.store.permissions.hasError
        error: cards.store.permissions.error
        onDismiss: cards.store.permissions.dismissErrorButtonClicked()
    }
    ErrorCard {
        id: recordingCard

        objectName: "recordingError"
        coverHeight: sessionCard.stackHeight
        visible: cards.store.recording.hasError
        error: cards.store.recording.error
        onDismiss: cards.store.recording.dismissErrorButtonClicked()
    }
    ErrorCard {
        id: sessionCard

        objectName: "sessionError"
        coverHeight: transcriptsCard.stackHeight
        visible: cards.store.session.hasError
        error: cards.store.session.error
        onDismiss: cards.store.session.dismissErrorButtonClicked()
    }
    ErrorCard {
        id: transcriptsCard

        objectName: "transcriptsError"
        visible: cards.store.transcripts.hasError
        error: cards.store.transcripts.error
        dismissText: qsTr("Try again")
        onDismiss: cards.store.transcripts.refetchContentButtonClicked()
    }
}
