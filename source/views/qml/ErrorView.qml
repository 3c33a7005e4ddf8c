// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import VEK

// A card with the description of an error and the button that the user ends it with. What lies
// below it hears nothing of the mouse.
CustomGroupModifier {
    id: view

    required property string error
    property string dismissText: qsTr("Dismiss")
    signal dismiss

    implicitHeight: button.height + Theme.space1 + 6 + scroll.height + Theme.space2
    isFloating: true
    Accessible.role: Accessible.AlertMessage
    Accessible.name: error
    onVisibleChanged: if (visible) appearance.restart()
    Component.onCompleted: if (visible) appearance.restart()

    NumberAnimation {
        id: appearance

        target: view
        property: "opacity"
        from: 0
        to: 1
        duration: Theme.quick
    }
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        onWheel: event => event.accepted = true
    }

    IconButton {
        id: button

        objectName: "dismissButton"
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: Theme.space1
        symbol: "x-circle-fill"
        symbolSize: Theme.title3
        text: view.dismissText
        onClicked: view.dismiss()
    }

    Flickable {
        id: scroll

        function scrollBy(distance: real) {
            contentY = Math.max(0, Math.min(contentHeight - height, contentY + distance));
        }

        objectName: "errorText"
        anchors.top: button.bottom
        anchors.topMargin: 6
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: Theme.space3
        anchors.rightMargin: Theme.space1
        height: Math.min(100, contentHeight)
        contentHeight: description.height
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        activeFocusOnTab: contentHeight > height || activeFocus
        Accessible.role: Accessible.StaticText
        Accessible.name: view.error
        Keys.onUpPressed: scrollBy(-Theme.space6)
        Keys.onDownPressed: scrollBy(Theme.space6)
        T.ScrollBar.vertical: ThinScrollBar {}

        Text {
            id: description

            width: scroll.width - Theme.space2
            bottomPadding: Theme.space2
            text: view.error
            textFormat: Text.PlainText
            color: Theme.primary
            font.pixelSize: Theme.body
            wrapMode: Text.Wrap
        }
    }

    FocusRing {
        anchors.fill: scroll
        radius: Theme.controlRadius
        visible: scroll.activeFocus
    }
}
