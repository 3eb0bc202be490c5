#!/usr/bin/env python3
"""Writes a C source that imports what a DLL imports, but nothing from the DLLs that are left out.

usage: list_imports.py OBJDUMP DLL LEFT-OUT-DLL... >SOURCE
"""

import re
import subprocess
import sys


def imports(objdump, dll, left_out):
    text = subprocess.run([objdump, "-p", dll], check=True, capture_output=True, text=True).stdout
    names, taken = [], False
    for line in text.splitlines():
        if found := re.match(r"\s*DLL Name: (\S+)", line):
            taken = found[1].lower() not in left_out
        elif line.startswith("The Export Tables"):
            break
        # The number is a hint in Debian 12, and an ordinal beside a hint in Debian 13.
        elif taken and (found := re.match(r"\s+[0-9a-f]+\s+(?:\d+|<none>\s+[0-9a-f]+)\s+(\w+)$", line)):
            names.append(found[1])
    if not names:
        raise SystemExit(f"{objdump} shows no imports of {dll}")
    return sorted(set(names))


def main():
    names = imports(sys.argv[1], sys.argv[2], [name.lower() for name in sys.argv[3:]])
    for name in names:
        print(f"extern void* __imp_{name};")
    print("void** const kImports[] = {")
    for name in names:
        print(f"    &__imp_{name},")
    print("};")


if __name__ == "__main__":
    main()
