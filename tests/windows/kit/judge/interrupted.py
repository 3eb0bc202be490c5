#!/usr/bin/env python3
"""Looks at plenxkit judge on a terminal, and interrupts it. The judge must remove everything before it ends.

    interrupted.py BIN_FOLDER PREFIX

Wine's console sends Ctrl-C to every program on the terminal, as Windows does."""

import os
import pathlib
import re
import shutil
import subprocess
import sys

from terminal import Terminal

INTERRUPTED = 5
WORK = "plenxkit"
SERVICE = ["--service", "C:\\judged\\plenxservice.exe"]
CONSOLE = ["--console", "C:\\judged\\plenxservice.exe --console pc --data %PLENX_DATA%"]
SOAK = ["--only", "start/1,soak", "--soak", "600"]


class Interrupted:
    def __init__(self, folder, prefix):
        self.folder = folder
        self.prefix = prefix
        self.judged = prefix / "drive_c" / "judged"
        self.judged.mkdir()
        shutil.copy(folder / "plenxservice.exe", self.judged)

    def begin(self, control, arguments, check):
        """Starts the judge and waits until the bar names the check."""
        (self.judged / "plenxservice.toml").write_text(control)
        terminal = Terminal(self.folder, self.prefix, ["plenxkit.exe", "judge", *arguments])
        bar = re.compile(r"^  \[[#.]{30}\] \d+/\d+ " + check + "$")
        terminal.wait_for(f"a bar at {check}", lambda lines: bool(lines) and bar.match(lines[-1]))
        print(terminal.screen.lines()[-1])
        return terminal

    def is_registered(self):
        query = ["wine", "reg", "query", "HKLM\\System\\CurrentControlSet\\Services\\PlenxPcSvc"]
        return subprocess.run(query, env={**os.environ, "WINEPREFIX": str(self.prefix)},
                              capture_output=True, check=False).returncode == 0

    def what_is_left(self):
        left = [WORK] if (self.prefix / "drive_c" / WORK).exists() else []
        return left + (["PlenxPcSvc"] if self.is_registered() else [])

    def press(self, what, control, arguments, check):
        terminal = self.begin(control, arguments, check)
        terminal.type("\x03")
        terminal.wait_for_part("interrupted; the other checks were not judged")
        lines = terminal.screen.lines()
        self.judge(what, terminal.exit_code(), lines)
        return lines

    def judge(self, what, code, lines):
        bars = [line for line in lines if "[" in line]
        left = self.what_is_left()
        print(f"{what}: exit code {code}, left: {left}")
        if code != INTERRUPTED or left or bars:
            print("\n".join(lines))
            sys.exit("it must end with 5, leave nothing, and take the bar from the screen")


def main():
    folder, prefix = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])
    run = Interrupted(folder, prefix)

    lines = run.press("a service in a soak", "", SERVICE + SOAK, "soak/1")
    if "  start                    1 passed" not in lines:
        print("\n".join(lines))
        sys.exit("what was judged before must be on the screen")
    run.press("a service in its start", "[start]\ndelay_ms = 60000\n", SERVICE, "start/1")
    run.press("a service that never stops", "[stop]\nhow = \"never\"\n", SERVICE + SOAK, "soak/1")
    run.press("a call that hangs", "[[on]]\nrequest = \"CreateGroup\"\ndelay_ms = 60000\n",
              SERVICE + ["--only", "start/1,reply", "--patience", "60"], "reply/1")
    # The ping has brought all processes up: under Wine, Ctrl-C may hang the creation of one.
    run.press("a program of the console", "", CONSOLE + ["--only", "ping,soak", "--soak", "600"], "soak/1")


if __name__ == "__main__":
    sys.exit(main())
