"""The classes and enumerations that the debug information of an object file describes, as readelf prints it."""

from __future__ import annotations

import re
import subprocess
from collections.abc import Iterator
from dataclasses import dataclass, field
from pathlib import Path

CLASSES = {"class_type", "structure_type", "union_type"}
SCOPES = CLASSES | {"namespace", "enumeration_type"}
AFFIXES = {"pointer_type": "*", "reference_type": "&", "rvalue_reference_type": "&&", "const_type": " const",
           "volatile_type": " volatile"}

ENTRY = re.compile(r" <(\d+)><([0-9a-f]+)>: Abbrev Number: \d+ \(DW_TAG_(\w+)\)")
ATTRIBUTE = re.compile(r" +<[0-9a-f]+> +DW_AT_(\w+) *: \((\w+)\) (?:\(offset: \w+\): )?(.*)")
TABLE_ROW = re.compile(r"  (\d+)\t(?:\(udata\)\t(\d+)\t)?\(\w+\)\t\(offset: \w+\): (.*)")


@dataclass
class Entry:
    tag: str
    parent: Entry | None
    values: dict[str, str] = field(default_factory=dict)
    children: list[Entry] = field(default_factory=list)

    def number(self, attribute: str) -> int:
        """Of "24", "1\\t(virtual)", and "2 byte block: 10 f \\t(DW_OP_constu: 15)"."""
        value = self.values[attribute]
        operand = re.search(r"DW_OP_\w+: (\d+)\)", value)
        return int(operand[1] if operand else value.split("\t")[0])

    def full_name(self) -> str:
        name = self.values.get("name", "(unnamed)")
        within = self.parent
        return f"{within.full_name()}::{name}" if within is not None and within.tag in SCOPES else name

    def ancestors(self) -> Iterator[Entry]:
        if self.parent is not None:
            yield self.parent
            yield from self.parent.ancestors()

    def is_private(self) -> bool:
        default = "3" if self.parent is not None and self.parent.tag == "class_type" else "1"
        return self.values.get("accessibility", default).startswith("3")


class DebugInfo:
    def __init__(self, object_file: Path) -> None:
        self.by_offset: dict[str, Entry] = {}
        self._files = self._read_files(_readelf("rawline", object_file))
        self._read_entries(_readelf("info", object_file))

    def types_of(self, folder: Path) -> Iterator[Entry]:
        """The classes and enumerations whose definition is in a file below the folder, without those that are local to
        a function, unnamed, or made from a template."""
        for entry in self.by_offset.values():
            if (entry.tag in CLASSES | {"enumeration_type"} and "declaration" not in entry.values
                    and "name" in entry.values and "<" not in entry.full_name()
                    and self._files[int(entry.values.get("decl_file", 0))].is_relative_to(folder)
                    and all(scope.tag in SCOPES | {"compile_unit"} for scope in entry.ancestors())):
                yield entry

    def target(self, entry: Entry) -> Entry | None:
        """What its type is."""
        reference = entry.values.get("type")
        return None if reference is None else self.by_offset[reference.split(">")[0].removeprefix("<0x")]

    def type_of(self, entry: Entry) -> str:
        """As written in C++; void where there is none."""
        target = self.target(entry)
        if target is None:
            return "void"
        if target.tag in AFFIXES:
            return self.type_of(target) + AFFIXES[target.tag]
        if target.tag == "array_type":
            bounds = [child for child in target.children if child.tag == "subrange_type"]
            return self.type_of(target) + "".join(f"[{b.number('upper_bound') + 1}]" for b in bounds)
        if target.tag == "subroutine_type":
            return f"{self.type_of(target)} function"
        return target.full_name()

    @staticmethod
    def _read_files(text: str) -> list[Path]:
        folders, files = [], []
        for row in filter(None, map(TABLE_ROW.match, text.splitlines())):
            if row[2] is None:
                folders.append(Path(row[3]))
            else:
                files.append(folders[int(row[2])] / row[3])
        return files

    def _read_entries(self, text: str) -> None:
        open_entries: list[Entry] = []
        for line in text.splitlines():
            if begun := ENTRY.match(line):
                del open_entries[int(begun[1]):]
                parent = open_entries[-1] if open_entries else None
                entry = Entry(begun[3], parent)
                open_entries.append(entry)
                self.by_offset[begun[2]] = entry
                if parent is not None:
                    parent.children.append(entry)
            elif open_entries and (attribute := ATTRIBUTE.match(line)):
                open_entries[-1].values[attribute[1]] = attribute[3].strip()


def _readelf(what: str, object_file: Path) -> str:
    return subprocess.run(["readelf", "-W", f"--debug-dump={what}", str(object_file)], check=True,
                          stdout=subprocess.PIPE, text=True).stdout
