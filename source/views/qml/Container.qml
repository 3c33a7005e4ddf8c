// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// Sections below one another, whose labels share the width of the widest.
Item {
    id: container

    property int contentWidth: 432
    property int minimumLabelWidth: 0
    default property alias sections: column.data

    readonly property real labelWidth: Array.from(column.children).reduce(
        (widest, section) => Math.max(widest, section.labelImplicitWidth), minimumLabelWidth)

    onLabelWidthChanged: {
        for (const section of Array.from(column.children)) section.labelWidth = labelWidth;
    }
    implicitWidth: contentWidth
    implicitHeight: column.height + 2 * Theme.space6

    Column {
        id: column

        anchors.horizontalCenter: parent.horizontalCenter
        y: Theme.space6
        width: container.contentWidth
        spacing: Theme.space4
    }
}
