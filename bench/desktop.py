#!/usr/bin/python3
"""Measures the program on a private desktop: its start, and what it costs while nothing happens.

    desktop.py PROGRAM [SECONDS]

Prints the median time of five starts to the pet on the screen, and for an idle program, with its
pet shown and hidden, the share of one core, the wake-ups a second and the resident memory, each
over SECONDS (30 unless told).
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


class Program:
    """A running program; its pet comes and goes by the setting."""

    def __init__(self, desktop, path, with_pet):
        settings = desktop.home / ".config" / "morvobar" / "settings.ini"
        settings.parent.mkdir(parents=True, exist_ok=True)
        settings.write_text(f"[General]\nmorvo.set.desktopPet={str(with_pet).lower()}\n")
        self.path = path
        self.desktop = desktop
        self.begin = time.monotonic()
        self.process = desktop.start(path, stderr=subprocess.PIPE, text=True)
        self.lines = Lines(self.process.stderr)

    def wait(self, text):
        """Milliseconds from the start to a line with the text."""
        return 1000 * (self.lines.wait(text, text) - self.begin)

    def end(self):
        self.desktop.run(self.path, "quit")
        self.process.wait(STEP_DEADLINE)

    def proc(self, name):
        return pathlib.Path(f"/proc/{self.process.pid}/{name}").read_text()

    def seconds_used(self):
        fields = self.proc("stat").rsplit(")", 1)[1].split()
        return (int(fields[11]) + int(fields[12])) / TICKS

    def status(self, task, name):
        return next(int(line.split()[1]) for line in self.proc(task).splitlines()
                    if line.startswith(name + ":"))

    def wake_ups(self):
        tasks = os.listdir(f"/proc/{self.process.pid}/task")
        return sum(self.status(f"task/{task}/status", "voluntary_ctxt_switches")
                   for task in tasks)


def start_time(desktop, path):
    program = Program(desktop, path, True)
    shown = program.wait("[DESKPET] shown at")
    program.end()
    return shown


def idle_row(desktop, path, with_pet, seconds):
    program = Program(desktop, path, with_pet)
    program.wait("[INBOX] watcher started")
    time.sleep(SETTLING)
    begin, used, woken = time.monotonic(), program.seconds_used(), program.wake_ups()
    time.sleep(seconds)
    passed = time.monotonic() - begin
    share = 100 * (program.seconds_used() - used) / passed
    rate = (program.wake_ups() - woken) / passed
    memory = program.status("status", "VmRSS") / 1024
    shared = program.status("status", "RssFile") / 1024
    program.end()
    what = "pet shown" if with_pet else "pet hidden"
    return f"{what:12} {share:8.2f} {rate:12.1f} {memory:10.1f} {shared:14.1f}"


def measure(desktop, path, seconds):
    desktop.environment["MORVO_DEBUG"] = "1"
    desktop.environment["MORVO_SKIP_UPDATE_CHECK"] = "1"
    starts = [start_time(desktop, path) for _ in range(STARTS)]
    print(f"start to pet on the screen: median {statistics.median(starts):.0f} ms of "
          + ", ".join(f"{start:.0f}" for start in starts), flush=True)
    print(f"{'idle':12} {'% of core':>8} {'wake-ups/s':>12} {'RSS (MB)':>10} {'of it files':>14}")
    for with_pet in (True, False):
        print(idle_row(desktop, path, with_pet, seconds), flush=True)


def main():
    if len(sys.argv) not in (2, 3):
        print(__doc__, file=sys.stderr)
        return 2
    path = str(pathlib.Path(sys.argv[1]).resolve())
    desktop = Desktop()
    try:
        desktop.begin()
        measure(desktop, path, float(sys.argv[2]) if len(sys.argv) == 3 else 30.0)
    except (Failure, OSError, subprocess.TimeoutExpired) as failure:
        print(f"FAILED: {failure}")
        return 1
    finally:
        desktop.end()
    return 0


if __name__ == "__main__":
    sys.exit(main())
