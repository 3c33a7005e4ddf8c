// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// Turns in steps while it is seen, so that it costs little without a graphics card.
ProgressSpokes {
    id: indicator

    property int size: 16
    readonly property bool isTurning: sight.isSeen && opacity > 0

    implicitWidth: size
    implicitHeight: size
    color: Theme.secondary
    Accessible.role: Accessible.Animation
    Accessible.name: qsTr("In progress")
    Accessible.ignored: opacity === 0

    Sight { id: sight }
    Timer {
        interval: Theme.reducesMotion ? 250 : 90
        repeat: true
        running: indicator.isTurning
        onTriggered: indicator.step = (indicator.step + 1) % indicator.count
    }
}
