#!/usr/bin/env python3
"""Prints line and branch coverage per folder from gcovr's JSON, and the branches that no test takes.

report.py ROOT COVERAGE.JSON
"""

import json
import os
import sys

LEAST_PERCENT = 95.0


class Folder:
    def __init__(self):
        self.lines = self.covered_lines = 0
        self.branches = self.taken = 0


def source_lines(root, name):
    with open(os.path.join(root, name), encoding="utf-8") as file:
        return [line.strip() for line in file]


def percent(part, whole):
    return 100.0 * part / whole if whole else 100.0


def measure(root, files):
    """Folders by name, and the places not taken."""
    folders, missed = {}, []
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
            if taken < len(branches):
                text = source[line["line_number"] - 1]
                missed.append(f"{name}:{line['line_number']}: {len(branches) - taken} not taken: {text}")
    return folders, missed


def print_folders(folders):
    print(f"{'':14} {'lines':>18} {'branches':>18}")
    for name, folder in sorted(folders.items()):
        print(
            f"{name:14}"
            f" {folder.covered_lines:5}/{folder.lines:<5} {percent(folder.covered_lines, folder.lines):5.1f}%"
            f" {folder.taken:5}/{folder.branches:<5} {percent(folder.taken, folder.branches):5.1f}%"
        )


def main(root, coverage):
    with open(coverage, encoding="utf-8") as file:
        files = json.load(file)["files"]
    if not files:
        sys.exit("nothing was measured")
    folders, missed = measure(root, files)
    print("\n".join(missed) + "\n")
    print_folders(folders)
    poor = [name for name, folder in folders.items() if percent(folder.taken, folder.branches) < LEAST_PERCENT]
    if poor:
        sys.exit(f"Below {LEAST_PERCENT:g} % of the branches: {', '.join(sorted(poor))}")


if __name__ == "__main__":
    main(*sys.argv[1:])
