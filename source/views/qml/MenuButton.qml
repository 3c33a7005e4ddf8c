// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import VEK

// Three dots on a disc; opens the program's menu.
T.AbstractButton {
    id: button

    required property MenuStore store
    readonly property alias menu: menu

    objectName: "menuButton"
    implicitWidth: Theme.control
    implicitHeight: Theme.control
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    text: qsTr("Menu")
    Accessible.role: Accessible.ButtonMenu
    Accessible.name: text
    Accessible.onPressAction: if (button.enabled) button.clicked()
    onClicked: menu.visible ? menu.close() : menu.open()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Item {
        Rectangle {
            anchors.centerIn: parent
            width: Theme.symbol
            height: width
            radius: width / 2
            color: Theme.secondary
            antialiasing: true

            Icon {
                anchors.centerIn: parent
                symbol: "three-dots"
                size: 12
                color: Theme.window
            }
        }
    }
    background: Rectangle {
        radius: height / 2
        color: button.down || menu.visible ? Theme.pressed
             : button.hovered ? Theme.hover : "transparent"

        FocusRing {
            anchors.margins: 0
            radius: parent.radius
            visible: button.visualFocus
        }
    }

    AppMenu {
        id: menu

        store: button.store
        x: button.width - width
        y: -height - Theme.space1
    }
}
