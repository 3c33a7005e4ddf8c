// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import VEK

T.ScrollBar {
    id: bar

    implicitWidth: Theme.space2
    padding: 2
    visible: size < 1
    minimumSize: 0.1

    contentItem: Rectangle {
        implicitWidth: 4
        radius: 2
        color: Theme.secondary
        opacity: bar.active ? 0.9 : 0.7

        Behavior on opacity {
            NumberAnimation { duration: Theme.quick }
        }
    }
}
