"""The panel of the running program, in real windows on a private desktop, with a real pointer."""

import json
import os
import pathlib
import subprocess
import sys
import time
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "script"))

from private_desktop import Desktop, Failure, Lines, wait_for  # noqa: E402

PROGRAM = os.environ["MORVO_PROGRAM"]
TREE = str(pathlib.Path(__file__).resolve().parent / "accessible_tree.py")
DEADLINE = 60.0
PANEL_WIDTH = 340
# The theme's colour in the dark appearance; only a button that can be pressed has it in full.
THEME = bytes((86, 224, 194))
BUTTON = (100, 16)  # Points that the ground of such a button covers at the least.


class PanelTest(unittest.TestCase):
    def setUp(self):
        self.desktop = Desktop()
        self.addCleanup(self.desktop.end)
        self.desktop.begin()
        self.home = self.desktop.home
        self.desktop.environment.update(MORVO_DEBUG="1", MORVO_SKIP_UPDATE_CHECK="1")
        self.settings = self.home / ".config" / "morvobar" / "settings.ini"
        self.settings.parent.mkdir(parents=True)
        self.settings.write_text("[General]\nmorvo.set.appearance=dark\n"
                                 "morvo.set.desktopPet=false\n")

    def start(self):
        self.program = self.desktop.start(PROGRAM, stderr=subprocess.PIPE, text=True,
                                          encoding="utf-8", errors="replace")
        self.lines = Lines(self.program.stderr)
        self.lines.wait("the inbox watcher", "[INBOX] watcher started", DEADLINE)
        wait_for("the tray icon", lambda: self.icon() is not None, DEADLINE)

    def do(self, *words):
        return self.desktop.run("xdotool", *(str(word) for word in words)).stdout

    def geometry(self, window):
        told = self.do("getwindowgeometry", "--shell", window)
        values = dict(line.split("=") for line in told.splitlines() if "=" in line)
        return tuple(int(values.get(name, 0)) for name in ("X", "Y", "WIDTH", "HEIGHT"))

    def windows(self):
        found = self.do("search", "--onlyvisible", "--class", "morvobar").split()
        return [self.geometry(window) for window in found]

    def icon(self):
        """The centre of the icon in the tray."""
        for x, y, width, height in self.windows():
            if 8 <= width <= 32 and 8 <= height <= 32 and y < 28:
                return x + width // 2, y + height // 2
        return None

    def panel(self):
        return next((window for window in self.windows() if window[2] == PANEL_WIDTH), None)

    def click(self, x, y):
        self.do("mousemove", x, y, "click", 1)

    def click_icon(self):
        self.click(*self.icon())

    def open_panel(self):
        self.click_icon()
        wait_for("the panel", lambda: self.panel() is not None, DEADLINE)
        wait_for("the keyboard in the panel", lambda: self.geometry(
            self.do("getactivewindow").strip() or "0")[2] == PANEL_WIDTH, DEADLINE)

    def assert_closes(self):
        wait_for("the end of the panel", lambda: self.panel() is None, DEADLINE)

    def shot(self, x, y, width, height):
        """What the screen shows there, as bytes of red, green and blue."""
        return subprocess.run(
            ["import", "-window", "root", "-crop", f"{width}x{height}+{x}+{y}", "+repage",
             "-depth", "8", "rgb:-"], env=self.desktop.environment, capture_output=True,
            timeout=DEADLINE, check=True).stdout

    def colours(self, *place):
        """How many colours the screen shows there."""
        shot = self.shot(*place)
        return len({shot[at:at + 3] for at in range(0, len(shot), 3)})

    def button(self):
        """The centre of the panel's button in the theme's colour, if there is one."""
        x, y, width, height = self.panel()
        shot = self.shot(x, y, width, height)
        wanted = THEME * BUTTON[0]
        rows = []
        for row in range(height):
            line = shot[3 * width * row:3 * width * (row + 1)]
            at = line.find(wanted)
            if at >= 0 and at % 3 == 0:
                rows.append((at // 3, row))
        if len(rows) < BUTTON[1] // 2:
            return None
        return x + rows[0][0] + BUTTON[0] // 2, y + rows[0][1] + BUTTON[1] // 2

    def test_a_click_on_the_icon_opens_the_panel_and_a_second_closes_it(self):
        self.start()
        for _ in range(2):
            self.open_panel()
            x, y, width, height = self.panel()
            self.assertGreaterEqual(y, 28)
            self.assertLessEqual(x + width, 1280)
            self.assertLessEqual(y + height, 800)
            self.click_icon()
            self.assert_closes()
            time.sleep(0.5)  # What would come up again would be there by now.
            self.assertIsNone(self.panel())

    def test_a_click_elsewhere_closes_the_panel(self):
        self.start()
        other = self.desktop.start("xmessage", "-geometry", "300x200+40+400", "hello")
        wait_for("another window", lambda: self.do("search", "--onlyvisible", "--class",
                                                   "Xmessage"), DEADLINE)
        self.open_panel()
        self.click(200, 420)
        self.assert_closes()
        self.assertIsNone(other.poll())
        time.sleep(0.5)  # An earlier click on the icon might be the one that closed it.
        self.open_panel()

    def test_escape_closes_the_panel(self):
        self.start()
        self.open_panel()
        self.do("key", "Escape")
        self.assert_closes()
        self.open_panel()

    def test_the_pet_stands_beneath_the_open_panel_and_above_all_afterwards(self):
        self.settings.write_text("[General]\nmorvo.set.appearance=dark\n")
        self.start()
        self.lines.wait("the pet", "[DESKPET] shown at", DEADLINE)
        shown = next(line for _, line in self.lines.seen if "[DESKPET] shown at" in line)
        x, y, width, height = (int(part) for part in
                               shown.split("(")[1].split(")")[0].split(", "))
        self.open_panel()
        bottom = sum(self.panel()[1::2])
        # The pet's middle, in front of the panel's lowest part, where that is of one colour.
        place = (x + width // 2 - 40, bottom - 70, 80, 40)
        self.assertGreater(place[1], y + height - width)
        wait_for("the whole panel", lambda: self.colours(*place) == 1, DEADLINE)
        self.do("key", "Escape")
        self.assert_closes()
        wait_for("the pet", lambda: self.colours(*place) > 20, DEADLINE)
        other = self.desktop.start("xmessage", "-geometry", "500x300+780+480", "hello")
        wait_for("another window", lambda: self.do("search", "--onlyvisible", "--class",
                                                   "Xmessage"), DEADLINE)
        time.sleep(0.5)  # It would stand above the pet by now.
        self.assertIsNone(other.poll())
        self.assertGreater(self.colours(*place), 20)

    def test_a_click_on_approve_lets_claude_go_on(self):
        self.assertEqual(self.desktop.run(PROGRAM, "connect", "claude").returncode, 0)
        self.start()
        folder = self.home / ".morvo"
        script = self.desktop.start("/bin/sh", str(folder / "perm.sh"), "claude",
                                    stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        script.stdin.write(json.dumps({
            "hook_event_name": "PreToolUse", "tool_name": "Bash",
            "tool_input": {"command": "make 测试"}}).encode())
        script.stdin.close()
        self.lines.wait("the request", "[INBOX] line parsed, signals=1", DEADLINE)
        self.open_panel()
        wait_for("a button that approves", lambda: self.button() is not None, DEADLINE)
        self.assertIsNone(script.poll())
        self.click(*self.button())
        answer = json.loads(script.stdout.read())["hookSpecificOutput"]
        script.stdout.close()
        self.assertEqual(script.wait(DEADLINE), 0)
        self.assertEqual(answer["permissionDecision"], "allow")
        wait_for("the end of the card", lambda: self.button() is None, DEADLINE)
        self.assertEqual(list((folder / "decisions").iterdir()), [])

    def ask_for(self, request):
        """A permission request, as the script writes it."""
        inbox = self.home / ".morvo" / "inbox.jsonl"
        with inbox.open("a", encoding="utf-8") as lines:
            lines.write(json.dumps({"kind": "perm", "id": request, "tool": "Bash",
                                    "summary": "make 测试"}) + "\n")
        return self.home / ".morvo" / "decisions" / (request + ".json")

    def told(self, *words):
        """What an assistive program is told."""
        answer = self.desktop.run("/usr/bin/python3", TREE, *words, timeout=DEADLINE)
        self.assertEqual(answer.returncode, 0, answer.stderr)
        return json.loads(answer.stdout)

    def controls(self, item):
        """Every seen thing that can be pressed or typed into: its role, name and some states."""
        found = []
        if "SHOWING" in item["states"] and (set(item["actions"]) - {"SetFocus"}
                                            or "EDITABLE" in item["states"]):
            found.append((item["role"], item["name"],
                          *(state for state in ("SELECTED", "CHECKED") if state in item["states"])))
        return found + [each for child in item["children"] for each in self.controls(child)]

    def nameless(self, item):
        own = [item["role"]] if "SHOWING" in item["states"] and not item["name"] else []
        return own + [each for child in item["children"] for each in self.nameless(child)]

    def assert_told(self, wanted):
        """That assistive programs come to see just these controls, and nothing without a name."""
        seen = []

        def is_told():
            seen[:] = [self.told("dump", "morvobar")]
            return self.controls(seen[0]) == wanted

        try:
            wait_for("the controls", is_told)
        except Failure:
            self.assertEqual(self.controls(seen[0]), wanted)
        self.assertEqual(self.nameless(seen[0]), [])

    def test_assistive_programs_are_told_every_control_of_every_tab(self):
        self.desktop.environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        self.start()
        self.open_panel()

        def row(chosen):
            return [("page tab", name, *(["SELECTED"] if name == chosen else []))
                    for name in ("对话", "监控", "宠物")]

        self.assert_told(row("对话"))
        self.do("key", "Tab", "Right", "space")
        self.assert_told(row("监控") + [
            ("push button", "刷新"), ("check box", "读本机用量"),
            ("check box", "处理完成 / 需拍板事件", "CHECKED"),
            ("check box", "会话目录启发式（实验）"), ("check box", "系统通知", "CHECKED")])
        self.do("key", "Right", "space")
        pet = [("push button", "形象 小沃 · 深海"), ("push button", "显示桌面宠"),
               ("check box", "Act 权限守门（改动必问你）")]
        self.assert_told(row("宠物") + pet)
        self.ask_for("aa11bb22cc33")
        self.assert_told([("push button", "拒绝"), ("push button", "批准")] + row("宠物") + pet)

    def test_a_press_by_an_assistive_program_counts_when_a_click_would(self):
        self.desktop.environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        self.start()
        self.open_panel()
        self.do("key", "Escape")
        self.assert_closes()
        decision = self.ask_for("aa11bb22cc33")
        self.lines.wait("the request", "[INBOX] line parsed, signals=1", DEADLINE)
        unseen = self.told("press", "morvobar", "批准", str(decision), "2")
        self.assertGreater(unseen["pressed"], 0)
        self.assertIsNone(unseen["at"])
        self.open_panel()
        decision = self.ask_for("dd44ee55ff66")
        asked = time.time()
        seen = self.told("press", "morvobar", "批准", str(decision), "30")
        self.assertIsNotNone(seen["at"])
        self.assertGreaterEqual(seen["at"] - asked, 0.5)
        self.assertEqual(decision.read_text(), '{"decision":"allow"}')


if __name__ == "__main__":
    unittest.main()
