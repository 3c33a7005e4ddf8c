// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// Lets an item come gently each time that it comes to be seen, but for the first.
NumberAnimation {
    id: fade

    required property Item item
    readonly property bool isShown: item.visible
    property bool isReady: false

    target: item
    property: "opacity"
    from: 0
    to: 1
    duration: Theme.smooth
    easing.type: Easing.InOutQuad
    Component.onCompleted: isReady = true
    onIsShownChanged: if (isReady && isShown) restart()
}
