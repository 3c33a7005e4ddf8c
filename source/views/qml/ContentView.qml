// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// What the main window shows. `isShowingList` is all that it knows by itself.
Item {
    id: view

    required property AppStore store
    property alias isShowingList: header.isShowingList
    /// How much of the list panel has moved in.
    property real reveal: isShowingList ? 1 : 0
    readonly property bool hasPanel: isShowingList || reveal > 0

    implicitHeight: panel.y + (hasPanel ? panel.height : 0)

    Behavior on reveal {
        NumberAnimation { duration: Theme.smooth; easing.type: Easing.OutCubic }
    }

    /// Whether the cards hide all of `part` of a view in the main area, which is then out of reach
    /// for the keyboard too.
    function isCovered(shown: Item, part: Item): bool {
        const top = (mainArea.height - permissionsCard.stackHeight) / 2;
        const y = shown.y + part.y;
        return y >= top && y + part.height <= mainArea.height - top;
    }

    component ErrorCard: ErrorView {
        /// How high the cards are that lie above this one.
        property real coverHeight: 0
        readonly property real stackHeight: Math.max(visible ? height : 0, coverHeight)

        anchors.centerIn: parent
        width: parent.width
        enabled: height > coverHeight
    }

    Item {
        id: mainArea

        width: parent.width
        height: 160

        LoginView {
            id: loginView

            objectName: "loginView"
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width
            enabled: !view.isCovered(loginView, loginView.button)
            visible: !view.store.session.hasCredentials
            store: view.store.session
        }
        PermissionsView {
            id: permissionsView

            objectName: "permissionsView"
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width
            enabled: !view.isCovered(permissionsView, permissionsView.button)
            visible: view.store.session.hasCredentials
                     && !view.store.permissions.hasRecordingPermissions
            store: view.store.permissions
        }
        RecordingView {
            id: recordingView

            objectName: "recordingView"
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width
            enabled: !view.isCovered(recordingView, recordingView.button)
            visible: view.store.session.hasCredentials
                     && view.store.permissions.hasRecordingPermissions
            recordingStore: view.store.recording
            transcriptsStore: view.store.transcripts
        }

        ErrorCard {
            id: permissionsCard

            objectName: "permissionsError"
            coverHeight: recordingCard.stackHeight
            visible: view.store.permissions.hasError
            error: view.store.permissions.error
            onDismiss: view.store.permissions.dismissErrorButtonClicked()
        }
        ErrorCard {
            id: recordingCard

            objectName: "recordingError"
            coverHeight: sessionCard.stackHeight
            visible: view.store.recording.hasError
            error: view.store.recording.error
            onDismiss: view.store.recording.dismissErrorButtonClicked()
        }
        ErrorCard {
            id: sessionCard

            objectName: "sessionError"
            coverHeight: transcriptsCard.stackHeight
            visible: view.store.session.hasError
            error: view.store.session.error
            onDismiss: view.store.session.dismissErrorButtonClicked()
        }
        ErrorCard {
            id: transcriptsCard

            objectName: "transcriptsError"
            visible: view.store.transcripts.hasError
            error: view.store.transcripts.error
            dismissText: qsTr("Try again")
            onDismiss: view.store.transcripts.refetchContentButtonClicked()
        }
    }

    HeaderRow {
        id: header

        anchors.top: mainArea.bottom
        anchors.topMargin: Theme.space2
        width: parent.width
        store: view.store
    }

    Item {
        id: panel

        y: header.y + header.height
        width: parent.width
        height: divider.height + list.height
        visible: view.hasPanel

        Rectangle {
            id: divider

            width: parent.width
            height: 1
            color: Theme.divider
        }
        ListPanel {
            id: list

            objectName: "listPanel"
            y: divider.height + (1 - view.reveal) * height
            width: parent.width
            height: 180
            store: view.store.transcripts
        }
    }
}
