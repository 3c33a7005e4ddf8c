// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import VEK

// What can be done with the texts of a transcript.
T.Menu {
    id: menu

    signal copy
    signal copyLink
    signal selectAll
    signal find
    signal copyMarkdown
    signal copyText
    signal saveMarkdown
    signal saveText

    property bool hasSelection: false
    property bool isOnLink: false

    implicitWidth: 212
    implicitHeight: contentHeight + topPadding + bottomPadding
    padding: Theme.space1
    margins: Theme.space1

    contentItem: ListView {
        implicitHeight: contentHeight
        model: menu.contentModel
        interactive: false
        currentIndex: menu.currentIndex
        keyNavigationWraps: true
    }
    background: CustomGroupModifier {
        isFloating: true
    }

    MenuEntry {
        text: qsTr("Copy")
        shortcut: "Ctrl+C"
        enabled: menu.hasSelection
        opacity: enabled ? 1 : 0.5
        onTriggered: menu.copy()
    }
    MenuEntry {
        text: qsTr("Copy Link")
        enabled: menu.isOnLink
        opacity: enabled ? 1 : 0.5
        onTriggered: menu.copyLink()
    }
    MenuEntry {
        text: qsTr("Select All")
        shortcut: "Ctrl+A"
        onTriggered: menu.selectAll()
    }
    MenuEntry {
        text: qsTr("Find…")
        shortcut: "Ctrl+F"
        onTriggered: menu.find()
    }
    MenuDivider {}
    MenuEntry {
        text: qsTr("Copy All as Markdown")
        onTriggered: menu.copyMarkdown()
    }
    MenuEntry {
        text: qsTr("Copy All as Text")
        onTriggered: menu.copyText()
    }
    MenuDivider {}
    MenuEntry {
        text: qsTr("Save as Markdown…")
        shortcut: "Ctrl+S"
        onTriggered: menu.saveMarkdown()
    }
    MenuEntry {
        text: qsTr("Save as Text…")
        onTriggered: menu.saveText()
    }
}
