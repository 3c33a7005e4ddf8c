// SPDX-License-Identifier: MIT
import QtQuick
import VEK

ButtonColumn {
    id: view

    required property SessionStore store

    button: loginButton
    spacing: Theme.space2

    Image {
        anchors.horizontalCenter: parent.horizontalCenter
        source: "qrc:/qt/qml/VEK/images/vek.svg"
        sourceSize.width: 70
        sourceSize.height: 70
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
