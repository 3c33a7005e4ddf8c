// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// A symbol of the family, tinted.
SymbolShape {
    property int size: Theme.symbol

    implicitWidth: size
    implicitHeight: size
    color: Theme.primary
}
