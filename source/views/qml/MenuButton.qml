// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import VEK

// Three dots on a disc; opens the program's menu.
BaseButton {
    id: button

    required property MenuStore store
    /// Made when it is first opened.
    property T.Menu menu: null

    objectName: "menuButton"
    implicitWidth: Theme.control
    text: qsTr("Menu")
    ground.radius: height / 2
    ground.ringDistance: 0
    ground.isPressed: down || (menu?.visible ?? false)
    Accessible.role: Accessible.ButtonMenu
    onClicked: {
        if (!menu) menu = Qt.createComponent("AppMenu.qml").createObject(button, { store: store });
        if (menu.visible) menu.close();
        else menu.open();
    }

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
}
