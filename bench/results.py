"""Reads what the benchmark programs have written.

Every program of either world writes a list of records, or what Google Benchmark writes; a record is

    {"row": "1 ping", "world": "native", "contender": "ours", "unit": "ns",
     "samples": [31.2, 31.4, ...], "allocations": 2}

row          what was measured; goals.py lists the rows
world        "native" (Linux) or "wine" (the shipped DLL under Wine)
contender    "ours"; "limit": the least work that any program could do for the same effect; any
             other name is a peer. A name in parentheses is there for scale: it does not do quite
             the same work, and no goal compares with it. In a row that shows how cost grows with the
             work, a contender is ours at one size: "1,000", "64 MiB".
unit         "ns" and "B" (less is better), "1/s" (more is better), or any other word, shown as it is
samples      one for each repetition; their median is shown and compared with the goals
allocations  optional: calls of the allocator for one operation

In the output of Google Benchmark, the benchmarks are named "row/contender". Their times are those of
the processor, which other programs disturb least. Many short runs of it, spread at random over the
whole time, are combined into REPETITIONS samples. The output of table.py can be read again.
"""

import json
import statistics
from dataclasses import dataclass, field


REPETITIONS = 11


@dataclass
class Record:
    row: str
    world: str
    contender: str
    unit: str
    samples: list = field(default_factory=list)
    allocations: float | None = None

    @property
    def median(self):
        return statistics.median(self.samples)

    @property
    def spread(self):
        """Half of the samples are no further than this from the median; a part of the median."""
        middle = self.median
        if middle == 0:
            return 0.0
        return statistics.median(abs(sample - middle) for sample in self.samples) / abs(middle)

    @property
    def is_peer(self):
        return (self.contender not in ("ours", "limit") and not self.is_for_scale
                and not self.is_size)

    @property
    def is_size(self):
        """Ours at one size of the work, in a row that shows how cost grows."""
        return self.contender[0].isdigit()

    @property
    def is_for_scale(self):
        return self.contender.startswith("(")

    @property
    def more_is_better(self):
        return self.unit.endswith("/s")


def together(runs):
    """One sample of every few runs. A core is twice as fast while its other thread sleeps, and the
    median of single runs would fall on the one side or the other by chance."""
    few = max(1, len(runs) // REPETITIONS)
    return [statistics.mean(runs[i:i + few]) for i in range(0, len(runs) - few + 1, few)]


class Results:
    """All records, by row, world and contender, in the order in which they came."""

    def __init__(self):
        self.records = {}

    def add(self, row, world, contender, unit, samples, allocations=None):
        record = self.records.setdefault((row, world, contender),
                                         Record(row, world, contender, unit))
        record.samples += samples
        if allocations is not None:
            record.allocations = allocations

    def read(self, path):
        with open(path, encoding="utf-8") as file:
            content = json.load(file)
        if "benchmarks" in content:
            self._add_google(content["benchmarks"])
            return
        for record in content["records"] if "records" in content else content:
            self.add(**{name: record.get(name) for name in
                        ("row", "world", "contender", "unit", "samples", "allocations")})

    def _add_google(self, benchmarks):
        times = {}
        for run in benchmarks:
            if run["run_type"] != "iteration":
                continue
            if run.get("error_occurred"):
                raise SystemExit(f"{run['name']}: {run['error_message']}")
            row, contender = run["run_name"].split("/")[:2]
            if "allocations" in run:  # a run that counts is not one that is timed
                self.add(row, "native", contender, "ns", [], round(run["allocations"], 2))
            elif "bytes_left" in run:
                self.add(row, "native", contender, "B", [run["bytes_left"]])
            else:
                times.setdefault((row, contender, run["time_unit"]), []).append(run["cpu_time"])
        for (row, contender, unit), runs in times.items():
            self.add(row, "native", contender, unit, together(runs))

    def get(self, row, world, contender):
        record = self.records.get((row, world, contender))
        return record if record and record.samples else None

    def of_row(self, row, world):
        return [record for (its_row, its_world, _), record in self.records.items()
                if its_row == row and its_world == world and record.samples]

    def best_peer(self, row, world):
        peers = [record for record in self.of_row(row, world) if record.is_peer]
        if not peers:
            return None
        best = max if peers[0].more_is_better else min
        return best(peers, key=lambda record: record.median)


def derive_fan_out(results):
    """Row 5: our fan-out without its three lines, and each contender's cost of one more observer."""
    if results.get("5 1 observer", "native", "ours"):
        return  # the results were written by table.py, which has derived these already
    lines = results.get("5 three lines", "native", "ours")
    for row in ("5 1 observer", "5 10 observers", "5 1,000 observers"):
        whole = results.get(row, "native", "(ours with its lines)")
        if lines and whole:
            results.add(row, "native", "ours", "ns",
                        [sample - lines.median for sample in whole.samples], whole.allocations)
    for few in list(results.of_row("5 10 observers", "native")):
        many = results.get("5 1,000 observers", "native", few.contender)
        if many and not few.is_for_scale:
            results.add("5 one observer more", "native", few.contender, "ns",
                        [(b - a) / 990 for a, b in zip(few.samples, many.samples)])
