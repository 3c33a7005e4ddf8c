// SPDX-License-Identifier: MIT
import QtQuick
import VEK

ButtonColumn {
    id: view

    required property PermissionsStore store

    button: permissionsButton

    Item {
        width: parent.width
        height: Theme.title + 2 * Theme.space2

        Icon {
            anchors.centerIn: parent
            symbol: "mic-fill"
            size: Theme.title
        }
    }

    Label {
        width: parent.width
        text: qsTr("The app doesn't have speech recognition permission.")
        color: Theme.secondary
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.WordWrap
    }

    Item {
        width: parent.width
        height: Theme.space3
    }

    ProminentButton {
        id: permissionsButton

        objectName: "permissionsButton"
        anchors.horizontalCenter: parent.horizontalCenter
        text: qsTr("Request permission")
        enabled: !view.store.isLoading
        onClicked: view.store.requestPermissionsClicked()
    }

    Item {
        width: parent.width
        height: Theme.space2
    }

    ProgressIndicator {
        objectName: "permissionsProgress"
        anchors.horizontalCenter: parent.horizontalCenter
        opacity: view.store.isLoading ? 1 : 0
    }
}
