"""Writes ZIPs that are the same bytes for the same content."""

from __future__ import annotations

import hashlib
import time
import zipfile
from pathlib import Path


def write(path: Path, files: dict[str, bytes], seconds: int) -> None:
    """Writes the files in the order given, all with one time, and the ZIP's checksum beside it."""
    with zipfile.ZipFile(path, "w") as archive:
        for name, content in files.items():
            entry = zipfile.ZipInfo(name, time.gmtime(seconds)[:6])
            entry.create_system = 3  # the rights below are those of Unix
            entry.external_attr = 0o100644 << 16
            entry.compress_type = zipfile.ZIP_DEFLATED
            archive.writestr(entry, content, compresslevel=9)
    checksum = hashlib.sha256(path.read_bytes()).hexdigest()
    path.with_name(path.name + ".sha256").write_text(f"{checksum}  {path.name}\n", encoding="ascii")
