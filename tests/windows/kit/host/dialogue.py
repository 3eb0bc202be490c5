#!/usr/bin/env python3
"""Types at the prompt of plenxkit host and looks at the screen: what is typed must stay whole, below what is
notified meanwhile.

    dialogue.py BIN_FOLDER PREFIX

The program runs under Wine on a terminal of its own. Wine's console gives that terminal the
screen's changes, which are put together again here."""

import fcntl
import os
import pathlib
import pty
import re
import select
import shutil
import struct
import sys
import termios
import time

LONGEST = 120  # seconds for anything that is waited for
ROWS, COLUMNS = 60, 120
SEQUENCE = re.compile(r"\x1b\[(\?)?([0-9;]*)([A-Za-z])")


class Screen:
    """Of the sequences a terminal knows, those that Wine's console sends."""

    def __init__(self):
        self.rows = [[" "] * COLUMNS for _ in range(ROWS)]
        self.x = self.y = 0
        self.left_over = ""

    def write(self, text):
        text = self.left_over + text
        self.left_over = ""
        at = 0
        while at < len(text):
            if text[at] == "\x1b":
                match = SEQUENCE.match(text, at)
                if match is None:
                    self.left_over = text[at:]
                    return
                self.obey(match)
                at = match.end()
            else:
                self.put(text[at])
                at += 1

    def obey(self, match):
        private, number, what = match.groups()
        count = int(number) if number.isdigit() else 1
        if private or what == "m":
            return
        if what == "K":
            self.rows[self.y][self.x:] = [" "] * (COLUMNS - self.x)
        elif what == "C":
            self.x += count
        elif what == "D":
            self.x -= count
        elif what == "A":
            self.y -= count
        elif what == "B":
            self.y += count
        elif what == "H":
            place = [int(part) for part in number.split(";")] if number else [1, 1]
            self.y, self.x = place[0] - 1, place[-1] - 1
        else:
            raise ValueError(f"a sequence that is not known: {match.group(0)!r}")

    def put(self, letter):
        if letter == "\r":
            self.x = 0
        elif letter == "\n":
            self.y += 1
        elif letter == "\b":
            self.x -= 1
        else:
            self.rows[self.y][self.x] = letter
            self.x += 1

    def lines(self):
        lines = ["".join(row).rstrip() for row in self.rows]
        return [line for line in lines if line]


class Dialogue:
    def __init__(self, folder, prefix):
        self.screen = Screen()
        self.process, self.terminal = pty.fork()
        if self.process == 0:
            os.chdir(folder)
            os.environ["WINEPREFIX"] = str(prefix)
            os.execvp("wine", ["wine", "plenxkit.exe", "host", "--install", "C:\\Plenx\\App", "--data",
                               "C:\\Plenx\\Data"])
        size = struct.pack("HHHH", ROWS, COLUMNS, 0, 0)
        fcntl.ioctl(self.terminal, termios.TIOCSWINSZ, size)

    def type(self, text):
        os.write(self.terminal, text.encode())

    def wait_for(self, what, condition):
        end = time.monotonic() + LONGEST
        while not condition(self.screen.lines()):
            ready, _, _ = select.select([self.terminal], [], [], max(0, end - time.monotonic()))
            try:
                read = os.read(self.terminal, 65536) if ready else b""
            except OSError:
                read = b""
            if not read:
                print("\n".join(self.screen.lines()))
                sys.exit(f"this was not to be seen: {what}")
            self.screen.write(read.decode("utf-8", "replace"))

    def wait_for_last(self, line):
        self.wait_for(line, lambda lines: bool(lines) and lines[-1] == line)

    def wait_for_part(self, part):
        self.wait_for(part, lambda lines: any(part in line for line in lines))


def lay_out(folder, prefix):
    app = prefix / "drive_c" / "Plenx" / "App"
    app.mkdir(parents=True)
    (prefix / "drive_c" / "Plenx" / "Data").mkdir()
    for name in ("plenxservice.exe", "dokan1.sys", "dokan1.dll", "dokanfuse1.dll"):
        shutil.copy(folder / name, app)


def main():
    folder, prefix = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])
    lay_out(folder, prefix)
    dialogue = Dialogue(folder, prefix)
    dialogue.wait_for_last("plenx>")
    dialogue.type("init\r")
    dialogue.wait_for_part("] > init")
    # The service starts while this is typed: its notifications come in between.
    dialogue.type("start pc home argument\rhel")
    dialogue.wait_for_part('NotifyStatus(svcType=1, first="home", sttsType=0, value=true)')
    dialogue.wait_for_part("sttsType=100")
    dialogue.wait_for_last("plenx> hel")
    dialogue.type("\x7f\x7f\x7fec\t")
    dialogue.wait_for_last("plenx> echo")
    dialogue.type("done  here\r")
    dialogue.wait_for("done here", lambda lines: "done here" in lines)
    dialogue.type("nonsense\r")
    dialogue.wait_for_part('plenxkit host: input:4: unknown command "nonsense"')
    dialogue.wait_for_last("plenx>")
    dialogue.type("\x04")
    dialogue.wait_for_last("exit code 0")
    _, status = os.waitpid(dialogue.process, 0)
    print("\n".join(dialogue.screen.lines()))
    return os.waitstatus_to_exitcode(status)


if __name__ == "__main__":
    sys.exit(main())
