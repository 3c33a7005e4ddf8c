// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// The one small main window. It has no frame of the desktop's: it is moved by its background, stays
// above others, and is as high as its content.
FittedWindow {
    id: window

    required property AppStore store
    /// Without a compositor what is outside round corners would be black.
    required property bool isComposited
    property alias isShowingList: content.isShowingList

    width: 240
    fittingHeight: strip.height + content.implicitHeight
    title: "VEK"
    // Always, as a compositor that comes later finds only what could be seen through from the start.
    color: "transparent"
    flags: Qt.Window | Qt.FramelessWindowHint | Qt.WindowStaysOnTopHint | Qt.WindowTitleHint
           | Qt.WindowMinimizeButtonHint | Qt.WindowCloseButtonHint

    Rectangle {
        anchors.fill: parent
        radius: window.isComposited ? Theme.windowRadius : 0
        color: Theme.window
        border.color: Theme.windowOutline
        border.width: 1
    }

    MouseArea {
        anchors.fill: parent
        onPressed: window.startSystemMove()
    }

    Item {
        id: strip

        width: parent.width
        height: Theme.control + Theme.space1

        Row {
            anchors.right: parent.right
            anchors.rightMargin: Theme.space2
            anchors.verticalCenter: parent.verticalCenter

            WindowButton {
                symbol: "dash"
                text: qsTr("Minimise")
                onClicked: window.showMinimized()
            }
            WindowButton {
                symbol: "x"
                text: qsTr("Close")
                onClicked: window.close()
            }
        }
    }

    ScrolledView {
        id: scroll

        anchors.fill: parent
        anchors.topMargin: strip.height
        contentHeight: content.implicitHeight

        ContentView {
            id: content

            x: Theme.space4
            width: scroll.width - 2 * Theme.space4
            store: window.store
        }
    }

    MenuShortcuts {
        store: window.store.menu
    }
    Shortcut {
        sequence: "Ctrl+W"
        onActivated: window.close()
    }
}
