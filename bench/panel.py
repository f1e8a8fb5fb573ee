#!/usr/bin/python3
"""Measures the main panel of the program on a private desktop.

    panel.py PROGRAM [SECONDS]

Prints the time from a click on the tray icon to the panel's first frame, for the first opening of
each of three starts and for ten later ones of the last; the resident memory before the panel was
ever opened, with it open and after it; and the share of one core and the wake-ups a second while
it stands open on each tab, each over SECONDS (20 unless told). The pet on the desktop is hidden
throughout, so what the panel costs is not lost in what the pet costs; only the last figures, of the
memory with the pet shown, have both. Last comes what scrolling costs, when PanelScroll stands beside
the program.
"""

import pathlib
import statistics
import sys
import time

from desktop import Program, SETTLING, run

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "script"))

from private_desktop import wait_for  # noqa: E402

STARTS = 3
WARM_CLICKS = 10
PAUSE = 0.7  # Between two clicks, so that none is part of the one before.
TABS = ("chat", "monitor", "pet")
SCROLLING = 60.0
DRAWN = "[PANEL] drawn"


class Panel:
    """A running program and the pointer on its icon."""

    def __init__(self, desktop, path, with_pet=False):
        self.desktop = desktop
        self.program = Program(desktop, path, with_pet)
        self.program.wait("[INBOX] watcher started")
        wait_for("the tray icon", lambda: self.icon() is not None)
        time.sleep(SETTLING)

    def do(self, *words):
        return self.desktop.run("xdotool", *(str(word) for word in words)).stdout

    def icon(self):
        for window in self.do("search", "--onlyvisible", "--class", "morvobar").split():
            told = self.do("getwindowgeometry", "--shell", window)
            place = dict(line.split("=") for line in told.splitlines() if "=" in line)
            x, y, width, height = (int(place[name]) for name in ("X", "Y", "WIDTH", "HEIGHT"))
            if width <= 32 and height <= 32 and y < 28:
                return x + width // 2, y + height // 2
        return None

    def open(self):
        """Milliseconds from the click to the first frame."""
        x, y = self.icon()
        self.do("mousemove", x, y)
        time.sleep(PAUSE)
        self.program.lines.forget()
        begin = time.monotonic()
        self.do("click", 1)
        return 1000 * (self.program.lines.wait("the panel", DRAWN) - begin)

    def close(self):
        self.do("key", "Escape")
        time.sleep(PAUSE)

    def resident(self):
        return self.program.status("status", "VmRSS") / 1024


def described(times):
    return f"median {statistics.median(times):.0f} ms of " + ", ".join(f"{t:.0f}" for t in times)


def measure(desktop, path, seconds):
    cold = []
    panel = None
    for _ in range(STARTS):
        if panel is not None:
            panel.program.end()
        panel = Panel(desktop, path)
        before = panel.resident()
        cold.append(panel.open())
    time.sleep(SETTLING)
    opened = panel.resident()
    panel.close()
    warm = []
    for _ in range(WARM_CLICKS):
        warm.append(panel.open())
        panel.close()
    print("first opening: " + described(cold))
    print("later ones:    " + described(warm))
    print(f"resident (MB): never opened {before:.1f}, open {opened:.1f}, closed after "
          f"{1 + WARM_CLICKS} openings {panel.resident():.1f}", flush=True)
    print(panel.program.row("closed again", [panel.program.during(seconds)]), flush=True)
    panel.program.end()
    for tab in TABS:
        desktop.environment["MORVO_SHOW_PANEL"] = tab
        panel = Panel(desktop, path)
        print(panel.program.row(tab + " open", [panel.program.during(seconds)]), flush=True)
        panel.program.end()
    del desktop.environment["MORVO_SHOW_PANEL"]
    panel = Panel(desktop, path, with_pet=True)
    before = panel.resident()
    panel.open()
    time.sleep(SETTLING)
    opened = panel.resident()
    panel.close()
    print(f"resident with the pet shown (MB): never opened {before:.1f}, open {opened:.1f}, "
          f"closed again {panel.resident():.1f}", flush=True)
    panel.program.end()
    scroll = pathlib.Path(path).parent / "PanelScroll"
    if scroll.exists():
        print(desktop.run(str(scroll), timeout=SCROLLING).stdout, end="", flush=True)


if __name__ == "__main__":
    sys.exit(run(__doc__, measure, 20.0))
