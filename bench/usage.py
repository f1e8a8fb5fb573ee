#!/usr/bin/env python3
"""Holds a first reading of agents' logs against `cat` of the same files, and against the npm package
`ccusage` where its program is given: medians of alternating runs.

    bench/usage.py BENCH HOME [--peer PROGRAM] [--runs N]

Needs the program `time` of the package of that name: the peak memory that the system tells of a
process begins with that of the process which started it, and this script is larger than `cat`.
"""
import argparse
import glob
import os
import statistics
import subprocess
import tempfile
import time


def run(command, environment):
    with tempfile.NamedTemporaryFile("r") as peak:
        begin = time.monotonic()
        process = subprocess.Popen(["time", "-f", "%M", "-o", peak.name, *command],
                                   env=environment, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL)
        _, status, used = os.wait4(process.pid, 0)
        wall = time.monotonic() - begin
        if status != 0:
            raise SystemExit("%s ended with %d" % (command[0], status))
        return wall, used.ru_utime + used.ru_stime, int(peak.read()) / 1024


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
        least, most = min(row[1] for row in taken[name]), max(row[1] for row in taken[name])
        print("%-5s wall %.3f s, processor %.3f s (%.3f to %.3f), memory %.1f MB; ours is %s of it"
              % (name, wall, cpu, least, most, memory, " / ".join(ratios)))


if __name__ == "__main__":
    main()
