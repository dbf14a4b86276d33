"""Compares what the program FACTS finds in the files of FOLDER with FOLDER/expected.json:
check_formats.py FACTS FOLDER. Status 1 if anything differs."""
import json
import math
import pathlib
import subprocess
import sys

def close(a, b, relative, absolute=0.0):
    return math.isclose(a, b, rel_tol=relative, abs_tol=absolute)


def energy(terms, channel):
    return sum(term * channel**power for power, term in enumerate(terms))


def count_differences(want, counts):
    if len(counts) != want["channels"]:
        yield f"{len(counts)} channels, not {want['channels']}"
        return
    if not close(sum(counts), want["sum_counts"], 1e-6):
        yield f"sum {sum(counts)}, not {want['sum_counts']}"
    for channel, count in want["counts_at"].items():
        if not close(counts[int(channel)], count, 1e-6):
            yield f"channel {channel}: {counts[int(channel)]} counts, not {count}"


def time_differences(want, got):
    for key in ("live_s", "real_s"):
        a, b = want.get(key), got[key]
        if (a is None) != (b is None) or (a is not None and not close(a, b, 0, 1e-3)):
            yield f"{key} {b}, not {a}"
    if got["start"] not in [want["start"], *want.get("start_also_accepted", [])]:
        yield f"start {got['start']}, not {want['start']}"


def calibration_differences(want, got):
    """Energies are compared at both ends: files that count from 1 are shown from 0."""
    told, terms, last = want["calibration"], got["calibration"], want["channels"] - 1
    if told is None:
        column = want.get("first_column")
        if terms and column and not close(energy(terms, last), column["last"], 1e-5):
            yield f"last energy {energy(terms, last)}, not {column['last']}"
        elif terms and not column:
            yield f"calibration {terms}, expected none"
    elif "pairs" in told:
        for kev, channel in told["pairs"]:
            if not terms or not close(energy(terms, channel), kev, 5e-3, 0.5):
                yield f"channel {channel}: {terms and energy(terms, channel)} keV, not {kev}"
    elif terms is None:
        if told["coefficients"] != [0.0, 1.0]:
            yield f"no calibration, expected {told['coefficients']}"
    else:
        # The loaded spectrum holds three terms: of more, what was read is compared.
        if len(told["coefficients"]) > 3:
            terms = got["coefficients"]
        first = 1 if "index+1" in want.get("energy_check", {}).get("note", "") else 0
        for channel in (0, last // 2, last):
            a, b = energy(terms, channel), energy(told["coefficients"], channel + first)
            if not close(a, b, 1e-5, 1e-5):
                yield f"channel {channel}: {a} keV, not {b}"


def spectrum_differences(want, got):
    yield from count_differences(want, got["counts"])
    yield from time_differences(want, got)
    yield from calibration_differences(want, got)
    if got["title"] != want["title"] and want["title"] not in got["name"]:
        yield f"title {got['title']!r}, not {want['title']!r}"
    if want.get("detector", got["detector"]) != got["detector"]:
        yield f"detector {got['detector']!r}, not {want['detector']!r}"


def file_differences(want, got):
    refused = isinstance(got, str)
    if refused != (want["expect"] == "refuse"):
        yield f"refused: {got}" if refused else "read, but must be refused"
    elif refused:
        print(f"  refused: {want['file']}: {got}")
    elif len(got) != len(want["spectra"]):
        yield f"{len(got)} spectra, not {len(want['spectra'])}"
    else:
        for i, (a, b) in enumerate(zip(want["spectra"], got)):
            yield from (f"spectrum {i}: {text}" for text in spectrum_differences(a, b))


def main():
    facts, folder = sys.argv[1], pathlib.Path(sys.argv[2])
    files = json.loads((folder / "expected.json").read_text(encoding="utf-8"))["files"]
    paths = [str(folder / want["file"]) for want in files]
    lines = subprocess.run([facts, *paths], check=True, capture_output=True, text=True).stdout
    failed = 0
    for want, line in zip(files, lines.splitlines(), strict=True):
        for text in file_differences(want, json.loads(line)):
            print(f"{want['file']}: {text}")
            failed = 1
    print(f"{len(files)} files read, {'with differences' if failed else 'no difference'}.")
    sys.exit(failed)


main()
