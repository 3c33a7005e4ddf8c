// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import VEK
import VEK.Test

TestCase {
    id: test

    name: "UpdateView"
    when: windowShown
    width: 420
    height: 500
    visible: true

    ScriptedUpdates { id: updates }

    UpdateView {
        id: view

        panel: updates.panel
    }

    SignalSpy {
        id: closed

        target: updates.panel
        signalName: "closed"
    }

    function init() {
        updates.panel.close();
        updates.forgetCalls();
        closed.clear();
    }

    function part(name: string): Item {
        return findChild(view, name);
    }

    function shown(names: var): var {
        return names.filter(name => part(name).visible);
    }

    readonly property var buttons: ["skipButton", "laterButton", "cancelButton", "getButton",
                                    "closeButton"]

    function test_eachStateSaysWhatThereIsAndWhatCanBeDone_data() {
        return [
            { tag: "checking", facts: { checking: true }, heading: "Checking for updates…",
              buttons: ["cancelButton"] },
            { tag: "up to date", facts: { upToDate: true }, heading: "VEK is up to date",
              detail: "Version 1.0 is the newest one.", buttons: ["closeButton"] },
            { tag: "failure", facts: { failure: "It is <b>broken</b>." },
              heading: "VEK could not check for updates", detail: "The updates could not be fetched. It is <b>broken</b>.",
              buttons: ["closeButton"] },
            { tag: "update", facts: { version: "1.1", notes: "New." }, heading: "VEK 1.1 is available",
              detail: "You have version 1.0.", buttons: ["skipButton", "laterButton", "getButton"] },
            { tag: "managed", facts: { version: "1.1", packageManager: "APT" },
              heading: "VEK 1.1 is available", buttons: ["skipButton", "closeButton"] },
        ];
    }

    function test_eachStateSaysWhatThereIsAndWhatCanBeDone(row) {
        updates.show(row.facts);
        compare(part("heading").text, row.heading);
        if (row.detail) compare(part("detail").text, row.detail);
        compare(shown(buttons), row.buttons);
        compare(part("progress").visible, row.facts.checking === true);
        compare(part("notes").visible, row.facts.notes !== undefined);
        compare(part("managed").visible, row.facts.packageManager !== undefined);
    }

    function test_aPressIsTheUsersChoice_data() {
        const update = { version: "1.1" };
        return [
            { tag: "skip", facts: update, button: "skipButton", calls: ["attention", "skip"] },
            { tag: "later", facts: update, button: "laterButton", calls: ["attention", "later"] },
            { tag: "get", facts: update, button: "getButton",
              calls: ["open https://vek.test", "attention", "get"] },
            { tag: "managed", facts: { version: "1.1", packageManager: "APT" },
              button: "closeButton", calls: ["attention", "later"] },
            { tag: "cancel", facts: { checking: true }, button: "cancelButton", calls: ["cancel"] },
            { tag: "read", facts: { failure: "Broken." }, button: "closeButton", calls: [] },
        ];
    }

    function test_aPressIsTheUsersChoice(row) {
        updates.show(row.facts);
        tryVerify(() => !isPolishScheduled(part(row.button).parent));
        mouseClick(part(row.button));
        tryCompare(closed, "count", 1);
        compare(updates.calls, row.calls);
        updates.panel.close();
        compare(updates.calls, row.calls, "closing what is over is no choice");
    }

    function test_notesAreTextAndScrollWhenTheyAreLong() {
        updates.show({ version: "1.1", notes: "<img src='https://vek.test/track.png'>" });
        compare(part("notesText").text, "<img src='https://vek.test/track.png'>");
        compare(part("notesText").textFormat, Text.PlainText);
        updates.show({ version: "1.1", notes: "A line of what is new.\n".repeat(100) });
        verify(part("notes").height <= 200);
        verify(view.height < 400);
    }

    function test_withoutABrowserTheUpdateStaysWithItsAddress() {
        updates.setBrowser(false);
        updates.show({ version: "1.1" });
        verify(!part("unopened").visible);
        updates.panel.get();
        verify(!part("getButton").enabled);
        tryVerify(() => part("unopened").visible);
        verify(part("unopened").text.includes("https://vek.test"));
        compare(updates.calls, [], "it is still the user's to choose");
        updates.setBrowser(true);
        updates.panel.get();
        tryCompare(closed, "count", 1);
        compare(updates.calls, ["open https://vek.test", "attention", "get"]);
    }
}
