// SPDX-License-Identifier: MIT
import QtQuick

// Views below one another, of which one is a button.
Column {
    property Item button
}
