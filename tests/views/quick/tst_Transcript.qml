// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import VEK
import VEK.Test

TestCase {
    id: test

    name: "Transcript"
    when: windowShown
    width: 400
    height: 400
    visible: true

    ScriptedTranscript { id: transcript }
    ScratchFolder { id: folder }

    TranscriptView {
        id: view

        anchors.fill: parent
        store: transcript.store
    }

    readonly property var both: ({ text: "Said words", analysis: "# Worth\n\nOf it", assigned: true })

    function init() {
        transcript.show({});
        transcript.forgetSent();
        part("findBar").close();
        part("transcriptScroll").contentY = 0;
    }

    function part(name: string): Item {
        return findChild(view, name);
    }

    function shown(names: var): var {
        return names.filter(name => part(name).visible);
    }

    function test_whatIsShownFollowsTheText_data() {
        return [
            { tag: "initial", facts: {}, shows: [] },
            { tag: "loading", facts: { loading: true }, shows: ["transcriptProgress"] },
            { tag: "error", facts: { error: "No." }, shows: ["transcriptError"] },
            { tag: "content", facts: { text: "a" }, shows: ["transcriptScroll"] },
            { tag: "empty", facts: { text: "" }, shows: ["transcriptScroll"] },
        ];
    }

    function test_whatIsShownFollowsTheText(row) {
        transcript.show(row.facts);
        compare(shown(["transcriptProgress", "transcriptError", "transcriptScroll"]), row.shows);
        compare(part("words").text, row.facts.text === "a" ? "a" : "NO CONTENT");
    }

    function test_whatComesComesGently() {
        transcript.show({ loading: true });
        tryCompare(part("transcriptProgress"), "opacity", 1);
        transcript.show(both);
        verify(part("transcriptScroll").opacity < 1);
        tryCompare(part("transcriptScroll"), "opacity", 1);
    }

    function test_whatIsShownFollowsTheAnalysis_data() {
        return [
            { tag: "initial", facts: {}, shows: [] },
            { tag: "loading", facts: { loadingAnalysis: true }, shows: ["analysis", "analysisProgress"] },
            { tag: "error", facts: { analysisError: "No." }, shows: ["analysis", "analysisError"] },
            { tag: "content", facts: { analysis: "a" }, shows: ["analysis"] },
            { tag: "empty", facts: { analysis: "" }, shows: [] },
        ];
    }

    function test_whatIsShownFollowsTheAnalysis(row) {
        transcript.show(Object.assign({ text: "a" }, row.facts));
        compare(shown(["analysis", "analysisProgress", "analysisError"]), row.shows);
    }

    function test_retryFetchesAgain_data() {
        return [{ tag: "text", facts: { error: "No text." }, place: "transcriptError" },
                { tag: "analysis", facts: { text: "a", analysisError: "No analysis." },
                  place: "analysisError" }];
    }

    function test_retryFetchesAgain(row) {
        transcript.show(row.facts);
        compare(findChild(part(row.place), "errorText").text, row.facts.error ?? row.facts.analysisError);
        waitForRendering(view);
        mouseClick(findChild(part(row.place), "retryButton"));
        compare(transcript.sent, ["refetchContentButtonClicked"]);
    }

    function test_theAnalysisStandsAboveTheWords() {
        transcript.show(both);
        tryVerify(() => part("words").y > 0);
        verify(part("words").y >= part("analysis").y + part("analysis").height);
        verify(part("analysis").markdown.page.rectOf("Worth").height > 26);
    }

    function painted(item: Item): var {
        const own = item instanceof GroupFrame || item instanceof MarkdownPage ? [item] : [];
        return Array.from(item.children).reduce((all, child) => all.concat(painted(child)), own);
    }

    function test_aLongDocumentTakesAPictureOfWhatIsSeenOfIt() {
        const scroll = part("transcriptScroll");
        transcript.show({ text: "a\n".repeat(500), analysis: "b\n\n".repeat(500) });
        tryVerify(() => scroll.contentHeight > 15000);
        verify(painted(scroll).length >= 4);
        for (const item of painted(scroll)) verify(item.height <= scroll.height, item);
        const frame = painted(part("words"))[0];
        // It may still be growing.
        tryVerify(() => {
            scroll.contentY = scroll.contentHeight - scroll.height;
            return frame.y + frame.height === frame.parent.height;
        });
    }

    function test_aCustomerIsChosenAndAssigned() {
        transcript.show({ text: "a" });
        const picker = part("customerPicker"), bar = part("assignBar"), button = part("assignButton");
        compare(picker.displayText, "Choose one…");
        compare(bar.visible, false);
        tryCompare(part("customer"), "height", picker.height + 2 * Theme.space4);
        mouseClick(picker);
        tryVerify(() => picker.popup.opened);
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Return);
        compare(transcript.sent.length, 1);
        verify(transcript.sent[0].startsWith("customerPickerClicked"));

        transcript.show({ text: "a", selected: 1 });
        compare(picker.displayText, "Northwind");
        compare(button.text, "Assign Northwind");
        compare(button.contentItem.textFormat, Text.PlainText, "a name is no markup");
        tryCompare(bar, "y", view.height - bar.height);
        compare(part("assignProgress").opacity, 0);
        transcript.forgetSent();
        mouseClick(button);
        compare(transcript.sent, ["assignCustomerButtonClicked"]);

        transcript.show({ text: "a", selected: 1, assigning: true });
        compare(button.enabled, false);
        compare(part("assignProgress").opacity, 1);
        transcript.show({ text: "a", selected: 1, assigned: true });
        compare(button.text, "Assign Northwind", "it keeps its name while it slides out");
        tryCompare(bar, "visible", false);
        tryVerify(() => !picker.visible);
    }

    function test_findGoesThroughBothTexts() {
        transcript.show({ text: "one two one", analysis: "One", assigned: true });
        keyClick(Qt.Key_F, Qt.ControlModifier);
        const bar = part("findBar");
        tryCompare(bar, "visible", true);
        keyClick(Qt.Key_O);
        keyClick(Qt.Key_N);
        compare(part("findPosition").text, "1 of 3");
        const pages = [part("analysis").markdown.page, part("words").markdown.page];
        const present = () => pages.map(page => page.foundIndex);
        compare(present(), [0, -1]);
        keyClick(Qt.Key_Return);
        compare(present(), [-1, 0]);
        keyClick(Qt.Key_Return);
        keyClick(Qt.Key_Return);
        compare(present(), [0, -1]);
        keyClick(Qt.Key_Return, Qt.ShiftModifier);
        compare(present(), [-1, 1]);
        transcript.show({ text: "one", analysis: "", assigned: true });
        tryCompare(part("findPosition"), "text", "1 of 1");
        keyClick(Qt.Key_Escape);
        compare(bar.visible, false);
        keyClick(Qt.Key_T);
        compare(part("findField").text, "");
        verify(part("transcriptScroll").activeFocus);
    }

    function test_theTargetOfALinkIsShown() {
        transcript.show({ text: "Said", analysis: "[here](https://a.org/b)", assigned: true });
        const page = part("analysis").markdown.page;
        tryVerify(() => page.rectOf("here").width > 0);
        const link = page.rectOf("here");
        mouseMove(page, link.x + link.width / 2, link.y + link.height / 2);
        tryCompare(part("linkTarget"), "link", "https://a.org/b");
        compare(part("linkTarget").visible, true);
        mouseMove(page, page.width - 1, link.y + link.height / 2);
        tryCompare(part("linkTarget"), "visible", false);
    }

    function test_theKeyboardScrollsAndFollowsLinks() {
        transcript.show({
            text: "Said ".repeat(2000), assigned: true,
            analysis: "[bad](javascript:a) [one](https://a.org)\n\n" + "a\n\n".repeat(50)
                      + "[two](https://c.org)"
        });
        const scroll = part("transcriptScroll"), page = part("analysis").markdown.page;
        const target = part("linkTarget"), end = () => scroll.contentHeight - scroll.height;
        tryVerify(() => end() > 2000);
        scroll.forceActiveFocus();
        keyClick(Qt.Key_Down);
        verify(scroll.contentY > 0 && scroll.contentY < 100);
        keyClick(Qt.Key_PageDown);
        verify(scroll.contentY > 300);
        keyClick(Qt.Key_End);
        compare(scroll.contentY, end());
        keyClick(Qt.Key_Home);
        compare(scroll.contentY, 0);

        part("words").markdown.page.forceActiveFocus(Qt.TabFocusReason);
        verify(part("words").markdown.page.isRinged, "it has no link that would show the focus");
        page.forceActiveFocus(Qt.TabFocusReason);
        compare(page.isRinged, false);
        compare(target.link, "https://a.org");
        keyClick(Qt.Key_Tab);
        compare(target.link, "https://c.org");
        verify(scroll.contentY > 300, "a link is brought into view");
        keyClick(Qt.Key_Return);
        tryCompare(part("notice"), "visible", true, 5000, "nothing opens links here, and that is told");
        keyClick(Qt.Key_Backtab, Qt.ShiftModifier);
        compare(target.link, "https://a.org");
        keyClick(Qt.Key_Tab);
        keyClick(Qt.Key_Tab);
        compare(target.visible, false);
        compare(page.activeFocus, false, "behind the last link comes what follows");

        page.forceActiveFocus(Qt.TabFocusReason);
        transcript.show({ text: "Said", analysis: "No link", assigned: true });
        compare(target.visible, false);
        verify(page.isRinged);
        mouseClick(page, page.width - 1, 1);
        compare(page.isRinged, false);
        transcript.show({ text: "Said", analysis: "[one](https://a.org)", assigned: true });
        waitForItemPolished(page);
        scroll.forceActiveFocus();
        page.forceActiveFocus(Qt.TabFocusReason);
        compare(target.link, "https://a.org");
        mouseClick(page, page.width - 1, 1);
        compare(target.visible, false);
    }

    function test_itIsKeptInAFileOfTheNameThatIsGiven() {
        transcript.show(both);
        keyClick(Qt.Key_S, Qt.ControlModifier);
        tryVerify(() => part("savePanel")?.visible);
        const field = part("saveName"), problem = part("saveProblem");
        verify(/^Transcript 2024-10-04 .*\.md$/.test(field.text), field.text);
        compare(field.selectedText + ".md", field.text, "the name is typed over, its ending stays");

        field.text = folder.path + "/missing/a.md";
        keyClick(Qt.Key_Return);
        verify(problem.text !== "", "what went wrong is told");
        compare(part("savePanel").visible, true);

        field.text = folder.path + "/a.md";
        keyClick(Qt.Key_Return);
        compare(part("savePanel").visible, false);
        compare(folder.read("a.md"), view.store.markdown());
        tryCompare(part("notice"), "visible", true);

        transcript.show({ text: "Other words", assigned: true });
        keyClick(Qt.Key_S, Qt.ControlModifier);
        tryCompare(part("savePanel"), "visible", true);
        field.text = folder.path + "/a.md";
        keyClick(Qt.Key_Return);
        compare(part("saveButton").text, "Replace");
        keyClick(Qt.Key_Escape);
        compare(part("savePanel").visible, false);
        keyClick(Qt.Key_Return);
        keyClick(Qt.Key_Return);
        verify(part("transcriptScroll").activeFocus);
        verify(folder.read("a.md").includes("Said words"), "nothing is lost when it is given up");

        keyClick(Qt.Key_S, Qt.ControlModifier);
        tryCompare(part("savePanel"), "visible", true);
        field.text = folder.path + "/a.md";
        mouseClick(part("saveButton"));
        mouseClick(part("saveButton"));
        verify(folder.read("a.md").includes("Other words"));
    }

    function test_allOfItIsTakenAsMarkdownOrText() {
        transcript.show({ text: "Said *words*", analysis: "# Worth\n\n*Of* it", assigned: true });
        verify(view.store.markdown().endsWith(
            "\n\n## Transcript\n\nSaid \\*words\\*\n\n## Analysis\n\n# Worth\n\n*Of* it"));
        verify(view.store.plainText().endsWith("\n\nSaid *words*\n\nWorth\n\nOf it\n"));
        transcript.show({ text: "", analysis: "" });
        verify(!view.store.plainText().includes("NO CONTENT"));
    }
}
