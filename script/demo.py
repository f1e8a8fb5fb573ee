#!/usr/bin/python3
"""Shows the main job on a private desktop: a real hook event makes the pet react.

    demo.py PROGRAM DIR

Starts a private X server with a window manager, a compositor, a tray and a notification service in
a temporary home, starts PROGRAM, connects Claude Code, feeds a Stop event to the installed hook,
and waits for the reaction. Prints the road of the event with its times and saves screenshots to
DIR. Ends with status 0 only if each step was seen. Every process it starts, it ends.
"""

import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import threading
import time

REACTION_DEADLINE = 1.5 + 1.0  # The inbox's poll period, and room for a busy machine.
STEP_DEADLINE = 15.0
STOP_EVENT = {
    "session_id": "demo",
    "hook_event_name": "Stop",
    "stop_hook_active": False,
    "cwd": "/",
}


class Failure(Exception):
    """A step that was not seen."""


class Desktop:
    """The private desktop and everything started on it."""

    def __init__(self, home):
        self.home = home
        self.processes = []
        self.environment = {
            key: value
            for key, value in os.environ.items()
            if not key.startswith(("MORVO", "QT_", "XDG_", "DBUS_")) and key != "WAYLAND_DISPLAY"
        }
        runtime = home / "runtime"
        runtime.mkdir(mode=0o700)
        self.environment.update(
            HOME=str(home),
            MORVO_HOME=str(home),
            XDG_RUNTIME_DIR=str(runtime),
            XDG_CONFIG_HOME=str(home / ".config"),
            XDG_CACHE_HOME=str(home / ".cache"),
            LC_ALL="C.UTF-8",
        )

    def start(self, *command, **options):
        options.setdefault("stdout", subprocess.DEVNULL)
        options.setdefault("stderr", subprocess.DEVNULL)
        options.setdefault("stdin", subprocess.DEVNULL)
        process = subprocess.Popen(command, env=self.environment, cwd=self.home, **options)
        self.processes.append(process)
        return process

    def run(self, *command, **options):
        return subprocess.run(
            command,
            env=self.environment,
            cwd=self.home,
            capture_output=True,
            text=True,
            timeout=STEP_DEADLINE,
            check=False,
            **options,
        )

    def begin(self):
        reader, writer = os.pipe()
        self.start(
            "Xvfb", "-displayfd", str(writer), "-screen", "0", "1280x800x24", "-nolisten", "tcp",
            "-noreset", pass_fds=[writer],
        )
        os.close(writer)
        with os.fdopen(reader) as pipe:
            display = pipe.readline().strip()
        if not display:
            raise Failure("the X server did not start")
        self.environment["DISPLAY"] = ":" + display
        bus = self.start(
            "dbus-daemon", "--session", "--nofork", "--print-address=1",
            stdout=subprocess.PIPE, text=True,
        )
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()
        self.start("openbox")
        wait_for("a window manager", lambda: "WINDOW" in self.run(
            "xprop", "-root", "_NET_SUPPORTING_WM_CHECK").stdout.upper().replace(
                "NO SUCH WINDOW", "").replace("NOT FOUND", ""))
        self.run("xsetroot", "-solid", "#42566e")
        self.start("picom", "--backend", "xrender", "--no-fading-openclose")
        self.start("trayer", "--edge", "top", "--align", "right", "--width", "120",
                   "--widthtype", "pixel", "--height", "28", "--SetDockType", "true",
                   "--SetPartialStrut", "true", "--transparent", "true", "--alpha", "80")
        wait_for("a tray", lambda: "trayer" in self.run("xwininfo", "-root", "-tree").stdout)
        self.start("dunst")
        wait_for("a notification service", lambda: self.run("dunstctl", "count").returncode == 0)

    def screenshot(self, path):
        result = self.run("import", "-window", "root", str(path))
        if result.returncode != 0:
            raise Failure("no screenshot: " + result.stderr.strip())

    def end(self):
        for process in reversed(self.processes):
            if process.poll() is None:
                process.terminate()
        for process in reversed(self.processes):
            try:
                process.wait(5)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()


class Lines:
    """The program's lines on standard error, each with the time at which it came."""

    def __init__(self, stream):
        self.seen = []
        self.begin = 0
        self.changed = threading.Condition()
        threading.Thread(target=self.read, args=[stream], daemon=True).start()

    def read(self, stream):
        for line in stream:
            with self.changed:
                self.seen.append((time.monotonic(), line.rstrip("\n")))
                self.changed.notify_all()

    def forget(self):
        """Only lines that come from now on are waited for."""
        with self.changed:
            self.begin = len(self.seen)

    def wait(self, what, text, deadline=STEP_DEADLINE):
        """The time at which a line holding the text came."""

        def found():
            return next((at for at, line in self.seen[self.begin:] if text in line), None)

        with self.changed:
            if not self.changed.wait_for(lambda: found() is not None, deadline):
                tail = "\n    ".join(line for _, line in self.seen[-15:])
                raise Failure(f"{what} was not seen; the program said:\n    {tail}")
            return found()


def wait_for(what, condition, deadline=STEP_DEADLINE):
    end = time.monotonic() + deadline
    while not condition():
        if time.monotonic() > end:
            raise Failure(f"{what} was not seen")
        time.sleep(0.02)
    return time.monotonic()


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
    home = pathlib.Path(tempfile.mkdtemp(prefix="morvobar-demo-"))
    desktop = Desktop(home)
    print("MorvoBar on a private desktop", flush=True)
    try:
        desktop.begin()
        play(desktop, program, folder)
    except (Failure, OSError, subprocess.TimeoutExpired) as failure:
        print(f"FAILED: {failure}", flush=True)
        return 1
    finally:
        desktop.end()
        shutil.rmtree(home, ignore_errors=True)
    print(f"Every step was seen. Screenshots: {folder}/before.png, during.png, after.png")
    return 0


if __name__ == "__main__":
    sys.exit(main())
