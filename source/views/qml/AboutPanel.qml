// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import VEK

// What the program is: its mark, name and version, and the licences of what it stands on.
Window {
    id: panel

    required property string version
    /// Each with its "what" and its "licence".
    required property var licences

    width: 340
    height: 440
    minimumWidth: width
    maximumWidth: width
    minimumHeight: height
    maximumHeight: height
    flags: Qt.Dialog
    title: qsTr("About VEK")
    color: Theme.window

    Shortcut {
        sequences: ["Esc", "Ctrl+W"]
        onActivated: panel.close()
    }

    Column {
        id: head

        anchors.top: parent.top
        anchors.topMargin: Theme.space6
        width: parent.width
        spacing: Theme.space1

        Mark {
            anchors.horizontalCenter: parent.horizontalCenter
            Accessible.role: Accessible.Graphic
            Accessible.name: "VEK"
        }
        Item {
            width: 1
            height: Theme.space1
        }
        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            text: "VEK"
            font.pixelSize: Theme.title
            font.weight: Font.DemiBold
        }
        Label {
            objectName: "version"
            anchors.horizontalCenter: parent.horizontalCenter
            text: qsTr("Version %1").arg(panel.version)
            color: Theme.secondary
        }
        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            topPadding: Theme.space2
            text: qsTr("© 2026 VEK contributors, under the MIT licence")
            color: Theme.secondary
            font.pixelSize: Theme.footnote
        }
    }

    Label {
        id: caption

        anchors.top: head.bottom
        anchors.topMargin: Theme.space6
        anchors.left: group.left
        text: qsTr("VEK stands on")
        font.weight: Font.Medium
    }

    CustomGroupModifier {
        id: group

        anchors.top: caption.bottom
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.margins: Theme.space4
        anchors.topMargin: Theme.space2

        ListView {
            id: list

            objectName: "licences"
            anchors.fill: parent
            anchors.margins: 1
            topMargin: Theme.space2
            bottomMargin: Theme.space2
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            activeFocusOnTab: true
            keyNavigationEnabled: true
            model: panel.licences
            Accessible.role: Accessible.List
            Accessible.name: caption.text
            T.ScrollBar.vertical: ThinScrollBar {}

            delegate: Column {
                id: note

                required property var modelData

                width: ListView.view ? ListView.view.width : 0
                leftPadding: Theme.space3
                rightPadding: Theme.space3
                topPadding: Theme.space1
                bottomPadding: Theme.space1
                Accessible.role: Accessible.ListItem
                Accessible.name: modelData.what + ", " + modelData.licence

                Text {
                    width: note.width - 2 * Theme.space3
                    text: note.modelData.what
                    textFormat: Text.PlainText
                    color: Theme.primary
                    font.pixelSize: Theme.footnote
                    wrapMode: Text.Wrap
                }
                Text {
                    width: note.width - 2 * Theme.space3
                    text: note.modelData.licence
                    textFormat: Text.PlainText
                    color: Theme.secondary
                    font.pixelSize: Theme.footnote
                    wrapMode: Text.Wrap
                }
            }
        }
    }
}
