#!/usr/bin/env python3
"""Compares the `Pinned:` comments of the library with docs/surprises.md and the tests.

Complains of each of:
  - a `Pinned:` comment that does not say which test holds it;
  - such a test that the page does not list, or that there is not;
  - a test that the page lists and no comment names.
Exits with 1 then.
"""

from __future__ import annotations

import argparse
import re
import sys
from pathlib import Path

TEST = r"\w+\.\w+"


def comments(source: Path) -> list[str]:
    """The text behind each `Pinned:`, with the lines of comment that follow, as one line."""
    text = re.sub(r"\n[ \t]*///?[ \t]*", " ", source.read_text())
    return re.findall(r"Pinned:([^\n]*)", text)


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--library", type=Path, required=True, help="the folder of the sources")
    parser.add_argument("--page", type=Path, required=True, help="docs/surprises.md")
    parser.add_argument("--tests", type=Path, required=True, help="the folder of the tests")
    arguments = parser.parse_args()

    complaints = []
    held = set()
    count = 0
    for source in sorted(arguments.library.rglob("*.cpp")) + sorted(arguments.library.rglob("*.h")):
        for comment in comments(source):
            count += 1
            match = re.search(rf"held by ({TEST})", comment)
            if match:
                held.add(match[1])
            else:
                complaints.append(f"{source}: Pinned:{comment[:60]}... names no test")

    listed = set(re.findall(rf"^\| .* \| `({TEST})` \|$", arguments.page.read_text(), re.MULTILINE))
    sources = "\n".join(file.read_text() for file in arguments.tests.rglob("*.cpp"))
    there = {f"{suite}.{name}" for suite, name in re.findall(r"TEST(?:_[FP])?\(\s*(\w+),\s*(\w+)\s*\)", sources)}
    complaints += [f"{arguments.page} does not list {test}" for test in sorted(held - listed)]
    complaints += [f"{arguments.page} lists {test}, which no comment names" for test in sorted(listed - held)]
    complaints += [f"there is no test {test}" for test in sorted(held - there)]
    if count == 0:
        complaints.append(f"no `Pinned:` in {arguments.library}")

    print(f"{count} comments, {len(listed)} tests listed")
    for complaint in complaints:
        print(complaint)
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
