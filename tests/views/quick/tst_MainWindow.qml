// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import VEK
import VEK.Test

TestCase {
    id: test

    name: "MainWindow"
    when: windowShown
    width: 240
    height: 440
    visible: true

    readonly property string longText: "word ".repeat(200)

    ScriptedApp { id: app }

    ContentView {
        id: content

        width: parent.width
        store: app.store
    }

    function init() {
        content.isShowingList = false;
        app.show({});
        app.forgetSent();
        tryCompare(content, "hasPanel", false);
    }

    function part(name: string): Item {
        return findChild(content, name);
    }

    function shown(names: var): var {
        return names.filter(name => part(name)?.visible);
    }

    function test_oneOfThreeViewsIsShown_data() {
        return [
            { tag: "signed out", facts: {}, view: "loginView" },
            { tag: "signed out, permitted", facts: { permitted: true }, view: "loginView" },
            { tag: "signed in", facts: { loggedIn: true }, view: "permissionsView" },
            { tag: "all there", facts: { loggedIn: true, permitted: true }, view: "recordingView" },
        ];
    }

    function test_oneOfThreeViewsIsShown(row) {
        app.show(row.facts);
        compare(shown(["loginView", "permissionsView", "recordingView"]), [row.view]);
        compare(part("listButton").visible, row.facts.loggedIn === true);
    }

    Component {
        id: another

        ContentView { store: app.store }
    }

    function test_onlyWhatIsSeenIsMade() {
        const fresh = createTemporaryObject(another, test);
        const made = () => ["loginButton", "recordButton", "sessionError", "transcripts"].filter(
            name => findChild(fresh, name) !== null);
        compare(made(), ["loginButton"]);
        app.show({ loggedIn: true, permitted: true });
        compare(made(), ["loginButton", "recordButton"]);
        app.show({ sessionError: "a" });
        compare(made(), ["loginButton", "recordButton", "sessionError"]);
    }

    function test_aPressSendsWhatTheUserDid_data() {
        return [
            { tag: "login", facts: {}, button: "loginButton",
              sends: "session(loginButtonClicked)" },
            { tag: "permission", facts: { loggedIn: true }, button: "permissionsButton",
              sends: "permissions(requestPermissionsClicked)" },
            { tag: "record", facts: { loggedIn: true, permitted: true }, button: "recordButton",
              sends: "recording(recordButtonClicked)" },
        ];
    }

    function test_aPressSendsWhatTheUserDid(row) {
        app.show(row.facts);
        mouseClick(part(row.button));
        part(row.button).forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Return);
        compare(app.sent, [row.sends, row.sends]);
    }

    function test_theMenuOpensAndClosesByItsButtonAndHearsItsKeys() {
        const button = part("menuButton");
        test.Window.window.requestActivate();
        tryCompare(test.Window, "active", true);
        for (const isOpen of [true, false, true]) {
            mouseClick(button);
            tryCompare(button.menu, isOpen ? "opened" : "visible", isOpen);
        }
        const menu = button.menu;
        const shown = Array.from({ length: menu.count }, (_, i) => menu.itemAt(i))
            .map(entry => entry.text ? entry.text + " " + entry.shortcut : "-");
        compare(shown, ["About VEK ", "-", "Check for Updates… Ctrl+,", "Settings… Ctrl+,", "-",
                        "Quit VEK Ctrl+Q"]);
        keyClick(Qt.Key_Comma, Qt.ControlModifier);
        tryCompare(menu, "visible", false);
        mouseClick(button);
        tryCompare(menu, "opened", true);
        keyClick(Qt.Key_Q, Qt.ControlModifier);
        tryCompare(menu, "visible", false);
        compare(app.sent, ["menu(checkForUpdatesMenuItemClicked)", "menu(quitMenuItemClicked)"]);
    }

    function test_buttonsWaitWhileTheirRequestIsOpen() {
        app.show({ loggingIn: true });
        compare(part("loginButton").enabled, false);
        compare(part("loginProgress").opacity, 1);
        compare(part("headerProgress").visible, false);
        app.show({ loggedIn: true, asking: true });
        compare(part("permissionsButton").enabled, false);
        compare(part("permissionsProgress").opacity, 1);
        compare(part("headerProgress").visible, true);
        app.show({ loggedIn: true });
        compare(part("permissionsProgress").opacity, 0);
        compare(part("headerProgress").visible, false);
        for (const fact of ["starting", "refreshing"]) {
            app.show({ loggedIn: true, permitted: true, [fact]: true });
            compare(part("headerProgress").visible, true);
        }
    }

    function test_eachErrorHasItsCardAndTheLastStandsOnTop() {
        const cards = ["permissionsError", "recordingError", "sessionError", "transcriptsError"];
        compare(shown(cards), []);
        app.show({ permissionsError: "a", recordingError: "b", sessionError: "c",
                   transcriptsError: "d" });
        compare(shown(cards), cards);
        for (let i = 1; i < cards.length; ++i) {
            const siblings = Array.from(part(cards[i]).parent.children);
            verify(siblings.indexOf(part(cards[i])) > siblings.indexOf(part(cards[i - 1])));
        }
        for (const card of cards) mouseClick(findChild(part(card), "dismissButton"));
        compare(app.sent, Array(4).fill("transcripts(refetchContentButtonClicked)"));

        app.forgetSent();
        for (const name of ["permissions", "recording", "session"]) {
            app.show({ [name + "Error"]: longText });
            const card = part(name + "Error");
            verify(card.height <= 160, "the card stays in the main area");
            mouseClick(findChild(card, "dismissButton"));
        }
        compare(app.sent, ["permissions(dismissErrorButtonClicked)",
                           "recording(dismissErrorButtonClicked)",
                           "session(dismissErrorButtonClicked)"]);
    }

    function test_cardsTakeWhatIsMeantForWhatTheyHide() {
        const signedIn = { loggedIn: true, permitted: true };
        app.show(Object.assign({ recordingError: "short", sessionError: longText }, signedIn));
        const button = part("recordButton"), card = part("sessionError");
        mouseClick(button);
        mouseMove(button);
        compare(button.hovered, false);
        const reached = [];
        part("listButton").forceActiveFocus();
        do {
            keyClick(Qt.Key_Tab);
            reached.push(test.Window.activeFocusItem);
        } while (reached.length < 9 && test.Window.activeFocusItem !== part("listButton"));
        compare(reached, [part("menuButton"), findChild(card, "dismissButton"),
                          findChild(card, "errorText"), part("listButton")]);
        compare(app.sent, []);

        const text = findChild(card, "errorText");
        text.forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Down);
        verify(text.contentY > 0);
        for (let i = 0; i < 9; ++i) keyClick(Qt.Key_Up);
        compare(text.contentY, 0);

        app.show(Object.assign({ recordingError: "short" }, signedIn));
        compare(button.enabled, true, "a low card leaves it in view");
    }

    Window {
        id: other

        width: 60
        height: 60

        RecordSymbol { id: symbol; isRecording: true }
        ProgressIndicator { id: progress }
    }

    function test_nothingMovesThatNobodySeesOrWants() {
        const moves = () => [symbol.isPulsing, progress.isTurning];
        compare(moves(), [false, false]);
        other.show();
        compare(moves(), [true, true]);
        tryVerify(() => symbol.opacity < 0.8);
        symbol.isRecording = false;
        verify(symbol.opacity < 0.9, "it does not jump");
        tryCompare(symbol, "opacity", 1);
        symbol.isRecording = true;
        other.hide();
        compare(moves(), [false, false]);
        other.show();
        Theme.reducesMotion = true;
        compare(moves(), [false, true]);
        compare([Theme.quick, Theme.smooth], [0, 0]);
        Theme.reducesMotion = false;
        other.hide();
    }

    function test_timeAndTextKeepTheirPlaceWithoutARecording() {
        app.show({ loggedIn: true, permitted: true });
        const before = [part("recordButton").y, part("elapsedTime").y, part("transcript").y];
        compare(part("elapsedTime").opacity, 0);
        app.show({ loggedIn: true, permitted: true, recording: "Hello", elapsed: 65 });
        compare(part("elapsedTime").opacity, 1);
        compare(part("elapsedTime").text, "01:05");
        compare(part("transcript").text, "Hello");
        compare([part("recordButton").y, part("elapsedTime").y, part("transcript").y], before);
        tryCompare(part("elapsedTime"), "text", "01:06", 2500);
        const clock = findChild(part("elapsedTime"), "clock");
        compare(clock.running, true);
        app.show({ loggedIn: true, permitted: true });
        compare(clock.running, false);
    }

    function test_theListMovesInAndOutAndSurvivesALogout() {
        app.show({ loggedIn: true, permitted: true });
        const closed = content.implicitHeight;
        mouseClick(part("listButton"));
        compare(content.isShowingList, true);
        compare(content.implicitHeight, closed + 181);
        tryCompare(content, "reveal", 1);
        app.show({});
        compare(content.isShowingList, true);
        compare(part("listPanel").visible, true);
        app.show({ loggedIn: true });
        mouseClick(part("listButton"));
        tryCompare(content, "implicitHeight", closed);
    }

    FittedWindow {
        id: fitted

        width: 240
        fittingHeight: 200

        ScrolledView {
            id: scrolled

            anchors.fill: parent
            contentHeight: fitted.fittingHeight

            Item { id: last; y: parent.height - 20; height: 20 }
        }
    }

    function test_aWindowStaysOnItsScreen() {
        const stands = (y, height) => {
            tryCompare(fitted, "height", height);
            tryCompare(fitted, "y", y);
        };
        fitted.show();
        const room = ScreenRoom.around(fitted);
        const bottom = room.y + room.height, low = bottom - 220;
        fitted.y = low;
        stands(low, 200);
        fitted.fittingHeight = 400;
        stands(bottom - 400, 400);
        compare(fitted.unraisedY, low);
        fitted.fittingHeight = 200;
        stands(low, 200);
        fitted.fittingHeight = 400;
        stands(bottom - 400, 400);
        fitted.y = 10;
        stands(10, 400);
        fitted.fittingHeight = 200;
        stands(10, 200);

        fitted.fittingHeight = room.height + 300;
        stands(room.y, room.height);
        fitted.requestActivate();
        last.forceActiveFocus();
        tryCompare(scrolled, "contentY", 300);
        fitted.hide();
        test.Window.window.requestActivate();
        tryCompare(test.Window.window, "active", true);
    }

    function test_theBadgeCountsTranscriptsWithoutACustomer() {
        app.show({ loggedIn: true, permitted: true, transcripts: 3 });
        const badge = part("badge");
        compare(badge.visible, false);
        app.show({ loggedIn: true, permitted: true, transcripts: 1200, unassigned: 1100 });
        tryCompare(badge, "opacity", 1);
        compare(part("listButton").Accessible.description, "1,100 transcripts without a customer");
        compare(badge.count, 1100);
        compare(badge.label, Number(1100).toLocaleString(Qt.locale(), "f", 0));
        app.show({ loggedIn: true, permitted: true, transcripts: 3, unassigned: 1 });
        compare(part("listButton").Accessible.description, "1 transcript without a customer");
        app.show({ loggedIn: true, permitted: true, transcripts: 3 });
        compare(badge.visible, true, "it fades away");
        tryCompare(badge, "visible", false);
    }
}
