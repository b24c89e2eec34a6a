"""Headings and links of Markdown pages, as GitHub understands them."""

import re

FENCE = re.compile(r"^(```|~~~)")
LINK = re.compile(r"(?<!\\)(!?)\[((?:[^\[\]]|\[[^\]]*\])*)\]\(\s*<?([^()\s>]+(?:\([^()]*\))?)>?(?:\s+\"[^\"]*\")?\s*\)")


def prose(text):
    """The lines that are no code, each with its number from 1; code spans are blanked out."""
    inside = False
    before_blank = True
    in_list = False
    for number, line in enumerate(text.split("\n"), 1):
        if FENCE.match(line.strip()):
            inside = not inside
        elif not inside:
            in_list = bool(re.match(r"\s*(\d+\.|[-*])\s", line)) or (in_list and not re.match(r"\S", line))
            indented = line.startswith("    ") and before_blank and not in_list
            if not indented:
                yield number, re.sub(r"`+[^`]*`+", lambda span: " " * len(span[0]), line)
        before_blank = not line.strip()


def slug(heading):
    """The anchor of a heading's text without markup."""
    kept = re.sub(r"[^\w\- ]", "", heading.strip().lower())
    return kept.replace(" ", "-")


def plain(heading):
    """The text of a heading in Markdown."""
    text = re.sub(r"!?\[([^\]]*)\]\([^)]*\)", r"\1", heading)
    return re.sub(r"[`*]", "", text)


class Anchors:
    """Gives each heading of a page its anchor; repeated ones get numbers."""

    def __init__(self):
        self.seen = {}

    def add(self, text):
        anchor = slug(text)
        count = self.seen.get(anchor, 0)
        self.seen[anchor] = count + 1
        return anchor if count == 0 else f"{anchor}-{count}"


def anchors(text):
    given = Anchors()
    found = set()
    inside = False
    for line in text.split("\n"):
        if FENCE.match(line):
            inside = not inside
        heading = re.match(r"#{1,6}\s+(.*?)\s*#*$", line)
        if heading and not inside:
            found.add(given.add(plain(heading[1])))
    return found


def links(text):
    """Triples of line, whether it is a picture, and target. A link may be broken over lines."""
    lines = list(prose(text))
    joined = "\n".join(line for _, line in lines)
    for link in LINK.finditer(joined):
        yield lines[joined.count("\n", 0, link.start())][0], link[1] == "!", link[3]
        # A picture may be a link's text.
        for inner in LINK.finditer(link[2]):
            yield lines[joined.count("\n", 0, link.start())][0], inner[1] == "!", inner[3]
