// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// Tells what was done, for a moment.
CustomGroupModifier {
    id: notice

    function show(text: string) {
        label.text = text;
        opacity = 1;
        rest.restart();
    }

    width: Math.min(label.implicitWidth + 2 * Theme.space3, parent.width - 2 * Theme.space4)
    height: label.height + 2 * Theme.space2
    isFloating: true
    opacity: 0
    visible: opacity > 0
    Accessible.role: Accessible.AlertMessage
    Accessible.name: label.text

    Text {
        id: label

        anchors.centerIn: parent
        width: Math.min(implicitWidth, parent.width - 2 * Theme.space3)
        textFormat: Text.PlainText
        color: Theme.primary
        font.pixelSize: Theme.footnote
        elide: Text.ElideMiddle
    }
    Timer {
        id: rest

        interval: 4000
        onTriggered: notice.opacity = 0
    }
    Behavior on opacity {
        NumberAnimation { duration: Theme.smooth }
    }
}
