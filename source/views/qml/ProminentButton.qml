// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// The one button of a view that stands out.
PlainButton {
    implicitWidth: Math.max(implicitContentWidth + leftPadding + rightPadding, 88)
    color: Theme.accentText
    weight: Font.Medium
    ground.color: Theme.accent
    ground.border.width: 0
    ground.hoverColor: Theme.accentHover
    ground.pressedColor: Theme.accentPressed
}
