#!/usr/bin/env python3
"""Packs the inputs of a fuzz target as one ZIP: the same inputs give the same bytes.

usage: pack.py FOLDER ARCHIVE
"""

import pathlib
import sys
import zipfile

BEGINNING = (1980, 1, 1, 0, 0, 0)  # of time, for a ZIP


def main() -> None:
    folder, archive = map(pathlib.Path, sys.argv[1:])
    # Not compressed: another zlib may compress in another way, and git does it anyway.
    with zipfile.ZipFile(archive, "w", zipfile.ZIP_STORED) as pack:
        for file in sorted(folder.iterdir()):
            pack.writestr(zipfile.ZipInfo(file.name, BEGINNING), file.read_bytes())


if __name__ == "__main__":
    main()
