"""The mutants of a C++ source: small changes that a test must notice.

A mutant flips a condition, shifts a constant, drops a call or alters a text. Comments and
preprocessor lines are left alone.
"""

import dataclasses
import re


@dataclasses.dataclass(frozen=True)
class Mutant:
    file: str
    line: int
    code: str  # the line as it stands
    old: str
    new: str
    at: int  # offset in the file

    def apply(self, source: str) -> str:
        return source[: self.at] + self.new + source[self.at + len(self.old) :]

    def name(self) -> str:
        return f"{self.file}:{self.line}: {self.old.strip()} -> {self.new.strip() or 'nothing'}"


# What stands in code, and what it becomes.
_FLIPS = [
    (r"==", "!="),
    (r"!=", "=="),
    (r"<=", "<"),
    (r">=", ">"),
    (r" < ", " <= "),
    (r" > ", " >= "),
    (r"&&", "||"),
    (r"\|\|", "&&"),
    (r"(?<![\w)])!(?=[A-Za-z_(])", ""),
    (r"\btrue\b", "false"),
    (r"\bfalse\b", "true"),
    (r" \+ ", " - "),
    (r" - ", " + "),
    (r"\breturn kSuccess\b", "return kReadFailed"),
    (r"\breturn k(?!Success\b)\w+(?=;)", "return kSuccess"),
    (r"\bbreak;(?!\s*\})", ""),  # at the end of a switch it changes nothing
    (r"\bcontinue;", ""),
]
_NUMBER = re.compile(r"(?<![\w.'])(0x[0-9a-fA-F]+|\d+)(?![\w.'])")
# A statement that is one call on a line of its own.
_CALL = re.compile(r"^ +(?!return\b|throw\b|delete\b)[\w.:>-]+\([^;{}]*\);$", re.MULTILINE)

_TOKEN = re.compile(
    r"""(?P<comment>//[^\n]*|/\*.*?\*/)
      | (?P<preprocessor>^\#[^\n]*)
      | (?P<text>"(?:[^"\\\n]|\\.)*")
      | (?P<character>'(?:[^'\\\n]|\\.)+')""",
    re.VERBOSE | re.MULTILINE | re.DOTALL,
)


def _blank(match: re.Match) -> str:
    return re.sub(r"[^\n]", "\0", match.group())


def _begins_statement(code: str, at: int) -> bool:
    before = code[:at].replace("\0", " ").rstrip()
    return before.endswith((";", "{", "}", ":"))


def mutants_of(file: str, source: str) -> list[Mutant]:
    code = _TOKEN.sub(_blank, source)  # same length, without comments and texts
    found = []

    def add(at: int, old: str, new: str) -> None:
        line = source.count("\n", 0, at) + 1
        text = source.splitlines()[line - 1].strip()
        found.append(Mutant(file, line, text, old, new, at))

    for pattern, new in _FLIPS:
        for match in re.finditer(pattern, code):
            add(match.start(), match.group(), new)
    for match in _NUMBER.finditer(code):
        add(match.start(), match.group(), str(int(match.group(), 0) + 1))
    for match in _CALL.finditer(code):
        if not _begins_statement(code, match.start()):
            continue
        old = source[match.start() : match.end()]
        indent = len(old) - len(old.lstrip())
        add(match.start() + indent, old[indent:], ";")
    for match in _TOKEN.finditer(source):
        text = match.group()
        if match.lastgroup == "text" and len(text) > 2:
            add(match.end() - 1, '"', '~"')
    return sorted(found, key=lambda mutant: (mutant.at, mutant.new))
