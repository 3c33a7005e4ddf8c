// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import VEK

// The menu of the program.
T.Menu {
    id: menu

    required property MenuStore store

    x: parent ? parent.width - width : 0
    y: -height - Theme.space1
    implicitWidth: 200
    implicitHeight: contentHeight + topPadding + bottomPadding
    padding: Theme.space1
    margins: Theme.space1
    transformOrigin: Item.BottomRight
    // A press on the button closes it by that button.
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent

    contentItem: ListView {
        implicitHeight: contentHeight
        model: menu.contentModel
        interactive: false
        currentIndex: menu.currentIndex
        keyNavigationWraps: true

        // While the menu is open, those of the window are not heard.
        MenuShortcuts {
            enabled: menu.visible
            store: menu.store
            onActivated: menu.close()
        }
    }
    background: CustomGroupModifier {
        isFloating: true
    }
    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.quick }
        NumberAnimation {
            property: "scale"; from: 0.96; to: 1
            duration: Theme.quick; easing.type: Easing.OutQuad
        }
    }
    exit: Transition {
        NumberAnimation { property: "opacity"; to: 0; duration: Theme.quick }
    }

    MenuEntry {
        text: qsTr("About VEK")
        onTriggered: menu.store.aboutMenuItemClicked()
    }
    MenuDivider {}
    MenuEntry {
        text: qsTr("Check for Updates…")
        shortcut: "Ctrl+,"
        onTriggered: menu.store.checkForUpdatesMenuItemClicked()
    }
    MenuEntry {
        text: qsTr("Settings…")
        shortcut: "Ctrl+,"
        onTriggered: menu.store.settingsMenuItemClicked()
    }
    MenuDivider {}
    MenuEntry {
        text: qsTr("Quit VEK")
        shortcut: "Ctrl+Q"
        onTriggered: menu.store.quitMenuItemClicked()
    }
}
