// SPDX-License-Identifier: MIT
import QtQuick

// A part of a window that is read and made when it is first visible, and then kept: what a start
// does not show does not hold it up.
Loader {
    id: part

    /// The file of the part.
    required property string view
    /// Its required properties.
    required property var properties

    function make() {
        if (visible && status === Loader.Null) setSource(view, properties);
    }

    onVisibleChanged: make()
    Component.onCompleted: make()
}
