#!/usr/bin/env python3
"""Checks the native tests by changing the code they test.

    mutate.py BUILD [--count N] [--seed S] [--jobs J] [FILE...]

BUILD is a finished native build. Every mutant is compiled beside it, linked into the tests of its
room one after the other, and run until a test fails. What no test notices is held against
survivors.txt, where each known one stands with the reason. Nothing in the tree is touched.
"""

import argparse
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
SOURCES = ["src/rpc/*.cpp", "src/service/*.cpp", "src/facade/*.cpp"]
TEST_SECONDS = 30
WANTED_SHARE = 0.95

# The tests of a room, the most telling ones first.
FUZZ = ["tests/fuzz/fuzz_reader", "tests/fuzz/fuzz_writer", "tests/fuzz/fuzz_server"]
ROOMS = {
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
    "explorer_handlers": "rpc_server_test",
}


def run(command, **options):
    return subprocess.run(command, capture_output=True, text=True, errors="replace", **options)


class Build:
    """What a finished build says about how its parts were made."""

    def __init__(self, folder: pathlib.Path):
        self.folder = folder
        self.commands = {}
        for entry in json.loads((folder / "compile_commands.json").read_text()):
            self.commands[entry["file"]] = entry["command"]
        self.links = {}
        self.tests = {}

    def compile_command(self, file: str) -> str:
        return self.commands[str(ROOT / file)]

    def programs(self, mutant: Mutant) -> list[str]:
        room = mutant.file.split("/")[1]
        found = []
        for place in ROOMS[room]:
            if (self.folder / place).is_dir():
                found += sorted(
                    str(path.relative_to(self.folder))
                    for path in (self.folder / place).glob("*_test")
                    if path.is_file()
                )
            else:
                found.append(place)
        first = FIRST.get(pathlib.Path(mutant.file).stem, "")
        return sorted(found, key=lambda name: not name.endswith(first) if first else False)

    def prepare(self, mutants) -> None:
        for program in sorted({name for mutant in mutants for name in self.programs(mutant)}):
            output = run(["ninja", "-C", self.folder, "-t", "commands", program]).stdout
            self.links[program] = output.strip().splitlines()[-1]
            self.tests[program] = self._list_tests(program)

    def _list_tests(self, program: str) -> list[list[str]]:
        if program.startswith("tests/fuzz/"):
            subject = program.removeprefix("tests/fuzz/fuzz_")
            corpus = self.folder / "tests/fuzz/corpus" / subject
            return [[str(corpus), str(len(list(corpus.iterdir())))]]
        tests, suite = [], ""
        for line in run([self.folder / program, "--gtest_list_tests"]).stdout.splitlines():
            name = line.split("#")[0].rstrip()
            if not name.startswith(" "):
                suite = name
            else:
                tests.append([f"--gtest_filter={suite}{name.strip()}"])
        return tests


def judge(build: Build, mutant: Mutant) -> str:
    """'caught by ...', 'survived' or 'does not compile'."""
    with tempfile.TemporaryDirectory(prefix="mutant-") as folder:
        place = pathlib.Path(folder)
        source = place / pathlib.Path(mutant.file).name
        source.write_text(mutant.apply((ROOT / mutant.file).read_text()))
        command = build.compile_command(mutant.file).replace("--coverage", "")
        original = re.search(r" -o (\S+)", command).group(1)
        command = command.replace(str(ROOT / mutant.file), str(source))
        command = command.replace(f"-o {original}", f"-o {place / 'mutant.o'} -w")
        if run(shlex.split(command), cwd=build.folder).returncode != 0:
            return "does not compile"
        for program in build.programs(mutant):
            failed = first_failure(build, program, original, place)
            if failed:
                return f"caught by {failed}"
    return "survived"


def first_failure(build: Build, program: str, original: str, place: pathlib.Path) -> str:
    linked = place / pathlib.Path(program).name
    command = build.links[program].replace(f" {original} ", f" {place / 'mutant.o'} ")
    command = command.replace(f"-o {program} ", f"-o {linked} ")
    result = run(command, cwd=build.folder, shell=True)
    if result.returncode != 0:
        raise RuntimeError(f"{program} does not link: {result.stderr}")
    # Counts of lines must not get into those of the build.
    environment = {**os.environ, "GCOV_PREFIX": str(place)}
    for arguments in build.tests[program]:
        name = arguments[0].removeprefix("--gtest_filter=")
        try:
            test = run([linked, *arguments], cwd=place, env=environment, timeout=TEST_SECONDS)
        except subprocess.TimeoutExpired:
            return f"{name} (hangs)"
        if test.returncode != 0:
            return name
    linked.unlink()
    return ""


def choose(files: list[str], count: int, seed: int) -> list[Mutant]:
    """Evenly from all files, the same ones for the same seed and sources."""
    everything = []
    for file in files:
        everything += mutants_of(file, (ROOT / file).read_text())
    if not count or count >= len(everything):
        return everything
    return sorted(random.Random(seed).sample(everything, count), key=lambda m: (m.file, m.at))


def known_survivors() -> dict[tuple[str, str, str, str], str]:
    """(file, line of code, old, new) to the reason; see survivors.txt."""
    known = {}
    for line in (HERE / "survivors.txt").read_text().splitlines():
        if line and not line.startswith("#"):
            file, code, old, new, reason = (part.strip() for part in line.split(" ¦ "))
            known[(file, code, old, new)] = reason
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

    files = options.files or sorted(
        str(path.relative_to(ROOT)) for pattern in SOURCES for path in ROOT.glob(pattern)
    )
    mutants = choose(files, options.count, options.seed)
    if options.list:
        print("\n".join(mutant.name() for mutant in mutants))
        return 0
    build = Build(options.build.resolve())
    build.prepare(mutants)
    known = known_survivors()
    counts = {"caught": 0, "survived": 0, "does": 0}
    equivalent = 0
    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        verdicts = pool.map(lambda mutant: judge(build, mutant), mutants)
        for number, (mutant, verdict) in enumerate(zip(mutants, verdicts), 1):
            counts[verdict.split()[0]] += 1
            if verdict == "survived":
                key = (mutant.file, mutant.code, mutant.old.strip(), mutant.new.strip())
                equivalent += key in known
                print(f"  survived: {mutant.name()}\n    {mutant.code}\n    ", end="")
                print(known.get(key, "NOT KNOWN: no test notices this"), flush=True)
            if number % 25 == 0:
                print(f"  {number} of {len(mutants)}: {counts['caught']} caught", flush=True)
    # Those that change nothing that a test could see do not count.
    valid = counts["caught"] + counts["survived"] - equivalent
    share = counts["caught"] / valid if valid else 0
    print(
        f"{valid + equivalent} mutants: {counts['caught']} caught, {equivalent} change nothing that"
        f" can be seen, {valid - counts['caught']} missed; {share:.1%} of {valid} caught"
        f" ({counts['does']} more did not compile)"
    )
    if options.brief:  # too few to tell a share: that the tests are at work at all
        return 0 if share > 0.5 else 1
    return 0 if share >= WANTED_SHARE else 1


if __name__ == "__main__":
    sys.exit(main())
