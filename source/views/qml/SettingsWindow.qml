// SPDX-License-Identifier: MIT
import QtQuick
import VEK

// A toolbar and the pane that is selected in it. The window is as high as they are.
FittedWindow {
    id: window

    required property SettingsWindowController controller
    readonly property PaneHostingController pane: controller.selectedPane

    width: 480
    fittingHeight: toolbar.height + content.height
    title: pane.title
    color: Theme.window
    flags: Qt.Window | Qt.CustomizeWindowHint | Qt.WindowTitleHint | Qt.WindowSystemMenuHint
           | Qt.WindowCloseButtonHint

    Behavior on fittingHeight {
        enabled: window.visible && !window.controller.initialTabSelection
        NumberAnimation { duration: Theme.smooth; easing.type: Easing.InOutQuad }
    }

    SettingsToolbar {
        id: toolbar

        width: parent.width
        controller: window.controller
    }

    Loader {
        id: content

        objectName: "content"
        anchors.top: toolbar.bottom
        width: parent.width
        Accessible.role: Accessible.Pane
        Accessible.name: window.title

        Connections {
            target: window.controller
            function onSelectedPaneChanged() {
                content.setSource(window.pane.view, window.pane.viewProperties);
            }
        }
    }

    Shortcut {
        sequences: ["Ctrl+W", "Escape"]
        onActivated: window.close()
    }
}
