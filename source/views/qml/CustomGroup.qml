// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// The group look: content on a raised ground with a fine outline. With `isFloating` it throws a
// shadow on what is below.
Item {
    id: group

    property bool isFloating: false

    function faded(base: color, opacity: real): color {
        return Qt.rgba(base.r, base.g, base.b, opacity);
    }

    GroupFrame {
        anchors.fill: parent
        anchors.margins: -margin
        margin: group.isFloating ? Theme.space4 : 0
        radius: Theme.groupRadius
        fill: Theme.group
        outlineTop: Theme.isDark ? group.faded(Theme.secondary, 0.15)
                                 : group.faded(Theme.primary, 0.1)
        outlineBottom: Theme.isDark ? group.faded(Theme.primary, 0.2)
                                    : group.faded(Theme.secondary, 0.3)
        shadow: group.isFloating ? Theme.shadow : "transparent"
    }
}
