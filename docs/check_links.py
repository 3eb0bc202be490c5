#!/usr/bin/env python3
"""Checks the built HTML: every link leads to a file and an anchor that are there, and nothing is
fetched from a network.

usage: docs/check_links.py HTML_FOLDER

Links to other sites are allowed in the text only; they are not followed.
"""

import sys
from html.parser import HTMLParser
from pathlib import Path
from urllib.parse import unquote, urlsplit

LINKS = {"a": "href", "area": "href"}
FETCHED = {"img": "src", "script": "src", "link": "href", "object": "data", "source": "src",
           "iframe": "src", "image": "href", "use": "href"}


class Page(HTMLParser):
    def __init__(self, file):
        super().__init__()
        self.anchors = set()
        self.twice = []
        self.links = []    # line, target
        self.fetched = []
        self.feed(file.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attributes):
        values = dict(attributes)
        if values.get("id") in self.anchors:
            self.twice.append((self.getpos()[0], values["id"]))
        self.anchors |= {values[key] for key in ("id", "name") if values.get(key)}
        if values.get(LINKS.get(tag)):
            self.links.append((self.getpos()[0], values[LINKS[tag]]))
        if values.get(FETCHED.get(tag)):
            self.fetched.append((self.getpos()[0], values[FETCHED[tag]]))


def problem(folder, pages, page, target, fetched):
    parts = urlsplit(target)
    if parts.scheme == "data" or (parts.scheme in ("http", "https", "mailto") and not fetched):
        return None
    if parts.scheme or parts.netloc:
        return "from a network"
    file = folder / unquote(parts.path) if parts.path else page
    if not file.is_file():
        return "no such file"
    if parts.fragment and file in pages and unquote(parts.fragment) not in pages[file].anchors:
        return "no such anchor"
    return None


def main():
    folder = Path(sys.argv[1]).resolve()
    pages = {file: Page(file) for file in sorted(folder.glob("**/*.html"))}
    problems = count = 0
    for file, page in pages.items():
        for links, fetched in ((page.links, False), (page.fetched, True)):
            for line, target in links:
                count += 1
                why = problem(folder, pages, file, target, fetched)
                if why:
                    problems += 1
                    print(f"{file.name}:{line}: {target}: {why}")
        for line, anchor in page.twice:
            problems += 1
            print(f"{file.name}:{line}: the anchor {anchor} is there twice")
    for file in folder.glob("**/*.css"):
        text = file.read_text(encoding="utf-8")
        if "@import" in text or "://" in text:
            problems += 1
            print(f"{file.name}: fetches something")
    print(f"links: {len(pages)} pages, {count} links, {problems} problems")
    return 1 if problems or not pages else 0


if __name__ == "__main__":
    sys.exit(main())
