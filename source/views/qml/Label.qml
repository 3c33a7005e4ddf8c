// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// A plain text that is also told to those who do not see it.
Text {
    textFormat: Text.PlainText
    color: Theme.primary
    font.pixelSize: Theme.body
    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.ignored: text === "" || opacity === 0
}
