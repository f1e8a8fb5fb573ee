#!/usr/bin/python3
"""Shows the main job on a private desktop: a real hook event makes the pet react.

    demo.py PROGRAM DIR

Starts a private X server with a window manager, a compositor, a tray and a notification service in
a temporary home, starts PROGRAM, connects Claude Code, feeds a Stop event to the installed hook,
and waits for the reaction. Prints the road of the event with its times and saves screenshots to
DIR. Ends with status 0 only if each step was seen. Every process it starts, it ends.
"""

import json
import pathlib
import subprocess
import sys
import time

from private_desktop import STEP_DEADLINE, Desktop, Failure, Lines, wait_for

REACTION_DEADLINE = 1.5 + 1.0  # The inbox's poll period, and room for a busy machine.
STOP_EVENT = {
    "session_id": "demo",
    "hook_event_name": "Stop",
    "stop_hook_active": False,
    "cwd": "/",
}


def step(text):
    print(f"  {text}", flush=True)


def differing_pixels(desktop, one, other):
    result = desktop.run("compare", "-metric", "AE", "-fuzz", "5%", str(one), str(other), "null:")
    return int(float(result.stderr.split()[0])) if result.stderr.strip() else 0


def play(desktop, program, folder):
    desktop.environment["MORVO_DEBUG"] = "1"
    desktop.environment["MORVO_SKIP_UPDATE_CHECK"] = "1"
    started = time.monotonic()
    pet = desktop.start(program, stderr=subprocess.PIPE, text=True, encoding="utf-8",
                        errors="replace")
    lines = Lines(pet.stderr)
    shown = lines.wait("the pet's window", "[DESKPET] shown at")
    step(f"the pet stands on the desktop {1000 * (shown - started):.0f} ms after the start")
    lines.wait("the inbox watcher", "[INBOX] watcher started")
    wait_for("the tray icon", lambda: desktop.run(
        "xdotool", "search", "--class", "morvobar").stdout.count("\n") >= 2)
    step("its icon is in the tray")

    connect = desktop.run(program, "connect", "claude")
    settings = desktop.home / ".claude" / "settings.json"
    hook = desktop.home / ".morvo" / "hook.sh"
    if connect.returncode != 0 or str(hook) not in settings.read_text(encoding="utf-8"):
        raise Failure("Claude Code was not connected: " + connect.stdout + connect.stderr)
    step("connected: " + connect.stdout.strip().splitlines()[0])

    time.sleep(1.0)  # Let the pet breathe before its picture is taken.
    desktop.screenshot(folder / "before.png")
    inbox = desktop.home / ".morvo" / "inbox.jsonl"
    size = inbox.stat().st_size

    # As Claude Code runs it: the command of the hook through a shell, the event on standard input.
    command = json.loads(settings.read_text(encoding="utf-8"))["hooks"]["Stop"][0]["hooks"][0][
        "command"]
    lines.forget()
    hook_start = time.monotonic()
    forwarded = desktop.run("sh", "-c", command, input=json.dumps(STOP_EVENT))
    written = wait_for("the line in the inbox", lambda: inbox.stat().st_size > size)
    if forwarded.returncode != 0 or forwarded.stdout:
        raise Failure("the hook failed or spoke: " + forwarded.stdout + forwarded.stderr)
    signal = lines.wait("the signal", "[INBOX] line parsed, signals=1")
    drawn = lines.wait("the reaction", "[DESKPET] drew celebrate")
    time.sleep(0.6)  # Into the middle of the action, where the screenshot shows most.
    desktop.screenshot(folder / "during.png")

    print("  the road of one event, in ms after the hook's start")
    for name, moment in [("hook started", hook_start), ("line written", written),
                         ("signal", signal), ("reaction drawn", drawn)]:
        print(f"    {1000 * (moment - hook_start):7.0f}  {name}")
    if drawn - written > REACTION_DEADLINE:
        raise Failure("the reaction came too late")

    wait_for("the notification", lambda: int(desktop.run(
        "dunstctl", "count", "displayed").stdout.strip() or 0) +
        int(desktop.run("dunstctl", "count", "history").stdout.strip() or 0) >= 1)
    step("a desktop notification appeared")
    if differing_pixels(desktop, folder / "before.png", folder / "during.png") < 2000:
        raise Failure("the desktop looks the same during the reaction as before")
    step("the pet moved and spoke")

    windows = desktop.run("xdotool", "search", "--onlyvisible", "--class", "morvobar").stdout.split()
    desktop.run("dunstctl", "action")
    wait_for("the panel", lambda: len(desktop.run(
        "xdotool", "search", "--onlyvisible", "--class", "morvobar").stdout.split()) > len(windows))
    time.sleep(0.3)
    desktop.screenshot(folder / "panel.png")
    step("a click on the notification brought up the panel")

    lines.wait("the end of the bubble", "[DESKPET] bubble cleared")
    time.sleep(0.5)
    desktop.screenshot(folder / "after.png")
    step("the bubble has gone and the pet rests again")

    second = desktop.run(program)
    if second.returncode != 0:
        raise Failure("a second start failed: " + second.stderr)
    step("a second start handed its words over and ended")
    ended = desktop.run(program, "quit")
    if ended.returncode != 0 or pet.wait(STEP_DEADLINE) != 0:
        raise Failure("the program did not end when asked")


def main():
    if len(sys.argv) != 3:
        print(__doc__, file=sys.stderr)
        return 2
    program = str(pathlib.Path(sys.argv[1]).resolve())
    folder = pathlib.Path(sys.argv[2]).resolve()
    folder.mkdir(parents=True, exist_ok=True)
    desktop = Desktop()
    print("MorvoBar on a private desktop", flush=True)
    try:
        desktop.begin()
        play(desktop, program, folder)
    except (Failure, OSError, subprocess.TimeoutExpired) as failure:
        print(f"FAILED: {failure}", flush=True)
        return 1
    finally:
        desktop.end()
    print(f"Every step was seen. Screenshots: {folder}/before.png, during.png, panel.png, after.png")
    return 0


if __name__ == "__main__":
    sys.exit(main())
