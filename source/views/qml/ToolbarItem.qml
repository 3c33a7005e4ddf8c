// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// Selects the pane that it shows.
BaseButton {
    id: item

    required property PaneHostingController modelData
    required property SettingsWindowController controller
    readonly property bool isSelected: controller.selectedPane.identifier === modelData.identifier
    readonly property color tint: isSelected ? Theme.focus : Theme.secondary

    objectName: modelData.identifier
    implicitWidth: Math.max(64, implicitContentWidth + 2 * Theme.space2)
    implicitHeight: 52
    text: modelData.title
    checked: isSelected
    ground.isPressed: down || isSelected
    ground.ringDistance: 0
    Accessible.role: Accessible.PageTab
    Accessible.description: modelData.tooltip
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
}
