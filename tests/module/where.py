#!/usr/bin/env python3
"""Puts functions' names in the place of the module's addresses in the output of the storm's test.

    tests/module/where.py build/windows/Tolvane.map <output
"""

import bisect
import re
import subprocess
import sys

BASE = 0x70100000  # where the linker puts the module, see cmake/Hardening.cmake


def sections(path):
    """Each function's first address, length and name; a name and its numbers may stand in two lines."""
    found, name = [], None
    for line in open(path, encoding="utf-8", errors="replace"):
        start = re.match(r" \.text(?:\$(\S+))?(.*)", line)
        name, rest = (start.group(1) or "", start.group(2)) if start else (name, line)
        numbers = re.match(r"\s+0x([0-9a-f]+)\s+0x([0-9a-f]+)\s+(\S+)", rest)
        if numbers and name is not None:
            if int(numbers.group(2), 16) > 0:
                found.append((int(numbers.group(1), 16), int(numbers.group(2), 16),
                              name or numbers.group(3).rsplit("/", 1)[-1]))
            name = None
        elif not start:
            name = None
    return sorted(found)


def main():
    found = sections(sys.argv[1])
    names = subprocess.run(["c++filt", "-p"], input="\n".join(name for _, _, name in found),
                           capture_output=True, text=True, check=True).stdout.split("\n")
    starts = [start for start, _, _ in found]

    def name_of(match):
        address = BASE + int(match.group(1), 16)
        at = bisect.bisect_right(starts, address) - 1
        inside = at >= 0 and address < starts[at] + found[at][1]
        return "<" + names[at] + ">" if inside else match.group(0)

    for line in sys.stdin:
        print(re.sub(r"\bTolvane\+([0-9a-f]+)", name_of, line.rstrip()))


main()
