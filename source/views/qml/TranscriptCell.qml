// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// One transcript of the list: how its text begins, whose it is, and when it was.
CustomGroup {
    id: cell

    required property int textState
    required property string preview
    required property bool isAssigned
    required property string customer
    required property string startDate

    readonly property bool isEmpty: preview === ""
    readonly property string beginning: {
        switch (textState) {
        case TextState.Content: return isEmpty ? qsTr("No content available") : preview;
        case TextState.Error: return qsTr("Error loading transcript");
        default: return "";
        }
    }
    /// What the cell says, for those who do not see it.
    readonly property string description: startDate + ", "
        + (isAssigned ? customer : qsTr("no customer")) + (beginning === "" ? "" : ": " + beginning)

    implicitHeight: column.height + 2 * Theme.space2

    Column {
        id: column

        x: Theme.space2
        y: Theme.space2
        width: parent.width - 2 * Theme.space2
        spacing: 2

        ProgressIndicator {
            objectName: "cellProgress"
            anchors.horizontalCenter: parent.horizontalCenter
            visible: cell.textState === TextState.Loading
        }

        Text {
            objectName: "preview"
            width: parent.width
            visible: cell.textState === TextState.Content
            text: cell.beginning
            textFormat: Text.PlainText
            color: cell.isEmpty ? Theme.secondary : Theme.primary
            font.pixelSize: Theme.body
            wrapMode: Text.Wrap
            maximumLineCount: 3
            elide: Text.ElideRight
        }

        Row {
            objectName: "cellError"
            visible: cell.textState === TextState.Error
            spacing: Theme.space1 + 2

            Icon {
                anchors.verticalCenter: parent.verticalCenter
                symbol: "exclamation-triangle-fill"
                size: Theme.body
            }
            Text {
                text: cell.beginning
                color: Theme.primary
                font.pixelSize: Theme.body
            }
        }

        Row {
            height: Math.max(customerText.height, date.height)
            spacing: Theme.space2

            Rectangle {
                objectName: "noCustomerMark"
                anchors.verticalCenter: parent.verticalCenter
                width: 8
                height: 8
                visible: !cell.isAssigned
                color: Theme.record
            }
            Text {
                id: customerText

                objectName: "customer"
                anchors.verticalCenter: parent.verticalCenter
                width: Math.min(implicitWidth, column.width - date.width - Theme.space2)
                visible: cell.isAssigned
                text: cell.customer
                textFormat: Text.PlainText
                color: Theme.secondary
                font.pixelSize: Theme.body
                elide: Text.ElideRight
            }
            Text {
                id: date

                objectName: "startDate"
                anchors.verticalCenter: parent.verticalCenter
                text: cell.startDate
                color: Theme.secondary
                font.pixelSize: Theme.footnote
            }
        }
    }
}
