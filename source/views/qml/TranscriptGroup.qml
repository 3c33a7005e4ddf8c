// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// One of the two texts of a transcript, on a ground of its own. `view` is what scrolls it.
Item {
    id: group

    required property Flickable view
    property alias text: markdown.content
    property alias isPlain: markdown.isPlain
    property alias title: markdown.title
    property alias markdown: markdown
    default property alias overlay: box.data
    /// Of what stands in place of the text.
    property real overlayHeight: 0
    signal menuRequested(MarkdownPage page, real x, real y)
    /// No program opened it.
    signal linkFailed(url link)

    readonly property int padding: Theme.space4
    /// Some 85 letters: longer lines are hard to follow.
    readonly property int measure: 560

    implicitHeight: 2 * Theme.space3 + 2 * padding
                    + (markdown.visible ? markdown.implicitHeight : overlayHeight)

    CustomGroupModifier {
        id: box

        anchors.fill: parent
        anchors.margins: Theme.space3
        viewTop: group.view.contentY - group.y - y
        viewHeight: group.view.height

        FocusRing {
            radius: Theme.groupRadius + 3
            visible: markdown.page.isRinged
        }
        Markdown {
            id: markdown

            anchors.horizontalCenter: parent.horizontalCenter
            y: group.padding
            width: Math.min(parent.width - 2 * group.padding, group.measure)
            height: implicitHeight
            viewTop: box.viewTop - y
            viewHeight: box.viewHeight
            onRevealRequested: (y, height) => {
                const top = group.y + box.y + markdown.y + y, margin = Theme.space6;
                const view = group.view;
                const bottom = Math.max(0, view.contentHeight - view.height);
                if (top < view.contentY + margin)
                    view.contentY = Math.max(0, top - margin);
                else if (top + height > view.contentY + view.height - margin)
                    view.contentY = Math.min(bottom, top + height + margin - view.height);
            }
            onLinkActivated: link => {
                if (!Qt.openUrlExternally(link))
                    group.linkFailed(link);
            }
            page.onMenuRequested: (x, y) => group.menuRequested(markdown.page, x, y)
        }
    }
}
