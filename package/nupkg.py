#!/usr/bin/env python3
"""Packs the assembly for .NET and the DLLs for NuGet, and writes the package's checksum beside it.

usage: package/nupkg.py PACKAGE BUILT VERSION SECONDS FOLDER

PACKAGE is the filled folder of the SDK's ZIP, BUILT the folder with the assembly, SECONDS the time of
all files, and FOLDER the place for the package.
"""

from __future__ import annotations

import sys
from pathlib import Path

import sdk_files
import stable_zip

BINDING = Path(__file__).resolve().parents[1] / "bindings" / "dotnet"

NUSPEC = """<?xml version="1.0" encoding="utf-8"?>
<package xmlns="http://schemas.microsoft.com/packaging/2013/05/nuspec.xsd">
  <metadata>
    <id>plenxsdk</id>
    <version>{version}</version>
    <authors>plenxsdk</authors>
    <description>Runs a distributed file system on a Windows PC, for the application that loads it. \
64-bit Windows only.</description>
    <readme>README.md</readme>
    <dependencies>
      <group targetFramework=".NETStandard2.0" />
    </dependencies>
  </metadata>
</package>
"""

RELATIONS = """<?xml version="1.0" encoding="utf-8"?>
<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">
  <Relationship Id="manifest" Target="/plenxsdk.nuspec" \
Type="http://schemas.microsoft.com/packaging/2010/07/manifest" />
</Relationships>
"""


def content_types(names: list[str]) -> str:
    """Names the type of every kind of file, as each part of such a package needs one."""
    kinds = sorted({name.rsplit(".", 1)[1] for name in names} - {"rels"})
    return ('<?xml version="1.0" encoding="utf-8"?>\n'
            '<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">\n'
            '  <Default Extension="rels" '
            'ContentType="application/vnd.openxmlformats-package.relationships+xml" />\n'
            + "".join(f'  <Default Extension="{kind}" ContentType="application/octet" />\n'
                      for kind in kinds)
            + "</Types>\n")


def content(package: Path, built: Path, version: str) -> dict[str, bytes]:
    files = {"_rels/.rels": RELATIONS.encode(),
             "plenxsdk.nuspec": NUSPEC.format(version=version).encode(),
             "README.md": (BINDING / "README.md").read_bytes(),
             "build/net461/plenxsdk.targets": (BINDING / "plenxsdk.targets").read_bytes()}
    for name in ("plenxsdk.net.dll", "plenxsdk.net.xml"):
        files[f"lib/netstandard2.0/{name}"] = (built / name).read_bytes()
    files.update(sdk_files.dlls(package, "runtimes/win-x64/native"))
    files.update(sdk_files.development(package, "development"))
    files.update(sdk_files.licenses(package, "licenses"))
    return {"[Content_Types].xml": content_types(list(files)).encode(), **files}


def main() -> int:
    package, built, version, seconds, folder = sys.argv[1:]
    stable_zip.write(Path(folder) / f"plenxsdk.{version}.nupkg",
                     content(Path(package), Path(built), version), int(seconds))
    return 0


if __name__ == "__main__":
    sys.exit(main())
