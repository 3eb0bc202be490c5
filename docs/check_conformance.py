#!/usr/bin/env python3
"""Checks that every test that docs/conformance.md names is there, and in the world it is named in.

usage: docs/check_conformance.py [--unnamed]

In a table row of that page the second cell names native tests and the third those under Wine:
`Suite.Test`, or `.Test` for another one of the suite named just before; `Suite.*` is a whole suite.
--unnamed lists the tests that the page does not name, too. Ends with 1 if a test is missing.
"""

import fnmatch
import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
PAGE = ROOT / "docs" / "conformance.md"
WORLDS = {1: "unit", 2: "windows"}  # the folder in tests, by column; both have both_worlds

TEST = re.compile(r"^(?:TEST|TEST_F|TEST_P|HOST_TEST)\(\s*(\w+)\s*,\s*(\w+)\s*\)", re.MULTILINE)
NAME = re.compile(r"`(\w*\.[\w*]+)`")


def tests_in(world):
    """The tests of a world: "Suite.Test" and the file that has it."""
    return {f"{suite}.{test}": source.relative_to(ROOT)
            for folder in ("both_worlds", world)
            for source in sorted((ROOT / "tests" / folder).rglob("*.cpp"))
            for suite, test in TEST.findall(source.read_text(encoding="utf-8"))}


def names_in(cell):
    """The whole names in a cell of the page."""
    suite = ""
    for name in NAME.findall(cell):
        suite = name.split(".")[0] or suite
        yield f"{suite}.{name.split('.')[1]}"


def main():
    tests = {column: tests_in(world) for column, world in WORLDS.items()}
    named = {column: set() for column in WORLDS}
    missing = 0
    for number, line in enumerate(PAGE.read_text(encoding="utf-8").splitlines(), 1):
        if not line.startswith("|"):
            continue
        cells = line.strip("|").split("|")
        for column in WORLDS:
            for name in names_in(cells[column]) if column < len(cells) else ():
                found = fnmatch.filter(tests[column], name)
                named[column].update(found)
                if not found:
                    missing += 1
                    place = f"tests/{WORLDS[column]} and tests/both_worlds"
                    print(f"{PAGE.relative_to(ROOT)}:{number}: no test {name} in {place}")
    if "--unnamed" in sys.argv[1:]:
        for column in WORLDS:
            for name in sorted(set(tests[column]) - named[column]):
                print(f"{tests[column][name]}: {name} is not named")
    total = sum(len(names) for names in named.values())
    print(f"conformance: {total} tests named, {missing} missing")
    return 1 if missing or total == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
