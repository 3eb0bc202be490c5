#!/usr/bin/env python3
"""Holds what plenxkit host --json prints against docs/kit-host.schema.json.

    check_kit_host_json.py [--program PROGRAM] [FILE...]

Each line of the files, and of what the program prints, must be as the schema says, and every type
of line must be among them. The schema itself is tried as well: a line that lacks a required key or
has an unknown one must be refused."""

import argparse
import copy
import json
import pathlib
import subprocess
import sys

import jsonschema

SCHEMA = pathlib.Path(__file__).with_name("kit-host.schema.json")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--program")
    parser.add_argument("files", nargs="*", type=pathlib.Path)
    options = parser.parse_args()
    schema = json.loads(SCHEMA.read_text(encoding="utf-8"))
    jsonschema.Draft202012Validator.check_schema(schema)
    validator = jsonschema.Draft202012Validator(schema)

    lines = []
    if options.program:
        printed = subprocess.run([options.program], check=True, capture_output=True, timeout=60)
        lines += numbered(options.program, printed.stdout)
    for file in options.files:
        lines += numbered(file.name, file.read_bytes())

    complaints = []
    seen = {}
    for place, line in lines:
        error = jsonschema.exceptions.best_match(validator.iter_errors(line))
        if error is not None:
            complaints.append(f"{place}: {error.message}")
        else:
            seen.setdefault(key_of(line), line)
    for kind in schema["properties"]["type"]["enum"]:
        if not any(line["type"] == kind for line in seen.values()):
            complaints.append(f"no line of type {kind}")
    for line in seen.values():
        complaints += what_is_taken_but_wrong(validator, line)
    for complaint in complaints:
        print(complaint, file=sys.stderr)
    print(f"{len(lines)} lines, {len(complaints)} complaints")
    return 1 if complaints else 0


def numbered(name, content):
    texts = content.decode("utf-8").splitlines()
    return [(f"{name}:{number}", json.loads(text)) for number, text in enumerate(texts, 1)]


def key_of(line):
    return line["type"], line.get("name") if line["type"] == "notification" else None


def what_is_taken_but_wrong(validator, line):
    """Tries the schema with lines that are not right."""
    wrong = {"with an unknown key": {**line, "unknown": 1}, "with another type": {**line, "type": "x"}}
    for key in ("time", "seconds", "thread", "type"):
        wrong[f"without {key}"] = {k: v for k, v in line.items() if k != key}
    if line["type"] == "notification":
        for key in line["arguments"]:
            if not key.endswith("Hex"):
                less = copy.deepcopy(line)
                del less["arguments"][key]
                wrong[f"without the argument {key}"] = less
    return [f"the schema takes a {' '.join(map(str, filter(None, key_of(line))))} {what}"
            for what, spoilt in wrong.items() if validator.is_valid(spoilt)]


if __name__ == "__main__":
    sys.exit(main())
