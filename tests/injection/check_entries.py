#!/usr/bin/env python3
"""Compares the entries that take texts with the public headers, their comments, the tests and docs/security.md.

Complains of each of:
  - a public function that takes a text and is not in the list, and a line of the list that names none;
  - a member that escapes and that no test in escaped_entries.cpp names as the list says;
  - a member that does not escape and is not in the table of the page, or whose comment does not say NOT ESCAPED; and
    one in the table that the list does not have.
Exits with 1 then, and with 77 where universal-ctags is missing.
"""

from __future__ import annotations

import argparse
import re
import shutil
import subprocess
import sys
from pathlib import Path

TEXT = re.compile(r"\b(Str(?! &)|string|string_view|basic_type) (const )?[&*]? ?\w|char const \*|std::string")
NOT_ESCAPED = re.compile(r"NOT\s+(?:///\s+)?ESCAPED")
# Members that take their texts otherwise than by an argument: through a reference that they return, or from columns.
WITHOUT_ARGUMENT = {
    "ASProject::ProjectQueryForUpdate", "ASFilter::ConditionForUpdate",
    "ASSession::InsertQuery", "ASSession::SelectQuery", "ASSession::UpdateQuery", "ASSession::DeleteQuery",
    "ASSession::SaveQuery", "ASUpdatableCache::Put", "ASInsertableCache::Delete",
}


def text_members(headers: list[Path]) -> dict[str, list[tuple[str, int]]]:
    """The public and protected functions that take a text, each with the places where it is declared."""
    fields = "%{access}|%K|%{scope}|%N|%F|%n|%{C++.properties}|%{signature}"
    output = subprocess.run(["ctags", "-x", "--language-force=C++", "--kinds-C++=+px", "--fields=+aeS",
                             "--fields-C++=+{properties}", "-D", "CORVANE_API=", f"--_xformat={fields}",
                             *map(str, headers)], check=True, stdout=subprocess.PIPE, text=True).stdout
    members: dict[str, list[tuple[str, int]]] = {}
    for line in output.splitlines():
        row = re.match(r"([^|]*)\|(function|prototype)\|([^|]*)\|(.*)\|([^|]*\.h)\|(\d+)\|([^|]*)\|(.*)$", line)
        if row is None or row[1] == "private" or "delete" in row[7]:
            continue
        name = re.sub(r"^operator (?=\W)", "operator", row[4].replace("\\x21", "!"))
        member = f"{row[3]}::{name}" if row[3] else name
        # A map of texts is the session's parameters, which stand for themselves.
        if (TEXT.search(row[8]) and "std::map<" not in row[8]) or member in WITHOUT_ARGUMENT:
            members.setdefault(member, []).append((row[5], int(row[6])))
    return members


def comment_of(header: str, line: int) -> str:
    """The doc comment of a declaration, which others without one of their own may stand above."""
    lines = Path(header).read_text(encoding="utf-8").splitlines()
    at = line - 2
    while at >= 0 and lines[at].strip() and not lines[at].strip().startswith("//"):
        at -= 1
    end = at
    while at >= 0 and lines[at].strip().startswith("//"):
        at -= 1
    return "\n".join(lines[at + 1:end + 1])


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--entries", type=Path, required=True, help="the list: member, kind, entry of the tests or why")
    parser.add_argument("--tests", type=Path, required=True, help="escaped_entries.cpp")
    parser.add_argument("--page", type=Path, required=True, help="docs/security.md")
    parser.add_argument("headers", type=Path, nargs="+")
    options = parser.parse_args()
    if shutil.which("ctags") is None:
        print("no ctags here")
        return 77

    members = text_members(options.headers)
    rows = [line.split("\t") for line in options.entries.read_text(encoding="utf-8").splitlines()
            if line and not line.startswith("#")]
    kinds = {row[0]: row[1] for row in rows}
    tests = options.tests.read_text(encoding="utf-8")
    table = {name for line in options.page.read_text(encoding="utf-8").splitlines() if line.startswith("| `")
             for name in re.findall(r"`([^`]+)`", line.split(" | ")[0]) if "::" in name}

    problems = [f"{member} takes a text and is not in the list" for member in sorted(members.keys() - kinds.keys())]
    problems += [f"{member} is in the list and takes no text" for member in sorted(kinds.keys() - members.keys())]
    for member, kind, remark in rows:
        if kind == "escaped" and f'"{remark}' not in tests:
            problems.append(f"{member}: no test has an entry {remark}")
        elif kind not in ("escaped", "unescaped", "none"):
            problems.append(f"{member}: no such kind: {kind}")
    unescaped = {member for member, kind in kinds.items() if kind == "unescaped"}
    # Of these the pattern is escaped, and the escape character is not.
    partly = {"ASAttribute::Like", "ASAttribute::NotLike", "ASGroupAttribute::Like"}
    problems += [f"{member} does not escape and is not in the page's table" for member in sorted(unescaped - table)]
    problems += [f"{member} is in the page's table alone" for member in sorted(table - unescaped - partly)]
    for member in sorted((unescaped | partly) & members.keys()):
        for header, line in members[member]:
            of_class = re.search(r"NOT ESCAPED HERE", Path(header).read_text(encoding="utf-8"))
            if not of_class and not NOT_ESCAPED.search(comment_of(header, line)):
                problems.append(f"{header}:{line}: the comment of {member} does not say NOT ESCAPED")
    for problem in problems:
        print(problem)
    print(f"{len(members)} members take texts: {len(unescaped)} as they stand, "
          f"{sum(kind == 'escaped' for kind in kinds.values())} escaped")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
