#!/usr/bin/env python3
"""Compares slot_order_test.cpp, the reference for the order of virtual functions, with the record of the tables.

Complains of each class with virtual functions
  - that the test leaves out, or whose number of slots it does not have;
  - of whose own slots, those that are not a base's, the test leaves out one;
  - whose table does not leave the library, so that every program would have one of its own.
Exits with 1 then.
"""

from __future__ import annotations

import re
import sys
from pathlib import Path

SUITE = re.compile(r"^INSTANTIATE_TEST_SUITE_P\(.*?;$", re.MULTILINE | re.DOTALL)
COUNTED = re.compile(r"SlotCount<([\w:]+)>\(\),\s*(\d+)\}")
ROW = re.compile(r"(\d+)\}")
CLASS = re.compile(r"^([\w:]+): (\d+) slots(?:, (\d+) of them)?", re.MULTILINE)
DESTRUCTORS = {0, 1}


def reference(source: str) -> dict[str, tuple[int, set[int]]]:
    """Of each class the number of slots and those that have a row."""
    return {name: (int(count), set(map(int, ROW.findall(suite))) - {int(count)})
            for suite in SUITE.findall(source) for name, count in COUNTED.findall(suite)}


def problems(source: str, vtables: str, exports: str) -> list[str]:
    suites, exported, found = reference(source), set(exports.splitlines()), []
    recorded = {name: (int(count), int(inherited or 0)) for name, count, inherited in CLASS.findall(vtables)}
    for name, (count, inherited) in recorded.items():
        if f"vtable for {name}" not in exported:
            found.append(f"the table of {name} does not leave the library")
        if name not in suites:
            found.append(f"slot_order_test.cpp leaves out {name}")
            continue
        slots, rows = suites[name]
        if slots != count:
            found.append(f"slot_order_test.cpp has {slots} slots of {name}, the record {count}")
        found += [f"slot_order_test.cpp leaves out slot {slot} of {name}"
                  for slot in sorted(set(range(inherited, count)) - rows - DESTRUCTORS)]
    return found + [f"slot_order_test.cpp has {name}, the record has not" for name in suites.keys() - recorded.keys()]


def main() -> int:
    source, recorded = map(Path, sys.argv[1:])
    found = problems(*(file.read_text(encoding="utf-8")
                       for file in (source, recorded / "vtables.txt", recorded / "exports.txt")))
    for problem in found:
        print(problem)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
