#!/usr/bin/env python3
"""check_site.py FOLDER: fails when a link or anchor of the built site leads nowhere, a picture or a script is missing,
an anchor is there twice, or a page loads something from elsewhere. Lists the links that leave the site."""

import re
import sys
from html.parser import HTMLParser
from pathlib import Path
from urllib.parse import unquote, urlsplit

LOADED = {"img": "src", "script": "src", "link": "href", "iframe": "src", "source": "src", "object": "data"}


class Page(HTMLParser):
    def __init__(self, text):
        super().__init__()
        self.anchors, self.links, self.loaded, self.repeated = set(), [], [], []
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        values = dict(attributes)
        anchor = values.get("id")
        if anchor in self.anchors:
            self.repeated.append(anchor)
        if anchor:
            self.anchors.add(anchor)
        if tag == "a" and values.get("href"):
            self.links.append(values["href"])
        elif tag in LOADED and values.get(LOADED[tag]):
            self.loaded.append(values[LOADED[tag]])


def is_remote(link):
    return link.startswith("//") or urlsplit(link).scheme not in ("", "data")


def check_page(path, page, pages, folder):
    for link in page.loaded + page.links:
        if is_remote(link) or link.startswith("data:"):
            continue
        target, anchor = unquote(urlsplit(link).path), unquote(urlsplit(link).fragment)
        file = (path.parent / target).resolve() if target else path
        if not file.is_relative_to(folder) or not file.is_file():
            yield f"leads nowhere: {link}"
        elif anchor and file in pages and anchor not in pages[file].anchors:
            yield f"no such anchor: {link}"
    yield from (f"comes from elsewhere: {link}" for link in page.loaded if is_remote(link))
    yield from (f"anchor twice: {anchor}" for anchor in page.repeated)


# Styles may load as well.
def check_style(path):
    for link in re.findall(r"""url\(\s*["']?([^"')]+)|@import\s+["']([^"']+)""", path.read_text(errors="replace")):
        link = link[0] or link[1]
        if is_remote(link):
            yield f"comes from elsewhere: {link}"
        elif not link.startswith("data:") and not (path.parent / urlsplit(link).path).is_file():
            yield f"leads nowhere: {link}"


def main(folder):
    folder = Path(folder).resolve()
    pages = {path: Page(path.read_text()) for path in sorted(folder.rglob("*.html"))}
    faults = [(path, fault) for path, page in pages.items() for fault in check_page(path, page, pages, folder)]
    faults += [(path, fault) for path in sorted(folder.rglob("*.css")) for fault in check_style(path)]
    remote = sorted({link for page in pages.values() for link in page.links if is_remote(link)})
    checked = sum(len(page.links) + len(page.loaded) for page in pages.values())
    print(f"{checked} links in {len(pages)} pages; {len(remote)} addresses elsewhere, which were not tried:")
    print("".join(f"  {link}\n" for link in remote), end="")
    for path, fault in faults:
        print(f"{path.relative_to(folder)}: {fault}", file=sys.stderr)
    sys.exit(1 if faults or not pages else 0)


main(sys.argv[1])
