"""Puts single faults into the work of a room of src/ and lists those that its tests do not notice:
mutants.py ROOM COUNT SEED, from the root of the source. The faults are found in the syntax tree and all
built at once, each switched on by KESTREL_MUTANT=its number. Everything lies under build/mutants/ROOM."""
import collections
import concurrent.futures
import json
import os
import pathlib
import random
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import time

from clang.cindex import CursorKind as Kind
from clang.cindex import Index, TypeKind

# Where a fault lies: bytes of a file, their line, what is done to them, and what stands there then.
Fault = collections.namedtuple("Fault", "file start end line what before after")

OTHER_OPERATOR = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==", "+": "-", "-": "+",
                  "*": "/", "/": "*", "+=": "-=", "-=": "+=", "&&": "||", "||": "&&"}
OTHER_ROUNDING = {"floor": "ceil", "ceil": "floor", "round": "trunc", "trunc": "floor",
                  "roundHalfEven": "std::floor", "lround": "std::floor", "nearbyint": "std::floor"}
SWITCH = """#pragma once
#include <cmath>
#include <cstdlib>
inline bool mutant(int number) {
    static const char* text = std::getenv("KESTREL_MUTANT");
    static const int on = text ? std::atoi(text) : 0;
    return on == number;
}
"""


def is_number(cursor):
    kind = cursor.type.get_canonical().kind
    return TypeKind.BOOL.value <= kind.value <= TypeKind.LONGDOUBLE.value


class Finder:
    """The faults that one file of C++ can have."""

    def __init__(self, file, flags):
        self.file, self.bytes, self.faults = file, file.read_bytes(), []
        unit = Index.create().parse(str(file), flags)
        for child in unit.cursor.get_children():
            if child.location.file and child.location.file.name == str(file):
                self.visit(child, False)

    def text(self, cursor):
        return self.bytes[cursor.extent.start.offset:cursor.extent.end.offset].decode()

    def add(self, cursor, what, after):
        before = self.text(cursor)
        start, end = cursor.extent.start, cursor.extent.end
        if before and "\n" not in before and before != after:
            self.faults.append(Fault(self.file, start.offset, end.offset, start.line, what, before, after))

    def visit(self, cursor, in_body):
        tokens = [token.spelling for token in cursor.get_tokens()][:8] if cursor.kind == Kind.VAR_DECL else []
        if cursor.kind in (Kind.STATIC_ASSERT, Kind.ENUM_DECL) or "constexpr" in tokens:
            return
        children = list(cursor.get_children())
        if in_body:
            self.look_at(cursor, children)
        body = in_body or cursor.kind == Kind.COMPOUND_STMT
        for child in children[1:] if cursor.kind == Kind.CASE_STMT else children:
            self.visit(child, body)

    def look_at(self, cursor, children):
        if cursor.kind in (Kind.BINARY_OPERATOR, Kind.COMPOUND_ASSIGNMENT_OPERATOR):
            self.other_operator(cursor, children)
        elif cursor.kind == Kind.INTEGER_LITERAL and is_number(cursor):
            self.add(cursor, "off by one", f"{self.text(cursor)} + 1")
        elif cursor.kind == Kind.IF_STMT and children[0].kind.is_expression():
            self.add(children[0], "condition negated", f"!({self.text(children[0])})")
        elif cursor.kind == Kind.CALL_EXPR:
            self.other_rounding(cursor)
            self.swapped(cursor)
        elif cursor.kind == Kind.COMPOUND_STMT:
            self.statements_taken_out(children)

    def statements_taken_out(self, children):
        for child in children:
            if child.kind in (Kind.CALL_EXPR, Kind.BINARY_OPERATOR, Kind.COMPOUND_ASSIGNMENT_OPERATOR,
                              Kind.UNARY_OPERATOR):
                self.add(child, "taken out", "")

    def other_operator(self, cursor, children):
        left, right = children
        if not (is_number(left) and is_number(right)):
            return
        start, end = left.extent.end.offset, right.extent.start.offset
        operator = self.bytes[start:end].decode().strip()
        if operator in OTHER_OPERATOR:
            self.add(cursor, "operator", f"{self.text(left)} {OTHER_OPERATOR[operator]} {self.text(right)}")

    def other_rounding(self, cursor):
        other = OTHER_ROUNDING.get(cursor.spelling)
        if other:
            before = self.text(cursor)
            self.add(cursor, "rounding", re.sub(r"^(std::)?\w+", f"std::{other.replace('std::', '')}", before))

    def swapped(self, cursor):
        if cursor.spelling in ("min", "max", "operator==", "operator!="):
            return
        arguments = [a for a in cursor.get_arguments() if a is not None and self.text(a)]
        for a, b in zip(arguments, arguments[1:]):
            if a.type.get_canonical().spelling != b.type.get_canonical().spelling or self.text(a) == self.text(b):
                continue
            begin, whole = cursor.extent.start.offset, self.bytes
            after = (whole[begin:a.extent.start.offset] + self.text(b).encode()
                     + whole[a.extent.end.offset:b.extent.start.offset] + self.text(a).encode()
                     + whole[b.extent.end.offset:cursor.extent.end.offset])
            self.add(cursor, "arguments swapped", after.decode())


def choose(faults, count, seed):
    """As many as asked for, none within another."""
    chosen, taken = [], collections.defaultdict(list)
    random.Random(seed).shuffle(faults)
    for fault in faults:
        spans = taken[fault.file]
        if len(chosen) < count and all(fault.end <= start or end <= fault.start for start, end in spans):
            spans.append((fault.start, fault.end))
            chosen.append(fault)
    return dict(enumerate(sorted(chosen), 1))


def switched(number, fault):
    if fault.after == fault.before:  # left out: a switch may be what does not compile
        return fault.before
    if fault.what == "taken out":
        return f"if (!mutant({number})) {fault.before}"
    return f"(mutant({number}) ? ({fault.after}) : ({fault.before}))"


def write(source, copy, faults, switch):
    """Every file with its faults; the lines keep their numbers."""
    for file in {fault.file for fault in faults.values()}:
        text = file.read_bytes()
        for number, fault in sorted(faults.items(), key=lambda item: -item[1].start):
            if fault.file == file:
                text = text[:fault.start] + switched(number, fault).encode() + text[fault.end:]
        place = copy / file.relative_to(source)
        new = f'#include "{switch}"\n#line 1 "{place}"\n'.encode() + text
        if new != place.read_bytes():
            place.write_bytes(new)


def build(source, copy, room, faults):
    """Builds the tests; faults that do not compile are left out. The rest is what is built."""
    switch = copy / "mutant.h"
    switch.write_text(SWITCH)
    every = dict(faults)
    while True:
        write(source, copy, every, switch)
        command = ["cmake", "--build", copy / "build", "--target", f"{room}_tests", "--", "-k0", "-j2"]
        done = subprocess.run(command, capture_output=True, text=True)
        if done.returncode == 0:
            return faults
        wrong = set(re.findall(r"([^\s:]+):(\d+):\d+: error", done.stdout))
        bad = [n for n, f in faults.items() if (str(copy / f.file.relative_to(source)), str(f.line)) in wrong]
        if not bad:
            sys.exit(done.stdout[-3000:])
        for number in bad:  # kept in the file as it was
            every[number] = every[number]._replace(what="operator", after=every[number].before)
            del faults[number]


def seconds_without_fault(tests):
    begin = time.monotonic()
    if notice(tests, 0, 600) is not None:
        sys.exit("The tests fail without any fault.")
    return time.monotonic() - begin


def notice(tests, number, limit):
    """How the tests show the fault; None if they do not."""
    with tempfile.TemporaryDirectory() as folder:
        os.chmod(folder, 0o711)  # some tests act as an ordinary user
        environment = os.environ | {"KESTREL_MUTANT": str(number), "TMPDIR": folder}
        command = [tests, "--gtest_brief=1", "--gtest_fail_fast"]
        with subprocess.Popen(command, cwd=folder, env=environment, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL, start_new_session=True) as run:
            try:
                return None if run.wait(limit) == 0 else "failed"
            except subprocess.TimeoutExpired:
                os.killpg(run.pid, 9)
                return "no end"


def copy_of(source, room):
    copy = source / "build/mutants" / room
    for name in subprocess.check_output(["git", "ls-files", "-z"], text=True).split("\0")[:-1]:
        (copy / name).parent.mkdir(parents=True, exist_ok=True)
        shutil.copy2(source / name, copy / name)
    subprocess.run(["cmake", "-S", copy, "-B", copy / "build", "-G", "Ninja", "-DCMAKE_CXX_FLAGS=-O0 -w -Wno-narrowing"],
                   check=True, stdout=subprocess.DEVNULL)
    return copy


def possible_faults(source, copy, room):
    for entry in json.loads((copy / "build/compile_commands.json").read_text()):
        if f"kestrel_{room}.dir" in entry["command"]:
            flags = [word for word in shlex.split(entry["command"]) if re.match("-(I|D|std)", word)]
            flags += [f"-isystem{path}" for path in re.findall(r"-isystem (\S+)", entry["command"])]
            yield from Finder(source / pathlib.Path(entry["file"]).relative_to(copy), flags).faults


def main(room, count, seed):
    source = pathlib.Path.cwd()
    copy = copy_of(source, room)
    faults = choose(list(possible_faults(source, copy, room)), count, seed)
    faults = build(source, copy, room, faults)
    tests = copy / f"build/tests/{room}/{room}_tests"
    limit = 10 + 5 * seconds_without_fault(tests)
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as runs:
        results = runs.map(lambda number: notice(tests, number, limit), faults)
        unnoticed = [fault for fault, shown in zip(faults.values(), results) if shown is None]
    for fault in unnoticed:
        print(f"{fault.file.relative_to(source)}:{fault.line}: {fault.what}: {fault.before} -> {fault.after}")
    print(f"{room}: {len(faults) - len(unnoticed)} of {len(faults)} faults noticed")


if __name__ == "__main__":
    main(sys.argv[1], int(sys.argv[2]), int(sys.argv[3]))
