// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// How many transcripts have no customer, on red. It keeps showing the last count while it goes.
Rectangle {
    id: badge

    required property TranscriptsListStore store
    readonly property int count: store.unassignedCount
    property int shownCount: 0
    readonly property alias label: number.text
    onCountChanged: if (count > 0) shownCount = count
    Component.onCompleted: shownCount = count

    objectName: "badge"
    implicitWidth: Math.max(number.implicitWidth + Theme.space2, implicitHeight)
    implicitHeight: number.implicitHeight + 2
    radius: implicitHeight / 2
    color: Theme.badge
    visible: opacity > 0
    opacity: count > 0 ? 1 : 0
    scale: count > 0 ? 1 : 0.3

    Behavior on opacity {
        NumberAnimation { duration: Theme.smooth; easing.type: Easing.InOutQuad }
    }
    Behavior on scale {
        NumberAnimation { duration: Theme.smooth; easing.type: Easing.InOutQuad }
    }

    Text {
        id: number

        anchors.centerIn: parent
        text: Number(badge.shownCount).toLocaleString(Qt.locale(), "f", 0)
        color: Theme.badgeText
        font.pixelSize: Theme.caption
        font.weight: Font.DemiBold
    }
}
