#!/usr/bin/python3
"""Makes HTML of all pages of docs, and PDF of the guides and the cards. Called by scripts/guide.sh.

    build.py ROOT OUTPUT VERSION

Each HTML file stands alone: pictures and style are in it. A link to a page that is not made becomes text.
Ends with 1, after the reason, when a card does not fit on one page or a link leads nowhere.
"""

import base64
import html
import re
import subprocess
import sys
from pathlib import Path
from urllib.parse import unquote

sys.dont_write_bytecode = True
from weasyprint import CSS, HTML  # noqa: E402

import pages  # noqa: E402

HERE = Path(__file__).resolve().parent
GUIDES = ("user-guide", "user-guide.en")
CARDS = ("quick-card", "quick-card.en")
# Pages outside of docs, and their names here.
OTHER_PAGES = {"simulator/README.md": "virtual-scale"}
# Rows, and characters of HTML, of a table that is not broken over pages.
SHORT_TABLE = 9
SHORT_TEXT = 1500
BULGARIAN = ("user-guide", "quick-card")


class Book:
    def __init__(self, root, output, version):
        self.root, self.output, self.version = root, output, version
        self.pages = {file.resolve(): file.stem for file in sorted((root / "docs").glob("*.md"))}
        for file, name in OTHER_PAGES.items():
            self.pages[(root / file).resolve()] = name
        self.anchors = {}
        self.targets = []

    def link(self, file, name, match):
        """A link of the page as it stands in HTML."""
        whole, href, text = match[0], html.unescape(match[1]), match[2]
        if re.match(r"[a-z]+:", href):
            return whole
        path, _, anchor = unquote(href).partition("#")
        to = self.pages.get((file.parent / path).resolve()) if path else name
        if to is None:
            return text
        self.targets.append((name, to, anchor))
        target = f"{to}.html" if path else ""
        # A page's name that stands as the text of its link.
        if text == Path(path).name:
            text = target
        return f'<a href="{html.escape(target + (f"#{anchor}" if anchor else ""))}">{text}</a>'

    def picture(self, file, match):
        path = (file.parent / unquote(match[1])).resolve()
        data = base64.b64encode(path.read_bytes()).decode()
        return f'src="data:image/png;base64,{data}"'

    @staticmethod
    def table(match):
        is_short = match[1].count("<tr>") <= SHORT_TABLE and len(match[1]) <= SHORT_TEXT
        classes = ["short"] if is_short else []
        if re.search("<th>(Текст|Text)</th>", match[1]):
            classes.append("messages")
        return f'<table class="{" ".join(classes)}">{match[1]}</table>'

    def heading(self, given, match):
        text = html.unescape(re.sub(r"<[^>]*>", "", match[2]))
        return f'<h{match[1]} id="{html.escape(given.add(text))}">{match[2]}</h{match[1]}>'

    def body(self, file, name):
        made = subprocess.run(
            ["cmark-gfm", "--unsafe", "-e", "table", "-e", "strikethrough", "--to", "html", str(file)],
            check=True, capture_output=True, encoding="utf-8",
        ).stdout
        given = pages.Anchors()
        made = re.sub(r"<h([1-6])>(.*?)</h\1>", lambda m: self.heading(given, m), made, flags=re.DOTALL)
        self.anchors[name] = set(re.findall(r'<h[1-6] id="([^"]*)"', made))
        made = re.sub(r"<table>(.*?)</table>", self.table, made, flags=re.DOTALL)
        # What announces something stays with it.
        made = re.sub(r"<p>((?:(?!</p>).)*:)</p>", r'<p class="lead">\1</p>', made, flags=re.DOTALL)
        made = re.sub(r'src="([^":]+)"', lambda m: self.picture(file, m), made)
        return re.sub(r'<a href="([^"]*)">(.*?)</a>', lambda m: self.link(file, name, m), made, flags=re.DOTALL)

    def page(self, file, name):
        body = self.body(file, name)
        title = html.unescape(re.sub(r"<[^>]*>", "", re.search(r"<h1[^>]*>(.*?)</h1>", body)[1]))
        return (
            f'<!DOCTYPE html>\n<html lang="{"bg" if name in BULGARIAN else "en"}">\n<head>\n'
            '<meta charset="utf-8">\n<meta name="viewport" content="width=device-width">\n'
            f"<title>{html.escape(title)} (Tolvane {self.version})</title>\n"
            f"<style>\n{(HERE / 'style.css').read_text()}</style>\n</head>\n<body>\n{body}</body>\n</html>\n"
        )

    def write_pdf(self, name, page):
        # On paper only the links within the page lead anywhere.
        page = re.sub(r'<a href="(?!#|https?:)[^"]*">(.*?)</a>', r"\1", page, flags=re.DOTALL)
        styles = [CSS(HERE / "print.css")]
        if name in CARDS:
            styles = [CSS(HERE / "card.css")]
        document = HTML(string=page).render(stylesheets=styles)
        if name in CARDS and len(document.pages) != 1:
            sys.exit(f"{name} takes {len(document.pages)} pages; a card has one")
        document.write_pdf(self.output / f"{name}.pdf")
        print(f"{name}.pdf: pages: {len(document.pages)}")

    def make(self):
        for file, name in self.pages.items():
            page = self.page(file, name)
            (self.output / f"{name}.html").write_text(page)
            if name in GUIDES + CARDS:
                self.write_pdf(name, page)
        dead = [t for t in self.targets if t[2] and t[2] not in self.anchors[t[1]]]
        for name, to, anchor in dead:
            print(f"{name}.html: there is no heading {to}.html#{anchor}")
        print(f"{len(self.pages)} pages, {len(self.targets)} links")
        return 1 if dead else 0


if __name__ == "__main__":
    sys.exit(Book(Path(sys.argv[1]).resolve(), Path(sys.argv[2]), sys.argv[3]).make())
