"""Runs a program under Wine on a terminal of its own. Wine's console gives that terminal the screen's changes,
and this module puts the screen together from them."""

import fcntl
import os
import pty
import re
import select
import struct
import sys
import termios
import time

LONGEST = 120  # seconds for anything that is waited for
ROWS, COLUMNS = 60, 120
SEQUENCE = re.compile(r"\x1b\[(\?)?([0-9;]*)([A-Za-z])")


class Screen:
    """Understands those of a terminal's sequences that Wine's console sends."""

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
            raise ValueError(f"unknown sequence: {match.group(0)!r}")

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


class Terminal:
    """command: the program, which lies in the folder, and its arguments."""

    def __init__(self, folder, prefix, command):
        self.screen = Screen()
        self.process, self.terminal = pty.fork()
        if self.process == 0:
            os.chdir(folder)
            os.environ["WINEPREFIX"] = str(prefix)
            os.execvp("wine", ["wine", *command])
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
                sys.exit(f"this did not appear on the screen: {what}")
            self.screen.write(read.decode("utf-8", "replace"))

    def wait_for_last(self, line):
        self.wait_for(line, lambda lines: bool(lines) and lines[-1] == line)

    def wait_for_part(self, part):
        self.wait_for(part, lambda lines: any(part in line for line in lines))

    def exit_code(self):
        """Reads on while it waits, because a console that cannot show a text waits until it can."""
        end = time.monotonic() + LONGEST
        while time.monotonic() < end:
            process, status = os.waitpid(self.process, os.WNOHANG)
            if process != 0:
                return os.waitstatus_to_exitcode(status)
            ready, _, _ = select.select([self.terminal], [], [], 0.1)
            try:
                read = os.read(self.terminal, 65536) if ready else b""
            except OSError:  # the other end is gone
                read = b""
                time.sleep(0.1)
            self.screen.write(read.decode("utf-8", "replace"))
        sys.exit("the program has not ended")
