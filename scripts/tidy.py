#!/usr/bin/env python3
"""Runs clang-tidy over what finished builds have compiled.

    tidy.py CLANG_TIDY KEPT SINCE BUILD... -- FOLDER...

Each source of ours below one of the FOLDERs is checked as the first BUILD that has it compiles it:
alone, or with those of its unity. KEPT holds an empty file for everything that was found clean; it
is checked again when the source, a header of ours that it reads, its command or .clang-tidy changes.
With SINCE, a commit, only what reads a file that differs from that commit is looked at; with "all",
everything is.
"""

import concurrent.futures
import hashlib
import json
import os
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
# Only a real Windows process has these: the fakes' headers do not know what they call.
ELSEWHERE = ("src/common/process_life.cpp", "src/rpc/interface/")


class Unit:
    def __init__(self, build: pathlib.Path, entry: dict, dependencies: dict):
        self.build = build
        self.file = pathlib.Path(entry["file"])
        self.command = entry["command"]
        self.sources = [self.file]
        if "Unity" in self.file.parts and self.file.exists():
            included = re.findall(r'#include "(.+)"', self.file.read_text())
            self.sources = [pathlib.Path(path) for path in included]
        self.read = sorted({*self.sources, *dependencies.get(entry.get("output"), [])})

    def lies_in(self, folders) -> bool:
        names = [str(source.relative_to(ROOT)) for source in self.sources if ours(source)]
        wanted = tuple(folder.rstrip("/") + "/" for folder in folders)
        return any(name.startswith(wanted) and not name.startswith(ELSEWHERE) for name in names)

    def fingerprint(self, checker: str) -> str:
        digest = hashlib.sha256(f"{checker}\n{self.command}".encode())
        for path in [ROOT / ".clang-tidy", *self.read]:
            if ours(path) and path.exists():
                digest.update(path.read_bytes())
        return digest.hexdigest()


def ours(path: pathlib.Path) -> bool:
    return path.is_relative_to(ROOT) and not path.is_relative_to(ROOT / "build")


def dependencies_of(build: pathlib.Path) -> dict:
    """Returns the files that the compiler has read for each output, from ninja's log."""
    text = subprocess.run(
        ["ninja", "-C", build, "-t", "deps"], capture_output=True, text=True, check=True
    ).stdout
    found, output = {}, None
    for line in text.splitlines():
        if line.startswith("    "):
            path = pathlib.Path(os.path.normpath(build / line.strip()))
            found[output].append(path)
        elif ": #deps" in line:
            output = line.split(": #deps")[0]
            found[output] = []
    return found


def units_of(builds, folders) -> list:
    units, seen = [], set()
    for build in builds:
        dependencies = dependencies_of(build)
        for entry in json.loads((build / "compile_commands.json").read_text()):
            unit = Unit(build, entry, dependencies)
            fresh = [source for source in unit.sources if source not in seen]
            if fresh and unit.lies_in(folders):
                units.append(unit)
                seen.update(unit.sources)
    return units


def changed_since(commit: str) -> set:
    names = subprocess.run(
        ["git", "-C", ROOT, "diff", "--name-only", commit],
        capture_output=True,
        text=True,
        check=True,
    ).stdout
    return {ROOT / name for name in names.splitlines()}


def check(checker: str, unit: Unit) -> str:
    """Returns the complaints of clang-tidy."""
    done = subprocess.run(
        [checker, "--quiet", "-p", unit.build, unit.file],
        capture_output=True,
        text=True,
        errors="replace",
    )
    return "" if done.returncode == 0 else done.stdout + done.stderr


def main() -> int:
    checker, kept, since, *rest = sys.argv[1:]
    builds = [pathlib.Path(build).resolve() for build in rest[: rest.index("--")]]
    folders = rest[rest.index("--") + 1 :]
    memory = pathlib.Path(kept)
    memory.mkdir(parents=True, exist_ok=True)
    version = subprocess.run([checker, "--version"], capture_output=True, text=True).stdout
    units = units_of(builds, folders)
    if not units:
        print("no build has compiled anything of these folders")
        return 1
    if since != "all":
        changed = changed_since(since)
        if ROOT / ".clang-tidy" not in changed:
            units = [unit for unit in units if changed.intersection(unit.read)]
    marks = {unit: memory / unit.fingerprint(version) for unit in units}
    waiting = [unit for unit in units if not marks[unit].exists()]
    failed = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for unit, complaint in zip(waiting, pool.map(lambda u: check(checker, u), waiting)):
            if complaint:
                failed += 1
                print(complaint)
            else:
                marks[unit].touch()
    print(f"{len(units)} units, {len(waiting)} checked, {failed} with findings")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
