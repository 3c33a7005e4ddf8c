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

    /// One of the views of the main area. Cards that hide all of its button put that out of reach
    /// for the keyboard too.
    component MainView: Part {
        required property real coverHeight
        readonly property Item button: (item as ButtonColumn)?.button ?? null

        function isCovered(): bool {
            const middle = y + button.y + button.height / 2 - parent.height / 2;
            return Math.abs(middle) + button.height / 2 <= coverHeight / 2;
        }

        anchors.verticalCenter: parent.verticalCenter
        width: parent.width
        enabled: !button || !isCovered()
    }

    Item {
        id: mainArea

        width: parent.width
        height: 160

        MainView {
            objectName: "loginView"
            coverHeight: cards.implicitHeight
            visible: !view.store.session.hasCredentials
            view: "LoginView.qml"
            properties: ({ store: view.store.session })
        }
        MainView {
            objectName: "permissionsView"
            coverHeight: cards.implicitHeight
            visible: view.store.session.hasCredentials
                     && !view.store.permissions.hasRecordingPermissions
            view: "PermissionsView.qml"
            properties: ({ store: view.store.permissions })
        }
        MainView {
            objectName: "recordingView"
            coverHeight: cards.implicitHeight
            visible: view.store.session.hasCredentials
                     && view.store.permissions.hasRecordingPermissions
            view: "RecordingView.qml"
            properties: ({ recordingStore: view.store.recording,
                           transcriptsStore: view.store.transcripts })
        }
        Part {
            id: cards

            anchors.fill: parent
            visible: view.store.permissions.hasError || view.store.recording.hasError
                     || view.store.session.hasError || view.store.transcripts.hasError
            view: "ErrorCards.qml"
            properties: ({ store: view.store })
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
        Part {
            id: list

            objectName: "listPanel"
            y: divider.height + (1 - view.reveal) * height
            width: parent.width
            height: 180
            view: "ListPanel.qml"
            properties: ({ store: view.store.transcripts })
        }
    }
}
