// SPDX-License-Identifier: MIT
import QtQuick
import VEK

ButtonColumn {
    id: view

    required property SessionStore store

    button: loginButton
    spacing: Theme.space2

    Mark {
        anchors.horizontalCenter: parent.horizontalCenter
        Accessible.role: Accessible.Graphic
        Accessible.name: "VEK"
    }

    Item {
        width: parent.width
        height: Theme.space1
    }

    ProminentButton {
        id: loginButton

        objectName: "loginButton"
        anchors.horizontalCenter: parent.horizontalCenter
        text: qsTr("Login")
        enabled: !view.store.isLoading
        onClicked: view.store.loginButtonClicked()
    }

    ProgressIndicator {
        objectName: "loginProgress"
        anchors.horizontalCenter: parent.horizontalCenter
        opacity: view.store.isLoading ? 1 : 0
    }
}
