// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import VEK

// A check for updates and how it ended: the mark, what there is to say, and what can be done.
Item {
    id: view

    required property UpdatePanel panel
    readonly property bool isUpdate: panel.page === UpdatePanel.Update
    readonly property bool isChecking: panel.page === UpdatePanel.Checking
    readonly property bool isManaged: isUpdate && panel.packageManager !== ""

    width: 420
    height: Math.max(content.height + buttons.height + Theme.space6 + 2 * Theme.space4, 148)

    readonly property string heading: {
        switch (panel.page) {
        case UpdatePanel.Checking: return qsTr("Checking for updates…");
        case UpdatePanel.Update: return qsTr("VEK %1 is available").arg(panel.version);
        case UpdatePanel.UpToDate: return qsTr("VEK is up to date");
        case UpdatePanel.Failure: return qsTr("VEK could not check for updates");
        }
        return "";
    }
    readonly property string detail: {
        switch (panel.page) {
        case UpdatePanel.Update: return qsTr("You have version %1.").arg(panel.installedVersion);
        case UpdatePanel.UpToDate:
            return qsTr("Version %1 is the newest one.").arg(panel.installedVersion);
        case UpdatePanel.Failure: return panel.failure;
        }
        return "";
    }

    Mark {
        id: mark

        x: Theme.space4
        y: Theme.space4
        width: 48
        height: 48
        Accessible.ignored: true
    }

    Column {
        id: content

        anchors.left: mark.right
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: Theme.space4
        spacing: Theme.space1

        Text {
            objectName: "heading"
            width: parent.width
            text: view.heading
            textFormat: Text.PlainText
            color: Theme.primary
            font.pixelSize: Theme.title3
            font.weight: Font.DemiBold
            wrapMode: Text.Wrap
            Accessible.role: Accessible.Heading
            Accessible.name: view.heading
        }
        Label {
            objectName: "detail"
            width: parent.width
            text: view.detail
            color: Theme.secondary
            wrapMode: Text.Wrap
            visible: text !== ""
        }
        Item {
            width: 1
            height: Theme.space1
            visible: notes.visible
        }
        CustomGroupModifier {
            id: notes

            objectName: "notes"
            width: parent.width
            height: Math.min(notesText.height, 200)
            visible: view.isUpdate && view.panel.notes !== ""

            Flickable {
                id: scroll

                function scrollBy(distance: real) {
                    contentY = Math.max(0, Math.min(contentHeight - height, contentY + distance));
                }

                anchors.fill: parent
                anchors.margins: 1
                contentHeight: notesText.height - 2
                boundsBehavior: Flickable.StopAtBounds
                clip: true
                activeFocusOnTab: contentHeight > height
                Keys.onDownPressed: scrollBy(Theme.space6)
                Keys.onUpPressed: scrollBy(-Theme.space6)
                T.ScrollBar.vertical: ThinScrollBar {}

                Label {
                    id: notesText

                    objectName: "notesText"
                    width: scroll.width
                    padding: Theme.space3
                    text: view.panel.notes
                    lineHeight: 1.2
                    wrapMode: Text.Wrap
                }
            }
            FocusRing {
                radius: Theme.groupRadius + 3
                visible: scroll.activeFocus
            }
        }
        Label {
            objectName: "managed"
            width: parent.width
            topPadding: Theme.space1
            visible: view.isManaged
            text: qsTr("%1 keeps this installation up to date.").arg(view.panel.packageManager)
            wrapMode: Text.Wrap
        }
        TextEdit {
            objectName: "unopened"
            width: parent.width
            topPadding: Theme.space1
            visible: view.panel.couldNotOpen
            text: qsTr("Your browser could not be opened. The update is at %1").arg(view.panel.link)
            textFormat: TextEdit.PlainText
            color: Theme.primary
            font.pixelSize: Theme.body
            wrapMode: TextEdit.Wrap
            readOnly: true
            selectByMouse: true
            selectByKeyboard: true
            activeFocusOnTab: true
            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
        }
    }

    ProgressIndicator {
        objectName: "progress"
        anchors.left: content.left
        anchors.verticalCenter: buttons.verticalCenter
        visible: view.isChecking
        size: 20
    }

    PlainButton {
        objectName: "skipButton"
        anchors.left: content.left
        anchors.bottom: buttons.bottom
        visible: view.isUpdate
        text: qsTr("Skip This Version")
        onClicked: view.panel.skip()
    }

    Row {
        id: buttons

        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.margins: Theme.space4
        spacing: Theme.space2

        PlainButton {
            objectName: "laterButton"
            visible: view.isUpdate && !view.isManaged
            text: qsTr("Later")
            onClicked: view.panel.close()
        }
        PlainButton {
            objectName: "cancelButton"
            visible: view.isChecking
            text: qsTr("Cancel")
            onClicked: view.panel.close()
        }
        ProminentButton {
            objectName: "getButton"
            visible: view.isUpdate && !view.isManaged
            text: qsTr("Get It")
            enabled: !view.panel.isOpening
            focus: true
            onClicked: view.panel.get()
        }
        ProminentButton {
            objectName: "closeButton"
            visible: !view.isChecking && (!view.isUpdate || view.isManaged)
            text: qsTr("OK")
            onClicked: view.panel.close()
        }
    }
}
