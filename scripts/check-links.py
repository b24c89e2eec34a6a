#!/usr/bin/env python3
"""Checks the links of all Markdown pages: that each file and each heading is there, and that each picture of
docs/images is shown somewhere. Addresses of the internet are not visited.

    scripts/check-links.py [ROOT]

Prints each fault as file:line: text, and ends with 1 when there is any.
"""

import re
import sys
from pathlib import Path
from urllib.parse import unquote

sys.path.insert(0, str(Path(__file__).resolve().parent / "guide"))
sys.dont_write_bytecode = True
import pages  # noqa: E402

SKIPPED = {"build", ".git", ".cache"}


def markdown_files(root):
    for file in sorted(root.rglob("*.md")):
        if not SKIPPED & set(file.relative_to(root).parts[:-1]):
            yield file


class Checker:
    def __init__(self, root):
        self.root = root
        self.anchors = {}
        self.shown = set()
        self.count = 0
        self.faults = 0

    def fault(self, file, line, text):
        print(f"{file.relative_to(self.root)}:{line}: {text}")
        self.faults += 1

    def anchors_of(self, file):
        if file not in self.anchors:
            self.anchors[file] = pages.anchors(file.read_text())
        return self.anchors[file]

    def check_link(self, file, line, is_picture, target):
        if re.match(r"[a-z][a-z0-9+.-]*:", target):
            return
        self.count += 1
        path, _, anchor = unquote(target).partition("#")
        leads_to = (file.parent / path).resolve() if path else file
        if is_picture:
            self.shown.add(leads_to)
        if self.root not in (leads_to, *leads_to.parents):
            self.fault(file, line, f"{target} leads out of the sources")
        elif not leads_to.exists():
            self.fault(file, line, f"there is no {target}")
        elif anchor and leads_to.suffix != ".md":
            self.fault(file, line, f"{target}: only a page has headings")
        elif anchor and anchor not in self.anchors_of(leads_to):
            self.fault(file, line, f"there is no heading for {target}")

    def check(self):
        for file in markdown_files(self.root):
            for link in pages.links(file.read_text()):
                self.check_link(file, *link)
        for picture in sorted((self.root / "docs/images").glob("*")):
            if picture.resolve() not in self.shown:
                self.fault(picture, 1, "no page shows it")
        print(f"{self.count} links, {self.faults} faults")
        return 1 if self.faults or self.count == 0 else 0


root = Path(sys.argv[1] if len(sys.argv) > 1 else Path(__file__).resolve().parent.parent).resolve()
sys.exit(Checker(root).check())
