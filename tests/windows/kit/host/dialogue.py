#!/usr/bin/env python3
"""Types at the prompt of plenxkit host and looks at the screen. The typed text must stay whole, below the
notifications that come in the meantime.

    dialogue.py BIN_FOLDER PREFIX

The program runs under Wine on a terminal of its own."""

import pathlib
import shutil
import sys

from terminal import Terminal


def lay_out(folder, prefix):
    app = prefix / "drive_c" / "Plenx" / "App"
    app.mkdir(parents=True)
    (prefix / "drive_c" / "Plenx" / "Data").mkdir()
    for name in ("plenxservice.exe", "dokan1.sys", "dokan1.dll", "dokanfuse1.dll"):
        shutil.copy(folder / name, app)


def main():
    folder, prefix = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])
    lay_out(folder, prefix)
    dialogue = Terminal(folder, prefix, ["plenxkit.exe", "host", "--install", "C:\\Plenx\\App", "--data",
                                         "C:\\Plenx\\Data"])
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
    print("\n".join(dialogue.screen.lines()))
    return dialogue.exit_code()


if __name__ == "__main__":
    sys.exit(main())
