// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import VEK

TestCase {
    name: "Theme"

    function cleanup() {
        Theme.isDark = Qt.binding(() => DesktopSettings.isDark);
    }

    function luminance(color: color): real {
        const linear = part => part <= 0.04045 ? part / 12.92 : Math.pow((part + 0.055) / 1.055, 2.4);
        return 0.2126 * linear(color.r) + 0.7152 * linear(color.g) + 0.0722 * linear(color.b);
    }

    function contrast(one: color, other: color): real {
        const a = luminance(one), b = luminance(other);
        return (Math.max(a, b) + 0.05) / (Math.min(a, b) + 0.05);
    }

    function test_contrastIsEnoughInBothSchemes() {
        const text = 4.5, graphics = 3;
        for (const isDark of [false, true]) {
            Theme.isDark = isDark;
            for (const ground of [Theme.window, Theme.group]) {
                verify(contrast(Theme.primary, ground) >= text);
                verify(contrast(Theme.secondary, ground) >= text);
                verify(contrast(Theme.record, ground) >= graphics);
                verify(contrast(Theme.focus, ground) >= graphics);
                verify(contrast(Theme.record, Qt.tint(ground, Theme.hover)) >= graphics);
                verify(contrast(Theme.secondary, Qt.tint(ground, Theme.pressed)) >= graphics);
            }
            verify(contrast(Theme.focus, Qt.tint(Theme.window, Theme.pressed)) >= text);
            for (const ground of [Theme.accent, Theme.accentHover, Theme.accentPressed]) {
                verify(contrast(Theme.accentText, ground) >= text, ground);
            }
            const of = name => Qt.color(Theme.markdown[name]);
            for (const name of ["primary", "secondary", "link", "code", "done"])
                verify(contrast(of(name), Theme.group) >= text, name);
            for (const name of ["ground", "selection", "found", "foundNow"])
                verify(contrast(of("primary"), of(name)) >= text, name);
            for (const name of ["code", "secondary"])
                verify(contrast(of(name), of("ground")) >= text, name);
            verify(contrast(of("quoteBar"), Theme.group) >= graphics);
            verify(contrast(Theme.badgeText, Theme.badge) >= text);
            verify(contrast(Theme.badge, Theme.window) >= graphics);
        }
    }
}
