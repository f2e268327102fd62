#!/usr/bin/env python3
"""Counts the instructions of PROGRAM's pieces of work and compares them with those in RECORD, or records them anew.

Instructions, unlike times, are the same in every run. A figure that has grown by more than 3% is a failure, and so is
one that is only measured or only recorded. With another compiler or C library than the record's the figures are shown
and not compared.
"""

import argparse
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
from collections.abc import Iterable

TOLERANCE = 3.0  # percent

# The C library chooses among variants of its string functions by the processor, and by the size of the block: without
# all of these it takes those that every x86-64 has. Large blocks come from the system, as they do by default at first.
PROCESSOR = "SSSE3 SSE4_1 SSE4_2 AVX AVX2 AVX512F AVX512VL AVX512BW BMI1 BMI2 LZCNT MOVBE POPCNT FMA ERMS FSRM RTM"
PREFERENCES = "Fast_Unaligned_Load Fast_Unaligned_Copy Fast_Copy_Backward Slow_BSF"
TUNABLES = {
    "glibc.cpu.hwcaps": ",".join("-" + name for name in (PROCESSOR + " " + PREFERENCES).split()),
    "glibc.cpu.x86_data_cache_size": "32768",
    "glibc.cpu.x86_shared_cache_size": "1048576",
    "glibc.cpu.x86_non_temporal_threshold": "786432",
    "glibc.malloc.mmap_threshold": "131072",
}
ENVIRONMENT = {
    "GLIBC_TUNABLES": ":".join(f"{name}={value}" for name, value in TUNABLES.items()),
    "LC_ALL": "C",
    "LD_BIND_NOW": "1",
    "PATH": os.defpath,
    "TZ": "UTC0",
}

Conditions = dict[str, str]
Figures = dict[str, int]


def measure(program: pathlib.Path) -> tuple[Conditions, Figures]:
    """Runs the program under callgrind, which writes a file for each count."""
    with tempfile.TemporaryDirectory() as folder:
        counts = pathlib.Path(folder)
        command = ["valgrind", "--command-line-only=yes", "--tool=callgrind", f"--callgrind-out-file={counts}/count"]
        log = counts / "log"
        ran = subprocess.run(
            [*command, f"--log-file={log}", f"./{program.name}"],
            cwd=program.parent,
            env=ENVIRONMENT,
            stdout=subprocess.PIPE,
            text=True,
        )
        if ran.returncode != 0:
            sys.exit(f"{log.read_text()}\n{program} failed under valgrind, see above")
        conditions = dict(line.strip().split(": ", 1) for line in ran.stdout.splitlines())
        return conditions, slopes(file.read_text() for file in counts.glob("count.*"))


def slopes(dumps: Iterable[str]) -> Figures:
    """What one more time of a piece of work takes, from the counts of few and of many times."""
    counts: dict[str, list[tuple[int, int]]] = {}
    for dump in dumps:
        label = re.search(r"^desc: Trigger: Client Request: (.+) (\d+)$", dump, re.MULTILINE)
        total = re.search(r"^(?:totals|summary): (\d+)$", dump, re.MULTILINE)
        if label and total:
            counts.setdefault(label[1], []).append((int(label[2]), int(total[1])))
    figures = {}
    for name, pair in counts.items():
        (few, first), (many, second) = sorted(pair)
        figures[name] = round((second - first) / (many - few))
    return figures


def show(figures: Figures, recorded: Figures) -> None:
    print(f"{'instructions':26}{'recorded':>10}{'now':>10}{'change':>10}")
    for name in sorted(figures | recorded):
        old, new = recorded.get(name), figures.get(name)
        change = f"{growth(old, new):+.2f}%" if old and new else "-"
        print(f"{name:26}{old or '-':>10}{new or '-':>10}{change:>10}")


def growth(old: int, new: int) -> float:
    return (new - old) / old * 100


def compare(conditions: Conditions, figures: Figures, record: dict) -> int:
    """Prints what is wrong; the number of failures."""
    recorded = record["instructions"]
    failures = [f"{name} is not in the record" for name in sorted(figures.keys() - recorded.keys())]
    failures += [f"{name} is recorded and no longer measured" for name in sorted(recorded.keys() - figures.keys())]
    others = [
        f"{what}: recorded with {record['conditions'].get(what)}, here {conditions.get(what)}"
        for what in sorted(conditions | record["conditions"])
        if conditions.get(what) != record["conditions"].get(what)
    ]
    if others:
        print("NOT COMPARED, since the figures were recorded elsewhere:", *others, sep="\n  ")
    else:
        for name in sorted(figures.keys() & recorded.keys()):
            old, new = recorded[name], figures[name]
            change = f"{name}: {old} instructions recorded, now {new}, {growth(old, new):+.2f}%"
            if growth(old, new) > TOLERANCE:
                failures.append(change)
            elif growth(old, new) < -TOLERANCE:
                print(f"Better, to be recorded by ./run instructions --record: {change}")
    if failures:
        print("FAILED:", *failures, sep="\n  ")
    return len(failures)


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program", metavar="PROGRAM", type=pathlib.Path)
    parser.add_argument("file", metavar="RECORD", type=pathlib.Path)
    parser.add_argument("--record", action="store_true", help="writes RECORD instead of comparing with it")
    options = parser.parse_args()

    conditions, figures = measure(options.program.resolve())
    if not figures:
        sys.exit("no counts: did the program run under valgrind?")
    record = json.loads(options.file.read_text()) if options.file.exists() else None
    show(figures, record["instructions"] if record else {})
    if options.record:
        record = {"conditions": conditions, "instructions": dict(sorted(figures.items()))}
        options.file.write_text(json.dumps(record, indent=2) + "\n")
        print(f"Recorded in {options.file}")
        return 0
    if record is None:
        sys.exit(f"no {options.file}: ./run instructions --record writes it")
    return 1 if compare(conditions, figures, record) else 0


if __name__ == "__main__":
    sys.exit(main())
