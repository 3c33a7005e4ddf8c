// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import VEK

TestCase {
    id: test

    name: "Markdown"
    when: windowShown
    width: 400
    height: 300
    visible: true

    Flickable {
        id: view

        anchors.fill: parent
        contentHeight: markdown.height

        Markdown {
            id: markdown

            width: view.width
            height: implicitHeight
            viewTop: view.contentY
            viewHeight: view.height
        }
    }

    SignalSpy { id: links; target: markdown; signalName: "linkActivated" }
    SignalSpy { id: reveals; target: markdown; signalName: "revealRequested" }

    readonly property MarkdownPage page: markdown.page

    function init() {
        page.searched = "";
        view.contentY = 0;
        links.clear();
        reveals.clear();
    }

    function cleanup() {
        Theme.isDark = Qt.binding(() => DesktopSettings.isDark);
    }

    function show(text: string) {
        markdown.content = text;
        tryVerify(() => markdown.height > 0);
        waitForItemPolished(page);
    }

    function middle(text: string): point {
        const rect = page.rectOf(text);
        return Qt.point(rect.x + rect.width / 2, rect.y + rect.height / 2);
    }

    function drag(from: point, to: point) {
        mousePress(page, from.x, from.y);
        mouseMove(page, (from.x + to.x) / 2, (from.y + to.y) / 2, -1, Qt.LeftButton);
        mouseMove(page, to.x, to.y, -1, Qt.LeftButton);
        mouseRelease(page, to.x, to.y);
    }

    function test_anEmptyDocumentTakesNoHeight() {
        show("text");
        markdown.content = "";
        tryCompare(markdown, "implicitHeight", 0);
    }

    function test_aBreakKeepsTheStyleOfItsHeading_data() {
        return [{ tag: "backslash", markdown: "Upper\\\nLower\n===" },
                { tag: "tag", markdown: "# Upper<br>Lower" }];
    }

    function test_aBreakKeepsTheStyleOfItsHeading(row) {
        show(row.markdown);
        const upper = page.rectOf("Upper"), lower = page.rectOf("Lower");
        compare(lower.x, upper.x);
        verify(lower.y >= upper.y + upper.height);
        compare(lower.height, upper.height);
        verify(upper.height > 26);
    }

    function test_headingsShrinkByLevel() {
        show("# Aa\n## Bb\n### Cc\n#### Dd\n##### Ee\n###### Ff");
        const heights = ["Aa", "Bb", "Cc", "Dd", "Ee", "Ff"].map(text => page.rectOf(text).height);
        for (let i = 1; i < heights.length; ++i) verify(heights[i] < heights[i - 1], heights);
    }

    function test_paragraphsWrapWithinTheWidth() {
        show("word ".repeat(40) + "last");
        const last = page.rectOf("last");
        verify(last.y > 0);
        verify(last.x + last.width <= markdown.width);
    }

    function test_listsAndQuotesMoveIn() {
        show("outside\n\n> quoted\n\n- item\n  - nested\n\n1. first\n10. second\n\n- [x] task");
        const x = text => page.rectOf(text).x;
        compare(x("quoted"), 26);
        verify(x("item") > x("outside"));
        verify(x("nested") > x("item"));
        compare(x("first"), x("second"));
        compare(x("task"), x("item"));
    }

    function test_tablesAlignTheirColumns() {
        show("| a | right | mid |\n|---|--:|:-:|\n| b | 1 | m |\n| cc | 1000 | mmmmmm |");
        const end = text => { const rect = page.rectOf(text); return rect.x + rect.width; };
        fuzzyCompare(end("right"), end("1000"), 1);
        compare(page.rectOf("b").x, page.rectOf("cc").x);
        fuzzyCompare(middle("mid").x, middle("mmmmmm").x, 1);
        compare(page.rectOf("cc").y, page.rectOf("1000").y);
        verify(end("mmmmmm") < markdown.width, "as wide as it has to be");
    }

    function test_narrowTablesWrapBetweenWords() {
        show("| one | two |\n|---|---|\n| short | " + "some words ".repeat(20) + "end |");
        const end = page.rectOf("end");
        verify(end.x + end.width < markdown.width);
        compare(page.rectOf("short").height, page.rectOf("one").height);
        verify(end.y > page.rectOf("short").y);
    }

    function test_codeKeepsItsLinesAndMovesSideways() {
        show("```\n" + "x".repeat(100) + "end\nnext\n```");
        const before = page.rectOf("end");
        verify(before.x > markdown.width);
        verify(page.rectOf("next").y > before.y);
        mouseWheel(page, 50, before.y, 0, -240, Qt.NoButton, Qt.ShiftModifier);
        compare(page.rectOf("end").x, before.x - 120);
        mouseWheel(page, 50, before.y, 0, -99999, Qt.NoButton, Qt.ShiftModifier);
        verify(page.rectOf("end").x + page.rectOf("end").width <= markdown.width);
    }

    function test_textIsChosenAcrossBlocks() {
        show("# Title\n\nOne two three.\n\n- [x] four\n- five\n\n| six | seven |\n|---|---|\n| 8 | 9 |");
        const from = page.rectOf("two"), to = page.rectOf("9");
        drag(Qt.point(from.x, from.y + 5), Qt.point(to.x + to.width, to.y + 5));
        compare(page.selectedText, "two three.\n\n☑ four\n☐ five\n\nsix\tseven\n8\t9");
        drag(Qt.point(to.x + to.width, to.y + 5), Qt.point(from.x, from.y + 5));
        compare(page.selectedText, "two three.\n\n☑ four\n☐ five\n\nsix\tseven\n8\t9");
        keyClick(Qt.Key_A, Qt.ControlModifier);
        verify(page.selectedText.startsWith("Title\n\nOne"));
        const word = middle("three");
        mouseDoubleClickSequence(page, word.x, word.y);
        compare(page.selectedText, "three");
    }

    function test_linksLeadWhereABrowserGoes_data() {
        return [
            { tag: "absolute", link: "https://example.org/a", leads: "https://example.org/a" },
            { tag: "relative", link: "b?c", leads: "https://base.org/x/b?c" },
            { tag: "mail", link: "mailto:a@b.org", leads: "mailto:a@b.org" },
            { tag: "script", link: "javascript:alert(1)", leads: "" },
            { tag: "file", link: "file:///etc/passwd", leads: "" },
            { tag: "program", link: "steam://run/1", leads: "" },
        ];
    }

    function test_linksLeadWhereABrowserGoes(row) {
        markdown.baseURL = "https://base.org/x/";
        show("before [the **link**](" + row.link + ")");
        const at = middle("link");
        mouseMove(page, at.x, at.y);
        mouseClick(page, at.x, at.y);
        compare(links.count, row.leads === "" ? 0 : 1);
        if (links.count > 0) compare(links.signalArguments[0][0].toString(), row.leads);
    }

    function test_imagesOfTheOtherSchemeTakeNoRoom() {
        Theme.isDark = false;
        show("![light](a.png#gh-light-mode-only)\n\n![dark](a.png#gh-dark-mode-only)\n\nend");
        verify(page.rectOf("light").height > 0);
        compare(page.rectOf("dark").height, 0);
        const end = page.rectOf("end").y;
        compare(page.plainText, "light\n\nend");
        Theme.isDark = true;
        waitForItemPolished(page);
        compare(page.rectOf("light").height, 0);
        verify(page.rectOf("dark").height > 0);
        compare(page.rectOf("end").y, end);
    }

    function test_whatIsSearchedIsFoundAndShown() {
        show("First needle.\n\n" + "Text.\n\n".repeat(200) + "Last **NEE**DLE.");
        page.searched = "needle";
        compare(page.foundCount, 2);
        compare(page.foundIndex, -1);
        page.foundIndex = 1;
        compare(reveals.count, 1);
        verify(reveals.signalArguments[0][0] > 1000);
        page.searched = "absent";
        compare(page.foundCount, 0);
    }

    function test_onlyWhatIsSeenIsDrawn() {
        show("# Title\n\n" + "Some text of a paragraph.\n\n".repeat(500) + "The end.");
        tryVerify(() => markdown.height > 10000);
        compare(page.height, view.height);
        view.contentY = markdown.height - view.height;
        compare(page.scroll, view.contentY);
        const end = page.rectOf("The end.");
        tryVerify(() => Math.abs(end.y + end.height - markdown.height) < 1);
    }

    function test_plainTextStaysAsItIs() {
        markdown.isPlain = true;
        show("# no *heading*\n\n  indented");
        verify(page.rectOf("# no *heading*").height < 20);
        compare(page.plainText, "# no *heading*\n\n  indented");
        markdown.isPlain = false;
    }
}
