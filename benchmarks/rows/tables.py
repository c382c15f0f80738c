"""Rows of the road without state: wanted columns and figures in one pass, on many threads."""

from __future__ import annotations

import os
import subprocess
import sys
from collections.abc import Callable
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import fixtures
import numpy as np
from harness import MIB, Pair, Place, limit, row
from programs import compiled
from tabulon import _tables

from rows.directories import tree_of
from rows.reading import WIDE, columns_of, table_of, wide
from rows.text import VARIABLES, frame_of, text_group

SOME = list(range(0, WIDE, WIDE // 10))


def read_columns(header: Path, variables: list[int]) -> np.ndarray:
    """Return columns of a group, shape (variables, points)."""
    return _tables.GroupTable.open(header).read(_tables.Selection(variables), "float32")


@row("tables", "10 of 300 variables, 240 MB, one call", against="np.memmap columns", target=1.0)
def ten_columns(place: Place) -> Pair:
    """Read some variables of a large group."""
    directory, path, points = wide(place, 240)

    def peer() -> list[np.ndarray]:
        table = table_of(path, points, WIDE)
        return [np.array(table[:, variable]) for variable in SOME]

    return Pair(
        ours=lambda: read_columns(directory / "bench.%01", SOME),
        peer=peer,
        equal=lambda mine, theirs: all(map(np.array_equal, mine, theirs)),
    )


@row("tables", "all 300 variables, one call", against="NumPy turning blocks", target=1.0)
def all_columns(place: Place) -> Pair:
    """Read a whole group."""
    directory, path, points = wide(place, 240)
    return Pair(
        ours=lambda: read_columns(directory / "bench.%01", list(range(WIDE))),
        peer=lambda: columns_of(path, points, WIDE),
        equal=np.array_equal,
    )


@row("tables", "all 300 variables, two threads", against="NumPy turning blocks", target=0.6)
def all_columns_on_two_threads(place: Place) -> Pair:
    """Read a whole group, the rows of each half on a thread of its own."""
    directory, path, points = wide(place, 240)
    everything = list(range(WIDE))
    half = points // 2

    def ours() -> list[np.ndarray]:
        table = _tables.GroupTable.open(directory / "bench.%01")
        parts = [
            _tables.Selection(everything, None, 0, half),
            _tables.Selection(everything, None, half, points - half),
        ]
        with ThreadPoolExecutor(2) as pool:
            return list(pool.map(lambda part: table.read(part, "float32"), parts))

    def equal(mine: list[np.ndarray], theirs: np.ndarray) -> bool:
        return np.array_equal(np.concatenate(mine, axis=1), theirs)

    return Pair(ours, lambda: columns_of(path, points, WIDE), equal)


@row("tables", "four figures of all 300 variables", against="NumPy's reductions", target=0.4)
def reduce_binary(place: Place) -> Pair:
    """Reduce a group without making its series."""
    directory, path, points = wide(place, 240)
    everything = _tables.Selection(list(range(WIDE)))

    def peer() -> tuple[np.ndarray, ...]:
        table = table_of(path, points, WIDE)
        return (
            table.min(axis=0),
            table.max(axis=0),
            table.mean(axis=0, dtype=np.float64),
            table.std(axis=0, dtype=np.float64),
        )

    def equal(mine: _tables.Reduction, theirs: tuple[np.ndarray, ...]) -> bool:
        found = (mine.minimum, mine.maximum, mine.mean, mine.deviation)
        return all(np.allclose(a, b, rtol=1e-9) for a, b in zip(found, theirs, strict=True))

    return Pair(
        ours=lambda: _tables.GroupTable.open(directory / "bench.%01").reduce(everything),
        peer=peer,
        equal=equal,
    )


@row("tables", "four figures of 30 variables of text", against="pandas: describe", target=0.25)
def reduce_text(place: Place) -> Pair:
    """Reduce a group of text."""
    directory, path = text_group(place)
    everything = _tables.Selection(list(range(VARIABLES)))
    return Pair(
        ours=lambda: _tables.GroupTable.open(directory / "bench.%01").reduce(everything),
        peer=lambda: frame_of(path).describe(),
        equal=lambda mine, theirs: np.allclose(mine.maximum, theirs.loc["max"], rtol=1e-6),
    )


def headers_of(place: Place) -> tuple[list[Path], int]:
    """Return the headers of 2,000 runs, and how many variables each has."""
    count, variables = place.size(2_000, 20), 30
    root = place.fixture(
        f"campaign_{count}", lambda path: fixtures.write_campaign(path, count, 50, variables)
    )
    return sorted(root.glob("case_*/bench.%01")), variables


def figures(header: Path) -> float:
    """Return the sum of three figures of ten variables of a header."""
    found = _tables.GroupTable.open(header).stored_figures(list(range(10)))
    return float(found.minimum.sum() + found.maximum.sum() + found.mean.sum())


def total_of(call: Callable[[Path], float], headers: list[Path], threads: int = 1) -> float:
    """Return the sum of what a call gives for each header; threads take batches of fifty."""

    def of_batch(first: int) -> float:
        return sum(map(call, headers[first : first + 50]))

    with ThreadPoolExecutor(threads) as pool:
        return sum(pool.map(of_batch, range(0, len(headers), 50)))


def figures_pair(place: Place, threads: int) -> Pair:
    """Take figures from many headers."""
    headers, variables = headers_of(place)
    program = compiled(place, "header_figures")
    command = [str(program), str(variables), "10", *map(str, headers)]

    return Pair(
        ours=lambda: total_of(figures, headers, threads),
        peer=lambda: float(subprocess.run(command, check=True, capture_output=True).stdout),
        equal=lambda mine, theirs: abs(mine - theirs) <= 1e-6 * abs(theirs),
    )


@row("tables", "figures of 10 variables, 2,000 headers", against="a C++ program", target=2.0)
def figures_on_one_thread(place: Place) -> Pair:
    """Take figures on one thread."""
    return figures_pair(place, 1)


@row("tables", "the same, two threads", against="a C++ program", target=1.1)
def figures_on_two_threads(place: Place) -> Pair:
    """Take figures on two threads."""
    return figures_pair(place, 2)


@row("tables", "10 variables of 2,000 runs, two threads", against="one thread", target=0.55)
def reading_on_two_threads(place: Place) -> Pair:
    """Read data on two threads."""
    count, points = place.size(2_000, 20), place.size(20_000, 100)
    root = place.fixture(
        f"linked_{count}", lambda path: fixtures.write_linked_campaign(path, count, points, 30)
    )
    headers = sorted(root.glob("case_*/bench.%01"))

    def last(header: Path) -> float:
        return float(read_columns(header, list(range(10)))[:, -1].sum())

    return Pair(
        ours=lambda: total_of(last, headers, 2),
        peer=lambda: total_of(last, headers),
        equal=lambda mine, theirs: abs(mine - theirs) <= 1e-9 * abs(theirs),
    )


SLOW = """
import sys, time
from concurrent.futures import ThreadPoolExecutor
from tabulon._tables import GroupTable
threads, headers = int(sys.argv[1]), sys.argv[2:]
begin = time.perf_counter()
with ThreadPoolExecutor(threads) as pool:
    list(pool.map(GroupTable.open, headers))
print(time.perf_counter() - begin)
"""


@limit("tables", "500 headers, 1 ms a call: 32 threads over one", target=0.05, unit="x")
def slow_drive(place: Place) -> float:
    """Open headers on a drive that is slow to answer."""
    library = compiled(place, "slow_calls", "-shared", "-fPIC", "-ldl")
    headers = [str(path) for path in headers_of(place)[0][:500]]
    environment = {**os.environ, "LD_PRELOAD": str(library)}

    def seconds(threads: int) -> float:
        command = [sys.executable, "-c", SLOW, str(threads), *headers]
        done = subprocess.run(command, check=True, capture_output=True, env=environment)
        return float(done.stdout)

    return seconds(32) / seconds(1)


REDUCE = """
import sys
from tabulon._tables import GroupTable, Selection
def kib(key):
    return next(int(l.split()[1]) for l in open('/proc/self/status') if l.startswith(key))
table = GroupTable.open(sys.argv[1])
table.reduce(Selection([0], None, 0, 10))
before = kib('VmHWM')
table.reduce(Selection(list(range(len(table.variables)))))
print((kib('VmHWM') - before) / 1024)
"""


@limit("tables", "memory while a group of 1 GB is reduced", target=16.0, unit="MiB")
def memory_of_reduction(place: Place) -> float:
    """Reduce a large group; mapped pages count as memory."""
    directory, path, _ = wide(place, 1_000)
    header = str(directory / "bench.%01")
    done = subprocess.run([sys.executable, "-c", REDUCE, header], check=True, capture_output=True)
    assert path.stat().st_size > (0 if place.quick else 900 * MIB)
    return float(done.stdout)


@row("tables", "list_runs of 50,000 runs", against="a readdir loop in C", target=1.5)
def list_runs(place: Place) -> Pair:
    """Walk a tree."""
    tree = tree_of(place)
    program = compiled(place, "list_files")
    return Pair(
        ours=lambda: len(_tables.list_runs(tree).runs),
        peer=lambda: int(subprocess.run([program, tree], check=True, capture_output=True).stdout),
        equal=lambda mine, theirs: mine == theirs,
    )
