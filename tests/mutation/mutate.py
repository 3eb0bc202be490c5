#!/usr/bin/env python3
"""Checks the native tests by changing the code they test.

    mutate.py BUILD [--count N] [--seed S] [--jobs J] [FILE...]

BUILD is a finished native build, without coverage or with. Whatever a mutant changes is compiled
beside it, linked into the tests of its room one after the other, and run until a test fails. A mutant
that no test notices must be in survivors.txt, which lists the known ones with their reasons. Nothing
in the tree is touched.
"""

import argparse
import collections
import concurrent.futures
import json
import os
import pathlib
import random
import re
import shlex
import subprocess
import sys
import tempfile

from mutants import Mutant, mutants_of

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent.parent
TEST_SECONDS = 30
WANTED_SHARE = 0.97

# The tests of a room, in an order that begins with the most telling ones.
FUZZ = ["tests/fuzz/fuzz_reader", "tests/fuzz/fuzz_writer", "tests/fuzz/fuzz_server"]
ROOMS = {
    "common": ["tests/unit/common", "tests/unit/facade"],
    "engine": ["tests/unit/engine", "tests/unit/facade"],
    "rpc": ["tests/unit/rpc", *FUZZ, "tests/unit/facade"],
    "service": ["tests/unit/service", "tests/unit/engine"],
    "facade": ["tests/unit/facade", "tests/unit/rpc", "tests/unit/engine"],
}
FIRST = {
    "rpc_message_reader": "rpc_message_test",
    "rpc_message_writer": "rpc_message_test",
    "rpc_client": "rpc_client_test",
    "rpc_server": "rpc_server_test",
    "notification_handlers": "rpc_server_test",
    "explorer_handlers": "explorer_test",
}
MOST_RECENT = 20  # tests that caught others of the same file, tried before all

Test = tuple[str, ...]  # the program, and the arguments that make it run one test


def run(command, **options):
    return subprocess.run(command, capture_output=True, text=True, errors="replace", **options)


class Build:
    """Reads from a finished build how its parts were made."""

    def __init__(self, folder: pathlib.Path):
        self.folder = folder
        self.commands = {}  # by object
        for entry in json.loads((folder / "compile_commands.json").read_text()):
            command = entry["command"].replace("--coverage", "").replace("ccache ", "", 1)
            command = re.sub(r" -MD -MT \S+ -MF \S+", "", command)
            self.commands[re.search(r" -o (\S+)", command).group(1)] = command
        self.objects = self._read_dependencies()  # by source or header
        self.targets = self._read_targets()
        self.links = {}
        self.tests = {}
        self.recent = collections.defaultdict(list)

    def _read_dependencies(self) -> dict[str, list[str]]:
        objects = collections.defaultdict(list)
        current = ""
        for line in run(["ninja", "-C", self.folder, "-t", "deps"]).stdout.splitlines():
            if not line.startswith(" "):
                current = line.split(":")[0]
            elif current in self.commands:
                objects[os.path.normpath(self.folder / line.strip())].append(current)
        return objects

    # A folder may still hold a program whose name has changed.
    def _read_targets(self) -> set[str]:
        lines = run(["ninja", "-C", self.folder, "-t", "targets", "all"]).stdout.splitlines()
        return {line.split(":")[0] for line in lines}

    def has(self, file: str) -> bool:
        return bool(self.objects.get(str(ROOT / file)))

    def programs(self, file: str) -> list[str]:
        found = []
        for place in ROOMS[file.split("/")[1]]:
            if (self.folder / place).is_dir():
                found += sorted(
                    str(path.relative_to(self.folder))
                    for path in (self.folder / place).glob("*_test")
                    if path.is_file() and str(path.relative_to(self.folder)) in self.targets
                )
            else:
                found.append(place)
        first = FIRST.get(pathlib.Path(file).stem, "")
        return sorted(found, key=lambda name: not name.endswith(first) if first else False)

    def prepare(self, files) -> None:
        for program in sorted({name for file in files for name in self.programs(file)}):
            output = run(["ninja", "-C", self.folder, "-t", "commands", program]).stdout
            self.links[program] = output.strip().splitlines()[-1]
            self.tests[program] = self._list_tests(program)

    def _list_tests(self, program: str) -> list[Test]:
        if program.startswith("tests/fuzz/"):
            subject = program.removeprefix("tests/fuzz/fuzz_")
            corpus = self.folder / "tests/fuzz/corpus" / subject
            return [(program, str(corpus), str(len(list(corpus.iterdir()))))]
        tests, suite = [], ""
        for line in run([self.folder / program, "--gtest_list_tests"]).stdout.splitlines():
            name = line.split("#")[0].rstrip()
            if not name.startswith(" "):
                suite = name
            else:
                tests.append((program, f"--gtest_filter={suite}{name.strip()}"))
        return tests

    def check_good(self, jobs: int) -> None:
        """A test that fails without a mutant would catch them all."""
        with tempfile.TemporaryDirectory(prefix="mutant-") as place:
            tests = [test for each in self.tests.values() for test in each]
            with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
                failed = pool.map(
                    lambda test: runs_badly(self.folder / test[0], test, pathlib.Path(place)), tests
                )
                bad = [name for name in failed if name]
        if bad:
            sys.exit(f"these fail without a mutant: {', '.join(bad)}")

    def remember(self, file: str, test: Test) -> None:
        recent = [test] + [other for other in self.recent[file] if other != test]
        self.recent[file] = recent[:MOST_RECENT]


class Trial:
    """One mutant, compiled and linked as far as it is needed, in a folder of its own."""

    def __init__(self, build: Build, mutant: Mutant, place: pathlib.Path):
        self.build, self.mutant, self.place = build, mutant, place
        self.objects = build.objects[str(ROOT / mutant.file)]
        self.linked = {}
        shadow = place / "src" / pathlib.Path(mutant.file).relative_to("src")
        shadow.parent.mkdir(parents=True)
        shadow.write_text(mutant.apply((ROOT / mutant.file).read_text()))
        self.shadow = shadow

    def verdict(self) -> str:
        """'caught by ...', 'survived' or 'does not compile'."""
        file = self.mutant.file
        recent = list(self.build.recent[file])
        rest = [test for program in self.build.programs(file) for test in self.build.tests[program]]
        tried = set()
        for test in recent + rest:
            if test in tried:
                continue
            tried.add(test)
            program = self._program(test[0])
            if program is None:
                return "does not compile"
            failed = runs_badly(program, test, self.place)
            if failed:
                self.build.remember(file, test)
                return f"caught by {failed}"
        return "survived"

    def _program(self, name: str):
        """The program with the mutant in it; None when that does not compile."""
        if name in self.linked:
            return self.linked[name]
        link = self.build.links[name]
        linked = self.place / name.replace("/", "-")
        command = link.replace(f"-o {name} ", f"-o {linked} ")
        for original in self.objects:
            if f" {original} " in link:
                changed = self._object(original)
                if changed is None:
                    return None
                command = command.replace(f" {original} ", f" {changed} ")
        result = run(command, cwd=self.build.folder, shell=True)
        if result.returncode != 0:
            raise RuntimeError(f"{name} does not link: {result.stderr}")
        self.linked[name] = linked
        return linked

    def _object(self, original: str):
        changed = self.place / original.replace("/", "-")
        if not changed.exists():
            command = self.build.commands[original]
            command = command.replace(f"-o {original}", f"-o {changed} -w")
            command = command.replace(str(ROOT / self.mutant.file), str(self.shadow))
            compiler, rest = command.split(" ", 1)
            command = f"{compiler} -I{self.place / 'src'} {rest}"
            if run(shlex.split(command), cwd=self.build.folder).returncode != 0:
                return None
        return changed


def judge(build: Build, mutant: Mutant) -> str:
    with tempfile.TemporaryDirectory(prefix="mutant-") as folder:
        return Trial(build, mutant, pathlib.Path(folder)).verdict()


def runs_badly(program: pathlib.Path, test: Test, place: pathlib.Path) -> str:
    """The name of the test if it fails."""
    name = test[1].removeprefix("--gtest_filter=")
    # The line counts of this run must not get into those of the build.
    environment = {**os.environ, "GCOV_PREFIX": str(place)}
    try:
        result = run([program, *test[1:]], cwd=place, env=environment, timeout=TEST_SECONDS)
    except subprocess.TimeoutExpired:
        return f"{name} (hangs)"
    return name if result.returncode != 0 else ""


def all_sources(build: Build) -> list[str]:
    """Returns the sources of the natively tested rooms, as far as the native build has them."""
    files = [path for room in ROOMS for path in (ROOT / "src" / room).glob("*.*")]
    return sorted(file for path in files if build.has(file := str(path.relative_to(ROOT))))


def choose(files: list[str], count: int, seed: int) -> list[Mutant]:
    """Chooses at random among the mutants of all files. The same seed and sources give the same ones."""
    everything = []
    for file in files:
        everything += mutants_of(file, (ROOT / file).read_text())
    if not count or count >= len(everything):
        return everything
    return sorted(random.Random(seed).sample(everything, count), key=lambda m: (m.file, m.at))


def known_survivors() -> dict[tuple[str, str, str], str]:
    """(file, line of code, change) to the reason; see survivors.txt."""
    known = {}
    for line in (HERE / "survivors.txt").read_text().splitlines():
        if line and not line.startswith("#"):
            file, code, change, reason = (part.strip() for part in line.split(" ¦ "))
            known[(file, code, change)] = reason
    return known


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("files", nargs="*", help="only these sources")
    parser.add_argument("--count", type=int, default=0, help="how many mutants; default: all")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=2)
    parser.add_argument("--brief", action="store_true", help="only fail when most survive")
    parser.add_argument("--list", action="store_true", help="show the mutants and stop")
    options = parser.parse_args()

    build = Build(options.build.resolve())
    files = options.files or all_sources(build)
    mutants = choose(files, options.count, options.seed)
    if options.list:
        print("\n".join(mutant.name() for mutant in mutants))
        return 0
    build.prepare({mutant.file for mutant in mutants})
    if not options.brief:
        build.check_good(options.jobs)
    known = known_survivors()
    counts = {"caught": 0, "survived": 0, "does": 0}
    equivalent = 0
    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        verdicts = pool.map(lambda mutant: judge(build, mutant), mutants)
        for number, (mutant, verdict) in enumerate(zip(mutants, verdicts), 1):
            counts[verdict.split()[0]] += 1
            if verdict == "survived":
                key = (mutant.file, mutant.code, mutant.change())
                equivalent += key in known
                print(f"  survived: {mutant.name()}\n    {mutant.code}\n    ", end="")
                print(known.get(key, "NOT KNOWN: no test notices this"), flush=True)
            if number % 25 == 0:
                print(f"  {number} of {len(mutants)}: {counts['caught']} caught", flush=True)
    # Mutants that change nothing that a test could see do not count.
    valid = counts["caught"] + counts["survived"] - equivalent
    share = counts["caught"] / valid if valid else 0
    print(
        f"{valid + equivalent} mutants: {counts['caught']} caught, {equivalent} change nothing that"
        f" can be seen, {valid - counts['caught']} missed; {share:.1%} of {valid} caught"
        f" ({counts['does']} more did not compile)"
    )
    if options.brief:  # too few to give a share, so this only shows that the tests are at work at all
        return 0 if share > 0.5 else 1
    return 0 if share >= WANTED_SHARE else 1


if __name__ == "__main__":
    sys.exit(main())
