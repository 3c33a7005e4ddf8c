// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import VEK

// An opened transcript: what its conversation was worth, and the words that were said.
Item {
    id: view

    required property TranscriptStore store
    readonly property bool isAssigning: !store.isAssigned && store.selectedCustomer >= 0

    Component.onCompleted: store.transcriptDidAppear()

    function choices(): var {
        const names = Array.from(store.customers);
        names.unshift(qsTr("Choose one…"));
        return names;
    }

    function save(text: string, ending: string) {
        saving.active = true;
        (saving.item as SavePanel).save(text, qsTr("Transcript %1").arg(store.fileName), ending);
    }

    Item {
        id: customer

        objectName: "customer"
        width: parent.width
        height: view.store.isAssigned ? 0 : picker.height + 2 * Theme.space4
        visible: height > 0
        clip: true

        Row {
            anchors.centerIn: parent
            spacing: Theme.space2

            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: qsTr("Customer")
                color: Theme.primary
                font.pixelSize: Theme.body
            }
            Picker {
                id: picker

                objectName: "customerPicker"
                name: qsTr("Customer")
                model: view.choices()
                currentIndex: view.store.selectedCustomer + 1
                onActivated: index => view.store.customerPickerClicked(index - 1)
            }
        }
        Behavior on height {
            NumberAnimation { duration: Theme.smooth; easing.type: Easing.InOutQuad }
        }
    }

    FadeIn { item: loading }
    FadeIn { item: failed }
    FadeIn { item: scroll }
    FadeIn { item: analysis }
    FadeIn { item: analysis.markdown }

    ProgressIndicator {
        id: loading

        objectName: "transcriptProgress"
        anchors.centerIn: scroll
        size: 24
        visible: view.store.textState === TextState.Loading
    }

    TranscriptErrorView {
        id: failed

        objectName: "transcriptError"
        anchors.fill: scroll
        anchors.margins: Theme.space4
        visible: view.store.textState === TextState.Error
        store: view.store
        error: view.store.textError
    }

    Flickable {
        id: scroll

        objectName: "transcriptScroll"
        anchors.top: customer.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        visible: view.store.textState === TextState.Content
        contentHeight: groups.height + (view.isAssigning ? bar.height : 0)
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        focus: true
        T.ScrollBar.vertical: ThinScrollBar {}
        Keys.onPressed: event => {
            const page = height - Theme.space6;
            const steps = {
                [Qt.Key_Up]: -Theme.space6, [Qt.Key_Down]: Theme.space6,
                [Qt.Key_PageUp]: -page, [Qt.Key_PageDown]: page,
                [Qt.Key_Home]: -contentHeight, [Qt.Key_End]: contentHeight
            };
            const step = steps[event.key] ?? 0;
            event.accepted = step !== 0;
            if (event.accepted)
                contentY = Math.max(0, Math.min(contentHeight - height, contentY + step));
        }

        Column {
            id: groups

            width: scroll.width

            TranscriptGroup {
                id: analysis

                objectName: "analysis"
                width: parent.width
                visible: view.store.analysisState === TextState.Loading
                         || view.store.analysisState === TextState.Error
                         || view.store.analysis !== ""
                view: scroll
                title: qsTr("Analysis")
                text: view.store.analysis
                markdown.visible: view.store.analysisState === TextState.Content
                overlayHeight: Math.max(progress.height, failure.visible ? failure.implicitHeight : 0)
                onMenuRequested: (page, x, y) => menu.openOn(page, x, y)
                onLinkFailed: link => notice.show(qsTr("No program opened %1").arg(link))

                ProgressIndicator {
                    id: progress

                    objectName: "analysisProgress"
                    anchors.centerIn: parent
                    visible: view.store.analysisState === TextState.Loading
                }
                TranscriptErrorView {
                    id: failure

                    objectName: "analysisError"
                    anchors.fill: parent
                    anchors.margins: Theme.space4
                    visible: view.store.analysisState === TextState.Error
                    store: view.store
                    error: view.store.analysisError
                }
            }
            TranscriptGroup {
                id: words

                objectName: "words"
                width: parent.width
                view: scroll
                isPlain: true
                title: qsTr("Transcript")
                text: view.store.text === "" ? qsTr("NO CONTENT") : view.store.text
                onMenuRequested: (page, x, y) => menu.openOn(page, x, y)
            }
        }
    }

    AssignBar {
        id: bar

        objectName: "assignBar"
        width: parent.width
        y: parent.height - (view.isAssigning ? height : 0)
        visible: y < parent.height
        store: view.store
        Binding on name {
            when: view.isAssigning
            restoreMode: Binding.RestoreNone
            value: view.store.customers[view.store.selectedCustomer] ?? ""
        }
        Behavior on y {
            enabled: view.visible
            NumberAnimation { duration: Theme.smooth; easing.type: Easing.InOutQuad }
        }
    }

    FindBar {
        id: find

        objectName: "findBar"
        anchors.right: parent.right
        anchors.top: scroll.top
        anchors.margins: Theme.space2
        upper: analysis.markdown.page
        lower: words.markdown.page
        onClosed: scroll.forceActiveFocus()
    }

    TextMenu {
        id: menu

        property MarkdownPage page: words.markdown.page
        property string link: ""

        function openOn(target: MarkdownPage, x: real, y: real) {
            page = target;
            link = target.hoveredLink;
            const place = target.mapToItem(view, x, y);
            popup(place.x, place.y);
        }

        hasSelection: page.selectedText !== ""
        isOnLink: link !== ""
        onCopy: page.copy()
        onCopyLink: TranscriptFile.copy(link)
        onSelectAll: page.selectAll()
        onFind: find.open()
        onCopyMarkdown: TranscriptFile.copy(view.store.markdown())
        onCopyText: TranscriptFile.copy(view.store.plainText())
        onSaveMarkdown: view.save(view.store.markdown(), "md")
        onSaveText: view.save(view.store.plainText(), "txt")
    }

    LinkTarget {
        objectName: "linkTarget"
        anchors.left: parent.left
        anchors.bottom: bar.visible ? bar.top : parent.bottom
        anchors.margins: Theme.space2
        link: analysis.markdown.page.hoveredLink
    }

    // Made when something is saved for the first time.
    Loader {
        id: saving

        anchors.horizontalCenter: parent.horizontalCenter
        y: Theme.space6
        width: Math.min(360, parent.width - 2 * Theme.space4)
        active: false
        sourceComponent: SavePanel {
            objectName: "savePanel"
            onSaved: path => notice.show(qsTr("Saved as %1").arg(path))
            onClosed: () => scroll.forceActiveFocus()
            onFailed: error => notice.show(qsTr("The file could not be written: %1").arg(error))
        }
    }

    Notice {
        id: notice

        objectName: "notice"
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Theme.space4
    }

    Shortcut {
        sequence: "Ctrl+F"
        onActivated: find.open()
    }
    Shortcut {
        sequence: "Ctrl+S"
        onActivated: view.save(view.store.markdown(), "md")
    }
}
