// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// Text of which the newest words are always in view, and the upper edge fades out.
Item {
    id: view

    property alias text: body.text

    activeFocusOnTab: opacity > 0
    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.ignored: opacity === 0
    Keys.onUpPressed: body.scroll += body.lineHeight
    Keys.onDownPressed: body.scroll -= body.lineHeight

    FadingText {
        id: body

        anchors.fill: parent
        color: Theme.primary
        pixelSize: Theme.body
        onGrew: toEnd.restart()

        NumberAnimation {
            id: toEnd

            target: body
            property: "scroll"
            to: 0
            duration: Theme.smooth
            easing.type: Easing.InOutQuad
        }
    }

    WheelHandler {
        onWheel: event => {
            toEnd.stop();
            body.scroll += event.pixelDelta.y || event.angleDelta.y / 120 * body.lineHeight;
        }
    }

    FocusRing {
        radius: Theme.controlRadius
        visible: view.activeFocus
    }
}
