// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import VEK
import VEK.Test

TestCase {
    id: test

    name: "TranscriptsList"
    when: windowShown
    width: 240
    height: 180
    visible: true

    ScriptedApp { id: app }

    TranscriptsListView {
        id: view

        anchors.fill: parent
        store: app.store.transcripts
    }

    property ListView list

    function initTestCase() {
        list = findChild(view, "transcripts");
    }

    function showCells(cells: var, areNameless = false) {
        app.show({ loggedIn: true, cells: cells, nameless: areNameless });
        // Texts are measured before the next frame.
        waitForRendering(view);
        list.forceLayout();
    }

    function part(row: int, name: string): Item {
        return findChild(list.itemAtIndex(row), name);
    }

    function init() {
        app.show({});
        app.forgetSent();
    }

    function test_loadingComesBeforeEmptyBeforeTheList_data() {
        return [
            { tag: "loading", facts: { refreshing: true, transcripts: 3 }, shown: "listProgress" },
            { tag: "empty", facts: {}, shown: "noTranscripts" },
            { tag: "some", facts: { transcripts: 3 }, shown: "transcripts" },
        ];
    }

    function test_loadingComesBeforeEmptyBeforeTheList(row) {
        app.show(row.facts);
        const parts = ["listProgress", "noTranscripts", "transcripts"];
        compare(parts.filter(name => findChild(view, name).visible), [row.shown]);
    }

    function test_aCellShowsHowFarItsTextIs_data() {
        return [
            { tag: "initial", cell: {}, shown: [] },
            { tag: "loading", cell: { loading: true }, shown: ["cellProgress"] },
            { tag: "empty", cell: { text: "" }, shown: ["noContent"] },
            { tag: "text", cell: { text: "<b>Hi</b>" }, shown: ["preview"] },
            { tag: "error", cell: { failed: true }, shown: ["cellError"] },
        ];
    }

    function test_aCellShowsHowFarItsTextIs(row) {
        showCells([row.cell]);
        const parts = ["cellProgress", "noContent", "preview", "cellError"];
        compare(parts.filter(name => part(0, name).visible), row.shown);
        compare(part(0, "noContent").text, "No content available");
        compare(part(0, "preview").plainText, row.cell.text ?? "");
    }

    function test_aCellShowsItsCustomerOrAMark() {
        const cells = [{ text: "a" }, { text: "b", customer: "known" }, { text: "c", customer: "gone" }];
        showCells(cells, true);
        compare(part(1, "customer").text, "00000000-0000-0000-0000-000000000001");
        showCells(cells);
        compare([0, 1, 2].map(row => part(row, "noCustomerMark").visible), [true, false, false]);
        compare([0, 1, 2].map(row => part(row, "customer").visible), [false, true, true]);
        compare(part(1, "customer").text, "Harbour Bakery and Sons");
        compare(part(2, "customer").text, "00000000-0000-0000-0000-000000000002");
        verify(part(0, "startDate").text.length > 5);
        // Without space for all of it the customer is cut, and the date is not.
        const date = part(2, "startDate");
        verify(date.x + date.width <= part(2, "preview").width);
    }

    function test_measuresOfCells() {
        showCells([{ text: "one" }, { text: "two" }]);
        const first = list.itemAtIndex(0), second = list.itemAtIndex(1);
        const cell = first.contentItem;
        compare([cell.x, list.width - cell.width], [8, 16]);
        compare(second.y - (first.y + cell.height), 4);
        const text = part(0, "preview");
        compare(text.mapToItem(cell, 0, 0), Qt.point(8, 8));
        compare(part(0, "noCustomerMark").width, 8);
        compare(list.originY + list.contentHeight + list.bottomMargin - (second.y + cell.height), 12);
    }

    function test_aPressOpensTheTranscript() {
        showCells([{ text: "one" }, { text: "two" }]);
        mouseClick(list.itemAtIndex(1));
        compare(app.sent, ["transcripts(openTrasnscript)"]);
        keyClick(Qt.Key_Tab);
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Return);
        keyClick(Qt.Key_Space);
        compare(app.sent.length, 3);
        compare(list.currentIndex, 1);
    }

    function test_allOfALongTextCanBeReadWithTheKeyboard() {
        showCells([{ text: "word ".repeat(40000) + "end" }, { text: "two" }]);
        const cell = list.itemAtIndex(0), words = part(0, "preview");
        tryVerify(() => cell.height > 40000 / 8 * 16);
        verify(cell.Accessible.name.length < 400, "its beginning is read out");
        verify(words.page.Accessible.ignored, "and no more");
        verify(words.page.height <= list.height, "what is not seen is not painted");
        list.forceActiveFocus();
        keyClick(Qt.Key_PageDown);
        const read = list.contentY - list.originY;
        verify(read > list.height / 2 && read < list.height);
        // It may still be growing.
        tryVerify(() => {
            keyClick(Qt.Key_End);
            return list.atYEnd;
        });
        keyClick(Qt.Key_Home);
        compare(list.contentY, list.originY);
    }

    function test_aChangeKeepsTheOtherRowsOfALongList() {
        const cells = Array(10000).fill({ text: "same" });
        showCells(cells);
        compare(list.count, 10000);
        list.positionViewAtIndex(5000, ListView.Beginning);
        const place = list.contentY, item = list.itemAtIndex(5001);
        showCells(cells.map((cell, row) => row === 5000 ? { text: "other" } : cell));
        compare(part(5000, "preview").plainText, "other");
        compare(list.contentY, place);
        compare(list.itemAtIndex(5001), item);
        verify(list.contentItem.children.length < 60, "only what shows has an item");
    }
}
