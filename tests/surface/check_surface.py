#!/usr/bin/env python3
"""Compares the page that lists the public interface with the headers, the tests and the library's exports.

Complains of each of:
  - a public member of a public header that the page leaves out, and a row of the page that names none;
  - a row whose test there is not, or that names no test;
  - a function of a public header that should leave the library and does not;
  - an exported symbol that is private, or belongs to nothing in a public header.
Exits with 1 then, and with 77 where universal-ctags or nm (of binutils) is missing.
"""

from __future__ import annotations

import argparse
import functools
import re
import shutil
import subprocess
import sys
from collections import Counter
from dataclasses import dataclass
from pathlib import Path

# Private members that leave the library all the same: inline members and templates in the headers call them.
CALLED_FROM_HEADERS = {
    "Str::AppendGrowing(char const*, unsigned long)": "Str::Append()",
    "Str::Extend(unsigned long)": "Str::AppendWith()",
    "ASExpression::ASExpression(corvane::Number const&)": "the constructor from any number",
    "ASAttribute::Compare(corvane::Relation, corvane::Number const&) const": "the comparisons with any number",
    "ASAttribute::BetweenNumbers(corvane::Number const&, corvane::Number const&) const": "Between() of any numbers",
    "ASAttribute::BetweenMixed(basic_type const&, corvane::Number const&) const": "Between() of a value and a number",
    "ASAttribute::BetweenMixed(corvane::Number const&, basic_type const&) const": "Between() of a number and a value",
    "ORDBMS::old_filter::AddIntegers(char const*, Str const&, corvane::Number const&, corvane::Number const&)":
        "the ranges of any numbers",
    "ORDBMS::old_filter::AddDoubles(char const*, Str const&, double, double)": "the ranges of any numbers",
    "ASGroupAttribute::Compare(corvane::Relation, corvane::Number const&) const": "the comparisons with any number",
}

RECORDS = {"class", "struct", "union"}
# What the compiler makes for the classes and nobody declares.
TABLES = re.compile(r"(?:vtable|VTT|typeinfo|typeinfo name) for (.+)|construction vtable for .+-in-(.+)")
THUNK = re.compile(r"(?:non-virtual|virtual|covariant return) thunk to (.+)")


@dataclass(frozen=True)
class Declaration:
    kind: str  # as ctags has it: class, prototype (a function without body), function, member, enumerator, ...
    scope: str  # "" or "Str" or "ORDBMS::old_filter"
    name: str  # as written in C++: "operator<<", "~Str", "Scalar"
    access: str  # public, protected, private, or "-" outside classes
    properties: frozenset[str]  # delete, pure, virtual, ...
    template: bool

    @property
    def key(self) -> tuple[str, str]:
        return self.scope, self.name

    def leaves_library(self) -> bool:
        if self.kind == "externvar" or (self.kind == "member" and "static" in self.properties):
            return "constexpr" not in self.properties
        return self.kind == "prototype" and not self.template and not self.properties & {"delete", "pure", "default"}


def run(*command: str) -> str:
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout


@functools.cache
def sources(header: str) -> list[str]:
    return Path(header).read_text(encoding="utf-8").splitlines()


def full(scope: str, name: str) -> str:
    return f"{scope}::{name}" if scope else name


def spelled(name: str) -> str:
    """ctags writes "operator <<", and a "!" as "\\x21"; demangled names and the page have "operator<<"."""
    return re.sub(r"^operator (?=\W)", "operator", name.replace("\\x21", "!"))


def declarations(headers: list[Path]) -> list[Declaration]:
    """What the headers declare, but for macros, forward declarations and what is local to a function."""
    fields = "%{access}|%K|%{scope}|%N|%{C++.properties}|%{C++.template}|%n|%{end}|%F"
    lines = run("ctags", "-x", "--language-force=C++", "--kinds-C++=+px", "--fields=+ae",
                "--fields-C++=+{properties}{template}", "-D", "CORVANE_API=", f"--_xformat={fields}",
                *map(str, headers)).splitlines()
    # Names and template parameters may hold the separator: "operator ||".
    rows = [re.match(r"([^|]*)\|([^|]*)\|([^|]*)\|(.*)\|([^|]*)\|(.*)\|(\d+)\|(\d*)\|([^|]*)$", line) for line in lines]
    tags = [row.groups() for row in rows if row is not None]
    if len(tags) != len(lines):
        raise SystemExit("check_surface: ctags writes lines of another form")

    # Scopes that are none of their own: members of an unnamed union or enumeration, and the values of an unscoped
    # enumeration, belong to what surrounds it.
    dissolved = {full(scope, name): scope for _, kind, scope, name, properties, *_ in tags
                 if "__anon" in name or (kind == "enum" and "scopedenum" not in properties)}
    # What is declared in a private or protected type is private or protected itself.
    hidden = {full(scope, name): access for access, kind, scope, name, *_ in tags
              if kind in RECORDS | {"enum"} and access in ("private", "protected")}
    local = {full(scope, name) for _, kind, scope, name, *_ in tags if kind in ("function", "prototype")}
    class_templates = {full(scope, name) for _, kind, scope, name, _, template, *_ in tags
                       if kind in RECORDS and template}

    found = []
    for access, kind, scope, name, properties, template, line, _, header in tags:
        if kind in ("macro", "namespace", "header") or "__anon" in name or scope in local:
            continue
        if kind == "member" and " constexpr " in sources(header)[int(line) - 1]:  # which ctags does not tell
            properties += ",constexpr"
        access = hidden.get(scope, access)
        while scope in dissolved:
            scope = dissolved[scope]
        found.append(Declaration(kind, scope, spelled(name), access, frozenset(properties.split(",")),
                                 bool(template) or scope in class_templates))
    return found + overlooked(tags, {d.key for d in found if "delete" not in d.properties})


def overlooked(tags: list[tuple[str, ...]], known: set[tuple[str, str]]) -> list[Declaration]:
    """What universal-ctags 5.9 does not see, recognised by the way our sources are formatted."""
    found = []

    def add(kind: str, scope: str, name: str, access: str, template: bool) -> None:
        if (scope, name) not in known:
            found.append(Declaration(kind, scope, name, access, frozenset(), template))

    # Destructors that say `override`, and some using-declarations.
    for _, kind, scope, name, _, template, begin, end, header in tags:
        if kind not in RECORDS or "__anon" in name:
            continue
        access = "private" if kind == "class" else "public"
        own = full(scope, name)
        for line in sources(header)[int(begin):int(end)]:
            if section := re.match(r" *(public|protected|private):$", line):
                access = section[1]
            if re.match(rf" *~{name}\(\) override;", line):
                add("prototype", own, f"~{name}", access, bool(template))
            if using := re.match(r" *using [\w:]+::(\w+|operator\W+);", line):
                add("name", own, using[1], access, bool(template))

    # Some function templates outside of classes, those with `if constexpr` in them.
    for header in {tag[-1] for tag in tags}:
        scope, template = "", False
        for line in sources(header):
            if namespace := re.match(r"namespace ([\w:]+) {$|}  // namespace", line):
                scope = namespace[1] or ""
            if template and (function := re.match(r"[A-Za-z][^()]*[ &*](\w+|operator[^(]+)\(.*\) \{$", line)):
                add("function", scope, function[1], "-", True)
            template = line.startswith("template <") or (template and line.startswith(" "))
    return found


def page_rows(page: Path) -> list[tuple[str, str, list[str]]]:
    """(scope, member, tests) for each member of the page's tables; a heading without a name is the global scope."""
    rows, scope = [], ""
    for line in page.read_text(encoding="utf-8").splitlines():
        if line.startswith("#"):
            named = re.search(r"`([^`]+)`", line)
            scope = named[1] if named else ""
        elif line.startswith("|") and "`" in line:
            # A "|" within a name is written "\|" in a table.
            members, tests = re.split(r"(?<!\\)\|", line)[1:3]
            names = [name.replace("\\|", "|") for name in re.findall(r"`([^`]+)`", members)]
            rows += [(scope, name, re.findall(r"[\w/]+\.\w+", tests)) for name in names]
    return rows


def defined_tests(folder: Path) -> set[str]:
    test = re.compile(r"^(?:TYPED_)?TEST(?:_F|_P)?\(\s*(\w+),\s*(\w+)\)", re.MULTILINE)
    return {f"{suite}.{name}" for file in folder.rglob("*.cpp")
            for suite, name in test.findall(file.read_text(encoding="utf-8"))}


def check_page(page: Path, declared: list[Declaration], tests: set[str]) -> list[str]:
    public = {d.key for d in declared if d.access in ("public", "-") and "delete" not in d.properties}
    types = {d.key for d in declared if d.kind in RECORDS or d.kind == "enum"}
    rows = page_rows(page)
    listed = {(scope, name) for scope, name, _ in rows}
    # A class of which there is a table needs no row, nor do destructors: every test that makes an object runs one.
    tables = {scope for scope, _, _ in rows}
    wanted = {(scope, name) for scope, name in public if not name.startswith("~")
              and not ((scope, name) in types and full(scope, name) in tables)}
    problems = [f"{page.name} lacks {full(*key)}" for key in sorted(wanted - listed)]
    problems += [f"{page.name} lists {full(*key)}, which no public header declares as public"
                 for key in sorted(listed - public)]
    for scope, name, held_by in rows:
        if not held_by:
            problems.append(f"{page.name}: {full(scope, name)} is held by no test")
        problems += [f"{page.name}: {full(scope, name)} is held by {test}, which is no test"
                     for test in held_by if re.sub(r"^\w+/", "", test) not in tests]
    return problems


def exported(library: Path) -> set[str]:
    """Demangled; what has several symbols, as constructors and destructors have, stands once."""
    # What returns a std::list or a std::string is tagged with the standard library's own version of these.
    lines = run("nm", "-DC", "--defined-only", str(library)).replace("[abi:cxx11]", "").splitlines()
    return {line.split(maxsplit=2)[2] for line in lines}


def named(symbol: str) -> tuple[str, str]:
    """Scope and name of a demangled function or variable."""
    scope, name = re.fullmatch(r"((?:\w+::)*)(operator\(\)|operator[^(]+|~?\w+|.*)(?:\(.*)?", symbol).groups()
    return scope[:-2], name


def check_exports(symbols: set[str], declared: list[Declaration]) -> list[str]:
    classes = {full(*d.key) for d in declared if d.kind in RECORDS}
    leaving = Counter(d.key for d in declared if d.leaves_library() and d.access != "private")
    problems, leave = [], Counter()
    for symbol in sorted(symbols - CALLED_FROM_HEADERS.keys()):
        if table := TABLES.fullmatch(symbol):
            belongs = (table[1] or table[2]) in classes
        elif thunk := THUNK.fullmatch(symbol):
            belongs = named(thunk[1])[0] in classes
        else:
            leave[named(symbol)] += 1
            belongs = named(symbol) in leaving
        if not belongs:
            problems.append(f"{symbol} is exported, but private or in no public header")
    for key, count in sorted(leaving.items()):
        if leave[key] != count:
            problems.append(f"{full(*key)}: {count} declared without a body and not private, {leave[key]} exported")
    problems += [f"{symbol} is not exported, but called by {reason} in the headers"
                 for symbol, reason in sorted(CALLED_FROM_HEADERS.items()) if symbol not in symbols]
    return problems


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--page", type=Path, required=True, help="the page, docs/reference.md")
    parser.add_argument("--tests", type=Path, required=True, help="the folder of the tests")
    parser.add_argument("--library", type=Path, help="the shared library; without it exports are not compared")
    parser.add_argument("headers", type=Path, nargs="+", help="the public headers")
    options = parser.parse_args()
    for tool in ("ctags", "nm"):
        if shutil.which(tool) is None:
            print(f"no {tool} here")
            return 77

    declared = declarations(options.headers)
    problems = check_page(options.page, declared, defined_tests(options.tests))
    if options.library is not None:
        problems += check_exports(exported(options.library), declared)
    for problem in problems:
        print(problem)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
