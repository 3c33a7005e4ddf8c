// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import VEK

// A row of the list of transcripts; a press opens the transcript.
T.AbstractButton {
    id: button

    required property int index
    required property TranscriptsListStore store
    required property int textState
    required property string preview
    required property bool isAssigned
    required property string customer
    required property string startDate

    implicitHeight: implicitContentHeight + bottomPadding
    leftPadding: Theme.space2
    rightPadding: Theme.space2
    bottomPadding: Theme.space1
    // The list has the focus, and the row with its current item.
    focusPolicy: Qt.NoFocus
    hoverEnabled: true
    text: (contentItem as TranscriptCell).description
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: if (button.enabled) button.clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
    onClicked: store.openTrasnscript(index)

    contentItem: TranscriptCell {
        textState: button.textState
        preview: button.preview
        isAssigned: button.isAssigned
        customer: button.customer
        startDate: button.startDate

        Rectangle {
            anchors.fill: parent
            radius: Theme.groupRadius
            color: button.down ? Theme.pressed : button.hovered ? Theme.hover : "transparent"
        }
        FocusRing {
            anchors.margins: 0
            radius: Theme.groupRadius
            visible: button.activeFocus
        }
    }
}
