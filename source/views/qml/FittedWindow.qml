// SPDX-License-Identifier: MIT
import QtQuick

// A window that is always as high as what it shows.
Window {
    id: window

    required property real fittingHeight

    // Before it grows it has to be allowed to: window managers keep a window within its bounds.
    function fit() {
        minimumHeight = 0;
        maximumHeight = fittingHeight;
        height = fittingHeight;
        minimumHeight = fittingHeight;
    }

    minimumWidth: width
    maximumWidth: width
    onFittingHeightChanged: fit()
    Component.onCompleted: fit()
}
