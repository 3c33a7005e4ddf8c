// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// A window that is always as high as what it shows, as far as its screen has room for that. One that
// grows over the lower edge of its screen moves up, and goes back when it shrinks again, unless it
// was moved meanwhile.
Window {
    id: window

    required property real fittingHeight

    property bool isRaised: false
    property int raisedY: 0
    property int restingY: 0
    /// Where it stands while it is low enough; what is to be kept of its place.
    readonly property int unraisedY: isRaised && y === raisedY ? restingY : y

    function fit() {
        const room = ScreenRoom.around(window);
        // Of whole pixels at fractional scales too, or the lower edge would be a line of nothing.
        const step = Screen.devicePixelRatio % 1 === 0 ? 1 : 4;
        const wanted = Math.min(Math.ceil(fittingHeight / step) * step, room.height);
        // Before it grows it has to be allowed to: window managers keep a window within its bounds.
        minimumHeight = 0;
        maximumHeight = wanted;
        if (visible) {
            if (!isRaised || y !== raisedY) restingY = y;
            raisedY = Math.max(room.y, Math.min(restingY, room.y + room.height - wanted));
            isRaised = raisedY < restingY;
            ScreenRoom.setGeometry(window, Qt.rect(x, isRaised ? raisedY : restingY, width, wanted));
        } else {
            height = wanted;
        }
        minimumHeight = wanted;
    }

    minimumWidth: width
    maximumWidth: width
    onFittingHeightChanged: fit()
    onScreenChanged: fit()
    Component.onCompleted: fit()
}
