#!/usr/bin/env python3
"""Holds the hand-written pages against the code that they tell about.

usage: docs/check_pages.py
       docs/check_pages.py --commands PAGE    print the page's shell commands, to be run

- Every text of the library's log that a page quotes is in src/, with its values in its places
  ({...}, or a real value); docs/log-lines.md quotes every text there is, each with its level.
- docs/result-codes.md has a heading for each code of src/common/result_code.h and for no other.
- docs/configuration.md names the settings and the defaults of src/engine/config_tables.cpp.
- The code that docs/getting-started.md quotes is that of examples/hello-host.
- Each piece of code in docs/your-language.md names the file that it was copied from.

Ends with 1 and says where if anything does not hold.
"""

import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
DOCS = ROOT / "docs"
TAGS = r"\[(?:PLENXSDK|RPCMANAGER)\]"

STRING = re.compile(r'"((?:[^"\\\n]|\\.)*)"')
CALL = re.compile(r'Log(Info|Error)\(\s*(?:[\w.:]+|"[^"]*"),\s*((?:[^;])*?)\);', re.DOTALL)
QUOTED = re.compile(rf"`({TAGS} [^`]*)`")


def sources():
    return {file: file.read_text(encoding="utf-8") for file in sorted(ROOT.glob("src/**/*.cpp"))}


def literals(text):
    return [match[1] for match in STRING.finditer(text)]


class Log:
    """The texts of the log, from the sources."""

    def __init__(self):
        self.pieces = set()   # every literal: what stands between two values
        self.heads = set()    # those that begin a line
        self.levels = {}      # head: levels, where the line is written directly
        for text in sources().values():
            self.pieces.update(literals(text))
            self.heads.update(piece for piece in literals(text) if re.match(TAGS, piece))
            for call in CALL.finditer(text):
                parts = literals(call[2])
                if parts and parts[0] in self.heads:
                    self.levels.setdefault(tuple(parts), set()).add(call[1].lower())

    def quotes(self, quoted):
        """The head of the line that is quoted, None when there is no such line."""
        pieces = re.split(r"\{[^{}]*\}", quoted)
        head = pieces[0]
        tails = [piece for piece in pieces[1:] if piece]
        if head in self.heads and all(piece in self.pieces for piece in tails):
            return head
        return None

    def mentions(self, quoted):
        """A quotation with real values, or of the beginning of a line."""
        if self.quotes(quoted) is not None:
            return True
        for head in self.heads:
            if quoted == head.rstrip() or (quoted.startswith(head) and head[-1] in " (:"):
                return True
        return False


def check_log_lines(log):
    page = DOCS / "log-lines.md"
    seen = set()
    for number, line in enumerate(page.read_text(encoding="utf-8").splitlines(), 1):
        row = re.match(rf"\| `({TAGS} [^`]*)` \| (info|error) \|", line)
        if not row:
            continue
        head = log.quotes(row[1])
        if head is None:
            yield f"{page.name}:{number}: no such line in src: {row[1]}"
            continue
        seen.add(head)
        pieces = tuple(piece for piece in re.split(r"\{[^{}]*\}", row[1]) if piece)
        levels = log.levels.get(pieces)
        if levels and row[2] not in levels:
            yield f"{page.name}:{number}: not of level {row[2]}: {row[1]}"
    for head in sorted(log.heads - seen):
        yield f"{page.name}: does not tell about {head}"


def check_quotations(log):
    for page in [*DOCS.glob("*.md"), ROOT / "README.md", *ROOT.glob("*/README.md")]:
        for number, line in enumerate(page.read_text(encoding="utf-8").splitlines(), 1):
            texts = QUOTED.findall(line)
            shown = re.search(rf"{TAGS} (?!kill).*?(?=\(DistributedFs::)", line)
            texts += [shown[0]] if shown else []
            for quoted in texts:
                if not log.mentions(quoted):
                    yield f"{page.name}:{number}: no such line in src: {quoted}"


def check_result_codes():
    source = (ROOT / "src/common/result_code.h").read_text(encoding="utf-8")
    codes = {int(code) for code in re.findall(r"^    k\w+ = (\d+),", source, re.MULTILINE)}
    page = (DOCS / "result-codes.md").read_text(encoding="utf-8")
    told = {int(code) for code in re.findall(r"^### (\d+): ", page, re.MULTILINE)}
    for code in sorted(codes - told):
        yield f"result-codes.md: does not tell about {code}"
    for code in sorted(told - codes) + ([] if codes else ["any code"]):
        yield f"result-codes.md: there is no {code}"


def check_configuration():
    header = (ROOT / "include/plenxsdk/plenx_manager.h").read_text(encoding="utf-8")
    keys = dict(re.findall(r"^    (k\w*Config\d?) = (\d+)", header, re.MULTILINE))
    tables = (ROOT / "src/engine/config_tables.cpp").read_text(encoding="utf-8")
    defaults = dict(re.findall(r'\{(k\w+), "?(\w+)"?\}', tables))
    page = (DOCS / "configuration.md").read_text(encoding="utf-8")
    rows = {name: (key, default.strip("` ")) for key, name, default in
            re.findall(r"^\| (\d+) \| `(\w+)` \| [^|]* \|([^|]*)\|", page, re.MULTILINE)}
    for name, key in keys.items():
        if rows.get(name) != (key, defaults.get(name, "")):
            yield f"configuration.md: {name} is {key}, by default {defaults.get(name, 'none')}"
    if not keys or set(rows) != set(keys):
        yield "configuration.md: other settings than the header's"


def check_getting_started():
    page = (DOCS / "getting-started.md").read_text(encoding="utf-8")
    example = ROOT / "examples/hello-host"
    for language, file in (("cmake", "CMakeLists.txt"), ("cpp", "main.cpp")):
        blocks = re.findall(rf"^```{language}\n(.*?)^```", page, re.MULTILINE | re.DOTALL)
        text = (example / file).read_text(encoding="utf-8")
        if not blocks:
            yield f"getting-started.md: quotes nothing of {file}"
        for block in blocks:
            if block not in text:
                yield f"getting-started.md: not in {file}: {block.splitlines()[0].strip()} ..."


def check_copies():
    """Code below "copied from FILE" is in that file; a header has it in a comment."""
    page = DOCS / "your-language.md"
    copies = re.findall(r"^<!-- copied from (\S+) -->\n```\w+\n(.*?)^```",
                        page.read_text(encoding="utf-8"), re.MULTILINE | re.DOTALL)
    for name, code in copies:
        text = (ROOT / name).read_text(encoding="utf-8")
        text = re.sub(r"^///(?: {5})?", "", text, flags=re.MULTILINE)
        if code not in text:
            yield f"{page.name}: not in {name}: {code.splitlines()[0].strip()} ..."
    if len(copies) != len(re.findall(r"^```\w", page.read_text(encoding="utf-8"), re.MULTILINE)):
        yield f"{page.name}: has code that does not say where it was copied from"


def commands(page):
    """All blocks of the language sh, in order: one script."""
    return "".join(re.findall(r"^```sh\n(.*?)^```", page.read_text(encoding="utf-8"),
                              re.MULTILINE | re.DOTALL))


def main():
    if sys.argv[1:2] == ["--commands"]:
        print(commands(Path(sys.argv[2])), end="")
        return 0
    log = Log()
    problems = [*check_log_lines(log), *check_quotations(log), *check_result_codes(),
                *check_configuration(), *check_getting_started(), *check_copies()]
    for problem in problems:
        print(problem)
    print(f"pages: {len(log.heads)} texts of the log, {len(problems)} problems")
    return 1 if problems or not log.heads else 0


if __name__ == "__main__":
    sys.exit(main())
