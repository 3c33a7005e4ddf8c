// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// A label on the left and what it labels on the right.
Item {
    id: section

    required property string label
    property bool bottomDivider: false
    /// Of the label: Qt.AlignBaseline, with the text of `firstLine`, or Qt.AlignTop.
    property int verticalAlignment: Qt.AlignBaseline
    property Item firstLine: null
    default property alias content: holder.data

    readonly property real labelImplicitWidth: title.implicitWidth
    /// Shared by all sections of a container.
    property real labelWidth: labelImplicitWidth
    readonly property real gap: labelWidth > 0 ? Theme.space3 : 0

    width: parent ? parent.width : implicitWidth
    implicitHeight: holder.height + (bottomDivider ? Theme.space4 + 1 : 0)

    Text {
        id: title

        y: section.verticalAlignment === Qt.AlignBaseline && section.firstLine
           ? section.firstLine.y + section.firstLine.baselineOffset - baselineOffset : 0
        width: section.labelWidth
        text: section.label
        color: Theme.primary
        font.pixelSize: Theme.body
        horizontalAlignment: Text.AlignRight
    }

    Column {
        id: holder

        x: section.labelWidth + section.gap
        width: section.width - x
    }

    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        visible: section.bottomDivider
        color: Theme.divider
    }
}
