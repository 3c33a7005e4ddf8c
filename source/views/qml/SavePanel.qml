// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// Keeps a text in a file. Where it goes is asked by the desktop's own dialog, and by this panel
// where the desktop has none. It stays until the text is written or the user gives it up.
FocusScope {
    id: panel

    property string text: ""
    /// The file that is there already and would be replaced.
    property string replaced: ""
    signal saved(string path)
    signal failed(string error)
    signal closed

    function save(content: string, name: string, extension: string) {
        text = content;
        field.text = name + "." + extension;
        dialog.open(panel.Window.window as Window, qsTr("Save Transcript"), TranscriptFile.folder,
                    field.text);
    }

    function ask() {
        visible = true;
        problem.text = "";
        replaced = "";
        field.forceActiveFocus();
        field.select(0, field.text.lastIndexOf("."));
    }

    function accept() {
        const path = TranscriptFile.pathOf(field.text);
        if (TranscriptFile.exists(path) && replaced !== path) {
            replaced = path;
            problem.text = qsTr("There is a file of this name already.");
            return;
        }
        const error = TranscriptFile.write(text, path);
        if (error !== "") {
            problem.text = error;
            return;
        }
        close();
        saved(path);
    }

    function close() {
        visible = false;
        replaced = "";
        closed();
    }

    visible: false
    // Or its field would keep the keyboard.
    enabled: visible
    implicitWidth: 340
    implicitHeight: column.height + 2 * Theme.space4
    Accessible.role: Accessible.Dialog
    Accessible.name: qsTr("Save Transcript")
    Keys.onEscapePressed: close()

    SaveDialog {
        id: dialog

        onChosen: path => {
            const error = TranscriptFile.write(panel.text, path);
            if (error === "") panel.saved(path);
            else panel.failed(error);
        }
        onUnavailable: panel.ask()
    }

    CustomGroupModifier {
        anchors.fill: parent
        isFloating: true
    }
    MouseArea {
        anchors.fill: parent
    }
    Column {
        id: column

        x: Theme.space4
        y: Theme.space4
        width: parent.width - 2 * Theme.space4
        spacing: Theme.space3

        Label {
            width: parent.width
            text: qsTr("Save as")
            font.weight: Font.Medium
        }
        Rectangle {
            width: parent.width
            height: Theme.control
            radius: Theme.controlRadius
            color: Theme.group
            border.color: field.activeFocus ? Theme.focus : Theme.controlOutline

            TextInput {
                id: field

                objectName: "saveName"
                anchors.fill: parent
                anchors.leftMargin: Theme.space2
                anchors.rightMargin: Theme.space2
                verticalAlignment: TextInput.AlignVCenter
                color: Theme.primary
                selectionColor: Theme.accent
                selectedTextColor: Theme.accentText
                font.pixelSize: Theme.body
                selectByMouse: true
                focus: true
                activeFocusOnTab: true
                clip: true
                Accessible.role: Accessible.EditableText
                Accessible.name: qsTr("Save as")
                onTextEdited: {
                    problem.text = "";
                    panel.replaced = "";
                }
                onAccepted: if (saveButton.enabled) panel.accept()
            }
        }
        Label {
            width: parent.width
            text: qsTr("In %1").arg(TranscriptFile.folder)
            visible: problem.text === ""
            color: Theme.secondary
            font.pixelSize: Theme.footnote
            elide: Text.ElideMiddle
        }
        Label {
            id: problem

            objectName: "saveProblem"
            width: parent.width
            visible: text !== ""
            color: Theme.record
            font.pixelSize: Theme.footnote
            wrapMode: Text.Wrap
            Accessible.role: Accessible.AlertMessage
        }
        Row {
            anchors.right: parent.right
            spacing: Theme.space2

            PlainButton {
                objectName: "saveCancel"
                text: qsTr("Cancel")
                onClicked: panel.close()
            }
            ProminentButton {
                id: saveButton

                objectName: "saveButton"
                text: panel.replaced !== "" ? qsTr("Replace") : qsTr("Save")
                enabled: field.text.trim() !== ""
                onClicked: panel.accept()
            }
        }
    }
}
