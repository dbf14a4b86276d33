"""Runs the benchmarks and prints every number beside its floor and its mark.

Usage: table.py BUILD WINDOWS PREVIEW EMPTY FURNISHED
The memory in kB: Kestrel with its windows, and with the print preview as well; an empty window, and
as many as Kestrel's with Qt's menus and buttons in them.
"""

import json
import os
import statistics
import subprocess
import sys
import tempfile
import time

from jet_of_lines import repeat_lines

STARTS = 21  # of each program, in turn
REPETITIONS = 9  # of each benchmark, in random order
SECONDS = 0.1  # at least, of each repetition
JET_LINES = 100000


def run_benchmarks(program, environment):
    """Medians by the benchmarks' names."""
    arguments = [
        program,
        "--benchmark_format=json",
        f"--benchmark_repetitions={REPETITIONS}",
        f"--benchmark_min_time={SECONDS}",
        "--benchmark_enable_random_interleaving=true",
        "--benchmark_report_aggregates_only=true",
    ]
    output = subprocess.run(
        arguments, env=environment, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=True
    ).stdout
    in_microseconds = {"ns": 1e-3, "us": 1.0, "ms": 1e3}
    medians = {}
    for run in json.loads(output)["benchmarks"]:
        if run["aggregate_name"] == "median":
            factor = in_microseconds[run["time_unit"]]
            run["wall"] = run["real_time"] * factor
            run["cpu"] = run["cpu_time"] * factor
            medians[run["run_name"]] = run
    return medians


def start(command):
    """Time and processor time in microseconds from the start of a program to its first painting.

    Qt itself tells on the error output when it hands a painted window to the display.
    """
    environment = dict(os.environ, QT_LOGGING_RULES="qt.widgets.painting.info=true")
    begin = time.perf_counter()
    process = subprocess.Popen(command, env=environment, stderr=subprocess.PIPE)
    for line in process.stderr:
        if b"Flushing" in line:
            break
    else:
        sys.exit(f"{command[0]} did not paint")
    wall = time.perf_counter() - begin
    process.kill()
    _, _, usage = os.wait4(process.pid, 0)
    process.returncode = 0
    return {"wall": wall * 1e6, "cpu": (usage.ru_utime + usage.ru_stime) * 1e6}


def starts(commands):
    """Medians of all commands, started by turns; the first turn fills the caches."""
    times = [[start(command) for command in commands] for _ in range(STARTS + 1)][1:]
    return [
        {kind: statistics.median(turn[i][kind] for turn in times) for kind in ("wall", "cpu")}
        for i in range(len(commands))
    ]


def shown(microseconds):
    for unit, size in (("s", 1e6), ("ms", 1e3)):
        if microseconds >= size:
            return f"{microseconds / size:.3g} {unit}"
    return f"{microseconds:.3g} µs"


def print_table(headings, rows):
    print("| " + " | ".join(headings) + " |")
    print("|---" * len(headings) + "|")
    for row in rows:
        print("| " + " | ".join(row) + " |")
    print()


def mark_cells(value, mark, text):
    if mark is None:
        return ["", ""]
    return [f"≤ {text}", "yes" if value <= mark else "**no**"]


def time_row(work, run, mark):
    """Beside a time in microseconds."""
    cells = mark_cells(run["wall"], mark, shown(mark))
    return [work, shown(run["wall"]), shown(run["cpu"]), "", "", *cells]


def ratio_row(work, run, floor_name, floor, mark=None):
    ratio = run["wall"] / floor["wall"]
    times = [shown(run["wall"]), shown(run["cpu"])]
    cells = mark_cells(ratio, mark, f"{mark} x")
    return [work, *times, f"{floor_name}: {shown(floor['wall'])}", f"{ratio:.2f}", *cells]


def memory_row(work, kilobytes, floor_name, floor, mark=None):
    ratio = kilobytes / floor
    cells = mark_cells(ratio, mark, f"{mark} x")
    sizes = [f"{kilobytes / 1024:.1f} MB", "", f"{floor_name}: {floor / 1024:.1f} MB"]
    return [work, *sizes, f"{ratio:.2f}", *cells]


def size_row(work, size, mark):
    """In bytes."""
    return [work, f"{size / 1000:.0f} kB", "", "", "", *mark_cells(size, mark, f"{mark / 1000:.0f} kB")]


def reading(runs):
    yield ratio_row("read a CHN file of 4096 channels", runs["readChn/4096"], "plain read", runs["plainRead/4096"], 3)
    for form, name in enumerate(("Windows Oxford", "DOS Oxford", "Series 35+")):
        work = f"open a {name} file of 16384 channels"
        yield ratio_row(work, runs[f"openText/{form}"], "line splitting", runs[f"splitText/{form}"], 5)


def exchange(runs):
    """The numbers are the places in the table of writers of exchange_bench.cpp."""
    for form, name, floor_name, floor, mark in (
        (0, "SPE", "line splitting", "splitExchange", 3),
        (1, "TKA", "line splitting", "splitExchange", 3),
        (2, "table", "line splitting", "splitExchange", None),
        (3, "N42", "the XML alone", "parseExchange", 2),
        (4, "SPC", "plain read", "readBytesOfExchange", 3),
        (5, "CNF", "plain read", "readBytesOfExchange", 3),
    ):
        work = f"read a file of 16384 channels: {name}"
        yield ratio_row(work, runs[f"readExchange/{form}"], floor_name, runs[f"{floor}/{form}"], mark)


def viewing(runs):
    repaint = runs["repaintOnScreen/16384"]
    page = runs["printPage/16384"]
    yield time_row("open to painted plot, 16384 channels", runs["openToPaintedPlot/16384"], 16e3)
    yield time_row("full repaint, 16384 channels, 1200 x 800", repaint, 2e3)
    yield ratio_row("the same beside QCustomPlot", repaint, "QCustomPlot", runs["repaintQCustomPlot/16384"], 1)
    pair = runs["repaintPairOnScreen"]
    yield ratio_row("with a second spectrum and all axes", pair, "one spectrum", repaint, 1.8)
    for kind, one in (("lines", "lines"), ("linear lines", "linear"), ("dots", "dots")):
        work = f"picture with a second curve, {kind}"
        yield ratio_row(work, runs[f"repaintPair/{one}"], "one curve", runs[f"repaintPicture/{one}/16384"], 1.8)
    for work, run in (
        ("zoom by the wheel, two spectra and all axes", "wheelStep/zoomPair"),
        ("likewise in their difference", "wheelStep/zoomDifference"),
        ("pan by the wheel", "wheelStep/panPair"),
        ("draw a range with the mouse", "dragStep/pair"),
    ):
        yield time_row(work, runs[run], 8e3)
    yield time_row("cursor step with status line", runs["cursorStep/16384"], 500)
    yield time_row("print a page, 16384 channels", page, 0.5e6)
    yield size_row("its PDF file", page["bytes"], 300e3)


def nuclides(runs):
    made = runs["rebuildMade/100000"]
    yield time_row("energy list, 100,000 lines, ±3 keV", made, 5e3)
    yield ratio_row("the same beside SQLite alone", made, "plain query", runs["plainQuery/100000"])
    yield ratio_row("energy list, 1,000,000 lines", runs["rebuildMade/1000000"], "100,000 lines", made, 1.5)
    yield time_row("all peaks of 16384 channels", runs["allPeaks/16384"], 3e3)
    yield time_row("candidates for them", runs["candidates"], 50e3)
    yield time_row("first use of an Access database, 100,000 lines", runs["firstUseOfJet"], 1e6)


def whole_program(build, windows, preview, empty, furnished):
    empty_window = f"{build}/bench/empty_window"
    kestrel, bare, with_controls = starts([[f"{build}/src/kestrel"], [empty_window], [empty_window, "1"]])
    yield ratio_row("start to first painted window", kestrel, "empty window", bare, 1.2)
    yield ratio_row("the same beside Qt's controls", kestrel, "menus and buttons", with_controls)
    yield memory_row("memory, a spectrum and all windows", preview, "empty window", empty, 1.5)
    yield memory_row("the same without the print preview", windows, "empty window", empty)
    yield memory_row("the same beside Qt's controls", windows, "five windows with them", furnished)


def curve(name, runs, benchmark, sizes):
    return [name, *(shown(runs[f"{benchmark}/{size}"]["wall"]) for size in sizes)]


def main():
    build = sys.argv[1]
    rows = list(whole_program(build, *map(int, sys.argv[2:])))
    runs = {}
    with tempfile.TemporaryDirectory() as folder:
        repeat_lines("tests/data/jet/nuc2k.mdb", f"{folder}/nuc2k.mdb", JET_LINES)
        environment = dict(os.environ, KESTREL_BENCH_JET=folder)
        for program in ("core_bench", "nuclide_bench", "view_bench"):
            runs |= run_benchmarks(f"{build}/bench/{program}", environment)
    print_table(
        ["work", "time", "CPU time", "floor", "ratio", "mark", "met"],
        [*reading(runs), *exchange(runs), *viewing(runs), *nuclides(runs), *rows],
    )
    channels = (1024, 4096, 16384)
    print_table(
        ["channels", *map(str, channels)],
        [
            curve("read a CHN file", runs, "readChn", channels),
            curve("open to painted plot", runs, "openToPaintedPlot", channels),
            curve("full repaint", runs, "repaintOnScreen", channels),
            curve("QCustomPlot", runs, "repaintQCustomPlot", channels),
            curve("cursor step", runs, "cursorStep", channels),
            curve("print a page", runs, "printPage", channels),
        ],
    )
    lines = (10000, 100000, 1000000)
    print_table(
        ["lines of the database", *(f"{count:,}" for count in lines)],
        [
            curve("energy list", runs, "rebuildMade", lines),
            curve("plain query of its rows", runs, "plainQuery", lines),
        ],
    )


main()
