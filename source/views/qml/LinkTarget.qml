// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// Where the link under the pointer leads.
CustomGroupModifier {
    id: target

    property string link: ""

    width: Math.min(label.implicitWidth + 2 * Theme.space3, parent.width - 2 * Theme.space2)
    height: label.height + 2 * Theme.space1
    isFloating: true
    visible: link !== ""

    Text {
        id: label

        anchors.centerIn: parent
        width: Math.min(implicitWidth, parent.width - 2 * Theme.space3)
        text: target.link
        textFormat: Text.PlainText
        color: Theme.secondary
        font.pixelSize: Theme.footnote
        elide: Text.ElideMiddle
        maximumLineCount: 1
    }
}
