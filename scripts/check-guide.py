#!/usr/bin/env python3
"""Checks that each text of the module and of TradeHost that a user may see stands in the user's guide, in both
languages.

    scripts/check-guide.py [ROOT]

The texts are the string literals of src and host that hold a Cyrillic letter or several words. What varies in a
message stands between two literals; each is looked for by itself. The installer's messages stand in each guide in
its language. Prints what is missing as file:line: guide: text, and ends with 1 when anything is.
"""

import re
import sys
from pathlib import Path

GUIDES = ("docs/user-guide.md", "docs/user-guide.en.md")
# With the fewest texts that each is known to have.
FOLDERS = {"src": 100, "host": 50}
# Whose texts are no messages of the module.
OTHER_FILES = (
    "src/command/",  # the command has a page of its own
    "src/database/Attachment.cpp",  # only the command makes a connection
    "src/system/EmbeddedEngine",
    "src/system/Library_",
    "src/articles/ArticleQueries.cpp",  # SQL
    "src/articles/PrintTime.cpp",  # a format
    "src/settings/forms/uHint.cpp",  # the help window is a guide itself
    "src/text/Cp1251.h",  # an error of the compiler
)
# Texts in other files that are no messages of the module, or that nobody sees.
OTHER_TEXTS = {
    ", or name its file with --client-library.": "the command",
    "The Firebird client library cannot be loaded:": "the command",
    "is no Firebird client library: it lacks the function": "the command",
    "Няма зададен IP адрес на устройството за комуникация.": "no control leads to it",
    "Scale Settings": "each dialog gets another caption",
    "ETS - Ethernet WizNet": "a label of two lines; each has its place in the guide",
    "Код за везна": "a name in the query",
    "Прод.Вал.": "a name in the query",
    '"PLU_SCALE_NUMB": "': "between a column and its value",
    "int $0x29": "an instruction of the processor",
    "RS232 (": "a channel's name in logs of the code",
    "(EVL) -": "the beginning of a name",
    "(SI) -": "the beginning of a name",
    "Търси:": "before a column is chosen",
}

INSTALLER = "packaging/windows/Texts.nsh"
# The installer's texts that are answers to something; the others are captions.
INSTALLER_MESSAGES = ("TextNoFolder", "TextNoProgram", "TextHeld", "TextBusy", "TextCannotWrite")
INSTALLER_LANGUAGES = {"BULGARIAN": GUIDES[0], "ENGLISH": GUIDES[1]}

TOKENS = re.compile(
    r"""//[^\n]* | /\*.*?\*/ | \#include[^\n]* | '(?:[^'\\\n]|\\.)+' |
        R"\((?P<raw>.*?)\)" | "(?P<text>(?:[^"\\\n]|\\.)*)" """,
    re.DOTALL | re.VERBOSE,
)
ESCAPES = {"n": "\n", "r": "\r", "t": "\t"}


def one_line(text):
    return " ".join(text.split())


def caption(text):
    """Of a line of a menu: without the mark of its letter, and without its key behind a tab."""
    return text.partition("\t")[0].replace("&", "") if re.search(r"&\w", text) else text


def literals(source):
    """Pairs of line and text; literals that the compiler joins are one."""
    found = []
    end = None
    for token in TOKENS.finditer(source):
        text = token["raw"]
        if text is None and token["text"] is not None:
            text = re.sub(r"\\(.)", lambda escape: ESCAPES.get(escape[1], escape[1]), token["text"])
        if text is None:
            continue
        if end is not None and not source[end : token.start()].strip():
            found[-1][1] += text
        else:
            found.append([source.count("\n", 0, token.start()) + 1, text])
        end = token.end()
    return [(line, one_line(caption(text))) for line, text in found]


def is_message(text):
    return re.search("[А-Яа-я]", text) or re.search(r"[A-Za-z]\S* \S", text)


def installer_texts(root):
    """Triples of line, guide and a part of a message."""
    for line, text in enumerate((root / INSTALLER).read_text().splitlines(), 1):
        found = re.fullmatch(r'LangString (\w+) \${LANG_(\w+)} "(.*)"', text)
        if found and found[1] in INSTALLER_MESSAGES:
            for part in found[3].replace('$\\"', '"').split("$INSTDIR"):
                yield line, INSTALLER_LANGUAGES[found[2]], one_line(part)


def folder_texts(root, folder):
    """Triples of file, line and text."""
    for file in sorted((root / folder).rglob("*")):
        name = file.relative_to(root).as_posix()
        if file.suffix not in (".cpp", ".h") or name.startswith(OTHER_FILES):
            continue
        for line, text in literals(file.read_text()):
            if is_message(text) and text not in OTHER_TEXTS:
                yield name, line, text


def main(root):
    guides = {name: one_line((root / name).read_text().replace("`<br>`", " ")) for name in GUIDES}
    count = 0
    missing = 0
    for folder, fewest in FOLDERS.items():
        texts = list(folder_texts(root, folder))
        count += len(texts)
        if len(texts) < fewest:
            print(f"{folder}: only {len(texts)} texts were found")
            missing += 1
        for name, line, text in texts:
            # A label ends with a colon that its name in the guide does not need.
            for guide in (g for g, content in guides.items() if text.rstrip(" :") not in content):
                print(f"{name}:{line}: {guide}: {text}")
                missing += 1
    for line, guide, text in installer_texts(root):
        count += 1
        if text not in guides[guide]:
            print(f"{INSTALLER}:{line}: {guide}: {text}")
            missing += 1
    print(f"{count} texts, {missing} missing")
    return 1 if missing else 0


sys.exit(main(Path(sys.argv[1] if len(sys.argv) > 1 else Path(__file__).resolve().parent.parent)))
