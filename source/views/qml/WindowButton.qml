// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// A button of the title strip.
IconButton {
    implicitWidth: 22
    implicitHeight: 22
    symbolSize: 16
}
