#!/usr/bin/env python3
"""Packs the port for vcpkg and the recipe for Conan, each with the SDK's ZIP that it is made for, and
writes their checksums beside them.

usage: package/recipes.py ZIP VERSION SECONDS FOLDER

SECONDS is the time of all files, and FOLDER the place for the two archives.
"""

from __future__ import annotations

import hashlib
import sys
from pathlib import Path

import stable_zip

PACKAGE = Path(__file__).resolve().parent


def filled(tool: str, archive: Path, version: str) -> dict[str, bytes]:
    """The files of a recipe, with the archive's names and checksums put in."""
    data = archive.read_bytes()
    values = {"@VERSION@": version, "@ARCHIVE@": archive.stem,
              "@SHA256@": hashlib.sha256(data).hexdigest(),
              "@SHA512@": hashlib.sha512(data).hexdigest()}
    files = {}
    for source in sorted((PACKAGE / tool).iterdir()):
        text = source.read_text(encoding="utf-8")
        for name, value in values.items():
            text = text.replace(name, value)
        files[source.name] = text.encode()
    files[archive.name] = data
    return files


def main() -> int:
    zip_name, version, seconds, folder = sys.argv[1:]
    for tool, inside in (("vcpkg", "plenxsdk"), ("conan", "")):
        name = f"plenxsdk-{version}-{tool}"
        files = filled(tool, Path(zip_name), version)
        readme = {f"{name}/README.md": files.pop("README.md")}
        rest = {"/".join(filter(None, (name, inside, file))): data
                for file, data in files.items()}
        stable_zip.write(Path(folder) / f"{name}.zip", {**readme, **rest}, int(seconds))
    return 0


if __name__ == "__main__":
    sys.exit(main())
