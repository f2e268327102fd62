#!/usr/bin/env python3
"""snippets_test.py SOURCE_DIR PAGE...: what the pages show of CMake are lines of the projects that the tests build."""
import pathlib
import re
import sys

source, pages = pathlib.Path(sys.argv[1]), sys.argv[2:]
projects = [file.read_text() for file in (source / "tests/install/consumers").glob("*/CMakeLists.txt")]
unknown = 0
for page in pages:
    blocks = re.findall(r"^```cmake\n(.*?)^```$", (source / page).read_text(), re.M | re.S)
    if not blocks:
        sys.exit(f"{page} shows nothing of CMake")
    for block in blocks:
        if not any(block in project for project in projects):
            print(f"{page} shows what no project has:\n{block}")
            unknown += 1
sys.exit(unknown > 0)
