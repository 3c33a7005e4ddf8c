// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import VEK

// Scrolls what its window has no room for, and brings what has the keyboard's focus into view.
Flickable {
    id: view

    readonly property Item focusItem: Window.activeFocusItem

    interactive: contentHeight > height
    clip: interactive
    boundsBehavior: Flickable.StopAtBounds
    T.ScrollBar.vertical: ThinScrollBar {}
    onFocusItemChanged: {
        if (!focusItem || !interactive) return;
        const top = focusItem.mapToItem(contentItem, 0, 0).y;
        const least = top + focusItem.height - height;
        contentY = Math.max(0, Math.min(contentHeight - height, Math.max(least, Math.min(contentY, top))));
    }
}
