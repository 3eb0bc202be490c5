"""The rows of the benchmark and the goals of each: ratios of medians of one run."""

from dataclasses import dataclass
from typing import Callable


@dataclass
class Goal:
    text: str
    # Takes (results, row, world). Returns (what was reached, whether that is enough), or None when it
    # was not measured.
    check: Callable


@dataclass
class Row:
    name: str
    work: str
    goals: tuple = ()


def number(value):
    return f"{value:.3g}" if abs(value) < 100 else f"{value:,.0f}"


def _ratio(ours, other, most):
    if ours is None or other is None:
        return None
    ratio = ours.median / other.median
    return f"{ratio:.2f}", ratio <= most


def of_best_peer(most):
    return Goal(f"at most {most} of the best peer", lambda results, row, world: _ratio(
        results.get(row, world, "ours"), results.best_peer(row, world), most))


def of(contender, most):
    return Goal(f"at most {most} of {contender}", lambda results, row, world: _ratio(
        results.get(row, world, "ours"), results.get(row, world, contender), most))


def of_limit(most):
    goal = of("limit", most)
    return Goal(f"at most {most} of the limit", goal.check)


def throughput_of_best_peer(least):
    def check(results, row, world):
        ours, peer = results.get(row, world, "ours"), results.best_peer(row, world)
        if ours is None or peer is None:
            return None
        ratio = ours.median / peer.median
        return f"{ratio:.2f}", ratio >= least
    return Goal(f"at least {least} of the best peer", check)


def at_most(most, text):
    def check(results, row, world):
        ours = results.get(row, world, "ours")
        return ours and (number(ours.median), ours.median <= most)
    return Goal(text, check)


def allocations(most):
    def check(results, row, world):
        ours = results.get(row, world, "ours")
        if ours is None or ours.allocations is None:
            return None
        return number(ours.allocations), ours.allocations <= most
    return Goal(f"calls of the allocator: at most {most}", check)


def more_than(contender, most, text):
    def check(results, row, world):
        ours, other = results.get(row, world, "ours"), results.get(row, world, contender)
        if ours is None or other is None:
            return None
        return number(ours.median - other.median), ours.median - other.median <= most
    return Goal(text, check)


# Twice, because the smaller size may fit into the processor's caches and the larger one may not. A cost
# that grows faster than the work would be many times as high.
GROWTH = 2


def linear(middle, top):
    """The contenders of such a row are sizes. Each is measured by the cost of one unit."""
    return Goal(f"one of {top} costs at most {GROWTH} of one of {middle}",
                lambda results, row, world: _ratio(results.get(row, world, top),
                                                   results.get(row, world, middle), GROWTH))


def linear_beside(limit_row, middle, top):
    """Does the same, with the cost of each size in units of the limit's cost for that size."""
    def check(results, row, world):
        sizes = [(results.get(row, world, size), results.get(limit_row, world, size))
                 for size in (middle, top)]
        if any(record is None for pair in sizes for record in pair):
            return None
        small, large = (ours.median / limit.median for ours, limit in sizes)
        return f"{large / small:.2f}", large <= GROWTH * small
    return Goal(f"in units of the limit, one of {top} costs at most {GROWTH} of one of {middle}",
                check)


MS = 1e6
MEMORY_BACK = at_most(64 * 1024, "back to within 64 KiB")

ROWS = (
    Row("1 ping", "message round trip, 28 B: an int64", (of_best_peer(1.0),)),
    Row("1 reply", "message round trip, 24 B: an int32", (of_best_peer(1.0),)),
    Row("1 create group", "message round trip: strings of 32 and 64, an int32",
        (of_best_peer(1.0),)),
    Row("1 device online 4 KiB", "message round trip: strings of 32 and 64, two int32, 4 KiB",
        (of_best_peer(1.0),)),
    Row("2 encode 1 MiB", "the same message with 1 MiB, encoded", (of_limit(1.1),)),
    Row("2 round trip 1 MiB", "the same, encoded and decoded", (of_limit(2),)),
    Row("3 log line", "a line of four values to a sink that discards",
        (of_best_peer(1.0),)),
    Row("4 log line to file", "the same through the stand-in logger, each line flushed",
        (of_best_peer(1.4),)),
    Row("5 1 observer", "fan-out, less the cost of its three lines"),
    Row("5 10 observers", "fan-out, less the cost of its three lines"),
    Row("5 1,000 observers", "fan-out, less the cost of its three lines"),
    Row("5 one observer more", "from the fan-outs to 10 and to 1,000",
        (of_best_peer(1.0),)),
    Row("6 notification", "fan-out to one observer, its three lines included",
        (of("(one log line)", 4),)),
    Row("7 enqueue", "a member function with two strings, worker busy, future dropped",
        (of_best_peer(1.4),)),
    Row("7 a million jobs", "enqueued and run on one core, for each job",
        (of_best_peer(1.4),)),
    Row("8 Start", "a whole public call, worker busy, its line included", (of_best_peer(1.4),)),
    Row("9 enqueue to run", "from the call to the job's first instruction, worker idle",
        (at_most(MS, "under 1 ms"),)),
    Row("10 request 28 B", "a whole request: line, encode, bind, call, free, decode",
        (of_best_peer(1.1),)),
    Row("10 request 4 KiB", "a whole request: line, encode, bind, call, free, decode",
        (of_best_peer(1.1),)),
    Row("11 notifications, 1 caller", "served in a second", (throughput_of_best_peer(0.9),)),
    Row("11 notifications, 4 callers", "served in a second", (throughput_of_best_peer(0.9),)),
    Row("11 notifications, 10 callers", "served in a second", (throughput_of_best_peer(0.9),)),
    Row("12 queued jobs", "queued behind a busy worker, then run; for each job",
        (linear("32,000", "1,000,000"),)),
    Row("12 memory after jobs", "still in use after a million of them", (MEMORY_BACK,)),
    Row("12 messages", "encoded and decoded, for each KiB",
        (linear_beside("12 messages, the limit", "256 KiB", "64 MiB"),)),
    Row("12 messages, the limit", "the same by the limit of rows 1 and 2"),
    Row("12 memory after messages", "still in use after 64 MiB", (MEMORY_BACK,)),
    Row("12 observers", "fan-out, for each observer", (linear("100", "10,000"),)),
    Row("12 memory after observers", "still in use after 10,000", (MEMORY_BACK,)),
    Row("13 load", "load the DLL, first call", (of_best_peer(1.1),)),
    Row("13 Init", "on the host's thread, while the engine works",
        (at_most(MS, "under 1 ms"),)),
    Row("13 exit", "of a host with idle services; the limit is what stopping them takes",
        (more_than("limit", 50 * MS, "at most 50 ms more than the limit"),)),
    Row("15 plenx_start", "Start through the plain C interface, worker busy",
        (of("the class", 1.15),)),
    Row("16 queue event", "pushed, a thread wakes, takes and frees it",
        (of_limit(1.2), allocations(1))),
    Row("16 memory after events", "still in use after a million of them", (MEMORY_BACK,)),
    Row("17 Node call", "a call with a text through the npm package, in a second"),
    Row("17 Node event", "events that wait in a queue, taken through the npm package, in a second"),
    Row("14 CPU", "used in 60 s after Start", (at_most(0, "none"),)),
    Row("14 wake-ups", "in 60 s after Start", (at_most(0, "none"),)),
    Row("14 growth", "of private bytes in 60 s after Start", (at_most(0, "none"),)),
)
