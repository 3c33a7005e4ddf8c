// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import VEK

// The access token of the login, and the way out. Empty without a login.
Container {
    id: view

    required property SessionStore store

    Section {
        label: ""

        Item {
            objectName: "tokenRow"
            width: parent.width
            height: copy.height + Theme.space3
            visible: view.store.hasCredentials

            Rectangle {
                anchors.left: parent.left
                anchors.right: copy.left
                anchors.rightMargin: Theme.space2
                height: copy.height
                radius: Theme.controlRadius
                color: Theme.group
                border.width: 1
                border.color: Theme.controlOutline
            }
            Flickable {
                id: scroll

                anchors.left: parent.left
                anchors.right: copy.left
                anchors.leftMargin: Theme.space2
                anchors.rightMargin: 2 * Theme.space2
                height: copy.height
                contentWidth: token.width
                boundsBehavior: Flickable.StopAtBounds
                flickableDirection: Flickable.HorizontalFlick
                clip: true
                T.ScrollBar.horizontal: ThinScrollBar {}

                TextEdit {
                    id: token

                    objectName: "accessToken"
                    height: scroll.height
                    verticalAlignment: TextEdit.AlignVCenter
                    readOnly: true
                    selectByMouse: true
                    activeFocusOnTab: true
                    text: view.store.accessToken
                    textFormat: TextEdit.PlainText
                    color: Theme.primary
                    selectionColor: Theme.accent
                    selectedTextColor: Theme.accentText
                    font.pixelSize: Theme.body
                    Accessible.role: Accessible.EditableText
                    Accessible.name: qsTr("Access token")
                    Accessible.readOnly: true
                    onCursorRectangleChanged: {
                        const x = cursorRectangle.x;
                        if (x < scroll.contentX) scroll.contentX = x;
                        else if (x > scroll.contentX + scroll.width) scroll.contentX = x - scroll.width;
                    }
                }
            }
            PlainButton {
                id: copy

                objectName: "copyButton"
                anchors.right: parent.right
                text: qsTr("Copy")
                onClicked: view.store.copyAccessToken()
            }
        }

        PlainButton {
            objectName: "logoutButton"
            width: parent.width
            visible: view.store.hasCredentials
            text: qsTr("Logout")
            onClicked: view.store.logout()
        }
    }
}
