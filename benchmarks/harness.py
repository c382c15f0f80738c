"""Rows of the benchmark, how they are measured, and what is said of them.

A row is data: a job, what it is held against, a target, and a function that makes its files and
gives the calls to time. Measuring a row gives a `Record`; printing, ``--json`` and ``--check`` read
records only.

Rows against a peer run both in turn in one process, and compare what they give before they are
timed. Rows against a figure give that figure. Rows of growth run at three sizes.
"""

from __future__ import annotations

import gc
import math
import os
import shutil
import statistics
import time
from collections.abc import Callable, Iterable, Sequence
from dataclasses import asdict, dataclass, field
from pathlib import Path
from typing import Any

ROUNDS = 7
SHORT = 0.002  # seconds: a call that takes less is repeated within a round
MIB = 1024.0 * 1024.0

Call = Callable[[], object]


@dataclass(frozen=True)
class Record:
    """What a row has shown. Times are in seconds, other figures in the unit of the row."""

    part: str
    job: str
    against: str
    unit: str
    ours: float
    peer: float | None
    least: float
    figure: float
    target: float
    sizes: tuple[int, ...] = ()
    by_size: tuple[float, ...] = ()

    @property
    def met(self) -> bool:
        """Whether the figure keeps within the target."""
        return self.figure <= self.target

    def as_dict(self) -> dict[str, Any]:
        """Return the record for JSON."""
        return {**asdict(self), "met": self.met}


@dataclass
class Place:
    """Where fixtures lie. Each is written once, by whoever asks first."""

    root: Path
    quick: bool

    def fixture(self, name: str, write: Callable[[Path], object]) -> Path:
        """Return a directory that `write` has filled."""
        path = self.root / name
        if not path.exists():
            unfinished = self.root / f"{name}.unfinished"
            shutil.rmtree(unfinished, ignore_errors=True)
            unfinished.mkdir(parents=True)
            write(unfinished)
            unfinished.rename(path)
        return path

    def size(self, full: int, quick: int) -> int:
        """Return a size: the full one, or that of a quick look."""
        return quick if self.quick else full


@dataclass
class Pair:
    """The two sides of a row, and whether they gave the same."""

    ours: Call
    peer: Call
    equal: Callable[[Any, Any], bool]
    cold: Sequence[Path] = ()
    """Files that the system forgets before each turn."""
    new: Sequence[Path] = ()
    """Files that are removed before each turn, which writes them."""
    after: Call | None = None
    """Called when the row is done: puts settings back."""

    def check(self) -> None:
        """Compare both sides once."""
        mine, theirs = self.ours(), self.peer()
        if not self.equal(mine, theirs):
            raise AssertionError("the two sides of this row do not give the same")


@dataclass(frozen=True)
class Row:
    """A job with its target."""

    part: str
    job: str
    against: str
    target: float
    unit: str
    measure: Callable[[Row, Place], Record] = field(repr=False)


ROWS: list[Row] = []


def row(part: str, job: str, *, against: str, target: float) -> Callable[..., Any]:
    """Declare a row against a peer: the function takes a `Place` and gives a `Pair`."""

    def declare(make: Callable[[Place], Pair]) -> Callable[[Place], Pair]:
        def measure(this: Row, place: Place) -> Record:
            pair = make(place)
            try:
                pair.check()
                mine, theirs = side_by_side(pair)
            finally:
                if pair.after is not None:
                    pair.after()
            ours, peer = statistics.median(mine), statistics.median(theirs)
            return record_of(this, ours / peer, ours, peer, min(mine))

        ROWS.append(Row(part, job, against, target, "ms", measure))
        return make

    return declare


def limit(part: str, job: str, *, target: float, unit: str) -> Callable[..., Any]:
    """Declare a row against a figure: the function takes a `Place` and gives one in that unit."""

    def declare(make: Callable[[Place], float]) -> Callable[[Place], float]:
        def measure(this: Row, place: Place) -> Record:
            value = make(place)
            return record_of(this, figure=value, ours=value)

        ROWS.append(Row(part, job, "", target, unit, measure))
        return make

    return declare


def growth(
    part: str, job: str, *, sizes: Sequence[int], quick: Sequence[int], exponent: float
) -> Callable[..., Any]:
    """Declare a row of growth: the function takes a size and a `Place` and gives a call to time.

    The figure is the slope of the logarithm of the least time over that of the size.
    """

    def declare(make: Callable[[int, Place], Call]) -> Callable[[int, Place], Call]:
        def measure(this: Row, place: Place) -> Record:
            chosen = tuple(quick if place.quick else sizes)
            calls = [make(size, place) for size in chosen]
            least = [math.inf] * len(calls)
            for _ in range(5):
                for i, call in enumerate(calls):
                    least[i] = min(least[i], seconds_of(call))
            return record_of(
                this, slope(chosen, least), least[-1], sizes=chosen, by_size=tuple(least)
            )

        ROWS.append(Row(part, job, "its size", exponent, "exponent", measure))
        return make

    return declare


def record_of(
    this: Row,
    figure: float,
    ours: float,
    peer: float | None = None,
    least: float | None = None,
    sizes: tuple[int, ...] = (),
    by_size: tuple[float, ...] = (),
) -> Record:
    """Return the record of a row with its figures."""
    return Record(
        part=this.part,
        job=this.job,
        against=this.against,
        unit=this.unit,
        ours=ours,
        peer=peer,
        least=ours if least is None else least,
        figure=figure,
        target=this.target,
        sizes=sizes,
        by_size=by_size,
    )


def slope(sizes: Sequence[int], seconds: Sequence[float]) -> float:
    """Return the slope of log time over log size, by least squares."""
    x = [math.log(size) for size in sizes]
    y = [math.log(second) for second in seconds]
    mean_x, mean_y = statistics.mean(x), statistics.mean(y)
    over = sum((a - mean_x) * (b - mean_y) for a, b in zip(x, y, strict=True))
    return over / sum((a - mean_x) ** 2 for a in x)


def seconds_of(call: Call) -> float:
    """Return the time of one call; what it returns is freed behind the clock."""
    gc.collect()
    start = time.perf_counter()
    result = call()
    elapsed = time.perf_counter() - start
    del result
    return elapsed


def repeated(call: Call) -> tuple[Call, int]:
    """Return a call that is long enough for the clock, and how often it repeats the given one."""
    once = seconds_of(call)
    if once >= SHORT:
        return call, 1
    times = max(2, math.ceil(SHORT / max(once, 1e-7)))

    def many() -> None:
        for _ in range(times):
            call()

    return many, times


def side_by_side(pair: Pair) -> tuple[list[float], list[float]]:
    """Return the times of both sides, which take turns."""
    if pair.cold or pair.new:
        sides = [(pair.ours, 1), (pair.peer, 1)]
    else:
        sides = [repeated(pair.ours), repeated(pair.peer)]
    times: tuple[list[float], list[float]] = ([], [])
    for number in range(ROUNDS):
        # Who goes second finds warmer caches: both do, in turn.
        for i in (0, 1) if number % 2 == 0 else (1, 0):
            call, count = sides[i]
            forget(pair.cold)
            for path in pair.new:
                path.unlink(missing_ok=True)
            times[i].append(seconds_of(call) / count)
    return times


def forget(paths: Iterable[Path]) -> None:
    """Have the system drop files from its page cache."""
    for path in paths:
        descriptor = os.open(path, os.O_RDONLY)
        try:
            os.fsync(descriptor)
            os.posix_fadvise(descriptor, 0, 0, os.POSIX_FADV_DONTNEED)
        finally:
            os.close(descriptor)


def each(call: Call, repeat: int = 2_000) -> float:
    """Return the median time in microseconds of a call that is too short for one reading."""
    readings = []
    for _ in range(ROUNDS):
        start = time.perf_counter()
        for _ in range(repeat):
            call()
        readings.append((time.perf_counter() - start) / repeat)
    return statistics.median(readings) * 1e6


def line_of(record: Record) -> str:
    """Return a record as a line of the printed table."""
    verdict = "ok" if record.met else "MISSED"
    if record.peer is not None:
        return (
            f"{record.job[:64]:64} {record.ours * 1e3:10.2f} ms {record.peer * 1e3:10.2f} ms"
            f" {record.figure:6.2f}x <= {record.target:g}x {verdict}"
        )
    if record.sizes:
        steps = ", ".join(
            f"{size}: {seconds * 1e3:.1f} ms"
            for size, seconds in zip(record.sizes, record.by_size, strict=True)
        )
        return (
            f"{record.job[:64]:64} {steps};"
            f" exponent {record.figure:.2f} <= {record.target:g} {verdict}"
        )
    return (
        f"{record.job[:64]:64} {record.figure:10.2f} {record.unit:13}"
        f" {'':7} <= {record.target:g} {record.unit} {verdict}"
    )
