#!/usr/bin/env python3
"""Packs bindings/python and the DLLs as a wheel, and writes its checksum beside it.

usage: package/wheel.py PACKAGE VERSION SECONDS FOLDER

PACKAGE is the filled folder of the SDK's ZIP, SECONDS the time of all files, and FOLDER the place for
the wheel.
"""

from __future__ import annotations

import base64
import hashlib
import sys
from pathlib import Path

import sdk_files
import stable_zip

BINDING = Path(__file__).resolve().parents[1] / "bindings" / "python"
TAG = "py3-none-win_amd64"


def metadata(version: str) -> str:
    readme = (BINDING / "README.md").read_text(encoding="utf-8")
    return (f"Metadata-Version: 2.1\nName: plenxsdk\nVersion: {version}\n"
            "Summary: Runs a distributed file system on a Windows PC, for the application that loads it\n"
            "Requires-Python: >=3.9\n"
            "Classifier: Operating System :: Microsoft :: Windows\n"
            "Classifier: Typing :: Typed\n"
            f"Description-Content-Type: text/markdown\n\n{readme}")


def content(package: Path, version: str) -> dict[str, bytes]:
    files = {f"plenxsdk/{file.name}": file.read_bytes()
             for file in sorted((BINDING / "plenxsdk").iterdir()) if file.is_file()}
    files.update(sdk_files.dlls(package, "plenxsdk"))
    files.update(sdk_files.development(package, "plenxsdk/development"))
    info = f"plenxsdk-{version}.dist-info"
    files[f"{info}/METADATA"] = metadata(version).encode()
    files[f"{info}/WHEEL"] = (f"Wheel-Version: 1.0\nGenerator: plenxsdk\nRoot-Is-Purelib: false\n"
                              f"Tag: {TAG}\n").encode()
    files.update(sdk_files.licenses(package, f"{info}/licenses"))
    files[f"{info}/RECORD"] = record(files, f"{info}/RECORD")
    return files


def record(files: dict[str, bytes], itself: str) -> bytes:
    lines = [f"{name},sha256={digest(data)},{len(data)}" for name, data in files.items()]
    return "".join(f"{line}\n" for line in [*lines, f"{itself},,"]).encode()


def digest(data: bytes) -> str:
    return base64.urlsafe_b64encode(hashlib.sha256(data).digest()).rstrip(b"=").decode()


def main() -> int:
    package, version, seconds, folder = sys.argv[1:]
    wheel = Path(folder) / f"plenxsdk-{version}-{TAG}.whl"
    stable_zip.write(wheel, content(Path(package), version), int(seconds))
    return 0


if __name__ == "__main__":
    sys.exit(main())
