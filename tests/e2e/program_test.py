"""The program as a process: instances, commands, hostile homes. Needs no display."""

import json
import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import time
import unittest

PROGRAM = os.environ["MORVO_PROGRAM"]
DEADLINE = 60.0


class ProgramTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="morvobar 测试 ")
        self.addCleanup(folder.cleanup)
        self.home = pathlib.Path(folder.name) / "home"
        self.home.mkdir()
        self.runtime = pathlib.Path(folder.name) / "runtime"
        self.runtime.mkdir(mode=0o700)
        self.environment = {
            key: value
            for key, value in os.environ.items()
            if not key.startswith(("MORVO", "QT_", "XDG_", "DBUS_", "DISPLAY", "WAYLAND"))
        }
        self.environment.update(
            MORVO_HOME=str(self.home),
            XDG_RUNTIME_DIR=str(self.runtime),
            QT_QPA_PLATFORM="offscreen",
            LC_ALL="C.UTF-8",
        )
        self.running = []
        self.addCleanup(self.end_all)

    def end_all(self):
        for process in self.running:
            if process.poll() is None:
                process.kill()
            process.wait()
            process.stderr.close()

    def run_program(self, *words, **changes):
        environment = {**self.environment, **changes}
        return subprocess.run([PROGRAM, *words], env=environment, capture_output=True,
                              encoding="utf-8", timeout=DEADLINE, check=False)

    def start(self, **changes):
        """Starts the program and waits until it watches the inbox."""
        process = subprocess.Popen(
            [PROGRAM], env={**self.environment, "MORVO_DEBUG": "1", **changes},
            stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, encoding="utf-8")
        self.running.append(process)
        self.wait_for_line(process, "[INBOX] watcher started")
        return process

    def wait_for_line(self, process, text):
        seen = []
        for line in process.stderr:
            seen.append(line)
            if text in line:
                return seen
        self.fail(f"{text!r} was not said: {seen}")

    def test_a_second_start_hands_its_words_over(self):
        first = self.start()
        for words in [[], ["morvopet://login?code=x"]]:
            self.assertEqual(self.run_program(*words).returncode, 0)
        other_place = self.run_program(XDG_RUNTIME_DIR="/nonexistent")
        self.assertEqual(other_place.returncode, 0, other_place.stderr)
        self.assertIsNone(first.poll())

    def test_a_killed_instance_leaves_its_place(self):
        self.start().kill()
        second = self.start()
        self.assertEqual(self.run_program().returncode, 0)
        self.assertIsNone(second.poll())

    def test_a_stopped_instance_is_reported(self):
        first = self.start()
        first.send_signal(signal.SIGSTOP)
        second = self.run_program()
        first.send_signal(signal.SIGCONT)
        self.assertEqual(second.returncode, 1)
        self.assertIn("没有回应", second.stderr)

    def test_quit_ends_the_running_instance(self):
        first = self.start()
        self.assertEqual(self.run_program("quit").returncode, 0)
        first.stderr.read()
        self.assertEqual(first.wait(DEADLINE), 0)
        self.assertEqual(self.run_program("quit").returncode, 1)

    def test_unknown_words_are_refused(self):
        for words in [["conect", "claude"], ["connect", "nobody"], ["connect"], ["https://x"]]:
            result = self.run_program(*words)
            self.assertEqual(result.returncode, 2, words)
            self.assertTrue(result.stderr, words)

    def test_commands_need_no_display(self):
        del self.environment["QT_QPA_PLATFORM"]
        connected = self.run_program("connect", "claude", "--json")
        self.assertEqual(connected.returncode, 0, connected.stderr)
        status = json.loads(self.run_program("status", "--json").stdout)
        self.assertEqual([agent["id"] for agent in status["agents"] if agent["connected"]],
                         ["claude"])
        self.assertEqual(self.run_program("disconnect", "claude").returncode, 0)
        self.assertEqual(self.run_program().returncode, 1)

    def test_the_self_test_leaves_the_real_settings_alone(self):
        real = self.home / ".claude" / "settings.json"
        real.parent.mkdir()
        real.write_text('{"theme": "dark"}')
        elsewhere = self.home / "elsewhere.json"
        result = self.run_program(MORVO_CONNECT_TEST="1", MORVO_SETTINGS_PATH=str(elsewhere))
        self.assertEqual(result.returncode, 0)
        self.assertEqual(result.stderr.splitlines(), [
            "[CONNECT] after connect#1: isConnected=true",
            "[CONNECT] after connect#2(幂等): 命令出现 3 次(每事件1次=3次合理)",
            "[CONNECT] after disconnect: isConnected=false",
        ])
        self.assertEqual(real.read_text(), '{"theme": "dark"}')
        self.assertEqual(json.loads(elsewhere.read_text()), {})

    def test_home_is_never_looked_at(self):
        decoy = self.home.parent / "decoy"
        decoy.mkdir()
        self.run_program("connect", "claude", HOME=str(decoy))
        self.assertEqual(list(decoy.iterdir()), [])
        self.assertTrue((self.home / ".morvo" / "hook.sh").exists())

    def test_a_fifo_among_the_files_does_not_hang_the_start(self):
        pet = self.home / ".morvo" / "pets" / "morvo"
        pet.mkdir(parents=True)
        for name in ["lines.json", "voice.json", "profile.json", "manifest.json"]:
            os.mkfifo(pet / name)
        (self.home / ".claude").mkdir()
        os.mkfifo(self.home / ".claude" / "settings.json")
        program = self.start()
        self.wait_for_line(program, "[DESKPET] shown at")
        self.assertEqual(self.run_program().returncode, 0)

    def test_a_permission_request_of_the_installed_script_is_announced_and_answered(self):
        self.assertEqual(self.run_program("connect", "claude").returncode, 0)
        program = self.start()
        folder = self.home / ".morvo"
        request = {"hook_event_name": "PreToolUse", "tool_name": "Bash\u202e",
                   "tool_input": {"command": "make 测试"}}
        script = subprocess.Popen(
            ["/bin/sh", folder / "perm.sh", "claude"], stdin=subprocess.PIPE,
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, encoding="utf-8",
            env={**self.environment, "HOME": str(self.home)})
        self.running.append(script)
        script.stdin.write(json.dumps(request))
        script.stdin.close()
        # Without a service that takes notifications they are lines on standard error.
        self.wait_for_line(program, "等你确认：Bash[U+202E]")
        asked = json.loads((folder / "inbox.jsonl").read_text().splitlines()[-1])
        self.assertEqual(asked["summary"], "make 测试")
        # Whole at once: what the script finds half written it leaves to the agent.
        whole = folder / "decision.json"
        whole.write_text('{"decision":"allow"}')
        (folder / "decisions").mkdir(mode=0o700, exist_ok=True)
        whole.rename(folder / "decisions" / f"{asked['id']}.json")
        answer = json.loads(script.stdout.read())["hookSpecificOutput"]
        script.stdout.close()
        self.assertEqual(script.wait(DEADLINE), 0)
        self.assertEqual(answer["permissionDecision"], "allow")
        self.assertEqual(list((folder / "decisions").iterdir()), [])
        self.assertEqual(folder.stat().st_mode & 0o777, 0o700)

    def give_agents_logs(self):
        """A home in which both agents worked an hour ago and three days ago."""
        now = time.time()

        def claude_line(age, tokens):
            moment = time.strftime("%Y-%m-%dT%H:%M:%S.123Z", time.gmtime(now - age))
            return json.dumps({
                "timestamp": moment,
                "message": {"model": "claude-opus-4", "usage": {
                    "input_tokens": tokens, "output_tokens": 0,
                    "cache_read_input_tokens": 10 ** 6}},
                "type": "assistant"}) + "\n"

        project = self.home / ".claude" / "projects" / "-home-me-work"
        project.mkdir(parents=True)
        (project / "session.jsonl").write_text(
            claude_line(3 * 86400, 500) + '{"type":"user","message":"\\"usage\\""}\n'
            + claude_line(7200, 60000) + claude_line(1800, 12000) + '{"timestamp":"2026-')
        (self.home / ".claude.json").write_text('{"oauthAccount": ["odd"]}')
        sessions = self.home / ".codex" / "sessions"
        sessions.mkdir(parents=True)
        (sessions / "loop").symlink_to(sessions)
        (sessions / "empty.jsonl").touch()
        (sessions / "rollout.jsonl").write_text(json.dumps({"payload": {
            "type": "token_count",
            "info": {"total_token_usage": {"total_tokens": 3000, "cached_input_tokens": 1000}},
            "rate_limits": {"primary": {"used_percent": 42.0}, "plan_type": "pro"}}}) + "\n")
        return {"PATH": "/usr/bin:/bin", "MORVO_DISABLE_CAUT": "1",
                "MORVO_DISABLE_CLI_PROBES": "1"}

    def test_a_scan_tells_what_the_agents_burned(self):
        result = self.run_program(MORVO_SCAN="1", **self.give_agents_logs())
        self.assertEqual(result.returncode, 0)
        self.assertEqual(result.stderr.splitlines(), [
            "SCAN  Claude Code  72000tok  7d=72500  $1.08",
            "SCAN  Codex  2000tok  7d=2000  $0.01",
            "STATS window=74000 used=50%(ceiling148000) level=normal 200tok/min $1.09",
        ])
        self.assertEqual(result.stdout, "")

    def test_a_scan_of_an_empty_home_tells_nothing_burned(self):
        result = self.run_program(MORVO_SCAN="1", PATH="/usr/bin:/bin")
        self.assertEqual(result.returncode, 0)
        self.assertEqual(result.stderr.splitlines(),
                         ["STATS window=0 used=0%(ceiling1) level=normal 0tok/min $0.00"])

    def test_a_scan_asks_the_agents_commands(self):
        changes = self.give_agents_logs()
        asked = self.home / "asked"
        command = self.home / "claude"
        command.write_text(f"#!/bin/sh\npwd > '{asked}'\necho 'Current session 12% used'\n")
        command.chmod(0o755)
        del changes["MORVO_DISABLE_CLI_PROBES"]
        result = self.run_program(MORVO_SCAN="1", MORVO_CLAUDE_PATH=str(command), **changes)
        self.assertEqual(result.returncode, 0)
        self.assertEqual(asked.read_text(), "/\n")
        self.assertEqual(len(result.stderr.splitlines()), 3)

    def test_the_panel_is_drawn_with_this_machines_agents_and_the_pets_own_picture(self):
        plain, worn = self.home / "plain.png", self.home / "worn.png"
        changes = {**self.give_agents_logs(), "MORVO_PERSONA_ID": "morvo", "MORVO_DRAWER": "1"}
        result = self.run_program(MORVO_RENDER=str(plain), **changes)
        self.assertEqual(result.returncode, 0)
        self.assertEqual(result.stderr, f"[RENDER] wrote {plain}\n")
        picture = plain.read_bytes()
        self.assertEqual(picture[:8], b"\x89PNG\r\n\x1a\n")
        self.assertEqual(int.from_bytes(picture[16:20], "big"), 2 * 340)
        self.run_program(MORVO_RENDER=str(worn), MORVO_AVATAR_PATH=str(plain), **changes)
        self.assertNotEqual(worn.read_bytes(), picture)
        empty = self.home / "empty.png"
        for name in [".claude", ".codex"]:
            shutil.rmtree(self.home / name)
        self.run_program(MORVO_RENDER=str(empty), **changes)
        self.assertNotEqual(empty.read_bytes(), picture)

    def test_codexs_limit_is_told_from_its_logs(self):
        self.assertEqual(self.run_program(MORVO_CODEX_LIMIT="1").stderr,
                         "[CODEX] 没读到 rate_limits\n")
        self.give_agents_logs()
        result = self.run_program(MORVO_CODEX_LIMIT="1")
        self.assertEqual(result.stderr, "[CODEX] 5h=42% plan=pro\n")
        self.assertEqual(result.returncode, 0)

    def test_the_running_program_captures_while_the_setting_is_on(self):
        changes = self.give_agents_logs()
        settings = self.home / ".config" / "morvobar" / "settings.ini"
        settings.parent.mkdir(parents=True)
        settings.write_text("[General]\nmorvo.set.captureUsage=true\n")
        self.start(**changes)
        # What was learned is the trace that a capture leaves.
        learned = "morvo.usage.curBlockPeak=74000"
        end = time.monotonic() + DEADLINE
        while learned not in settings.read_text() and time.monotonic() < end:
            time.sleep(0.05)
        self.assertIn(learned, settings.read_text())

    def test_a_command_that_stalls_does_not_hold_up_the_end(self):
        program, child, grandchild = self.start_with_a_command_that_stalls()
        self.assertEqual(self.run_program("quit").returncode, 0)
        self.assertNotIn("QProcess", program.stderr.read())
        self.assertEqual(program.wait(DEADLINE), 0)
        self.wait_for_end(child)
        self.wait_for_end(grandchild)

    def test_a_command_that_stalls_does_not_hold_up_an_end_by_a_signal(self):
        program, child, grandchild = self.start_with_a_command_that_stalls()
        program.send_signal(signal.SIGTERM)
        self.assertNotIn("QProcess", program.stderr.read())
        self.assertEqual(program.wait(DEADLINE), 0)
        self.wait_for_end(child)
        self.wait_for_end(grandchild)

    def test_a_scan_that_is_told_to_end_takes_its_commands_along(self):
        for number in [signal.SIGINT, signal.SIGTERM, signal.SIGHUP]:
            changes, pids = self.give_a_command_that_stalls()
            scan = subprocess.Popen(
                [PROGRAM], env={**self.environment, **changes, "MORVO_SCAN": "1"},
                stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, encoding="utf-8")
            self.running.append(scan)
            child, grandchild = self.wait_for_pids(pids)
            scan.send_signal(number)
            self.assertEqual(scan.stderr.read(), "")
            self.assertEqual(scan.wait(DEADLINE), -number)
            self.wait_for_end(child)
            self.wait_for_end(grandchild)

    def test_a_command_that_stalls_ends_with_a_program_that_is_killed(self):
        program, child, grandchild = self.start_with_a_command_that_stalls()
        # What the command itself has started lives on.
        self.addCleanup(os.kill, grandchild, signal.SIGKILL)
        program.kill()
        program.wait(DEADLINE)
        self.wait_for_end(child)

    def test_a_signal_to_end_is_obeyed_in_good_order(self):
        for number in [signal.SIGTERM, signal.SIGINT, signal.SIGHUP]:
            program = self.start()
            program.send_signal(number)
            program.stderr.read()
            self.assertEqual(program.wait(DEADLINE), 0, number)

    def give_a_command_that_stalls(self):
        """A home with a `claude` that does not obey, and the file with its process number and that
        of the command it starts."""
        shutil.rmtree(self.home)
        self.home.mkdir()
        changes = self.give_agents_logs()
        begun = self.home / "begun"
        command = self.home / "claude"
        command.write_text(f"#!/bin/sh\ntrap '' TERM\nsleep 600 &\n"
                           f"echo $$ $! > '{begun}'\nwhile :; do sleep 0.1; done\n")
        command.chmod(0o755)
        del changes["MORVO_DISABLE_CLI_PROBES"]
        return {**changes, "MORVO_CLAUDE_PATH": str(command)}, begun

    def wait_for_pids(self, file):
        end = time.monotonic() + DEADLINE
        while not (file.exists() and file.read_text()) and time.monotonic() < end:
            time.sleep(0.02)
        return [int(word) for word in file.read_text().split()]

    def start_with_a_command_that_stalls(self):
        """The program, and the process numbers of a child that does not obey and of its child."""
        changes, begun = self.give_a_command_that_stalls()
        settings = self.home / ".config" / "morvobar" / "settings.ini"
        settings.parent.mkdir(parents=True)
        settings.write_text("[General]\nmorvo.set.captureUsage=true\n")
        program = self.start(**changes)
        return program, *self.wait_for_pids(begun)

    def wait_for_end(self, child):
        end = time.monotonic() + DEADLINE
        while pathlib.Path(f"/proc/{child}/cmdline").exists() and time.monotonic() < end:
            if not pathlib.Path(f"/proc/{child}/cmdline").read_bytes():
                break  # It has ended and waits to be reaped.
            time.sleep(0.02)
        self.assertLess(time.monotonic(), end)

    def test_a_burst_of_ten_thousand_lines_is_handled(self):
        program = self.start()
        lines = b"".join(
            b'{"kind":"agent","status":"done","provider":"claude","label":"%d"}\n' % number
            for number in range(10000))
        with open(self.home / ".morvo" / "inbox.jsonl", "ab", buffering=0) as inbox:
            inbox.write(lines)
        self.wait_for_line(program, "drain newBytes=")
        parsed = 0
        while parsed < 10000:
            self.wait_for_line(program, "line parsed, signals=1")
            parsed += 1
        begin = time.monotonic()
        self.assertEqual(self.run_program("quit").returncode, 0)
        program.stderr.read()
        self.assertEqual(program.wait(DEADLINE), 0)
        # What was still in flight is dropped: the end never waits for a backlog.
        self.assertLess(time.monotonic() - begin, DEADLINE)


if __name__ == "__main__":
    unittest.main()
