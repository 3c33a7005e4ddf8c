// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// The choice of the recogniser.
Container {
    id: view

    property RecognitionProviderReference provider: RecognitionProviderReference {}

    Section {
        label: qsTr("Text provider")
        firstLine: picker

        Picker {
            id: picker

            objectName: "providerPicker"
            width: 220
            name: qsTr("Text provider")
            model: [qsTr("Apple"), qsTr("Deepgram")]
            currentIndex: view.provider.value
            onActivated: index => view.provider.value = index
        }
        Item {
            width: 1
            height: Theme.space2
        }
        Label {
            objectName: "providerNote"
            width: parent.width
            text: view.provider.value === RecognitionProviderReference.Apple
                ? qsTr("The recognition by Apple is done on the device.")
                : qsTr("The recognition by Deepgram is performed on a server.")
            color: Theme.secondary
            font.pixelSize: Theme.footnote
            wrapMode: Text.WordWrap
        }
    }
}
