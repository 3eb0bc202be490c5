#!/usr/bin/env python3
"""Compares the lines of src/ that the tests ran with the list of those that may be missed.

    check.py NATIVE.json [WINDOWS.json]

The files come from gcovr. missed.txt must name every line that no test runs, with its reason, and
must name no other line. With one file this judges the native world alone.
"""

import collections
import json
import pathlib
import sys

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent.parent
WANTED_BRANCHES = 0.95


class World:
    """What one world's tests have run: lines by file, and branches as (taken, all)."""

    def __init__(self, path: str):
        self.lines = collections.defaultdict(dict)
        self.branches = collections.defaultdict(lambda: (0, 0))
        for file in json.loads(pathlib.Path(path).read_text())["files"]:
            self._add(file["file"], file["lines"])

    def _add(self, name: str, lines: list) -> None:
        for line in lines:
            if line.get("gcovr/noncode"):
                continue
            number = line["line_number"]
            self.lines[name][number] = self.lines[name].get(number, 0) + line["count"]
            taken, total = self.branches[name]
            taken += sum(1 for branch in line["branches"] if branch["count"])
            self.branches[name] = (taken, total + len(line["branches"]))


def share(part: int, whole: int) -> str:
    return f"{part / whole:7.1%}" if whole else "      -"


def known_misses() -> dict[tuple[str, str], str]:
    """(file, line of code) to where it is missed: native, both or windows."""
    known = {}
    for line in (HERE / "missed.txt").read_text().splitlines():
        if line and not line.startswith("#"):
            file, code, world, _reason = (part.strip() for part in line.split(" ¦ "))
            known[(file, code)] = world
    return known


def counted_line(code: list[str], number: int) -> str:
    """The line of code that a count stands for: gcc 14 counts an empty handler at its closing brace,
    or at the one of the function around it."""
    line = code[number - 1].strip()
    before = number - 1
    while before and code[before].strip() == "}":
        before -= 1
    is_handler = line == "}" and code[before].strip().startswith("} catch")
    return code[before].strip() if is_handler else line


def missed_lines(worlds: list[World]) -> dict[tuple[str, str], int]:
    """(file, code) to line number of what none of the worlds has run."""
    missed = {}
    for file in sorted({name for world in worlds for name in world.lines}):
        code = (ROOT / file).read_text().splitlines()
        for number in sorted({n for world in worlds for n in world.lines[file]}):
            if not any(world.lines[file].get(number) for world in worlds):
                missed[(file, counted_line(code, number))] = number
    return missed


def print_table(worlds: list[World]) -> None:
    names = ["native", "windows"][: len(worlds)]
    print(f"  {'file':40}" + "".join(f"{name:>9}" for name in names) + "  branches, native")
    totals = [[0, 0] for _ in worlds]
    branches = (0, 0)
    for file in sorted({name for world in worlds for name in world.lines}):
        row = f"  {file:40}"
        for world, total in zip(worlds, totals):
            run = sum(1 for count in world.lines[file].values() if count)
            row += "  " + share(run, len(world.lines[file]))
            total[0] += run
            total[1] += len(world.lines[file])
        taken, count = worlds[0].branches[file]
        branches = (branches[0] + taken, branches[1] + count)
        print(row + f"  {share(taken, count)}")
    row = "  ".join(share(*total) for total in totals)
    print(f"  {'all':40}  {row}  {share(*branches)}")


def main() -> int:
    worlds = [World(path) for path in sys.argv[1:]]
    print_table(worlds)
    problems = []
    known = known_misses()
    missed = missed_lines(worlds)
    for (file, code), number in missed.items():
        if (file, code) not in known:
            problems.append(f"{file}:{number} is run by no test: {code}")
        elif len(worlds) == 2 and known[(file, code)] == "native":
            problems.append(f"{file}:{number} is said to be run under Wine, and is not: {code}")
    for (file, code), world in known.items():
        counted = world != "windows" if len(worlds) == 1 else world != "native"
        if counted and (file, code) not in missed:
            problems.append(f"missed.txt is out of date, this is run: {file}: {code}")
    taken = sum(branch[0] for branch in worlds[0].branches.values())
    total = sum(branch[1] for branch in worlds[0].branches.values())
    if taken < WANTED_BRANCHES * total:
        problems.append(f"only {taken} of {total} branches are taken natively")
    print("\n".join(problems) or "  every line that is not run has its reason in missed.txt")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
