#!/usr/bin/env python3
"""Prints where the seconds of test.sh go: its longest steps, what takes longest to build, and the longest
tests.

    scripts/slowest.py [NUMBER]     so many of each; 10 by default

What has run several times in this build folder counts with its last time. Parts of a build and of a step
run at the same time, so the sums are more than what the clock showed.
"""

import json
import os
import sys
from pathlib import Path

BUILD = Path(os.environ.get("TOLVANE_BUILD", Path(__file__).resolve().parent.parent / "build"))


def show(title, rows, number):
    rows = sorted(rows, reverse=True)
    print(f"{title}: {len(rows)}, {sum(seconds for seconds, _ in rows):.0f} s in all")
    for seconds, name in rows[:number]:
        print(f"{seconds:8.1f}  {name}")


def steps():
    return [(float(path.read_text()), path.name) for path in (BUILD / "plan/seconds").iterdir()]


def built(log):
    """The seconds of each file that ninja has made: its log has start and end in milliseconds."""
    times = {}
    for line in log.read_text().splitlines():
        if not line.startswith("#"):
            start, end, _, name, _ = line.split("\t")
            times[name] = (int(end) - int(start)) / 1000
    return [(seconds, name) for name, seconds in times.items()]


def tests():
    rows = []
    for path in (BUILD / "plan/results").rglob("*.json"):
        step = path.relative_to(BUILD / "plan/results").parts[0]
        for suite in json.loads(path.read_text())["testsuites"]:
            for test in suite["testsuite"]:
                rows.append((float(test["time"].rstrip("s")), f"{step}: {suite['name']}.{test['name']}"))
    return rows


number = int(sys.argv[1]) if len(sys.argv) > 1 else 10
show("Steps", steps(), number)
for log in sorted(BUILD.glob("*/.ninja_log")):
    show(f"Files of the build {log.parent.name}", built(log), number)
show("Tests", tests(), number)
