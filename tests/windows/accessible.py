#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The desktop program as those see it who read its screen aloud.

    accessible.py tree           a line `role: name` for each thing on the screen, in its order,
                                 and below it one `description: text` where it has one
    accessible.py press NAME     presses the button or opens the menu of that name, as they do
"""

import sys

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402


def showing(node):
    """This and all below it that is on the screen."""
    if node.get_state_set().contains(Atspi.StateType.SHOWING):
        yield node
        for index in range(node.get_child_count()):
            child = node.get_child_at_index(index)
            if child:
                yield from showing(child)


def things():
    desktop = Atspi.get_desktop(0)
    for index in range(desktop.get_child_count()):
        program = desktop.get_child_at_index(index)
        if program and program.get_name() == "vek":
            for window in range(program.get_child_count()):
                yield from showing(program.get_child_at_index(window))


def inOneLine(text):
    return " ".join(text.split("\n"))


def press(name):
    for thing in things():
        if thing.get_name() == name:
            actions = [thing.get_action_name(index) for index in range(thing.get_n_actions())]
            if "Press" in actions:
                return thing.do_action(actions.index("Press"))
    return False


if sys.argv[1] == "tree":
    for thing in things():
        print(f"{thing.get_role_name()}: {inOneLine(thing.get_name())}")
        if thing.get_description():
            print(f"description: {inOneLine(thing.get_description())}")
else:
    sys.exit(0 if press(sys.argv[2]) else 1)
