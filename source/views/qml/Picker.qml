// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import VEK

// Shows the one choice of several, and the others at a press.
T.ComboBox {
    id: picker

    /// What is chosen here, for those who do not see it.
    required property string name

    implicitWidth: 220
    implicitHeight: Theme.control
    leftPadding: Theme.space2
    rightPadding: Theme.space2
    hoverEnabled: true
    baselineOffset: contentItem.y + contentItem.baselineOffset
    Accessible.role: Accessible.ComboBox
    Accessible.name: name
    Accessible.description: displayText
    Accessible.onPressAction: picker.popup.open()

    contentItem: Text {
        text: picker.displayText
        textFormat: Text.PlainText
        color: Theme.primary
        font.pixelSize: Theme.body
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        rightPadding: Theme.space4
    }
    indicator: Icon {
        x: picker.width - width - Theme.space2
        y: (picker.height - height) / 2
        symbol: "chevron-expand"
        size: 13
        color: Theme.secondary
    }
    background: ButtonGround {
        isPressed: picker.down
        isHovered: picker.hovered
        isFocused: picker.visualFocus
        color: Theme.group
        border.color: Theme.controlOutline
    }

    delegate: PickerEntry {
        width: ListView.view.width
    }
    popup: T.Popup {
        y: picker.height + Theme.space1
        width: picker.width
        implicitHeight: Math.min(contentItem.implicitHeight + 2 * padding, 240)
        padding: Theme.space1
        margins: Theme.space1

        contentItem: ListView {
            implicitHeight: contentHeight
            model: picker.popup.visible ? picker.delegateModel : null // qmllint disable type
            currentIndex: picker.highlightedIndex
            highlightMoveDuration: 0
            boundsBehavior: Flickable.StopAtBounds
            clip: true
            T.ScrollBar.vertical: ThinScrollBar {}
        }
        background: CustomGroupModifier {
            isFloating: true
        }
    }
}
