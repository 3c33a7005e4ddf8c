// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// The row below the main area: the list, what is under way, the menu.
Item {
    id: row

    required property AppStore store
    property bool isShowingList: false

    /// So that symbols, and not the room around them, stand at the edges.
    readonly property real overhang: (Theme.control - Theme.symbol) / 2

    implicitHeight: Theme.control + Theme.space3

    IconButton {
        id: listButton

        readonly property int count: row.store.transcripts.unassignedCount

        objectName: "listButton"
        anchors.left: parent.left
        anchors.leftMargin: -row.overhang
        symbol: "list-ul"
        text: row.isShowingList ? qsTr("Hide transcripts") : qsTr("Show transcripts")
        visible: row.store.session.hasCredentials
        Accessible.description: count > 0
            ? qsTr("%Ln transcripts without a customer", "", count) : ""
        onClicked: row.isShowingList = !row.isShowingList

        Part {
            anchors.centerIn: parent
            anchors.horizontalCenterOffset: 12
            anchors.verticalCenterOffset: -12
            view: "Badge.qml"
            properties: ({ store: row.store.transcripts })
        }
    }

    Item {
        anchors.horizontalCenter: parent.horizontalCenter
        width: Theme.control
        height: Theme.control

        ProgressIndicator {
            objectName: "headerProgress"
            anchors.centerIn: parent
            size: 20
            visible: row.store.isLoading
        }
    }

    MenuButton {
        anchors.right: parent.right
        anchors.rightMargin: -row.overhang
        store: row.store.menu
    }
}
