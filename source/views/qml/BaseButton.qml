// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import VEK

// What all buttons share: the mouse, the keyboard and assistive technology press them alike.
T.AbstractButton {
    id: button

    /// Made at once, so that those who derive can set it up.
    readonly property alias ground: ground

    implicitHeight: Theme.control
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    opacity: enabled ? 1 : 0.5
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: if (button.enabled) button.clicked()
    Keys.onReturnPressed: event => { if (!event.isAutoRepeat) clicked(); }
    Keys.onEnterPressed: event => { if (!event.isAutoRepeat) clicked(); }

    background: ButtonGround { // qmllint disable deferred-property-id
        id: ground

        isPressed: button.down
        isHovered: button.hovered
        isFocused: button.visualFocus
    }
}
