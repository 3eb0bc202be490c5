#!/usr/bin/env python3
"""One time line of a run, in three lanes: the host, the library, the services.

Reads what plenxhost printed with --json, the library's log and the services' logs, merges
them by their time stamps and prints them for a person to follow. Lines that it does not
understand are shown as they are.
"""

import argparse
import json
import re
import shutil
import sys
import unicodedata
from collections import namedtuple
from datetime import datetime

LANES = ("host", "library", "service")
SHARES = (0.32, 0.32, 0.36)  # of the width
DEFAULT_WIDTH = 150
TIME_WIDTH = 8

# kind: call, notice, good, bad, error, title, plain or faint. What is faint is shown with --all
# only: it tells nothing that another line does not tell as well.
Event = namedtuple("Event", "lane time kind text")

COLOURS = {"call": "1", "notice": "36", "good": "32", "bad": "1;31", "error": "31", "title": "1;33", "faint": "2"}
MARKS = {"call": "> ", "notice": "< ", "good": "+ ", "bad": "X ", "error": "! "}


# Host

SERVICES = {0: "office", 1: "pc", 2: "phone", 3: "all"}
STATUS_KINDS = {0: "start", 1: "stop", 2: "online", 3: "offline"}


def notification_text(record):
    arguments = dict(record.get("arguments", {}))
    if "svcType" in arguments:
        arguments["svcType"] = SERVICES.get(arguments["svcType"], arguments["svcType"])
    if "sttsType" in arguments:
        arguments["sttsType"] = STATUS_KINDS.get(arguments["sttsType"], arguments["sttsType"])
    words = [record.get("name", "?")]
    arguments.pop("linkStatus", None)
    for name, value in arguments.items():
        shown = json.dumps(value) if isinstance(value, bool) else str(value)
        words.append(f"-> {shown}" if name == "answer" else shown)
    if record.get("throws"):
        words.append("THROWS")
    elif record.get("returns", 0) != 0:
        words.append(f"-> {record['returns']}")
    return " ".join(words)


def command_event(record):
    text = record.get("text", "")
    if "held" in record:
        text += f": {record['remark']}" if record.get("remark") else ""
        return Event("host", stamp(record["time"]), "faint" if record["held"] else "bad", text)
    for key in ("result", "resultText"):
        if key in record:
            text += f" = {record[key]}"
    return Event("host", stamp(record.get("began", record["time"])), "call", text)


def host_event(line):
    record = json.loads(line)
    time = stamp(record["time"])
    if record["type"] == "notification":
        return Event("host", time, "notice", notification_text(record))
    if record["type"] == "command":
        return command_event(record)
    if record["type"] == "end":
        failed = len(record.get("failures", []))
        text = f"end: {record.get('expectations')} expectations, {failed} failed"
        return Event("host", time, "bad" if record.get("exitCode") else "good", text)
    return Event("host", time, "error" if record["type"] == "error" else "title",
                 record.get("text", line))


# Logs

LOG_LINE = re.compile(r"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3}) (.*)")
LEVEL_AND_THREAD = re.compile(r"\[(\w+)\] \[\w+\] (.*)")
TAG = re.compile(r"\[(PLENXSDK|RPCMANAGER)\] ")
FUNCTION = re.compile(r"\((DistributedFs::[\w:~]+)\)$")
# They only frame what the observers do, and the host shows that.
FRAME = re.compile(r"plenx manager .* (begin|end)$|"
                   r"plenx manager (notify|query|send local) .*\binvoked\b.*$")
# Long ways to say short things.
SHORTER = (("plenx manager ", ""), ("rpc manager ", "rpc: "),
           (" is pushed into thread pool", " is queued"), (" is invoked", " runs"))
# A call that went well has been told by the side that made it.
DONE = re.compile(r"\w+ (Manager )?answered \w+\(\d+\) result:0 reply:0$")


def library_event(line):
    time, text = LOG_LINE.fullmatch(line).groups()
    kind = "plain"
    prefix = LEVEL_AND_THREAD.fullmatch(text)
    if prefix:
        kind = "plain" if prefix.group(1) == "info" else "error"
        text = prefix.group(2)
    text = FUNCTION.sub("", TAG.sub("", text, count=1))
    if kind == "plain" and FRAME.fullmatch(text):
        kind = "faint"
    for long, short in SHORTER:
        text = text.replace(long, short)
    return Event("library", stamp(time), kind, text)


def service_event(line):
    time, text = LOG_LINE.fullmatch(line).groups()
    return Event("service", stamp(time), "faint" if DONE.fullmatch(text) else "plain", text)


# Reading and merging

def stamp(text):
    return datetime.strptime(text, "%Y-%m-%d %H:%M:%S.%f")


def read_events(path, lane, parse):
    """The events of one file; a line that parse refuses belongs to the one before it."""
    events = []
    time = None
    with open(path, encoding="utf-8-sig", errors="replace") as file:
        for line in file:
            line = line.rstrip("\r\n")
            if not line.strip():
                continue
            try:
                event = parse(line)
            except (ValueError, KeyError, AttributeError, TypeError):
                event = Event(lane, time, "plain", line)
            time = event.time
            events.append(event)
    return fill_times(events)


def fill_times(events):
    """Gives lines before the first time stamp that stamp; none at all: drops them."""
    first = next((event.time for event in events if event.time), None)
    return [event if event.time else event._replace(time=first) for event in events if first]


LANE_RANKS = {"host": 0, "library": 1, "service": 2}


def begins_notification(event):
    return (event.lane == "library" and event.kind == "faint" and
            event.text.endswith(" begin") and "register" not in event.text)


def merge(streams):
    """By time, and never against the order inside a stream.

    In the same millisecond a call of the host goes before what the library makes of it, and
    a notification goes behind the line with which the library begins it.
    """
    positions = [0] * len(streams)
    begun = told = 0
    merged = []

    def rank(event):
        waits = event.kind == "notice" and told >= begun
        return 3 if waits else LANE_RANKS[event.lane]

    while True:
        heads = [(stream[at].time, rank(stream[at]), i)
                 for i, (stream, at) in enumerate(zip(streams, positions)) if at < len(stream)]
        if not heads:
            return merged
        chosen = min(heads)[2]
        event = streams[chosen][positions[chosen]]
        positions[chosen] += 1
        begun += begins_notification(event)
        told += event.kind == "notice"
        merged.append(event)


# Folding

MOST_IN_A_ROW = 7


def without_faint(events):
    return [event for event in events if event.kind != "faint"]


def with_repeats_counted(events):
    """Neighbours that differ in numbers alone become one, the last of them."""
    folded = []
    for event in events:
        shape = (event.lane, event.kind, re.sub(r"\d+", "#", event.text))
        if folded and folded[-1][1] == shape and event.kind in ("plain", "error"):
            folded[-1] = (event, shape, folded[-1][2] + 1)
        else:
            folded.append((event, shape, 1))
    return [event if count == 1 else event._replace(text=f"{count} x {event.text}")
            for event, _, count in folded]


def with_long_runs_cut(events):
    """Of many library lines in a row, the first ones and the last stay, and every error."""
    folded = []
    run = []
    for event in events + [None]:
        if event is not None and event.lane == "library" and event.kind == "plain":
            run.append(event)
            continue
        if len(run) > MOST_IN_A_ROW:
            hidden = len(run) - MOST_IN_A_ROW + 1
            note = Event("library", run[-2].time, "faint", f"... {hidden} more lines ...")
            run = run[:MOST_IN_A_ROW - 2] + [note] + run[-1:]
        folded += run
        run = []
        if event is not None:
            folded.append(event)
    return folded


def fold(events):
    return with_long_runs_cut(with_repeats_counted(without_faint(events)))


# Printing

def cell_width(character):
    if unicodedata.combining(character):
        return 0
    return 2 if unicodedata.east_asian_width(character) in "WF" else 1


def fit(text, width):
    """The text in exactly that many columns, cut with ~ where it is too long."""
    text = "".join(c if c.isprintable() else "." for c in text)
    if sum(map(cell_width, text)) > width:
        while text and sum(map(cell_width, text)) > width - 1:
            text = text[:-1]
        text += "~"
    return text + " " * (width - sum(map(cell_width, text)))


def lane_widths(width):
    usable = width - TIME_WIDTH - 3 * 3
    widths = [int(usable * share) for share in SHARES[:-1]]
    return widths + [usable - sum(widths)]


def row(time_text, event, widths, colour):
    start = f"{time_text:>{TIME_WIDTH}} | "
    if event.kind == "title":
        text = fit(event.text, sum(widths) + 6).rstrip()
        return start + (f"\x1b[{COLOURS['title']}m{text}\x1b[0m" if colour else text)
    cells = []
    for lane, width in zip(LANES, widths):
        if event.lane != lane:
            cells.append(" " * width)
            continue
        text = fit(MARKS.get(event.kind, "  ") + event.text, width)
        code = COLOURS.get(event.kind)
        cells.append(f"\x1b[{code}m{text}\x1b[0m" if colour and code else text)
    return start + " | ".join(cells).rstrip()


def print_timeline(events, width, colour):
    widths = lane_widths(width)
    heads = " | ".join(fit(lane, lane_width) for lane, lane_width in zip(LANES, widths))
    print(f"{'seconds':>{TIME_WIDTH}} | {heads}".rstrip())
    print("-" * (TIME_WIDTH + 1) + "".join("+" + "-" * (w + 2) for w in widths))
    shown = None
    for event in events:
        seconds = (event.time - events[0].time).total_seconds()
        time_text = f"{seconds:.3f}"
        print(row("" if time_text == shown else time_text, event, widths, colour))
        shown = time_text


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__.strip().splitlines()[0])
    parser.add_argument("--host", metavar="FILE", help="output of plenxhost --json")
    parser.add_argument("--library", metavar="FILE", help="log of the library")
    parser.add_argument("--service", metavar="FILE", action="append", default=[],
                        help="log of services; may be given several times")
    parser.add_argument("--width", type=int, metavar="COLUMNS",
                        help=f"default: the terminal's, else {DEFAULT_WIDTH}")
    parser.add_argument("--color", choices=("auto", "always", "never"), default="auto")
    parser.add_argument("--all", action="store_true", help="fold nothing")
    return parser.parse_args()


def load(path, lane, parse):
    try:
        return read_events(path, lane, parse)
    except OSError as error:
        print(f"timeline: {error}", file=sys.stderr)
        return []


def main():
    options = parse_arguments()
    sys.stdout.reconfigure(encoding="utf-8", errors="replace")
    streams = [load(path, "service", service_event) for path in options.service]
    if options.host:
        # A command is printed when it is done, but belongs to the time when it began.
        host = load(options.host, "host", host_event)
        streams.append(sorted(host, key=lambda event: event.time))
    if options.library:
        streams.append(load(options.library, "library", library_event))
    events = merge(streams)
    if not events:
        print("timeline: nothing to show", file=sys.stderr)
        return 1
    if not options.all:
        events = fold(events)
    width = options.width or shutil.get_terminal_size((DEFAULT_WIDTH, 0)).columns
    colour = options.color == "always" or (options.color == "auto" and sys.stdout.isatty())
    try:
        print_timeline(events, min(max(width, 80), 200), colour)
    except BrokenPipeError:
        sys.stderr.close()
    return 0


if __name__ == "__main__":
    sys.exit(main())
