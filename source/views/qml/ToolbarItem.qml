// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import VEK

// Selects the pane that it shows.
T.AbstractButton {
    id: item

    required property var modelData
    required property SettingsWindowController controller
    readonly property bool isSelected: controller.selectedPane.identifier === modelData.identifier
    readonly property color tint: isSelected ? Theme.focus : Theme.secondary

    objectName: modelData.identifier
    implicitWidth: Math.max(64, implicitContentWidth + 2 * Theme.space2)
    implicitHeight: 52
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    text: modelData.title
    checked: isSelected
    Accessible.role: Accessible.PageTab
    Accessible.name: text
    Accessible.onPressAction: if (item.enabled) item.clicked()
    Accessible.description: modelData.tooltip
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
    onClicked: controller.changeContentView(modelData.identifier)
    Keys.onLeftPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
    Keys.onRightPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)

    contentItem: Column {
        topPadding: Theme.space1 + 2
        spacing: Theme.space1

        Icon {
            anchors.horizontalCenter: parent.horizontalCenter
            symbol: item.modelData.toolbarIcon
            size: 20
            color: item.tint
        }
        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            text: item.text
            color: item.tint
            font.pixelSize: Theme.footnote
            font.weight: Font.Medium
        }
    }
    background: Rectangle {
        radius: Theme.controlRadius
        color: item.down || item.isSelected ? Theme.pressed : item.hovered ? Theme.hover : "transparent"

        FocusRing {
            anchors.margins: 0
            radius: parent.radius
            visible: item.visualFocus
        }
    }
}
