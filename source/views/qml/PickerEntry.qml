// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import VEK

// One of the choices of a picker.
T.ItemDelegate {
    id: entry

    required property string modelData
    required property int index

    implicitHeight: Theme.control
    leftPadding: Theme.space2
    rightPadding: Theme.space2
    hoverEnabled: true
    highlighted: ListView.isCurrentItem
    Accessible.role: Accessible.ListItem
    Accessible.name: modelData
    Accessible.onPressAction: if (entry.enabled) entry.clicked()

    contentItem: Text {
        text: entry.modelData
        textFormat: Text.PlainText
        color: entry.highlighted ? Theme.accentText : Theme.primary
        font.pixelSize: Theme.body
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }
    background: Rectangle {
        radius: Theme.controlRadius
        color: entry.highlighted ? Theme.accent : "transparent"
    }
}
