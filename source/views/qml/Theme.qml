// SPDX-License-Identifier: MIT
pragma Singleton

import QtQuick
import VEK

// The look of the program in one place: colours of both schemes, one type scale, one grid of 4, and
// how long things move. Sizes are in logical pixels.
QtObject {
    id: theme

    property bool isDark: DesktopSettings.isDark
    property bool reducesMotion: DesktopSettings.reducesMotion
    readonly property string colorScheme: isDark ? "dark" : "light"

    readonly property color window: isDark ? "#1c1c20" : "#fafafc"
    readonly property color windowOutline: isDark ? "#45454d" : "#d2d2da"
    readonly property color group: isDark ? "#2a2a30" : "#ffffff"
    readonly property color controlOutline: isDark ? "#797984" : "#8a8a96"
    readonly property color divider: isDark ? "#3a3a42" : "#e2e2e8"
    readonly property color hover: isDark ? "#14ffffff" : "#0f000020"
    readonly property color pressed: isDark ? "#24ffffff" : "#1c000020"

    readonly property color primary: isDark ? "#f4f4f6" : "#1b1b20"
    readonly property color secondary: isDark ? "#a9a9b4" : "#5c5c68"
    readonly property color disabled: isDark ? "#6d6d78" : "#9a9aa6"

    readonly property color accent: isDark ? "#5f62e6" : "#4f46e5"
    readonly property color accentHover: isDark ? "#5a5cdc" : "#463dd0"
    readonly property color accentPressed: isDark ? "#4c4ec4" : "#3c34b8"
    readonly property color accentText: "#ffffff"
    readonly property color focus: isDark ? "#a0a3ff" : "#4f46e5"
    readonly property color record: isDark ? "#ff5c5c" : "#d9262e"
    readonly property color badge: "#d3222b"
    readonly property color badgeText: "#ffffff"
    readonly property color shadow: "#33000000"

    /// How documents look; the names are those of the document's own styles.
    readonly property var markdown: ({
        isDark: isDark,
        primary: primary,
        secondary: secondary,
        link: isDark ? "#9da1ff" : "#4f46e5",
        code: isDark ? "#e4dcf5" : "#41346b",
        ground: isDark ? "#34343c" : "#f4f4f8",
        border: isDark ? "#45454f" : "#dedee6",
        quoteBar: isDark ? "#7d80bb" : "#8b89de",
        done: isDark ? "#8f93ff" : "#4f46e5",
        selection: isDark ? "#4a4da8" : "#cfcdfa",
        found: isDark ? "#6b5a1e" : "#fdeaa8",
        foundNow: isDark ? "#8a6508" : "#f9c846"
    })

    readonly property string clockFamily: "Noto Sans"
    readonly property int caption: 10
    readonly property int footnote: 11
    readonly property int body: 13
    readonly property int title3: 16
    readonly property int title: 28

    readonly property int space1: 4
    readonly property int space2: 8
    readonly property int space3: 12
    readonly property int space4: 16
    readonly property int space6: 24

    readonly property int controlRadius: 6
    readonly property int groupRadius: 10
    readonly property int windowRadius: 12
    readonly property int symbol: 17
    readonly property int control: 28

    readonly property int quick: reducesMotion ? 0 : 120
    readonly property int smooth: reducesMotion ? 0 : 220
    readonly property int pulse: 1000
}
