// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// Looks for a text on two pages, one after the other.
CustomGroupModifier {
    id: bar

    required property MarkdownPage upper
    required property MarkdownPage lower
    readonly property int count: upper.foundCount + lower.foundCount
    property int index: 0
    signal closed

    implicitWidth: 260
    implicitHeight: Theme.control + 2 * Theme.space1
    isFloating: true
    visible: false
    // Or its field would keep the keyboard.
    enabled: visible

    function open() {
        visible = true;
        field.forceActiveFocus();
        field.selectAll();
    }

    function close() {
        visible = false;
        field.text = "";
        closed();
    }

    function show(position: int) {
        if (count === 0) return;
        index = (position + count) % count;
        const isUpper = index < upper.foundCount;
        upper.foundIndex = isUpper ? index : -1;
        lower.foundIndex = isUpper ? -1 : index - upper.foundCount;
    }

    Row {
        anchors.verticalCenter: parent.verticalCenter
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: Theme.space3

        TextInput {
            id: field

            objectName: "findField"
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - position.width - 3 * Theme.control
            color: Theme.primary
            selectionColor: Theme.accent
            selectedTextColor: Theme.accentText
            font.pixelSize: Theme.body
            clip: true
            Accessible.role: Accessible.EditableText
            Accessible.name: qsTr("Find")
            onTextChanged: {
                bar.upper.searched = text;
                bar.lower.searched = text;
                bar.show(0);
            }
            Keys.onReturnPressed: event =>
                bar.show(bar.index + (event.modifiers & Qt.ShiftModifier ? -1 : 1))
            Keys.onEscapePressed: bar.close()

            Text {
                visible: field.text === ""
                text: qsTr("Find")
                color: Theme.disabled
                font.pixelSize: Theme.body
            }
        }
        Text {
            id: position

            objectName: "findPosition"
            anchors.verticalCenter: parent.verticalCenter
            width: 48
            text: field.text === "" ? "" : qsTr("%1 of %2").arg(Math.min(bar.index + 1, bar.count))
                                                           .arg(bar.count)
            color: Theme.secondary
            font.pixelSize: Theme.footnote
            horizontalAlignment: Text.AlignRight
        }
        IconButton {
            symbol: "chevron-up"
            symbolSize: 12
            text: qsTr("Previous")
            enabled: bar.count > 0
            onClicked: bar.show(bar.index - 1)
        }
        IconButton {
            symbol: "chevron-down"
            symbolSize: 12
            text: qsTr("Next")
            enabled: bar.count > 0
            onClicked: bar.show(bar.index + 1)
        }
        IconButton {
            symbol: "x"
            symbolSize: 14
            text: qsTr("Close")
            onClicked: bar.close()
        }
    }
}
