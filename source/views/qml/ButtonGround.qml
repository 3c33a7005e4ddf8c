// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// What a control stands on: it shows the pointer, a press and the keyboard's focus.
Rectangle {
    id: ground

    required property bool isPressed
    required property bool isHovered
    required property bool isFocused
    property color hoverColor: Theme.hover
    property color pressedColor: Theme.pressed
    /// How far outside the ring of the focus is drawn.
    property int ringDistance: 3

    radius: Theme.controlRadius
    color: "transparent"

    Rectangle {
        anchors.fill: parent
        radius: parent.radius
        color: ground.isPressed ? ground.pressedColor
             : ground.isHovered ? ground.hoverColor : "transparent"
    }
    FocusRing {
        anchors.margins: -ground.ringDistance
        radius: ground.radius + ground.ringDistance
        visible: ground.isFocused
    }
}
