// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// The keys that the menu shows. Two of its entries show the same ones; the first of them has them.
Item {
    id: shortcuts

    required property MenuStore store
    signal activated

    Shortcut {
        enabled: shortcuts.enabled
        sequence: "Ctrl+,"
        onActivated: {
            shortcuts.store.checkForUpdatesMenuItemClicked();
            shortcuts.activated();
        }
    }
    Shortcut {
        enabled: shortcuts.enabled
        sequence: "Ctrl+Q"
        onActivated: {
            shortcuts.store.quitMenuItemClicked();
            shortcuts.activated();
        }
    }
}
