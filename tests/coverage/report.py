#!/usr/bin/env python3
"""Prints line and branch coverage per folder from gcovr's JSON and the branches not taken.

report.py ROOT COVERAGE.JSON REASONS.TXT

A line of the reasons file is "file | line of code | kind | why"; kind is "system" for the failure
of a system call, "other" for anything else. The line of code is compared without the blanks around
it, so an entry outlives changes elsewhere in its file.
"""

import json
import os
import sys

LEAST_PERCENT = 95.0
KINDS = ("system", "other")


class Folder:
    def __init__(self):
        self.lines = self.covered_lines = 0
        self.branches = self.taken = self.system = 0


def read_reasons(path):
    reasons = {}
    with open(path, encoding="utf-8") as file:
        for number, line in enumerate(file, 1):
            line = line.strip()
            if not line or line.startswith("#"):
                continue
            name, _, rest = line.partition(" | ")
            fields = [name, *rest.rsplit(" | ", 2)]  # the code may hold the separator
            if len(fields) != 4 or fields[2] not in KINDS:
                sys.exit(f"{path}:{number}: not \"file | line of code | kind | why\"")
            reasons[(fields[0], fields[1])] = (number, fields[2], fields[3])
    return reasons


def source_lines(root, name):
    with open(os.path.join(root, name), encoding="utf-8") as file:
        return [line.strip() for line in file]


def percent(part, whole):
    return 100.0 * part / whole if whole else 100.0


def measure(root, files, reasons):
    """Folders by name, the places not taken, and the reasons that were used."""
    folders, missed, used = {}, [], set()
    for file in sorted(files, key=lambda entry: entry["file"]):
        name = file["file"]
        source = source_lines(root, name)
        folder = folders.setdefault(os.path.dirname(name), Folder())
        for line in file["lines"]:
            if line.get("gcovr/noncode"):
                continue
            folder.lines += 1
            folder.covered_lines += line["count"] > 0
            branches = line["branches"]
            taken = sum(branch["count"] > 0 for branch in branches)
            folder.branches += len(branches)
            folder.taken += taken
            if taken == len(branches):
                continue
            key = (name, source[line["line_number"] - 1])
            reason = reasons.get(key)
            if reason:
                used.add(key)
                if reason[1] == "system":
                    folder.system += len(branches) - taken
            missed.append((name, line["line_number"], len(branches) - taken, key[1], reason))
    return folders, missed, used


def print_folders(folders):
    print(f"{'':12} {'lines':>18} {'branches':>18} {'less system calls':>20}")
    enough = True
    for name, folder in sorted(folders.items()):
        rest = folder.branches - folder.system
        share = percent(folder.taken, rest)
        enough = enough and share >= LEAST_PERCENT
        print(
            f"{name:12}"
            f" {folder.covered_lines:5}/{folder.lines:<5} {percent(folder.covered_lines, folder.lines):5.1f}%"
            f" {folder.taken:5}/{folder.branches:<5} {percent(folder.taken, folder.branches):5.1f}%"
            f" {folder.taken:7}/{rest:<5} {share:5.1f}%"
        )
    return enough


def print_missed(missed):
    for name, number, count, text, reason in missed:
        words = f"{reason[1]}: {reason[2]}" if reason else "NO REASON"
        print(f"{name}:{number}: {count} not taken: {text}\n    {words}")
    return all(reason for *_, reason in missed)


def main(root, coverage, reasons_path):
    with open(coverage, encoding="utf-8") as file:
        files = json.load(file)["files"]
    if not files:
        sys.exit("nothing was measured")
    reasons = read_reasons(reasons_path)
    folders, missed, used = measure(root, files, reasons)
    explained = print_missed(missed)
    print()
    enough = print_folders(folders)
    stale = [(entry[0], key) for key, entry in reasons.items() if key not in used]
    for number, (name, text) in sorted(stale):
        print(f"{os.path.basename(reasons_path)}:{number}: explains nothing any more: {name}: {text}")
    if not explained:
        print("Some branches are taken by no test and have no reason.")
    if not enough:
        print(f"Below {LEAST_PERCENT:g} % of the branches that are no system-call failures.")
    sys.exit(0 if explained and enough else 1)


if __name__ == "__main__":
    main(*sys.argv[1:])
