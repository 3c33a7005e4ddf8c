// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// A disc in a ring: of bold weight while it waits, light and pulsing while it records.
Item {
    id: symbol

    required property bool isRecording
    property int size: 54
    readonly property alias isPulsing: pulse.running

    component Ease: NumberAnimation {
        property: "opacity"
        easing.type: Easing.InOutQuad
    }
    component Change: Behavior {
        NumberAnimation { duration: Theme.smooth; easing.type: Easing.InOutQuad }
    }

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

        Change on border.width {}
    }

    Rectangle {
        anchors.centerIn: parent
        width: symbol.isRecording ? 24 : 28
        height: width
        radius: width / 2
        color: Theme.record
        antialiasing: true

        Change on width {}
    }

    Sight { id: sight }

    SequentialAnimation {
        id: pulse

        running: symbol.isRecording && sight.isSeen && !Theme.reducesMotion
        loops: Animation.Infinite
        onStarted: rest.stop()
        onStopped: rest.start()

        Ease { target: symbol; to: 0.1; duration: Theme.pulse }
        Ease { target: symbol; to: 1; duration: Theme.pulse }
    }
    Ease {
        id: rest

        target: symbol
        to: 1
        duration: Theme.smooth
    }
}
