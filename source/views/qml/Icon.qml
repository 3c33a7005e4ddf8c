// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls.impl
import VEK

// A symbol of the family, tinted. `symbol` is the name of a file in icons/.
IconImage {
    id: icon

    required property string symbol
    property int size: Theme.symbol

    source: "qrc:/qt/qml/VEK/icons/" + symbol + ".svg"
    sourceSize.width: size
    sourceSize.height: size
    width: size
    height: size
    color: Theme.primary
}
