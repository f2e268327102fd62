#!/usr/bin/env python3
"""Compares the record with that of the last release in the history, since programs that were linked against that one
have to go on working: what it has must be there, unless the SONAME says that the library is another one.

Exits with 1 when something is gone or has changed, and with 77 where there is nothing to compare with: no git, no
history, or only the end of it. Before 1.0 that is no reason to skip: nothing is promised yet.
"""

from __future__ import annotations

import re
import subprocess
import sys
from pathlib import Path

sys.dont_write_bytecode = True

from record import differences, read_record  # noqa: E402

RECORDED = "tests/abi/recorded"
RELEASE = re.compile(r"v[1-9]\d*(\.\d+)*")  # others, as v0.2.0 and v1.0.0-rc1, bind to nothing
NOTHING_TO_COMPARE = 77


class CannotCompare(Exception):
    pass


class History:
    def __init__(self, tree: Path) -> None:
        self._tree = tree
        top = self._git("rev-parse", "--show-toplevel").strip()
        if Path(top) != tree.resolve():
            raise CannotCompare(f"the history here is that of {top}")

    def last_release(self) -> str | None:
        tags = self._git("tag", "--list", "--merged", "HEAD", "--sort=-version:refname").splitlines()
        releases = [tag for tag in tags if RELEASE.fullmatch(tag)]
        if not releases and self._git("rev-parse", "--is-shallow-repository").strip() == "true":
            raise CannotCompare("the history is cut off; the whole comes with: git fetch --unshallow --tags")
        return releases[0] if releases else None

    def record(self, release: str) -> dict[str, list[str]]:
        files = self._git("ls-tree", "--name-only", release, f"{RECORDED}/").splitlines()
        if not files:
            raise CannotCompare(f"{release} has no record")
        return {Path(file).stem: self._git("show", f"{release}:{file}").splitlines() for file in files}

    def _git(self, *arguments: str) -> str:
        # Also where the tree is another user's, as it is in a container.
        command = ["git", "-c", "safe.directory=*", "-C", str(self._tree), *arguments]
        try:
            return subprocess.run(command, check=True, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True).stdout
        except OSError as error:
            raise CannotCompare("no git here") from error
        except subprocess.CalledProcessError as error:
            raise CannotCompare(f"a source package has no history: {error.stderr.strip()}") from error


def soname_major(record: dict[str, list[str]]) -> int:
    return int(re.fullmatch(r"SONAME .*\.so\.(\d+)", record["exports"][0])[1])


def compare(release: str, before: dict[str, list[str]], now: dict[str, list[str]]) -> int:
    gone = sum(len(set(lines) - set(now.get(part, []))) for part, lines in before.items())
    old, new = soname_major(before), soname_major(now)
    if gone == 0:
        print(f"The record has all of {release}.")
        return 0
    if new > old:
        print(f"{gone} lines of {release} are not there, and the SONAME says so: {old} has become {new}.")
        return 0
    print(*differences(before, {part: now.get(part, []) for part in before}, (release, "now")), "",
          f"{gone} lines of {release} are gone or have changed, which breaks programs that were linked against it:",
          "they would still load this library. Take the change back, or raise the major number of VERSION in",
          "CMakeLists.txt, from which the SONAME comes, and record it by ./run abi --accept.", sep="\n")
    return 1


def main() -> int:
    tree = Path(sys.argv[1])
    record = read_record(tree / RECORDED)
    try:
        history = History(tree)
        release = history.last_release()
        if release is None:
            print("There is no release yet, so nothing binds.")
            return 0
        return compare(release, history.record(release), record)
    except CannotCompare as reason:
        print(f"NOT COMPARED with the last release: {reason}")
        if soname_major(record) > 0:
            return NOTHING_TO_COMPARE
        print("Before 1.0 a release may break what the one before had.")
        return 0


if __name__ == "__main__":
    sys.exit(main())
