#!/usr/bin/env python3
"""Prints what plenx.h declares, for the tests that compare a binding with it.

usage: plenx_header.py     prints one declaration a line

    constant PLENX_PC 1
    function plenx_stop plenx_result, uint32_t, const char*, size_t
    field plenx_event.kind 4 4                      (offset and size)
    struct plenx_event 48                           (size)

The compiler for this machine gives the values of the constants and the layout of the structs.
"""

import re
import subprocess
import sys
import tempfile
from pathlib import Path

INCLUDE = Path(__file__).resolve().parents[2] / "include"
FUNCTION = re.compile(r"PLENX_API ([\w ]+?[\w*]) PLENX_CALL (\w+)\(([^)]*)\);")
STRUCT = re.compile(r"typedef struct (\w+) \{(.*?)\} \1;", re.DOTALL)
FIELD = re.compile(r"(\w+)(?:\)\([^;]*\))?;")
# These are about the header itself or a calling convention.
NO_VALUES = {"PLENX_CALL", "PLENX_API", "PLENX_TEXT"}


def source():
    text = (INCLUDE / "plenxsdk" / "plenx.h").read_text(encoding="utf-8")
    return re.sub(r"//.*", "", text)


def constants(text):
    names = re.findall(r"^#define (PLENX_\w+)", text, re.MULTILINE)
    return [name for name in dict.fromkeys(names) if name not in NO_VALUES]


def functions(text):
    """Each function's name with its result and its arguments, such as "const char*"."""
    for result, name, arguments in FUNCTION.findall(" ".join(text.split())):
        types = [] if arguments == "void" else arguments.split(", ")
        yield name, [result, *(re.sub(r" ?\w+$", "", one) for one in types)]


def fields(text):
    return {name: FIELD.findall(body) for name, body in STRUCT.findall(text)}


def values(text):
    """The lines about constants and structs, from a program that the compiler has built."""
    lines = [f'printf("constant {name} %lld\\n", (long long)({name}));'
             for name in constants(text)]
    for struct, members in fields(text).items():
        lines += [f'printf("field {struct}.{member} %zu %zu\\n", offsetof({struct}, {member}), '
                  f'sizeof((({struct}*)0)->{member}));' for member in members]
        lines.append(f'printf("struct {struct} %zu\\n", sizeof({struct}));')
    program = ('#include <plenxsdk/plenx.h>\n#include <stdio.h>\nint main(void) {\n'
               + "\n".join(lines) + "\nreturn 0;\n}\n")
    with tempfile.TemporaryDirectory() as folder:
        built = Path(folder) / "values"
        subprocess.run(["gcc", "-x", "c", "-", "-I", INCLUDE, "-o", built], input=program,
                       encoding="utf-8", check=True)
        return subprocess.run([built], stdout=subprocess.PIPE, encoding="utf-8",
                              check=True).stdout.splitlines()


def declarations():
    text = source()
    return values(text) + [f"function {name} {', '.join(types)}" for name, types in functions(text)]


if __name__ == "__main__":
    print("\n".join(declarations()))
    sys.exit(0)
