// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// A disc in a ring: of bold weight while it waits, light and pulsing while it records.
Item {
    id: symbol

    required property bool isRecording
    property int size: 54

    implicitWidth: size
    implicitHeight: size

    Rectangle {
        id: ring

        anchors.fill: parent
        radius: width / 2
        color: "transparent"
        border.color: Theme.record
        border.width: symbol.isRecording ? 2 : 5
        antialiasing: true
    }

    Rectangle {
        anchors.centerIn: parent
        width: symbol.isRecording ? 24 : 28
        height: width
        radius: width / 2
        color: Theme.record
        antialiasing: true
    }

    SequentialAnimation on opacity {
        running: symbol.isRecording && symbol.visible && !Theme.reducesMotion
        loops: Animation.Infinite
        onStopped: symbol.opacity = 1

        NumberAnimation { to: 0.1; duration: Theme.pulse; easing.type: Easing.InOutQuad }
        NumberAnimation { to: 1; duration: Theme.pulse; easing.type: Easing.InOutQuad }
    }
}
