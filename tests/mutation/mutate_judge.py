#!/usr/bin/env python3
"""Checks plenxkit judge by changing the program that it judges.

    mutate_judge.py BUILD [--jobs J] [--list] [FILE...]

BUILD is a finished native build. Whatever a mutant changes of the development service's reader and
replies is compiled beside it and linked into a peer that answers with them, tests/unit/kit/judge/
subject.cpp. The judge, which has no mutant in it, must notice something. A mutant that it does not
notice must be in judge_survivors.txt, which lists the known ones with their reasons. Texts are left
alone, because they go to a log that the judge does not see. Code that only a misbehaviour runs is left
alone, too.
"""

import argparse
import concurrent.futures
import json
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile

from mutants import Mutant, mutants_of

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent.parent
SUBJECT = "tests/unit/kit/judge/judge_subject"
JUDGE = "tests/unit/kit/judge/judge_a_subject"
FILES = ["kit/wire/inspect.cpp", "kit/wire/message.cpp", "kit/wire/catalog.cpp",
         "devservice/answers.cpp"]
# Shapes replies as a scenario tells it, so an honest service does not run it.
MISBEHAVIOURS = re.compile(r"^constexpr [^\n]*Reply\w* = [^\n]*|^void ShapeReply.*?^}", re.MULTILINE | re.DOTALL)
SECONDS = 60
WANTED_SHARE = 0.95

Key = tuple[str, str, str]


def run(command, **options):
    return subprocess.run(command, capture_output=True, text=True, errors="replace", **options)


class Build:
    def __init__(self, folder: pathlib.Path):
        self.folder = folder
        self.commands = {}
        for entry in json.loads((folder / "compile_commands.json").read_text()):
            command = entry["command"].replace("--coverage", "").replace("ccache ", "", 1)
            self.commands[entry["file"]] = re.sub(r" -MD -MT \S+ -MF \S+", "", command)
        output = run(["ninja", "-C", folder, "-t", "commands", SUBJECT]).stdout
        self.link = output.strip().splitlines()[-1]

    def with_mutant(self, mutant: Mutant, place: pathlib.Path):
        """The subject with the mutant in it; None when that does not compile."""
        source, compiled, program = place / "mutant.cpp", place / "mutant.o", place / "subject"
        source.write_text(mutant.apply((ROOT / mutant.file).read_text()))
        command = self.commands[str(ROOT / mutant.file)]
        # The checks of containers are on where the service is shipped.
        command = re.sub(r" -o \S+", f" -o {compiled} -w -D_GLIBCXX_ASSERTIONS", command)
        command = command.replace(str(ROOT / mutant.file), str(source))
        if run(shlex.split(command), cwd=self.folder).returncode != 0:
            return None
        # The linker takes nothing from a library that an object has given it already.
        link = self.link.replace(f"-o {SUBJECT} ", f"{compiled} -o {program} ")
        result = run(link, cwd=self.folder, shell=True)
        if result.returncode != 0:
            raise RuntimeError(f"{mutant.name()} does not link: {result.stderr}")
        return program

    def judge(self, program: pathlib.Path) -> str:
        """What the judge notices first; empty when it notices nothing."""
        try:
            result = run([self.folder / JUDGE, program], timeout=SECONDS)
        except subprocess.TimeoutExpired:
            return "hangs"
        return "" if result.returncode == 0 else (result.stdout.split("\n")[0] or "crashes")


def verdict_of(build: Build, mutant: Mutant) -> str:
    with tempfile.TemporaryDirectory(prefix="judge-mutant-") as folder:
        program = build.with_mutant(mutant, pathlib.Path(folder))
        if program is None:
            return "does not compile"
        noticed = build.judge(program)
        return f"noticed: {noticed}" if noticed else "survived"


def mutants_in(file: str) -> list[Mutant]:
    source = (ROOT / file).read_text()
    told = [match.span() for match in MISBEHAVIOURS.finditer(source)]
    return [
        mutant for mutant in mutants_of(file, source)
        if mutant.old != '"' and not any(begin <= mutant.at < end for begin, end in told)
    ]


def known_survivors() -> dict[Key, str]:
    known = {}
    for line in (HERE / "judge_survivors.txt").read_text().splitlines():
        if line and not line.startswith("#"):
            file, code, change, reason = (part.strip() for part in line.split(" ¦ "))
            known[(file, code, change)] = reason
    return known


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("files", nargs="*", default=FILES)
    parser.add_argument("--jobs", type=int, default=2)
    parser.add_argument("--list", action="store_true", help="show the mutants and stop")
    options = parser.parse_args()

    build = Build(options.build.resolve())
    mutants = [mutant for file in options.files for mutant in mutants_in(file)]
    if options.list:
        print("\n".join(mutant.name() for mutant in mutants))
        return 0
    if noticed := build.judge(build.folder / SUBJECT):
        sys.exit(f"the judge complains without a mutant: {noticed}")
    known = known_survivors()
    counts = {"noticed": 0, "survived": 0, "does": 0}
    equivalent = 0
    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        for mutant, verdict in zip(mutants, pool.map(lambda one: verdict_of(build, one), mutants)):
            counts[verdict.split()[0].rstrip(":")] += 1
            if verdict == "survived":
                reason = known.get((mutant.file, mutant.code, mutant.change()))
                equivalent += reason is not None
                print(f"  survived: {mutant.name()}\n    {mutant.code}\n    "
                      f"{reason or 'NOT KNOWN: the judge does not notice this'}", flush=True)
    valid = counts["noticed"] + counts["survived"] - equivalent
    share = counts["noticed"] / valid if valid else 0
    print(
        f"{valid + equivalent} mutants of the judged program: {counts['noticed']} noticed,"
        f" {equivalent} change nothing that can be seen on the wire,"
        f" {valid - counts['noticed']} missed; {share:.1%} of {valid} noticed"
        f" ({counts['does']} more did not compile)"
    )
    return 0 if share >= WANTED_SHARE else 1


if __name__ == "__main__":
    sys.exit(main())
