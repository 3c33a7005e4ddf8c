// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// One transcript of the list: what was said, whose it is, and when it was.
CustomGroupModifier {
    id: cell

    /// The row of the model.
    required property var transcript
    required property TranscriptsListStore store

    readonly property int textState: transcript.textState
    readonly property string text: transcript.text
    readonly property bool isAssigned: transcript.customerID !== ""
    readonly property string customer: store.customerName(transcript.customerID)
    /// What the cell says, for those who do not see it: of a long text the beginning.
    readonly property string description: transcript.startDate + ", "
        + (isAssigned ? customer : qsTr("no customer")) + (summary === "" ? "" : ": " + summary)
    readonly property string summary: {
        switch (textState) {
        case TextState.Content: return text === "" ? none.text : text.slice(0, 300);
        case TextState.Error: return failureText.text;
        default: return "";
        }
    }

    // Bound, not positioned: a list has to know at once how high its rows are.
    readonly property real inset: Theme.space2
    readonly property real innerWidth: width - 2 * inset
    readonly property real spacing: 2
    readonly property real footerTop: {
        switch (textState) {
        case TextState.Loading: return inset + progress.height + spacing;
        case TextState.Content: return inset + (text === "" ? none : words).height + spacing;
        case TextState.Error: return inset + failure.height + spacing;
        default: return inset;
        }
    }

    implicitHeight: footerTop + footer.height + inset

    ProgressIndicator {
        id: progress

        objectName: "cellProgress"
        anchors.horizontalCenter: parent.horizontalCenter
        y: cell.inset
        visible: cell.textState === TextState.Loading
    }

    Text {
        id: none

        objectName: "noContent"
        x: cell.inset
        y: cell.inset
        visible: cell.textState === TextState.Content && cell.text === ""
        text: qsTr("No content available")
        color: Theme.secondary
        font.pixelSize: Theme.body
    }

    Markdown {
        id: words

        objectName: "preview"
        x: cell.inset
        y: cell.inset
        width: cell.innerWidth
        height: implicitHeight
        enabled: false
        visible: cell.text !== ""
        isPlain: true
        content: cell.text
        viewTop: cell.viewTop - y
        viewHeight: cell.viewHeight
    }

    Row {
        id: failure

        objectName: "cellError"
        x: cell.inset
        y: cell.inset
        height: failureText.height
        visible: cell.textState === TextState.Error
        spacing: Theme.space1 + 2

        Icon {
            anchors.verticalCenter: parent.verticalCenter
            symbol: "exclamation-triangle-fill"
            size: Theme.body
        }
        Text {
            id: failureText

            text: qsTr("Error loading transcript")
            color: Theme.primary
            font.pixelSize: Theme.body
        }
    }

    Row {
        id: footer

        x: cell.inset
        y: cell.footerTop
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
            width: Math.min(implicitWidth, cell.innerWidth - date.width - Theme.space2)
            visible: cell.isAssigned
            text: cell.customer
            textFormat: Text.PlainText
            color: Theme.secondary
            font.pixelSize: Theme.body
            elide: Text.ElideRight
            maximumLineCount: 1
        }
        Text {
            id: date

            objectName: "startDate"
            anchors.verticalCenter: parent.verticalCenter
            text: cell.transcript.startDate
            color: Theme.secondary
            font.pixelSize: Theme.footnote
        }
    }
}
