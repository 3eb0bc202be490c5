"""The mutants of a C++ source: small changes that a test must notice.

A mutant flips a condition, shifts a constant, drops a call or a lock, takes a lock one statement
later, or alters a text. Comments and preprocessor lines are left alone, and so is what only a Windows compiler sees.
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
        return f"{self.file}:{self.line}: {self.change()}"

    def change(self) -> str:
        return f"{self._short(self.old)} -> {self._short(self.new) or 'nothing'}"

    @staticmethod
    def _short(text: str) -> str:
        return " ".join(text.split())


# Each pattern that stands in the code, and its replacement.
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
# This is a statement that is one call on a line of its own.
# A blanked comment may follow.
_CALL = re.compile(
    r"^ +(?!return\b|throw\b|delete\b)[\w.:>-]+\([^;{}]*\);(?=[ \0]*$)", re.MULTILINE
)
# This is a lock that is held to the end of its block, and a call behind it.
_LOCK = re.compile(r"^ +const std::lock_guard<[\w:]+> lock\([^;]*\);[ \0]*\n", re.MULTILINE)
_NEXT_CALL = re.compile(r" +(?!return\b|throw\b|delete\b)[\w.:>-]+\([^;{}]*\);[ \0]*\n")

_TOKEN = re.compile(
    r"""(?P<comment>//[^\n]*|/\*.*?\*/)
      | (?P<preprocessor>^\#[^\n]*)
      | (?P<text>"(?:[^"\\\n]|\\.)*")
      | (?P<character>'(?:[^'\\\n]|\\.)+')""",
    re.VERBOSE | re.MULTILINE | re.DOTALL,
)

_WINDOWS = re.compile(r"^#ifdef _WIN32$.*?^#(?:else|endif)", re.MULTILINE | re.DOTALL)


def _blank(match: re.Match) -> str:
    return re.sub(r"[^\n]", "\0", match.group())


def _begins_statement(code: str, at: int) -> bool:
    before = code[:at].replace("\0", " ").rstrip()
    return before.endswith((";", "{", "}", ":"))


def mutants_of(file: str, source: str) -> list[Mutant]:
    source_of_here = _WINDOWS.sub(_blank, source)
    code = _TOKEN.sub(_blank, source_of_here)  # same length, without comments and texts
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
    for match in _LOCK.finditer(code):
        lock = source[match.start() : match.end()]
        indent = len(lock) - len(lock.lstrip())
        add(match.start() + indent, lock[indent:], "\n")
        call = _NEXT_CALL.match(code, match.end())
        if call:
            late = source[match.end() : call.end()]
            add(match.start() + indent, (lock + late)[indent:], (late + lock)[indent:])
    for match in _TOKEN.finditer(source_of_here):
        text = match.group()
        if match.lastgroup == "text" and len(text) > 2:
            add(match.end() - 1, '"', '~"')
    return sorted(found, key=lambda mutant: (mutant.at, mutant.new))
