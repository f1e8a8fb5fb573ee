"""What an assistive program sees of a running program, on the accessibility bus of its session.

    accessible_tree.py dump NAME            every object of the program as one JSON value
    accessible_tree.py press NAME CONTROL   presses the control again and again until it is gone;
                                            prints how often it was there, and when it went

Told times are those of the monotonic clock.
"""

import json
import sys
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

DEADLINE = 30.0
TOLD_STATES = ("CHECKABLE", "CHECKED", "EDITABLE", "ENABLED", "FOCUSABLE", "FOCUSED", "SELECTED",
               "SHOWING", "VISIBLE")


def program(name):
    """The program's object; it may come late."""
    end = time.monotonic() + DEADLINE
    while time.monotonic() < end:
        desktop = Atspi.get_desktop(0)
        for at in range(desktop.get_child_count()):
            child = desktop.get_child_at_index(at)
            if child is not None and child.get_name() == name:
                return child
        time.sleep(0.05)
    raise SystemExit(f"{name} is not on the accessibility bus")


def states(item):
    held = item.get_state_set()
    return [name for name in TOLD_STATES if held.contains(getattr(Atspi.StateType, name))]


def actions(item):
    action = item.get_action_iface()
    if action is None:
        return []
    return [action.get_action_name(at) for at in range(action.get_n_actions())]


def described(item):
    children = (item.get_child_at_index(at) for at in range(item.get_child_count()))
    told = {"name": item.get_name(), "role": item.get_role_name(),
            "description": item.get_description(), "states": states(item),
            "actions": actions(item), "children": []}
    for child in children:
        if child is not None:
            try:
                told["children"].append(described(child))
            except GLib.Error:
                pass  # It went while it was asked.
    return told


def find(item, name):
    if item.get_name() == name and actions(item):
        return item
    for at in range(item.get_child_count()):
        child = item.get_child_at_index(at)
        found = find(child, name) if child is not None else None
        if found is not None:
            return found
    return None


def press(root, name):
    pressed = 0
    end = time.monotonic() + DEADLINE
    while time.monotonic() < end:
        root.clear_cache()
        control = find(root, name)
        if control is None and pressed > 0:
            return {"pressed": pressed, "gone": time.monotonic()}
        if control is not None:
            try:
                control.get_action_iface().do_action(0)
                pressed += 1
            except GLib.Error:
                pass
        time.sleep(0.01)
    raise SystemExit(f"{name} was pressed {pressed} times and is still there")


def main():
    root = program(sys.argv[2])
    told = described(root) if sys.argv[1] == "dump" else press(root, sys.argv[3])
    json.dump(told, sys.stdout, ensure_ascii=False)


if __name__ == "__main__":
    main()
