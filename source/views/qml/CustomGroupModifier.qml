// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// The group look: content on a raised ground with a fine outline. With `isFloating` it throws a
// shadow on what is below. `viewTop` and `viewHeight` say which part of it its surroundings show.
Item {
    id: group

    property bool isFloating: false
    property real viewTop: 0
    property real viewHeight: height
    /// "light" or "dark".
    property string colorScheme: Theme.colorScheme
    readonly property bool isDark: colorScheme === "dark"

    function faded(base: color, opacity: real): color {
        return Qt.rgba(base.r, base.g, base.b, opacity);
    }

    GroupFrame {
        readonly property real seenHeight: Math.min(group.viewHeight, group.height)

        x: -margin
        y: above - margin
        width: group.width + 2 * margin
        height: seenHeight + 2 * margin
        above: Math.max(0, Math.min(group.viewTop, group.height - seenHeight))
        frameHeight: group.height + 2 * margin
        margin: group.isFloating ? Theme.space4 : 0
        radius: Theme.groupRadius
        fill: Theme.group
        outlineTop: group.isDark ? group.faded(Theme.secondary, 0.15)
                                 : group.faded(Theme.primary, 0.1)
        outlineBottom: group.isDark ? group.faded(Theme.primary, 0.2)
                                    : group.faded(Theme.secondary, 0.3)
        shadow: group.isFloating ? Theme.shadow : "transparent"
    }
}
