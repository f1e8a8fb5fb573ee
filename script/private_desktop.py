"""A private desktop for programs that show MorvoBar or measure it: an X server with a window
manager, a compositor, a tray and a notification service in a temporary home."""

import os
import pathlib
import shutil
import subprocess
import tempfile
import threading
import time

STEP_DEADLINE = 15.0


class Failure(Exception):
    """A step that was not seen."""


class Desktop:
    """The private desktop and everything started on it. Every process it starts, it ends."""

    def __init__(self):
        self.home = home = pathlib.Path(tempfile.mkdtemp(prefix="morvobar-desktop-"))
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
        options.setdefault("timeout", STEP_DEADLINE)
        return subprocess.run(
            command,
            env=self.environment,
            cwd=self.home,
            capture_output=True,
            text=True,
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
        # It runs the command when it is through with its start; before that it drops windows.
        manager = self.start("openbox", "--sm-disable", "--startup", "echo ready",
                             stdout=subprocess.PIPE, text=True)
        if not any(line.strip() == "ready" for line in manager.stdout):
            raise Failure("the window manager did not start")
        self.run("hsetroot", "-add", "#7fb2d0", "-add", "#3f6f9c", "-add", "#2b3f6b",
                 "-gradient", "200")
        self.start("picom", "--backend", "xrender", "--no-fading-openclose",
                   "--config", "/dev/null")
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
        shutil.rmtree(self.home, ignore_errors=True)


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
