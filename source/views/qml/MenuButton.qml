// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// Three dots on a disc; opens the program's menu.
BaseButton {
    id: button

    required property MenuStore store
    readonly property alias menu: menu

    objectName: "menuButton"
    implicitWidth: Theme.control
    text: qsTr("Menu")
    ground.radius: height / 2
    ground.ringDistance: 0
    ground.isPressed: down || menu.visible
    Accessible.role: Accessible.ButtonMenu
    onClicked: menu.visible ? menu.close() : menu.open()

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

    AppMenu {
        id: menu

        store: button.store
        x: button.width - width
        y: -height - Theme.space1
    }
}
