// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// A document as high as it is long, of which only the part in view is drawn. `viewTop` and
// `viewHeight` say which part of this item its surroundings show.
Item {
    id: markdown

    property alias content: page.content
    property alias isPlain: page.isPlain
    property alias baseURL: page.baseURL
    property alias imageBaseURL: page.imageBaseURL
    property alias plainText: page.plainText
    property alias title: page.title
    property alias page: page
    property real viewTop: 0
    property real viewHeight: height
    signal revealRequested(real y, real height)
    signal linkActivated(url link)

    implicitHeight: page.documentHeight

    MarkdownPage {
        id: page

        objectName: "page"
        Accessible.role: Accessible.Document
        // What stands in a control is part of that.
        Accessible.ignored: !markdown.enabled
        y: Math.max(0, Math.min(markdown.viewTop, markdown.height - height))
        scroll: y
        width: markdown.width
        viewHeight: markdown.viewHeight
        height: Math.max(1, Math.min(markdown.viewHeight, markdown.height))
        colors: Theme.markdown
        onRevealRequested: (y, height) => markdown.revealRequested(y, height)
        onLinkActivated: url => markdown.linkActivated(url)
    }
}
