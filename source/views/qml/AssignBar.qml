// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// Assigns the chosen customer. What scrolls below it shines through.
Item {
    id: bar

    required property TranscriptStore store
    /// Kept while the bar slides out and nobody is chosen any more.
    property string name: ""

    implicitHeight: button.height + 2 * Theme.space4

    Rectangle {
        anchors.fill: parent
        color: Theme.window
        opacity: 0.9
    }
    Rectangle {
        width: parent.width
        height: 1
        color: Theme.divider
    }
    Row {
        anchors.centerIn: parent
        spacing: Theme.space2

        ProgressIndicator {
            objectName: "assignProgress"
            anchors.verticalCenter: parent.verticalCenter
            opacity: bar.store.assigningCustomer ? 1 : 0
        }
        ProminentButton {
            id: button

            objectName: "assignButton"
            width: Math.min(implicitWidth, bar.width - 2 * Theme.space6)
            text: qsTr("Assign %1").arg(bar.name)
            enabled: !bar.store.assigningCustomer
            onClicked: bar.store.assignCustomerButtonClicked()
        }
    }
}
