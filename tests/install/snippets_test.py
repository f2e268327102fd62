#!/usr/bin/env python3
"""snippets_test.py SOURCE_DIR: what is shown and is no program by itself is taken from what the tests build: the CMake
of pages from the consumers' projects, and the examples in the comments of headers from one test program."""
import pathlib
import re
import sys

source = pathlib.Path(sys.argv[1])
PROJECTS = "tests/install/consumers/*/CMakeLists.txt"
EXAMPLES = "tests/live/header_examples_test.cpp"


def unindented(text):
    return "".join(line.strip() + "\n" for line in text.splitlines())


def missing(shown, pattern, blocks):
    """The blocks of a file that no file of the pattern has."""
    having = [unindented(file.read_text()) for file in source.glob(pattern)]
    unknown = [block for block in blocks if not any(unindented(block) in each for each in having)]
    for block in unknown:
        print(f"{shown} shows what is not in {pattern}:\n{block}")
    return len(unknown)


faults = 0
for page in ("README.md", "docs/install.md"):
    blocks = re.findall(r"^```cmake\n(.*?)^```$", (source / page).read_text(), re.M | re.S)
    faults += missing(page, PROJECTS, blocks) if blocks else sys.exit(f"{page} shows nothing of CMake")

count = 0
for header in sorted((source / "corvane").rglob("*.h")):
    blocks = [block.replace("///", "") for block in re.findall(r"(?:^ *///    .*\n)+", header.read_text(), re.M)]
    count += len(blocks)
    faults += missing(header.relative_to(source), EXAMPLES, blocks)
print(f"{count} examples in headers")
sys.exit(faults > 0 or count == 0)
