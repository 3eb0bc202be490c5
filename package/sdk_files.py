"""The files of the SDK that each language's package carries, by their names there."""

from __future__ import annotations

import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "bindings" / "python"))

from plenxsdk.native import DLLS  # noqa: E402

# With these a developer sees a service start; a product brings its own.
DEVELOPMENT = ("dokan1.dll", "dokan1.sys", "dokanfuse1.dll", "plenxservice.exe")


def of_bin(package: Path, names: tuple[str, ...], folder: str) -> dict[str, bytes]:
    return {f"{folder}/{name}": (package / "bin" / name).read_bytes() for name in sorted(names)}


def dlls(package: Path, folder: str) -> dict[str, bytes]:
    return of_bin(package, DLLS, folder)


def development(package: Path, folder: str) -> dict[str, bytes]:
    return of_bin(package, DEVELOPMENT, folder)


def licenses(package: Path, folder: str) -> dict[str, bytes]:
    return {f"{folder}/{file.name}": file.read_bytes()
            for file in sorted((package / "licenses").iterdir())}
