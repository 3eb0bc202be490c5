#!/usr/bin/env python3
"""Runs clang-tidy over what finished builds have compiled.

    tidy.py CLANG_TIDY KEPT SINCE BUILD... -- FOLDER...

Each source of ours below one of the FOLDERs is checked as the first BUILD that has it compiles it:
alone, or with those of its unity. KEPT holds an empty file for each check that found nothing. A check
is repeated when the source, a header of ours that it reads, its command or .clang-tidy changes.
The .clang-tidy of a folder also holds for the sources of a unity, which lies elsewhere itself.
With SINCE, a commit, it checks only the sources that differ from that commit, and one source that
reads each header that differs. With "all", it checks everything.
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

    def settings(self) -> list:
        """Returns each .clang-tidy that concerns these sources, the nearest one first."""
        folder = pathlib.Path(
            os.path.commonpath([source.parent for source in self.sources if ours(source)])
        )
        candidates = [above / ".clang-tidy" for above in (folder, *folder.parents) if ours(above)]
        return [path for path in candidates if path.exists()]

    def checked(self, folders) -> set:
        """Returns those of its sources that lie in the folders."""
        wanted = tuple(folder.rstrip("/") + "/" for folder in folders)
        names = [str(source.relative_to(ROOT)) for source in self.sources if ours(source)]
        return {name for name in names if name.startswith(wanted)}

    def fingerprint(self, checker: str) -> str:
        digest = hashlib.sha256(f"{checker}\n{self.command}".encode())
        for path in [*self.settings(), *self.read]:
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


def compiled_in(builds) -> list:
    units = []
    for build in builds:
        dependencies = dependencies_of(build)
        for entry in json.loads((build / "compile_commands.json").read_text()):
            units.append(Unit(build, entry, dependencies))
    return units


def units_of(builds, folders) -> list:
    """Returns units that contain each source once, as far as possible."""
    candidates = [(unit, unit.checked(folders)) for unit in compiled_in(builds)]
    units, seen = [], set()
    for overlap in (False, True):
        for unit, sources in candidates:
            if sources - seen and (overlap or not sources & seen):
                units.append(unit)
                seen |= sources
    return units


def changed_since(commit: str) -> set:
    names = subprocess.run(
        ["git", "-C", ROOT, "diff", "--name-only", commit],
        capture_output=True,
        text=True,
        check=True,
    ).stdout
    return {ROOT / name for name in names.splitlines()}


def touched(units, changed: set) -> list:
    """Returns the units of the changed sources, and one that reads each changed header."""
    chosen = [unit for unit in units if changed.intersection(unit.sources)]
    seen = {path for unit in chosen for path in unit.read}
    for unit in units:
        if changed.intersection(unit.read) - seen:
            chosen.append(unit)
            seen.update(unit.read)
    return chosen


def check(checker: str, unit: Unit) -> str:
    """Returns the complaints of clang-tidy."""
    # The commands are mostly gcc's, so clang's own warnings would be new ones.
    options = ["--quiet", "-p", unit.build, "--extra-arg", "-Wno-error"]
    if unit.settings()[0] != ROOT / ".clang-tidy":
        options += ["--config-file", unit.settings()[0]]
    done = subprocess.run(
        [checker, *options, unit.file],
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
        units = touched(units, changed_since(since))
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
