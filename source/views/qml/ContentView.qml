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

    component ErrorCard: ErrorView {
        anchors.centerIn: parent
        width: parent.width
    }

    Item {
        id: mainArea

        width: parent.width
        height: 160

        LoginView {
            objectName: "loginView"
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width
            visible: !view.store.session.hasCredentials
            store: view.store.session
        }
        PermissionsView {
            objectName: "permissionsView"
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width
            visible: view.store.session.hasCredentials
                     && !view.store.permissions.hasRecordingPermissions
            store: view.store.permissions
        }
        RecordingView {
            objectName: "recordingView"
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width
            visible: view.store.session.hasCredentials
                     && view.store.permissions.hasRecordingPermissions
            recordingStore: view.store.recording
        }

        ErrorCard {
            objectName: "permissionsError"
            visible: view.store.permissions.hasError
            error: view.store.permissions.error
            onDismiss: view.store.permissions.dismissErrorButtonClicked()
        }
        ErrorCard {
            objectName: "recordingError"
            visible: view.store.recording.hasError
            error: view.store.recording.error
            onDismiss: view.store.recording.dismissErrorButtonClicked()
        }
        ErrorCard {
            objectName: "sessionError"
            visible: view.store.session.hasError
            error: view.store.session.error
            onDismiss: view.store.session.dismissErrorButtonClicked()
        }
        ErrorCard {
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
