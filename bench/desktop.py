#!/usr/bin/python3
"""Measures the program on a private desktop: its start, and what it costs while it runs.

    desktop.py PROGRAM [SECONDS]

Prints the median time of five starts to the pet on the screen; then the share of one core, the
wake-ups a second and the resident memory of an idle program with its pet shown and hidden, each
over SECONDS (30 unless told), and of one whose pet is thrown, and walks, again and again, counted
only while it moves. Last comes the yardstick, a bare window that shows the same frames 24 times a
second, when RasterPeer stands beside the program.
"""

import os
import pathlib
import statistics
import subprocess
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "script"))

from private_desktop import Desktop, Failure, Lines, STEP_DEADLINE  # noqa: E402

STARTS = 5
SETTLING = 5.0  # Seconds until start-up work is over.
TICKS = os.sysconf("SC_CLK_TCK")
MOVES = 8  # Flights and walks that count together.
FLIGHT = 1.5  # Seconds of each that count; none is shorter.
WALK = 1.2


class Watched:
    """A running process and what it has used so far."""

    def __init__(self, process):
        self.process = process

    def folder(self):
        return pathlib.Path(f"/proc/{self.process.pid}")

    def seconds_used(self):
        fields = (self.folder() / "stat").read_text().rsplit(")", 1)[1].split()
        return (int(fields[11]) + int(fields[12])) / TICKS

    def status(self, task, name):
        return next(int(line.split()[1]) for line in (self.folder() / task).read_text().splitlines()
                    if line.startswith(name + ":"))

    def wake_ups(self):
        return sum(self.status(f"task/{task.name}/status", "voluntary_ctxt_switches")
                   for task in (self.folder() / "task").iterdir())

    def during(self, seconds):
        """Time passed, processor time used and wake-ups."""
        begin, used, woken = time.monotonic(), self.seconds_used(), self.wake_ups()
        time.sleep(seconds)
        return (time.monotonic() - begin, self.seconds_used() - used, self.wake_ups() - woken)

    def row(self, what, samples):
        passed, used, woken = (sum(column) for column in zip(*samples))
        memory = self.status("status", "VmRSS") / 1024
        shared = self.status("status", "RssFile") / 1024
        return (f"{what:12} {100 * used / passed:8.2f} {woken / passed:12.1f} {memory:10.1f} "
                f"{shared:14.1f}")


class Program(Watched):
    """The running program; its pet comes and goes by the setting."""

    def __init__(self, desktop, path, with_pet):
        settings = desktop.home / ".config" / "morvobar" / "settings.ini"
        settings.parent.mkdir(parents=True, exist_ok=True)
        settings.write_text(f"[General]\nmorvo.set.desktopPet={str(with_pet).lower()}\n")
        self.path = path
        self.desktop = desktop
        self.begin = time.monotonic()
        super().__init__(desktop.start(path, stderr=subprocess.PIPE, text=True))
        self.lines = Lines(self.process.stderr)

    def wait(self, text):
        """Milliseconds from the start to a line with the text."""
        return 1000 * (self.lines.wait(text, text) - self.begin)

    def end(self):
        self.desktop.run(self.path, "quit")
        self.process.wait(STEP_DEADLINE)

    def window(self):
        """The pet's window, from the line that says that it is shown."""
        return next(line.rsplit("win=", 1)[1] for _, line in self.lines.seen if "win=" in line)


class Hand:
    """A hand on the program's pet."""

    def __init__(self, desktop, program):
        self.desktop = desktop
        self.window = program.window()

    def do(self, *words):
        self.desktop.run("xdotool", *(str(word) for word in words))

    def geometry(self):
        told = self.desktop.run("xdotool", "getwindowgeometry", "--shell", self.window).stdout
        values = dict(line.split("=") for line in told.splitlines() if "=" in line)
        return tuple(int(values[name]) for name in ("X", "Y", "WIDTH", "HEIGHT"))

    def belly(self):
        x, y, width, height = self.geometry()
        return x + width // 2, y + height - width // 4

    def throw(self):
        x, y = self.belly()
        self.do("mousemove", x, y, "mousedown", 1)
        for step in range(1, 7):
            self.do("mousemove", x, y - 10 * step)
        self.do("mousemove", x - 30, y - 110, "mouseup", 1)

    def send_for_a_walk(self):
        self.do("mousemove", *self.belly(), "click", 3)
        time.sleep(0.5)
        # The fifth entry that can be chosen.
        self.do("key", "Down", "Down", "Down", "Down", "Down", "Return")
        time.sleep(0.2)

    def wait_until_still(self):
        before = None
        while before != (before := self.geometry()):
            time.sleep(0.4)


def start_time(desktop, path):
    program = Program(desktop, path, True)
    shown = program.wait("[DESKPET] shown at")
    program.end()
    return shown


def started(desktop, path, with_pet):
    program = Program(desktop, path, with_pet)
    program.wait("[INBOX] watcher started")
    time.sleep(SETTLING)
    return program


def idle_row(desktop, path, with_pet, seconds):
    program = started(desktop, path, with_pet)
    row = program.row("pet shown" if with_pet else "pet hidden", [program.during(seconds)])
    program.end()
    return row


def moving_row(desktop, path, what, move, seconds):
    program = started(desktop, path, True)
    hand = Hand(desktop, program)
    samples = []
    moved = 0
    while moved < MOVES:
        hand.wait_until_still()
        move(hand)
        before = hand.geometry()
        sample = program.during(seconds)
        if hand.geometry()[:2] == before[:2]:
            raise Failure(f"the pet did not move: {what}")
        samples.append(sample)
        moved += 1
    row = program.row(what, samples)
    program.end()
    return row


def peer_row(desktop, path, frames, seconds):
    peer = Watched(desktop.start(path, frames))
    time.sleep(SETTLING)
    row = peer.row("bare window", [peer.during(seconds)])
    peer.process.terminate()
    peer.process.wait(STEP_DEADLINE)
    return row


def measure(desktop, path, seconds):
    starts = [start_time(desktop, path) for _ in range(STARTS)]
    print(f"start to pet on the screen: median {statistics.median(starts):.0f} ms of "
          + ", ".join(f"{start:.0f}" for start in starts), flush=True)
    print(f"{'':12} {'% of core':>8} {'wake-ups/s':>12} {'RSS (MB)':>10} {'of it files':>14}")
    for with_pet in (True, False):
        print(idle_row(desktop, path, with_pet, seconds), flush=True)
    print(moving_row(desktop, path, "flying", Hand.throw, FLIGHT), flush=True)
    print(moving_row(desktop, path, "walking", Hand.send_for_a_walk, WALK), flush=True)
    program = pathlib.Path(path)
    peer = program.parent / "RasterPeer"
    if peer.exists():
        frames = program.parent.parent / "share" / "morvobar" / "pets" / "morvo" / "idle"
        print(peer_row(desktop, str(peer), str(frames), seconds), flush=True)


def run(doc, measure, seconds):
    """What a script of measurements does: measures the program that its words name."""
    if len(sys.argv) not in (2, 3):
        print(doc, file=sys.stderr)
        return 2
    path = str(pathlib.Path(sys.argv[1]).resolve())
    desktop = Desktop()
    try:
        desktop.begin()
        desktop.environment["MORVO_DEBUG"] = "1"
        desktop.environment["MORVO_SKIP_UPDATE_CHECK"] = "1"
        measure(desktop, path, float(sys.argv[2]) if len(sys.argv) == 3 else seconds)
    except (Failure, OSError, subprocess.TimeoutExpired) as failure:
        print(f"FAILED: {failure}")
        return 1
    finally:
        desktop.end()
    return 0


if __name__ == "__main__":
    sys.exit(run(__doc__, measure, 30.0))
