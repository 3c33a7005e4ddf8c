// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import VEK

T.MenuSeparator {
    implicitWidth: contentItem.implicitWidth
    implicitHeight: 9

    contentItem: Item {
        Rectangle {
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.leftMargin: Theme.space2
            anchors.rightMargin: Theme.space2
            anchors.verticalCenter: parent.verticalCenter
            height: 1
            color: Theme.divider
        }
    }
}
