// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// Around what has the keyboard's focus; invisible for those who point.
Rectangle {
    anchors.fill: parent
    anchors.margins: -3
    color: "transparent"
    border.width: 2
    border.color: Theme.focus
}
