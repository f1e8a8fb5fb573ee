#!/usr/bin/env python3
"""Writes a home folder with session logs as coding agents write them, always the same for the same
arguments but for its times, which lie in the six days before now.

    bench/usage_tree.py FOLDER [--megabytes N] [--files N] [--seed N]

Nine tenths of the files are Claude Code's. Of their lines two fifths are replies with their use,
the others are prompts, tool results of up to 58 KB (some quoting `"usage"`) and notes. A session's
length is log-normal. Codex's sessions begin with a line of 20 KB and tell totals after each turn.
"""
import argparse
import datetime
import json
import os
import random
import uuid

WORDS = ("the function returns a value when reading fails and this test shows why "
         "const auto result = parse(line); if (!result) { return; } error: expected token ").split()


def text(chance, length):
    words = chance.choices(WORDS, k=max(1, length // 6))
    return " ".join(words)[:length]


class Session:
    def __init__(self, chance, begin):
        self.chance = chance
        self.time = begin
        self.session = str(uuid.UUID(int=chance.getrandbits(128)))

    def stamp(self):
        self.time += datetime.timedelta(seconds=self.chance.expovariate(0.1))
        return self.time.strftime("%Y-%m-%dT%H:%M:%S.") + "%03dZ" % (self.time.microsecond // 1000)

    def common(self):
        return {"parentUuid": str(uuid.UUID(int=self.chance.getrandbits(128))), "isSidechain": False,
                "userType": "external", "cwd": "/home/me/project", "sessionId": self.session,
                "version": "2.0.14", "gitBranch": "main"}

    def end(self):
        return {"uuid": str(uuid.UUID(int=self.chance.getrandbits(128))), "timestamp": self.stamp()}

    def reply(self, pool):
        chance = self.chance
        usage = {"input_tokens": chance.randint(1, 40),
                 "cache_creation_input_tokens": chance.randint(0, 9000),
                 "cache_read_input_tokens": chance.randint(0, 150000),
                 "cache_creation": {"ephemeral_5m_input_tokens": 0, "ephemeral_1h_input_tokens": 0},
                 "output_tokens": chance.randint(1, 2000), "service_tier": "standard"}
        if chance.random() < 0.6:
            content = {"type": "tool_use", "id": "toolu_%024x" % chance.getrandbits(96),
                       "name": "Edit", "input": {"file_path": "/home/me/project/a.cpp",
                                                 "old_string": chance.choice(pool),
                                                 "new_string": chance.choice(pool)}}
        else:
            content = {"type": "text", "text": chance.choice(pool)}
        message = {"id": "msg_%024x" % chance.getrandbits(96), "type": "message",
                   "role": "assistant",
                   "model": chance.choice(["claude-opus-4-5-20251101",
                                           "claude-sonnet-4-5-20250929"]),
                   "content": [content], "stop_reason": None, "stop_sequence": None, "usage": usage}
        return self.common() | {"message": message, "requestId": "req_%024x" % chance.getrandbits(96),
                                "type": "assistant"} | self.end()

    def result(self, pool, long_pool):
        body = self.chance.choice(long_pool if self.chance.random() < 0.08 else pool)
        if self.chance.random() < 0.02:
            body += ' {"usage": {"input_tokens": 1}}'
        return self.common() | {"type": "user", "message": {"role": "user", "content": [
            {"tool_use_id": "toolu_%024x" % self.chance.getrandbits(96), "type": "tool_result",
             "content": body}]}} | self.end() | {"toolUseResult": {"stdout": body, "stderr": ""}}


def claude_log(session, size, pool, long_pool):
    lines, length = [], 0
    while length < size:
        kind = session.chance.random()
        if kind < 0.4:
            record = session.reply(pool)
        elif kind < 0.9:
            record = session.result(pool, long_pool)
        else:
            record = {"type": "system", "content": "note", "level": "info"} | session.end()
        line = json.dumps(record, ensure_ascii=False, separators=(",", ":"))
        lines.append(line)
        length += len(line) + 1
    return "\n".join(lines) + "\n"


def codex_log(session, size, pool):
    first = {"timestamp": session.stamp(), "type": "session_meta",
             "payload": {"id": session.session, "cwd": "/home/me/project",
                         "instructions": text(session.chance, 20000)}}
    lines = [json.dumps(first)]
    length, total, cached = len(lines[0]), 0, 0
    while length < size:
        for _ in range(6):
            line = json.dumps({"timestamp": session.stamp(), "type": "response_item",
                               "payload": {"type": "function_call_output",
                                           "output": session.chance.choice(pool)}})
            lines.append(line)
            length += len(line) + 1
        total += session.chance.randint(1000, 20000)
        cached += session.chance.randint(0, 900)
        counts = {"input_tokens": total - 300, "cached_input_tokens": cached, "output_tokens": 300,
                  "reasoning_output_tokens": 10, "total_tokens": total}
        line = json.dumps({"timestamp": session.stamp(), "type": "event_msg",
                           "payload": {"type": "token_count",
                                       "info": {"total_token_usage": counts,
                                                "last_token_usage": counts,
                                                "model_context_window": 272000},
                                       "rate_limits": {"primary": {"used_percent": 12.0}}}})
        lines.append(line)
        length += len(line) + 1
    return "\n".join(lines) + "\n"


def main():
    arguments = argparse.ArgumentParser(description=__doc__,
                                        formatter_class=argparse.RawDescriptionHelpFormatter)
    arguments.add_argument("folder")
    arguments.add_argument("--megabytes", type=float, default=1000)
    arguments.add_argument("--files", type=int, default=650)
    arguments.add_argument("--seed", type=int, default=1)
    given = arguments.parse_args()
    chance = random.Random(given.seed)
    now = datetime.datetime.now(datetime.timezone.utc)
    pool = [text(chance, int(chance.lognormvariate(6.6, 0.8))) for _ in range(500)]
    long_pool = [text(chance, chance.randint(5000, 28000)) for _ in range(50)]
    weights = [chance.lognormvariate(0, 1.2) for _ in range(given.files)]
    for number, weight in enumerate(weights):
        size = int(given.megabytes * 1e6 * weight / sum(weights))
        session = Session(chance, now - datetime.timedelta(hours=chance.uniform(10, 140)))
        if number % 10 == 9:
            path = ".codex/sessions/2026/03/%02d/rollout-%d.jsonl" % (number % 28 + 1, number)
            content = codex_log(session, size, pool)
        else:
            path = ".claude/projects/-home-me-p%d/%s.jsonl" % (number % 20, session.session)
            content = claude_log(session, size, pool, long_pool)
        path = os.path.join(given.folder, path)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as file:
            file.write(content)


if __name__ == "__main__":
    main()
