#!/usr/bin/env python3
"""Holds a first reading of agents' logs against `cat` of the same files, and against the npm package
`ccusage` where its program is given: medians of alternating runs.

    bench/usage.py BENCH HOME [--peer PROGRAM] [--runs N]
"""
import argparse
import glob
import os
import statistics
import subprocess
import time


def run(command, environment):
    begin = time.monotonic()
    process = subprocess.Popen(command, env=environment, stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL)
    _, status, used = os.wait4(process.pid, 0)
    if status != 0:
        raise SystemExit("%s ended with %d" % (command[0], status))
    return time.monotonic() - begin, used.ru_utime + used.ru_stime, used.ru_maxrss / 1024


def main():
    arguments = argparse.ArgumentParser()
    arguments.add_argument("bench")
    arguments.add_argument("home")
    arguments.add_argument("--peer")
    arguments.add_argument("--runs", type=int, default=5)
    given = arguments.parse_args()
    logs = glob.glob(given.home + "/.*/**/*.jsonl", recursive=True)
    environment = {"PATH": os.environ["PATH"], "HOME": os.path.abspath(given.home)}
    commands = {"cat": ["cat", *logs], "ours": [given.bench, "first", given.home]}
    if given.peer:
        commands["peer"] = [given.peer, "daily", "--offline", "--json"]
    taken = {name: [] for name in commands}
    for command in commands.values():
        run(command, environment)
    for _ in range(given.runs):
        for name, command in commands.items():
            taken[name].append(run(command, environment))
    medians = {name: [statistics.median(column) for column in zip(*rows)]
               for name, rows in taken.items()}
    for name, (wall, cpu, memory) in medians.items():
        ratios = ["%.2f" % (mine / other) for mine, other in
                  zip(medians["ours"], medians[name])]
        print("%-5s wall %.3f s, processor %.3f s, memory %.0f MB; ours is %s of it"
              % (name, wall, cpu, memory, " / ".join(ratios)))


if __name__ == "__main__":
    main()
