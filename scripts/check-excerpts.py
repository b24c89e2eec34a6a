#!/usr/bin/env python3
"""Checks that each piece of code in docs/host-interface.md stands in an example host.

    scripts/check-excerpts.py [ROOT]

A block marked "c" is lines of examples/c/host.c, one marked "pascal" of examples/pascal/Host.pas, as they stand
there; an empty line in a block stands for any lines between. Prints each other block as file:line: text, and ends
with 1 when there is any, or none of a language.
"""

import re
import sys
from pathlib import Path

PAGE = "docs/host-interface.md"
SOURCES = {"c": "examples/c/host.c", "pascal": "examples/pascal/Host.pas"}


def blocks(text):
    """Language, number of the first line, and text of each block."""
    for block in re.finditer(r"^```(\w+)\n(.*?)^```$", text, re.MULTILINE | re.DOTALL):
        yield block[1], text[: block.start(2)].count("\n") + 1, block[2]


def stands_in(block, source):
    """Whether its parts are whole lines of the source, one part after another."""
    at = 0
    for part in re.split(r"\n{2,}", block.strip("\n")):
        found = ("\n" + source).find("\n" + part + "\n", at)
        if found < 0:
            return False
        at = found + len(part)
    return True


root = Path(sys.argv[1] if len(sys.argv) > 1 else Path(__file__).resolve().parent.parent)
sources = {language: (root / file).read_text() for language, file in SOURCES.items()}
counts = dict.fromkeys(SOURCES, 0)
faults = 0
for language, line, block in blocks((root / PAGE).read_text()):
    if language not in SOURCES:
        continue
    counts[language] += 1
    if not stands_in(block, sources[language]):
        print(f"{PAGE}:{line}: {SOURCES[language]} has no such lines")
        faults += 1
for language, count in counts.items():
    if count == 0:
        print(f"{PAGE}:1: there is no block marked {language}")
        faults += 1
print(f"{sum(counts.values())} excerpts, {faults} faults")
sys.exit(1 if faults else 0)
