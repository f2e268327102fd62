"""What programs that were linked earlier rely on, in lines that each stand for themselves: exports, layouts, vtables.

Layouts and tables are what g++ makes of the public headers, so they do not depend on how the library was built.
"""

from __future__ import annotations

import re
import subprocess
from collections.abc import Iterator
from dataclasses import dataclass
from itertools import groupby, takewhile
from pathlib import Path

from dwarf import CLASSES, DebugInfo, Entry

HEADER = "corvane/corvane.h"

SYMBOL = re.compile(r" *\d+: [0-9a-f]+ +(\S+) (FUNC|OBJECT) +(?:GLOBAL|WEAK|UNIQUE) +DEFAULT +(?!UND)\S+ (\S+)")
SONAME = re.compile(r"\(SONAME\) .*\[(.*)\]")
PRIMARY = re.compile(r"^(\S.*) \(0x\w+\) .*\n +primary-for (\S.*) \(", re.MULTILINE)
OWNER = re.compile(r"^(\S.*) \(0x\w+\) .*\n(?: .*\n)*? .*vptr=\(\(& .*\) \+ (\d+)\)", re.MULTILINE)
TABLE_NAME = re.compile(r"(?:\w+ )?(?:vtable|VTT|typeinfo|typeinfo name) for ")


@dataclass(frozen=True)
class Interface:
    exports: list[str]
    layouts: list[str]
    vtables: list[str]


def run(*command: str, text: str | None = None) -> str:
    return subprocess.run(command, check=True, input=text, stdout=subprocess.PIPE, text=True).stdout


def demangled(lines: list[str]) -> list[str]:
    """With the symbols in them as they are written in C++."""
    return run("c++filt", text="\n".join(lines)).splitlines()


def read_interface(compiler: str, standard: str, folders: list[Path], library: Path, work: Path) -> Interface:
    """Of the headers in the last of the include folders, and of the library."""
    work.mkdir(parents=True, exist_ok=True)
    source, object_file, dump = work / "interface.cpp", work / "interface.o", work / "interface.class"
    source.write_text(f"#include <{HEADER}>\n", encoding="utf-8")
    # Without the two options classes that the source does not use would be left out.
    run(compiler, f"-std={standard}", "-g", "-gdwarf-5", "-fno-eliminate-unused-debug-types",
        "-femit-class-debug-always", f"-fdump-lang-class={dump}", *(f"-I{folder.resolve()}" for folder in folders),
        "-c", str(source), "-o", str(object_file))
    info = DebugInfo(object_file)
    types = {entry.full_name(): entry for entry in info.types_of(folders[-1].resolve() / "corvane")}
    classes = {name: entry for name, entry in types.items() if entry.tag in CLASSES}
    shapes = read_dump(dump.read_text(encoding="utf-8"))
    if missing := classes.keys() - shapes.keys():
        raise SystemExit(f"the compiler tells nothing of {', '.join(sorted(missing))}")
    functions = Functions(info, shapes)
    return Interface(export_lines(library, info),
                     [line for name in sorted(types) for line in layout_lines(types[name], shapes.get(name), info)],
                     demangled([line for name in sorted(classes) if shapes[name].tables
                                for line in table_lines(name, shapes, functions)]))


# ---- exports

def export_lines(library: Path, info: DebugInfo) -> list[str]:
    """With the return types of members, of which symbols know nothing, and the sizes of variables, which programs copy
    into themselves. Constructors and destructors have several symbols, which share a line."""
    soname = SONAME.search(run("readelf", "-dW", str(library)))
    if soname is None:
        raise SystemExit(f"{library} has no SONAME")
    returned = {entry.values["linkage_name"]: info.type_of(entry) for entry in info.by_offset.values()
                if entry.tag == "subprogram" and "linkage_name" in entry.values}
    rows = [row.groups() for row in map(SYMBOL.match, run("readelf", "--dyn-syms", "-W", str(library)).splitlines())
            if row is not None]
    names = demangled([symbol for _, _, symbol in rows])
    lines = []
    for name, group in groupby(sorted(zip(names, rows)), key=lambda pair: pair[0]):
        _, symbols = zip(*group)
        size, kind, symbol = symbols[0]
        if len(symbols) > 1:
            name += f" [{' '.join(variants([symbol for *_, symbol in symbols]))}]"
        elif kind == "OBJECT" and not TABLE_NAME.match(name):
            name += f": {int(size, 0)} bytes"
        elif symbol in returned:
            name += f" -> {returned[symbol]}"
        lines.append(name)
    return [f"SONAME {soname[1]}", *lines]


def variants(symbols: list[str]) -> list[str]:
    """C1 and C2, or D0, D1 and D2: where symbols of the same name differ."""
    common = len(list(takewhile(lambda letters: len(set(letters)) == 1, zip(*symbols))))
    return sorted(symbol[common - 1:common + 1] for symbol in symbols)


# ---- layouts

def layout_lines(entry: Entry, shape: Shape | None, info: DebugInfo) -> list[str]:
    name = entry.full_name()
    if shape is None:
        return [] if entry.is_private() else [
            f"{name}: {value.values['name']} = {value.number('const_value')}" for value in entry.children]
    bases = [child for child in entry.children if child.tag == "inheritance"]
    return [f"{name}: {shape.size} bytes, {shape.size_as_base} as a base, aligned to {shape.alignment}",
            *(f"{name}: base {info.type_of(base)} {'virtual' if 'virtuality' in base.values else f'at {place(base)}'}"
              for base in bases),
            *(f"{name}: at {where} {member}" for where, member in members(entry, info))]


def members(entry: Entry, info: DebugInfo, at: int = 0, prefix: str = "") -> Iterator[tuple[int, str]]:
    """Also those of a member whose type has no name, and so no lines of its own."""
    for child in entry.children:
        if child.tag != "member" or "external" in child.values or "declaration" in child.values:
            continue
        name, where = prefix + child.values.get("name", "(unnamed)"), at + place(child)
        held = info.target(child)
        if held is not None and held.tag in CLASSES and "name" not in held.values:
            yield from members(held, info, where, f"{name}.")
        elif "artificial" in child.values:
            yield where, "the pointer to its virtual functions"
        else:
            yield where, f"{name}, {info.type_of(child)}"


def place(child: Entry) -> int:
    """The members of a union have none."""
    return child.number("data_member_location") if "data_member_location" in child.values else 0


# ---- tables of virtual functions

@dataclass
class Table:
    base: str  # whose functions it has
    offsets: list[int]  # of virtual bases, and what their functions add to `this`; below slot 0, the nearest one last
    slots: list[str]  # "ASInt::copy", "ASInt::_ZThn16_N5ASInt7SetNullEv", "__cxa_pure_virtual", or "0"


@dataclass
class Shape:
    size: int
    alignment: int
    size_as_base: int
    primary: str | None  # the base with which it shares its first table
    tables: list[Table]


def read_dump(text: str) -> dict[str, Shape]:
    """What the compiler's -fdump-lang-class tells of each class: a paragraph for its table, if any, then its own."""
    shapes: dict[str, Shape] = {}
    entries: dict[str, list[str]] = {}
    for paragraph in text.split("\n\n"):
        head, _, body = paragraph.strip().partition("\n")
        if head.startswith("Vtable for "):
            entries[head.removeprefix("Vtable for ")] = re.findall(r"^\d+ +(.+)$", body, re.MULTILINE)
        elif head.startswith("Class "):
            name = head.removeprefix("Class ")
            size, alignment, size_as_base = map(int, re.search(
                r"size=(\d+) align=(\d+)\n +base size=(\d+)", body).groups())
            primary = {derived: base for base, derived in PRIMARY.findall(body)}.get(name)
            owners = {int(start) // 8: base for base, start in OWNER.findall(body)}
            shapes[name] = Shape(size, alignment, size_as_base, primary,
                                 split_tables(entries.get(name, []), owners))
    return shapes


def split_tables(entries: list[str], owners: dict[int, str]) -> list[Table]:
    """A table is: offsets, the way to the start of the object, the type, slots. The next follows at once. Only slots
    and the two entries before them are shown as functions, but for empty slots, which are 0 as offsets may be."""
    functions = [re.sub(r"^\(int \(\*\)\(\.\.\.\)\)", "", entry) for entry in entries]
    shown = [entry.startswith("(int") for entry in entries]
    types = [i for i, function in enumerate(functions) if function.startswith("(& _ZTI")]
    tables, begin = [], 0
    for at, following in zip(types, [*types[1:], None]):
        end = len(entries) if following is None else following - 1
        while not shown[end - 1]:
            end -= 1
        offsets = [int(entry) for entry in functions[begin:at]]
        tables.append(Table(owners[at + 1], [signed(offset) for offset in offsets], functions[at + 1:end]))
        begin = end
    return tables


def signed(offset: int) -> int:
    return offset - 2**64 if offset >= 2**63 else offset


def table_lines(name: str, shapes: dict[str, Shape], functions: Functions) -> list[str]:
    lines = []
    for number, table in enumerate(shapes[name].tables):
        if number == 0:
            title = name
            shared = shapes[name].primary
            inherited = f", {len(shapes[shared].tables[0].slots)} of them those of {shared}" if shared else ""
            lines.append(f"{name}: {len(table.slots)} slots{inherited}")
        else:
            title = f"{name} as {table.base}"
        lines.append(f"{title}, below the slots: {' '.join(map(str, table.offsets))}")
        lines += [f"{title}, slot {slot}: {functions.describe(function, slot, table.base)}"
                  for slot, function in enumerate(table.slots)]
    return lines


class Functions:
    """Names the functions in slots, by their symbols. The compiler's dump leaves out the parameters, by which alone
    overloads differ; the debug information has them, and the slot of each function that a class declares itself."""

    def __init__(self, info: DebugInfo, shapes: dict[str, Shape]) -> None:
        self._info = info
        self._shapes = shapes
        self._virtual: dict[str, dict[int, Entry]] = {}
        for entry in info.by_offset.values():
            if "vtable_elem_location" in entry.values:
                self._virtual.setdefault(entry.parent.full_name(), {})[entry.number("vtable_elem_location")] = entry

    def describe(self, function: str, slot: int, base: str) -> str:
        if function == "0":
            return "empty"
        if function == "__cxa_pure_virtual":
            return f"{self._name(self._declared(base, slot))}, pure"
        owner, _, name = function.rpartition("::")
        if name.startswith("_ZT"):  # a thunk, which the dump names in full
            return name
        if name.startswith("~"):
            return f"{function}(), {'deleting' if slot % 2 else 'complete'}"
        overloads = [entry for entry in self._virtual[owner].values() if entry.values["name"] == name]
        entry = overloads[0] if len(overloads) == 1 else self._virtual[owner].get(slot)
        if entry not in overloads:
            raise SystemExit(f"which {function} is in slot {slot} of {base}?")
        return self._name(entry)

    def _name(self, entry: Entry) -> str:
        return f"{entry.values['linkage_name']} -> {self._info.type_of(entry)}"

    def _declared(self, base: str, slot: int) -> Entry:
        while slot not in self._virtual.get(base, {}):
            base = self._shapes[base].primary
        return self._virtual[base][slot]
