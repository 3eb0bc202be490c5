#!/usr/bin/env python3
"""Shows what the benchmark programs have measured, and which goals that meets.

usage: bench/table.py [--json FILE] [--quick] [--markdown] RESULTS...

results.py describes the files of results. goals.py holds the rows and their goals. --json writes all
records, the values that were derived from them, and the goals. Such a file is a file of results, too.
--markdown writes one line for each row, for docs/performance.md.
"""

import argparse
import json
import textwrap

from goals import ROWS, Row, number
from results import Results, derive_fan_out

WIDTH = 100
LINE = "  {:<30} {:>11} {:>9} {:>11} {:>11} {:>12}"
SCALES = {"ns": ((1e9, "s"), (1e6, "ms"), (1e3, "us"), (1, "ns")),
          "B": ((2**20, "MiB"), (2**10, "KiB"), (1, "B"))}


def quantity(value, unit):
    for size, name in SCALES.get(unit, ()):
        if abs(value) >= size:
            return f"{number(value / size)} {name}"
    return f"{number(value)} {unit}"


def ratio(record, other):
    if other is None or other.median == 0:
        return ""
    return f"{record.median / other.median:.2f}"


def size_of(name):
    """Returns the number that "1,000" or "64 MiB" means."""
    count, *unit = name.split()
    return int(count.replace(",", "")) * (2 ** (10 * "KMG".index(unit[0][0]) + 10) if unit else 1)


def order(record):
    if record.is_size:
        return 0, size_of(record.contender)
    place = {"ours": 0, "limit": 1}.get(record.contender, 3 if record.is_for_scale else 2)
    return place, -record.median if record.more_is_better else record.median


def show_row(results, row, world):
    records = results.of_row(row.name, world)
    records.sort(key=order)
    limit = results.get(row.name, world, "limit")
    peer = results.best_peer(row.name, world)
    print()
    title = f"{row.name} · {row.work}" if row.work else row.name
    print(title.ljust(WIDTH - len(world) - 1), world)
    for record in records:
        allocations = "" if record.allocations is None else number(record.allocations)
        print(LINE.format(record.contender, quantity(record.median, record.unit),
                          f"±{100 * record.spread:.1f} %", ratio(record, limit),
                          ratio(record, peer), allocations).rstrip())
    show_goals(results, row, world)


def verdict(outcome):
    if outcome is None:
        return "not measured"
    reached, is_met = outcome
    return f"{reached}  {'met' if is_met else 'NOT MET'}"


def show_goals(results, row, world):
    for goal in row.goals:
        print(f"  goal: {goal.text}: {verdict(goal.check(results, row.name, world))}")


def worlds_of(results, row):
    return [world for world in ("native", "wine") if results.of_row(row.name, world)]


def unknown_rows(results):
    """Rows that goals.py does not know are shown as well, so that none gets lost."""
    known = {row.name for row in ROWS} | {"5 three lines"}
    names = dict.fromkeys(row for row, *_ in results.records if row not in known)
    return tuple(Row(name, "") for name in names)


def outcomes(results):
    """(row, world, goal, outcome) of all that was measured."""
    return [(row, world, goal, goal.check(results, row.name, world))
            for row in ROWS for world in worlds_of(results, row) for goal in row.goals]


def show_summary(results):
    held = [outcome for outcome in outcomes(results) if outcome[3] is not None]
    met = sum(outcome[1] for *_, outcome in held)
    print(f"\n{met} of {len(held)} goals are met.")
    for row, world, goal, outcome in held:
        if not outcome[1]:
            print(f"  not met: {row.name} ({world}): {goal.text}: {outcome[0]}")
    missing = [row.name for row in ROWS if not worlds_of(results, row)]
    if missing:
        print(textwrap.fill("Not measured in this run: " + ", ".join(missing) + ".", WIDTH))


def cell(record):
    return quantity(record.median, record.unit) if record else ""


def markdown_lines(results, row, world):
    """One line for a row; for a row of sizes, one for each size."""
    sizes = sorted((record for record in results.of_row(row.name, world) if record.is_size),
                   key=order)
    for record in sizes:
        yield [f"{row.name}: {record.contender}", world, cell(record), "", "", "", ""]
    ours = results.get(row.name, world, "ours")
    peer = results.best_peer(row.name, world)
    if not sizes:
        yield [row.name, world, f"{cell(ours)} ±{100 * ours.spread:.0f} %" if ours else "",
               cell(results.get(row.name, world, "limit")),
               f"{cell(peer)} ({peer.contender})" if peer else "",
               "" if ours is None or ours.allocations is None else number(ours.allocations), ""]


def show_markdown(results):
    print("| Row | World | Ours | Limit | Best peer | Allocations | Goals |")
    print("|---|---|---|---|---|---|---|")
    for row in ROWS:
        for world in worlds_of(results, row):
            lines = list(markdown_lines(results, row, world))
            lines[-1][-1] = "; ".join(
                f"{goal.text}: {verdict(goal.check(results, row.name, world))}"
                for goal in row.goals).replace("  ", ", ")
            for line in lines:
                print("| " + " | ".join(line) + " |")


def write_json(results, path):
    records = [dict(vars(record), median=record.median, spread=record.spread)
               for record in results.records.values() if record.samples]
    goals = [{"row": row.name, "world": world, "goal": goal.text,
              "reached": outcome and outcome[0], "met": bool(outcome and outcome[1])}
             for row, world, goal, outcome in outcomes(results)]
    with open(path, "w", encoding="utf-8") as file:
        json.dump({"records": records, "goals": goals}, file, indent=1)
        file.write("\n")


def show_all(results, quick):
    print(LINE.format("", "median", "spread", "to limit", "to best", "allocations"))
    print(LINE.format("", "", "", "", "peer", "per op"))
    for row in ROWS + unknown_rows(results):
        for world in worlds_of(results, row):
            show_row(results, row, world)
    show_summary(results)
    if quick:
        print("A quick run: short repetitions, a million jobs are 100,000, and 60 s of idleness are 6.")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--json", metavar="FILE")
    parser.add_argument("--quick", action="store_true", help="say that the run was quick")
    parser.add_argument("--markdown", action="store_true")
    parser.add_argument("results", nargs="+")
    arguments = parser.parse_args()

    results = Results()
    for path in arguments.results:
        results.read(path)
    derive_fan_out(results)
    if arguments.markdown:
        show_markdown(results)
    else:
        show_all(results, arguments.quick)
    if arguments.json:
        write_json(results, arguments.json)


if __name__ == "__main__":
    main()
