#!/usr/bin/env python3
"""Compares what programs that were linked earlier rely on with the record of it, or records it.

Exits with 1 when they differ, and shows how.
"""

from __future__ import annotations

import argparse
import difflib
import sys
from dataclasses import asdict
from pathlib import Path

sys.dont_write_bytecode = True

from interface import Interface, read_interface  # noqa: E402

MEANING = {
    "-": "A line that is gone (-) or has changed breaks programs that were linked before. Nothing binds before the\n"
         "first release; after it such a change needs a new SONAME major, from VERSION in CMakeLists.txt.",
    "+": "A line that is only new (+) breaks none; CHANGELOG.md names it.",
}


def read_record(folder: Path) -> dict[str, list[str]]:
    return {file.stem: file.read_text(encoding="utf-8").splitlines() for file in sorted(folder.glob("*.txt"))}


def write_record(folder: Path, interface: Interface) -> None:
    for name, lines in asdict(interface).items():
        (folder / f"{name}.txt").write_text("\n".join(lines) + "\n", encoding="utf-8")


def differences(before: dict[str, list[str]], now: dict[str, list[str]], names: tuple[str, str]) -> list[str]:
    return [line for part in now for line in difflib.unified_diff(
        before.get(part, []), now[part], f"{names[0]}/{part}.txt", names[1], n=0, lineterm="")]


def compare(recorded: Path, interface: Interface) -> int:
    found = differences(read_record(recorded), asdict(interface), (str(recorded), "as it is now"))
    if not found:
        return 0
    kinds = {line[0] for line in found if not line.startswith(("---", "+++"))}
    print(*found, "", *(meaning for kind, meaning in MEANING.items() if kind in kinds),
          "./run abi --accept writes the record anew.", sep="\n")
    return 1


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--compiler", default="g++")
    parser.add_argument("--standard", nargs="+", default=["c++17"], help="all have to give the same")
    parser.add_argument("--include", type=Path, nargs="+", default=[Path(".")],
                        help="include folders, the last with the headers")
    parser.add_argument("--library", type=Path, required=True, help="the shared library")
    parser.add_argument("--work", type=Path, required=True, help="a folder for what is compiled")
    parser.add_argument("--recorded", type=Path, default=Path("tests/abi/recorded"))
    parser.add_argument("--accept", action="store_true", help="write the record")
    options = parser.parse_args()

    standard, *others = options.standard
    interface, *same = (read_interface(options.compiler, each, options.include, options.library, options.work)
                        for each in options.standard)
    for each, other in zip(others, same):
        if found := differences(asdict(interface), asdict(other), (standard, each)):
            print(*found, "", f"The headers mean something else as {each} than as {standard}.", sep="\n")
            return 1
    if options.accept:
        write_record(options.recorded, interface)
        return 0
    return compare(options.recorded, interface)


if __name__ == "__main__":
    sys.exit(main())
