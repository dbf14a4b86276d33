"""Compares every row of the nuclide database and of the energy list file with the tables that they
are made of: check_nuclide_data.py TABLES BUILT. Status 1 and the first differences if there are any."""

import collections
import csv
import pathlib
import sqlite3
import struct
import sys

SHOWN = 10  # differences
SOURCES = {"2023-09-01": "ENSDF", "2024-08-30": "ENDF/B-VIII.1"}


def rows_of(path):
    with open(path, newline="", encoding="utf-8") as file:
        return list(csv.DictReader(file))


def nuclide_row(n):
    return (int(n["nc_id"]), int(n["nc_z"]), int(n["nc_a"]), int(n["nc_i_num"]), n["nc_dmode"] or None,
            n["nc_hl"], float(n["nc_tsec"]), float(n["nc_1st_br_eng"] or 0), float(n["nc_1st_br"] or 0),
            n["nc_eng_update"])


def line_row(l):
    return (int(l["eng_nc"]), int(l["eng_gam_num"]), float(l["eng_eng"]), float(l["eng_br"]), l["eng_rad"],
            l["eng_raddef"] or None, l["eng_dmode"] or None)


def units(value, scale):
    # As the writer: halves of the binary value to the even neighbour.
    return round(float(value or 0) * scale)


def list_record(l, n):
    mass = n["nc_a"].rjust(3) + ("g" if n["nc_i_num"] == "0" else "m" + n["nc_i_num"])
    number, unit = n["nc_hl"].split(" ")
    texts = "".join(text.ljust(width)[:width] for text, width in
                    ((n["elm_name"], 3), (mass, 9), (number, 9), (unit.rjust(2), 3)))
    definition = (l["eng_raddef"] or l["eng_rad"]).ljust(8)[:8]
    return (struct.pack("<II", units(l["eng_eng"], 100), units(l["eng_br"], 1000)) + texts.encode() +
            struct.pack("<II", units(n["nc_1st_br_eng"], 100), units(n["nc_1st_br"], 1000)) +
            definition.encode())


def differences(name, wanted, found):
    wanted, found = collections.Counter(wanted), collections.Counter(found)
    for row, count in (wanted - found).items():
        yield f"{name} lacks {row} ({count})"
    for row, count in (found - wanted).items():
        yield f"{name} has {row} ({count})"


def main():
    tables, built = map(pathlib.Path, sys.argv[1:])
    nuclides = rows_of(tables / "nuclides.csv")
    lines = [{**line, "eng_nc": line["nc_id"]} for line in rows_of(tables / "lines.csv")]
    by_id = {n["nc_id"]: n for n in nuclides}
    database = sqlite3.connect(f"file:{built / 'nuc2k.mdb'}?mode=ro", uri=True)
    data = (built / "eng_list" / "all_nucl.elf").read_bytes()
    records = [data[at : at + 48] for at in range(0, len(data), 48)]
    energies = [struct.unpack_from("<I", record)[0] for record in records]
    elements = {(int(n["nc_z"]), n["elm_name"]) for n in nuclides}
    found = [
        *differences("nc", map(nuclide_row, nuclides), database.execute("select * from nc")),
        *differences("eng", map(line_row, lines),
                     database.execute("select eng_nc, eng_gam_num, eng_eng, eng_br, eng_rad, eng_raddef, "
                                      "eng_dmode from eng")),
        *differences("elm", elements, database.execute("select * from elm")),
        *differences("src", ((int(n["nc_id"]), SOURCES[n["nc_eng_update"]], n["nc_eng_update"])
                             for n in nuclides), database.execute("select * from src")),
        *differences("list", (list_record(l, by_id[l["nc_id"]]) for l in lines), records),
    ]
    if energies != sorted(energies):
        found.append("the list does not rise")
    print(f"{len(nuclides)} states, {len(lines)} lines, {len(records)} records, {len(found)} differences")
    print("\n".join(found[:SHOWN]))
    sys.exit(1 if found else 0)


main()
