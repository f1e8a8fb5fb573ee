"""What an assistive program sees of a running program, on the accessibility bus of its session.

    accessible_tree.py dump NAME
        Every object of the program, as one JSON value.
    accessible_tree.py press NAME CONTROL PATH SECONDS
        Presses the control, seen or not, again and again until the file is there or the time is
        over. Prints how often it was pressed, and when the file was there or null.

The time is that of the wall clock.
"""

import json
import pathlib
import sys
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402

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
    if "Action" not in item.get_interfaces():
        return []
    return [Atspi.Action.get_action_name(item, at) for at in range(Atspi.Action.get_n_actions(item))]


def described(item):
    children = (item.get_child_at_index(at) for at in range(item.get_child_count()))
    told = {"name": item.get_name(), "role": item.get_role_name(),
            "description": item.get_description(), "states": states(item),
            "actions": actions(item), "children": []}
    for child in children:
        if child is not None:
            told["children"].append(described(child))
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


def press(root, name, path, seconds):
    pressed = 0
    end = time.time() + seconds
    while time.time() < end:
        if path.exists():
            return {"pressed": pressed, "at": time.time()}
        root.clear_cache()
        control = find(root, name)
        if control is not None:
            Atspi.Action.do_action(control, 0)
            pressed += 1
        time.sleep(0.01)
    return {"pressed": pressed, "at": None}


def main():
    root = program(sys.argv[2])
    if sys.argv[1] == "dump":
        told = described(root)
    else:
        told = press(root, sys.argv[3], pathlib.Path(sys.argv[4]), float(sys.argv[5]))
    json.dump(told, sys.stdout, ensure_ascii=False)


if __name__ == "__main__":
    main()
