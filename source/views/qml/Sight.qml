// SPDX-License-Identifier: MIT
import QtQuick

// Whether what it stands in is on the screen: what nobody sees need not move.
Item {
    readonly property bool isSeen: visible && Window.visibility !== Window.Hidden
                                   && Window.visibility !== Window.Minimized
}
