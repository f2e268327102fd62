#!/usr/bin/env python3
"""Compares the library, and other libraries, with the same work done by hand on the bare client library (`raw`).

Runs the programs of one folder beside a server (tools/private-server run -- ...), each workload in a process of its
own. CPU time (user and system of the client alone), elapsed time and the growth of the peak of memory are medians of
pairs: raw, a program, raw, the next program, and so on, several times over; every other time raw is the second of its
pair. The ratio is the median of the pairs' ratios. Instructions are counted by callgrind, with less work, since they
do not vary. What the programs have read or written is compared each time.

    bench/compare.py --programs build/bench/bench                  everything, the figures of docs/performance.md
    bench/compare.py --programs build/bench/bench --quick          fewer and smaller, in under two minutes
    bench/compare.py --programs build/bench/bench --check          whether all programs read and write the same
    bench/compare.py --redraw                                      the page and its charts from results.json

Prints one table; writes it, results.json and the charts into the folder of --output, and the tables into the page
beside that folder. --quick writes nothing unless --output is given.
"""

from __future__ import annotations

import argparse
import datetime
import json
import os
import re
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass
from pathlib import Path
from statistics import median

Figures = dict[str, float]  # of one run, by name; or medians of them
Row = dict[str, "str | float | None"]  # of the results

ROOT = Path(__file__).resolve().parent.parent
OUTPUT = ROOT / "docs" / "performance"

# The programs by name: title, and the Debian package that it is built with.
PROGRAMS = {
    "raw": ("raw", "libmariadb-dev"),
    "corvane": ("Corvane", None),
    "soci": ("SOCI", "libsoci-dev"),
    "mysqlpp": ("MySQL++", "libmysql++-dev"),
    "connector": ("Connector/C++", "libmysqlcppconn-dev"),
    "poco": ("POCO Data", "libpoco-dev"),
    "prepared": ("raw, prepared", "libmariadb-dev"),
}
COMPARED = ("cpu", "wall", "memory")
LEAST = 3  # pairs of the library itself, and all that growth is measured by
AGAIN = "raw, again"  # compared with itself, which shows how much of a ratio is chance
VARYING = 15  # the same where most of the time is the kernel's, which takes now more, now less for the same work


@dataclass(frozen=True)
class Workload:
    """What is done, by the name that the programs know."""

    name: str
    title: str
    unit: str  # what the instructions are counted for
    sizes: tuple[int, ...]
    quick: tuple[int, ...]
    counted: tuple[int, int] | None  # two sizes whose difference gives the instructions of one unit
    alone: bool = False  # only raw and the library do it
    variants: tuple[tuple[str, str], ...] = ()  # title and workload of other ways in `raw`
    varies: bool = False  # pairs differ so much that there are more of them, and raw is compared with itself


@dataclass(frozen=True)
class Growth:
    """How the cost of one thing grows with its size; by the library and by raw."""

    name: str
    title: str
    of: str  # what the sizes count
    one: str  # what the time is for
    workload: str
    sizes: tuple[int, ...]


VECTOR = (("raw, into a vector", "fetch"),)
FIXED = (("raw, fixed aliases", "render_fixed"),)
HASHED = (("raw, hashed", "hit_hashed"),)
WORKLOADS = (
    Workload("fetch", "Rows into a vector", "row", (100_000, 1_000_000), (100_000,), (1_000, 3_000)),
    Workload("iterate", "Rows into one record", "row", (100_000, 1_000_000), (100_000,), (1_000, 3_000), variants=VECTOR),
    Workload("select", "Selects by key", "select", (20_000,), (5_000,), (200, 700), varies=True),
    Workload("insert", "Inserts", "insert", (20_000,), (5_000,), (200, 700), varies=True),
    Workload("update", "Updates by key", "update", (20_000,), (5_000,), (200, 700), varies=True),
    Workload("render_kept", "Query kept, text", "text", (1_000_000,), (100_000,), (500, 1_500), True, FIXED),
    Workload("render_built", "Query built anew, text", "text", (1_000_000,), (100_000,), (500, 1_500), True, FIXED),
    Workload("fill", "Cache filled, records", "record", (100_000, 1_000_000), (), (1_000, 3_000), True),
    Workload("hit", "200,000 hits, records", "hit", (1_000, 100_000, 1_000_000), (1_000,), None, True, HASHED),
)
GROWTHS = (
    Growth("rows", "Rows into a vector", "rows", "result", "fetch", (1_000, 10_000, 100_000, 1_000_000, 3_000_000)),
    Growth("columns", "Columns of a row", "columns", "row", "columns", (1, 2, 5, 10, 20, 50, 100, 200)),
    Growth("text", "Length of a text", "bytes", "row", "text", (1, 16, 64, 256, 1_024, 4_096, 16_384, 65_536)),
    Growth("conditions", "Joined conditions", "conditions", "text", "conditions", (1, 3, 10, 30, 100, 300, 1_000)),
    Growth("hit", "Records in a cache", "records", "hit", "hit", (1_000, 10_000, 100_000, 1_000_000)),
)
# What is read back after writing: the workload that prepares the table, and the one that sums it up.
WRITTEN = {"insert": ("empty", "sum_inserted"), "update": ("copy", "sum_updated")}


def fail(text: str) -> None:
    sys.exit(f"compare.py: {text}")


def tell(text: str) -> None:
    print(f"    {text}", file=sys.stderr, flush=True)


class Programs:
    """Those of a folder, and how they are run."""

    def __init__(self, folder: Path) -> None:
        self.folder = folder
        self.names = [name for name in PROGRAMS if (folder / name).exists()]
        for name in ("raw", "corvane"):
            if name not in self.names:
                fail(f"no program {folder / name}: build the target `bench` first")
        for name, (title, package) in PROGRAMS.items():
            if name not in self.names:
                tell(f"MISSING: {title}, not built; it needs {package}")

    def call(self, name: str, workload: str, size: int, wrapper: tuple[str, ...] = ()) -> tuple[Figures, str]:
        """One run: its figures, and what it wrote to the standard error stream."""
        command = [*wrapper, str(self.folder / name), workload, str(size), "--benchmark_format=json"]
        done = subprocess.run(command, capture_output=True, text=True)
        try:
            result = json.loads(done.stdout)["benchmarks"][0]
        except (ValueError, LookupError):
            result = {"error_message": ""}
        if done.returncode != 0 or "error_message" in result:
            fail(f"{' '.join(command)} failed:\n{result.get('error_message', '')}\n{done.stderr.strip()}")
        result["cpu"] = result["cpu_time"]
        result["wall"] = result["real_time"]
        return {key: float(value) for key, value in result.items() if isinstance(value, (int, float))}, done.stderr

    def run(self, name: str, workload: str, size: int) -> Figures:
        """One run with what belongs around it; what was written counts as the checksum."""
        if workload not in WRITTEN:
            return self.call(name, workload, size)[0]
        prepare, read_back = WRITTEN[workload]
        self.call("raw", prepare, size)
        figures = self.call(name, workload, size)[0]
        figures["checksum"] = self.call("raw", read_back, 0)[0]["checksum"]
        return figures

    def instructions(self, name: str, workload: str, size: int) -> tuple[Figures, Figures]:
        """Counted in the timed part, by where they were spent, with the run's other figures."""
        with tempfile.TemporaryDirectory() as folder:
            callgrind = ("valgrind", "--tool=callgrind", "--collect-atstart=no")
            figures, log = self.call(name, workload, size, (*callgrind, f"--callgrind-out-file={folder}/out"))
            counted = places(Path(folder, "out").read_text())
        if not counted:
            fail(f"callgrind counted nothing:\n{log}")
        return counted, figures


# Where instructions are spent, by the shared library and, in the C library, by the source file or function.
PLACES = {
    "Corvane": r"libcorvane",
    "client library": r"libmariadb",
    "numbers of the standard library": r"libstdc\+\+",
    "allocation": r"libc\.so.* .*malloc/",
    "copying and searching of bytes": r"libc\.so",
    "the program": r"",
}


def places(counts: str) -> Figures:
    """The instructions in callgrind's file by PLACES. A line behind `calls=` is the callee's, counted there."""
    names: dict[str, str] = {}
    now = {"ob": "", "fl": ""}
    found: Figures = {}
    called = False
    for line in counts.splitlines():
        if match := re.match(r"c?(ob|fl|fi|fe)=(\(\d+\))(?: (.*))?$", line):
            key = match[1] if match[1] == "ob" else "fl"
            names.setdefault(key + match[2], match[3] or "")
            if not line.startswith("c"):
                now[key] = names[key + match[2]]
        elif line.startswith("calls="):
            called = True
        elif match := re.match(r"[0-9+*-]\S* (\d+)$", line):
            if not called:
                place = next(name for name, pattern in PLACES.items() if re.search(pattern, f"{now['ob']} {now['fl']}"))
                found[place] = found.get(place, 0) + int(match[1])
            called = False
    return found


def same(name: str, workload: str, size: int, raw: Figures, other: Figures) -> None:
    if raw["checksum"] != other["checksum"]:
        fail(f"{name} {workload} {size}: checksum {other['checksum']:.0f}, raw has {raw['checksum']:.0f}")


def check(programs: Programs) -> None:
    """All programs once, with little work."""
    rows = 500
    programs.call("raw", "load", rows)
    small = {"columns": 7, "text": 100, "conditions": 10}
    checked = [(work.name, work.alone) for work in WORKLOADS] + [(name, True) for name in small]
    for workload, alone in checked:
        size = small.get(workload, rows)
        raw = programs.run("raw", workload, size)
        for name in programs.names[1:]:
            if not alone or name == "corvane":
                same(name, workload, size, raw, programs.run(name, workload, size))
    print(f"{', '.join(programs.names)}: the same rows and texts in {len(checked)} workloads")


def line(title: str, samples: list[Figures]) -> Row:
    """Medians of one program's runs."""
    keys = samples[0].keys() & {*COMPARED, "times", "bytes"}
    return {"program": title, **{key: median(sample[key] for sample in samples) for key in sorted(keys)}}


def ratios(pairs: list[tuple[Figures, Figures]]) -> Row:
    compared = [key for key in (*COMPARED, "bytes") if all(raw.get(key, 0) > 0 for raw, _ in pairs)]
    return {f"{key} ratio": median(other[key] / raw[key] for raw, other in pairs) for key in compared}


def pairs(
    programs: Programs, ways: dict[str, tuple[str, str]], workload: str, size: int, count: int, least: int
) -> list[Row]:
    """The lines of one workload: raw, and each way to do it, a program and the workload's name there, by title. There
    are at least `least` pairs of the library, and of raw with itself."""
    samples: dict[str, list[tuple[Figures, Figures]]] = {title: [] for title in ways}
    for turn in range(max(count, least)):
        for title, (name, variant) in ways.items():
            if turn >= count and name != "corvane" and title != AGAIN:
                continue
            pair = [("raw", workload), (name, variant)]
            figures = [programs.run(*one, size) for one in (pair if turn % 2 == 0 else reversed(pair))]
            raw, other = figures if turn % 2 == 0 else reversed(figures)
            same(title, workload, size, raw, other)
            samples[title].append((raw, other))
    lines = [line("raw", [raw for taken in samples.values() for raw, _ in taken])]
    lines += [line(title, [other for _, other in taken]) | ratios(taken) for title, taken in samples.items()]
    return lines


def ways(programs: Programs, workload: Workload) -> dict[str, tuple[str, str]]:
    names = ["corvane"] if workload.alone else programs.names[1:]
    found = {PROGRAMS[name][0]: (name, workload.name) for name in names}
    found |= {title: ("raw", variant) for title, variant in workload.variants}
    return found | ({AGAIN: ("raw", workload.name)} if workload.varies else {})


def compare(programs: Programs, workloads: list[Workload], quick: bool, count: int) -> list[Row]:
    rows: list[Row] = []
    for workload in workloads:
        least = VARYING if workload.varies and not quick else LEAST
        for size in workload.quick if quick else workload.sizes:
            tell(f"{workload.title}, {size:,}")
            lines = pairs(programs, ways(programs, workload), workload.name, size, count, least)
            rows += [{"workload": workload.name, "size": size} | one for one in lines]
    return rows


def counted_sizes(workload: Workload, size: int, quick: bool) -> tuple[int, ...]:
    """What is counted. A hit depends on the number of records, of which many would take too long to fill in."""
    if workload.counted is not None:
        return workload.counted
    return (size,) if size <= 100_000 and not quick else ()


def per_unit(programs: Programs, name: str, workload: str, sizes: tuple[int, ...]) -> Figures:
    """The slope between two sizes, without what every run costs; or, of one size, what is done once; by PLACES."""
    taken = [programs.instructions(name, workload, size) for size in sizes]
    if len(taken) == 1:
        return {place: count / taken[0][1]["times"] for place, count in taken[0][0].items()}
    (few, _), (many, _) = taken
    return {place: (many[place] - few.get(place, 0)) / (sizes[1] - sizes[0]) for place in many}


def count_instructions(programs: Programs, workloads: list[Workload], quick: bool, rows: list[Row]) -> None:
    """Adds the instructions of one unit to the rows. Several at a time: time is not what is measured."""
    tell("Instructions")
    by_name = {workload.name: workload for workload in workloads}
    with ThreadPoolExecutor(max_workers=os.cpu_count()) as pool:
        jobs = {}
        for row in rows:
            workload = by_name[row["workload"]]
            program = ({"raw": ("raw", workload.name)} | ways(programs, workload))[row["program"]]
            sizes = counted_sizes(workload, row["size"], quick)
            if sizes and (program, sizes) not in jobs:
                jobs[program, sizes] = pool.submit(per_unit, programs, *program, sizes)
            row["instructions"] = jobs.get((program, sizes))
        for row in rows:
            row["places"] = row["instructions"] and row["instructions"].result()
            row["instructions"] = row["places"] and sum(row["places"].values())
    for row in rows:
        if row["program"] == "raw":
            raw = row  # the first of its workload
        elif row["instructions"]:
            row["instructions ratio"] = row["instructions"] / raw["instructions"]


def grow(programs: Programs, growths: list[Growth]) -> list[Row]:
    rows: list[Row] = []
    for growth in growths:
        for size in growth.sizes:
            tell(f"{growth.title}, {size:,}")
            lines = pairs(programs, {"Corvane": ("corvane", growth.workload)}, growth.workload, size, LEAST, LEAST)
            rows += [{"growth": growth.name, "size": size} | one for one in lines]
    return rows


def facts(programs: Programs, count: int, quick: bool) -> dict[str, str]:
    """Where and with what it was measured."""

    def version(package: str) -> str:
        command = ["dpkg-query", "-W", "-f", "${Version}", package]
        return subprocess.run(command, capture_output=True, text=True).stdout or "unknown"

    cpuinfo = Path("/proc/cpuinfo").read_text()
    model = re.search(r"^model name\s*: (.*)$", cpuinfo, re.M)
    compiler = subprocess.run(["g++", "--version"], capture_output=True, text=True).stdout.partition("\n")[0]
    found = {
        "Date": datetime.date.today().isoformat(),
        "Processor": f"{model.group(1) if model else 'unknown'}, {os.cpu_count()} cores",
        "Compiler": compiler,
        "Server": f"mariadb-server-core {version('mariadb-server-core')}, on the same machine",
        "Client library": f"libmariadb3 {version('libmariadb3')}",
        "Pairs": f"{count}; of Corvane {max(count, LEAST if quick else VARYING)} for single rows, else {max(count, LEAST)}",
    }
    for name, (title, package) in PROGRAMS.items():
        if package is not None and package != "libmariadb-dev":
            found[title] = f"{package} {version(package)}" if name in programs.names else "MISSING: not built"
    return found


# The tables.


def table(rows: list[list[str]]) -> str:
    """In Markdown, and aligned; the first row is the head, the first two columns are words."""
    widths = [max(len(row[i]) for row in rows) for i in range(len(rows[0]))]
    rule = [("-" * width if i < 2 else "-" * (width - 1) + ":") for i, width in enumerate(widths)]
    lines = []
    for row in [rows[0], rule, *rows[1:]]:
        cells = [text.ljust(width) if i < 2 else text.rjust(width) for i, (text, width) in enumerate(zip(row, widths))]
        lines.append("| " + " | ".join(cells) + " |")
    return "\n".join(lines)


def number(value: float) -> str:
    return f"{value:,.0f}" if value >= 100 else f"{value:.3g}"


def memory(row: Row) -> str:
    """The growth of the peak, or of a cache the bytes of one record."""
    if "bytes" in row:
        return ratio(row, "bytes") or f"{row['bytes']:,.0f} B per record"
    mebibytes, times_raw = row["memory"] / 1024, row.get("memory ratio")
    raw = mebibytes / times_raw if times_raw else 0
    if mebibytes < max(1, raw / 100):
        return "flat"
    return ratio(row, "memory") if raw > 1 else f"{mebibytes:,.0f} MiB"  # a ratio to next to nothing says nothing


def ratio(row: Row, key: str) -> str:
    return f"{row[key + ' ratio']:.2f}" if f"{key} ratio" in row else ""


def comparison_table(rows: list[Row]) -> str:
    """Of each workload raw in figures, everything else as ratios to it."""
    by_name = {workload.name: workload for workload in WORKLOADS}
    cells = [["Workload", "Program", "CPU", "Elapsed", "Instructions", "Memory"]]
    for row in rows:
        workload = by_name[row["workload"]]
        raw = row["program"] == "raw"
        counted = row.get("instructions")
        cells.append(
            [
                f"{workload.title}, {row['size']:,}" if raw else "",
                row["program"],
                f"{number(row['cpu'])} ms" if raw else ratio(row, "cpu"),
                f"{number(row['wall'])} ms" if raw else ratio(row, "wall"),
                ratio(row, "instructions") or (f"{number(counted)} per {workload.unit}" if counted else "-"),
                memory(row),
            ]
        )
    return table(cells)


def one_of(row: Row) -> float:
    """Microseconds of CPU for what is done once."""
    return 1000 * row["cpu"] / row.get("times", 1)


def profile_table(rows: list[Row]) -> str:
    """Of each workload how the library's program spends its instructions, in hundredths."""
    by_name = {workload.name: workload for workload in WORKLOADS}
    cells = [["Workload", "One", "Instructions", *(f"{place}, %" for place in PLACES)]]
    for row in rows:
        workload = by_name[row["workload"]]
        if row["program"] != "Corvane" or not row.get("places") or any(workload.title == one[0] for one in cells):
            continue
        spent, whole = row["places"], row["instructions"]
        shares = (f"{100 * spent.get(place, 0) / whole:.0f}" for place in PLACES)
        cells.append([workload.title, workload.unit, number(whole), *shares])
    return table(cells)


def growth_table(rows: list[Row]) -> str:
    by_name = {growth.name: growth for growth in GROWTHS}
    cells = [["Grows", "Size", "raw, µs CPU", "Corvane, µs CPU", "Ratio"]]
    for raw, ours in zip(rows[::2], rows[1::2]):
        growth = by_name[raw["growth"]]
        first = not any(growth.title == row[0].partition(":")[0] for row in cells)
        title = f"{growth.title}: one {growth.one}" if first else ""
        size = f"{raw['size']:,} {growth.of}"
        cells.append([title, size, number(one_of(raw)), number(one_of(ours)), ratio(ours, "cpu")])
    return table(cells)


def markdown(results: dict) -> str:
    parts = ["\n".join(f"- {name}: {text}" for name, text in results["facts"].items())]
    if results["rows"]:
        parts.append(comparison_table(results["rows"]))
    if results["growth"]:
        parts.append(growth_table(results["growth"]))
    return "\n\n".join(parts) + "\n"


# The charts.

# Of Okabe and Ito, told apart by colour-blind people too.
COLOURS = {
    "raw": "#000000",
    "Corvane": "#0072B2",
    "SOCI": "#E69F00",
    "MySQL++": "#009E73",
    "Connector/C++": "#CC79A7",
    "POCO Data": "#56B4E9",
    "raw, prepared": "#999999",
}


def pyplot():
    """matplotlib, set up so that the same results give the same file."""
    import matplotlib

    matplotlib.use("svg")
    import matplotlib.pyplot

    style = {"svg.hashsalt": "corvane", "svg.fonttype": "none", "font.family": "sans-serif", "font.size": 10}
    matplotlib.rcParams.update(style)
    return matplotlib.pyplot


def save(figure, path: Path) -> None:
    figure.savefig(path, metadata={"Date": None}, facecolor="white", bbox_inches="tight")
    path.write_text(re.sub(r" +$", "", path.read_text(), flags=re.M))


def bars(results: dict, key: str, title: str, path: Path) -> None:
    """Of each workload that every library does the largest size: a group of bars, each a ratio to raw."""
    plot = pyplot()
    measured = {row["workload"] for row in results["rows"]}
    shared = [workload for workload in WORKLOADS if not workload.alone and workload.name in measured]
    rows = {(row["workload"], row["program"]): row for row in results["rows"] if f"{key} ratio" in row}
    programs = [name for name in COLOURS if any((workload.name, name) in rows for workload in shared)]
    if not programs:
        return
    figure, axes = plot.subplots(figsize=(8, 6))
    height = 0.8 / len(programs)
    for i, program in enumerate(programs):
        for j, workload in enumerate(shared):
            row = rows.get((workload.name, program))
            if row is None:
                continue
            at, value = j + (i - (len(programs) - 1) / 2) * height, row[f"{key} ratio"]
            axes.barh(at, value, height, color=COLOURS[program], label=program if j == 0 else None)
            axes.annotate(f"{value:.2f}", (value, at), (3, 0), textcoords="offset points", va="center", fontsize=7)
    sizes = {row["workload"]: row["size"] for row in results["rows"]}
    axes.set_yticks(range(len(shared)), [f"{one.title}\n{sizes[one.name]:,}" for one in shared])
    axes.axvline(1, color="black", linewidth=1)
    axes.invert_yaxis()
    axes.set_xlabel("times that of raw, less is better")
    axes.set_title(title)
    axes.spines[["top", "right"]].set_visible(False)
    axes.legend(frameon=False, loc="upper center", bbox_to_anchor=(0.5, -0.1), ncol=len(programs))
    save(figure, path)
    plot.close(figure)


def growth_charts(results: dict, path: Path) -> None:
    """A chart for each of GROWTHS, on logarithmic axes: what is linear rises by one decade each decade."""
    plot = pyplot()
    figure, grid = plot.subplots(2, 3, figsize=(11, 7), layout="constrained")
    measured = [growth for growth in GROWTHS if any(row["growth"] == growth.name for row in results["growth"])]
    for growth, axes in zip(measured, grid.flat):
        for program, marker in (("raw", "o"), ("Corvane", "s")):
            rows = [row for row in results["growth"] if row["growth"] == growth.name and row["program"] == program]
            sizes, times = [row["size"] for row in rows], [one_of(row) for row in rows]
            axes.plot(sizes, times, marker=marker, markersize=4, color=COLOURS[program], label=program)
        axes.set(xscale="log", yscale="log", title=growth.title)
        axes.set(xlabel=growth.of, ylabel=f"µs CPU for one {growth.one}")
        for axis in (axes.xaxis, axes.yaxis):
            axis.set_major_formatter("{x:,.12g}")
        axes.grid(True, color="#dddddd", linewidth=0.5)
        axes.spines[["top", "right"]].set_visible(False)
    handles, labels = grid.flat[0].get_legend_handles_labels()
    for axes in grid.flat[len(measured) :]:
        axes.axis("off")
        axes.legend(handles, labels, frameon=False, loc="center")
    save(figure, path)
    plot.close(figure)


def insert(page: Path, name: str, text: str) -> None:
    """Replaces what stands between the page's marks of that name."""
    begin, end = f"<!-- {name} -->\n", f"<!-- end of {name} -->\n"
    before, _, rest = page.read_text().partition(begin)
    _, _, after = rest.partition(end)
    page.write_text(f"{before}{begin}\n{text}\n{end}{after}")


def write(results: dict, output: Path) -> None:
    """All files; and the tables into the page of the same name, so that page and results never differ."""
    output.mkdir(parents=True, exist_ok=True)
    (output / "results.json").write_text(json.dumps(results, indent=1, ensure_ascii=False) + "\n")
    text = markdown(results)
    (output / "results.md").write_text(text)
    bars(results, "cpu", "CPU time", output / "cpu.svg")
    bars(results, "instructions", "Instructions", output / "instructions.svg")
    if results["growth"]:
        growth_charts(results, output / "growth.svg")
    page = output.with_suffix(".md")
    if page.exists():
        insert(page, "results", text)
        insert(page, "profile", profile_table(results["rows"]) + "\n")
    tell(f"written to {output}")


def arguments() -> argparse.Namespace:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--programs", type=Path, metavar="DIR", help="where the programs are")
    parser.add_argument("--quick", action="store_true", help="less work, one pair (of the library three), no growth")
    parser.add_argument("--check", action="store_true", help="compare what is read and written, measure nothing")
    parser.add_argument("--redraw", action="store_true", help="write the page and charts from results.json again")
    several = "pairs; 5, with --quick 1; at least 3 of Corvane, 15 of single rows"
    parser.add_argument("--repeat", type=int, metavar="N", help=several)
    parser.add_argument("--dry-run", action="store_true", help="look at the arguments only")
    parser.add_argument("--only", metavar="LIST", help="of the workloads and growths these, with commas between")
    parser.add_argument("--output", type=Path, metavar="DIR", help="where the results go; docs/performance")
    return parser.parse_args()


def main() -> None:
    options = arguments()
    if options.repeat is not None and options.repeat < 1:
        fail("--repeat needs a number from 1 on")
    only = options.only.split(",") if options.only else []
    workloads = [one for one in WORKLOADS if not only or one.name in only]
    growths = [one for one in GROWTHS if not options.quick and (not only or one.name in only)]
    if unknown := set(only) - {one.name for one in (*WORKLOADS, *GROWTHS)}:
        fail(f"no such workload: {', '.join(sorted(unknown))}")
    if options.dry_run:
        return None
    if options.redraw:
        output = options.output or OUTPUT
        return write(json.loads((output / "results.json").read_text()), output)
    if options.programs is None:
        fail("where are the programs? See --help")
    if "CORVANE_TEST_PORT" not in os.environ:
        fail("no server: CORVANE_TEST_PORT is not set; use ./run bench")
    programs = Programs(options.programs)
    if options.check:
        return check(programs)
    count = options.repeat or (1 if options.quick else 5)
    needed = [max(one.quick if options.quick else one.sizes, default=0) for one in workloads]
    needed += [max(one.sizes) for one in growths if one.workload in ("fetch", "hit")]
    tell(f"Loading {max(needed, default=0):,} rows")
    programs.call("raw", "load", max(needed, default=0))
    rows = compare(programs, workloads, options.quick, count)
    count_instructions(programs, workloads, options.quick, rows)
    grown = grow(programs, growths)
    results = {"facts": facts(programs, count, options.quick), "rows": rows, "growth": grown}
    print(markdown(results))
    output = options.output or (None if options.quick or only else OUTPUT)
    if output is not None:
        write(results, output)


if __name__ == "__main__":
    main()
