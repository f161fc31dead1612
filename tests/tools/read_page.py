"""Prints what a report's page shows: headings, then one line for each row.

    read_page.py FILE

Cells are separated by " | ", a picture is "<svg: ...>" with its texts in alphabetical
order, and everything outside the table has a line of its own. Exits with 1 and says why if the page is not well
formed, has an id twice, or wants another file.
"""

import re
import sys
from html.parser import HTMLParser
from pathlib import Path

VOID = {"meta", "wbr"}
LINKS = {"src", "href", "xlink:href", "data", "poster", "srcset", "action"}


class Page(HTMLParser):
    def __init__(self):
        super().__init__()
        self.open, self.ids, self.faults = [], set(), []
        self.lines, self.cells, self.texts = [], None, []

    def handle_starttag(self, tag, attributes):
        self.check(tag, dict(attributes))
        if tag == "tr":
            self.cells = []
        elif tag in ("th", "td"):
            self.texts = []
        elif tag == "svg":
            self.picture = len(self.texts)
        if tag not in VOID:
            self.open.append(tag)

    def handle_startendtag(self, tag, attributes):
        self.check(tag, dict(attributes))

    def handle_endtag(self, tag):
        if not self.open or self.open.pop() != tag:
            self.faults.append(f"</{tag}> closes nothing")
        if tag in ("th", "td"):
            self.cells.append(" ".join(self.texts))
        elif tag == "svg":
            shown = ", ".join(sorted(self.texts[self.picture:]))
            self.texts[self.picture:] = [f"<svg: {shown}>"]
        elif tag == "tr":
            self.lines.append(" | ".join(self.cells))

    def handle_data(self, data):
        text = " ".join(data.split())
        if "style" in self.open and re.search(r"url\(|@import", text):
            self.faults.append("the style wants another file")
        # The titles in a picture say once more what it shows.
        if text and not {"style", "script", "title"} & set(self.open):
            if "td" in self.open or "th" in self.open:
                # A word may be broken where the browser likes.
                self.texts[-1:] = [*self.texts[-1:], text] if not (
                    self.texts and self.texts[-1].endswith("/")
                ) else [self.texts[-1] + text]
            else:
                self.lines.append(text)

    def check(self, tag, attributes):
        if tag in ("link", "iframe", "img", "object", "embed", "base"):
            self.faults.append(f"<{tag}> wants another file")
        self.faults += [f"{name}={value} wants another file"
                        for name, value in attributes.items() if name in LINKS]
        if name := attributes.get("id"):
            if name in self.ids:
                self.faults.append(f"the id {name} stands twice")
            self.ids.add(name)


page = Page()
page.feed(Path(sys.argv[1]).read_text())
page.close()
page.faults += [f"<{tag}> is not closed" for tag in page.open]
print("\n".join(page.lines))
sys.exit("\n".join(f"read_page.py: {fault}" for fault in page.faults) or 0)
