"""Rows of campaigns."""

from __future__ import annotations

import multiprocessing
import os
import shutil
from collections.abc import Callable
from concurrent.futures import Executor, ProcessPoolExecutor, ThreadPoolExecutor
from pathlib import Path

import fixtures
import numpy as np
import tabulon as tb
from harness import Call, Pair, Place, growth, row

from rows.directories import termination_files, tree_of

FIGURES = ("min", "max", "mean")
VARIABLES = 30


def campaign(place: Place, points: int = 50) -> Path:
    """Return a directory of 2,000 runs."""
    count = place.size(2_000, 20)
    name = f"campaign_{count}" if points == 50 else f"campaign_{count}_{points}"
    return place.fixture(name, lambda path: fixtures.write_campaign(path, count, points, VARIABLES))


def names() -> list[str]:
    """Return ten variables."""
    return fixtures.variable_names(VARIABLES)[:10]


def attributes(place: Place, root: Path) -> Path:
    """Return the figures of a campaign as attributes of an HDF5 file."""
    import h5py

    store = place.root / f"{root.name}_figures.h5"
    if not store.exists():
        table = tb.open_campaign(root).stats(names(), FIGURES, progress=False)
        with h5py.File(store, "w") as file:
            for line in table.itertuples():
                found = file.create_group(f"{Path(line.path).parent.name}/{line.variable}").attrs
                found["min"], found["max"], found["mean"] = line.min, line.max, line.mean
    return store


def from_attributes(store: Path, folders: list[str]) -> list[float]:
    """Return the figures, read in a loop."""
    import h5py

    with h5py.File(store) as file:
        return [
            float(file[f"{folder}/{name}"].attrs[figure])
            for folder in folders
            for name in names()
            for figure in FIGURES
        ]


def agree(mine: object, theirs: list[float]) -> bool:
    """Return whether a table holds these figures, row by row."""
    return np.array_equal(mine[list(FIGURES)].to_numpy().ravel(), theirs)


@row("campaign", "stats from 2,000 headers", against="h5py attributes in a loop", target=0.2)
def stats_of_headers(place: Place) -> Pair:
    """Make a table of ten variables from headers."""
    root = campaign(place)
    store = attributes(place, root)
    folders = sorted(path.name for path in root.iterdir() if path.is_dir())
    return Pair(
        ours=lambda: tb.open_campaign(root).stats(names(), FIGURES, progress=False),
        peer=lambda: from_attributes(store, folders),
        equal=agree,
    )


@row("campaign", "stats from a catalogue", against="stats from headers", target=0.05)
def stats_of_catalogue(place: Place) -> Pair:
    """Make the same table from a catalogue."""
    root = campaign(place)
    file = place.root / f"{root.name}.parquet"
    tb.open_campaign(root).save(file, progress=False)
    return Pair(
        ours=lambda: tb.open_campaign(file).stats(names(), FIGURES, progress=False),
        peer=lambda: tb.open_campaign(root).stats(names(), FIGURES, progress=False),
        equal=lambda mine, theirs: mine.equals(theirs),
    )


def numpy_figures(root: Path, points: int) -> list[tuple[np.ndarray, ...]]:
    """Return four figures of each run by NumPy alone."""
    found = []
    for folder in sorted(path for path in root.iterdir() if path.is_dir()):
        table = np.fromfile(folder / "bench.$01", "<f4").reshape(points, VARIABLES)[:, :10]
        found.append(
            (
                table.min(axis=0),
                table.max(axis=0),
                table.mean(axis=0, dtype=np.float64),
                table.std(axis=0, dtype=np.float64),
            )
        )
    return found


def deviation(values: np.ndarray) -> float:
    """Return a figure that needs the data; stands in a module, for processes."""
    return float(values.std(dtype=np.float64))


def from_data(place: Place, executor: Callable[[], Executor]) -> Pair:
    """Make a table of four figures from the data of all runs."""
    points = place.size(20_000, 200)
    root = campaign(place, points)

    def ours() -> object:
        with executor() as pool:
            runs = tb.open_campaign(root)
            return runs.stats(names(), executor=pool, progress=False)

    return Pair(
        ours=ours,
        peer=lambda: numpy_figures(root, points),
        equal=lambda mine, theirs: np.allclose(
            mine["std"], np.concatenate([one[3] for one in theirs]), rtol=1e-6
        ),
    )


@row("campaign", "stats from data, one thread", against="NumPy, np.fromfile", target=0.5)
def data_on_one_thread(place: Place) -> Pair:
    """Read data on one thread."""
    return from_data(place, lambda: ThreadPoolExecutor(1))


@row("campaign", "stats from data, two threads", against="NumPy, np.fromfile", target=0.3)
def data_on_two_threads(place: Place) -> Pair:
    """Read data on two threads."""
    return from_data(place, lambda: ThreadPoolExecutor(2))


def beside_one_thread(place: Place, pool: Executor, close: Callable[[], object]) -> Pair:
    """Compare workers with one thread; they are there before the clock starts."""
    points = place.size(20_000, 200)
    runs = tb.open_campaign(campaign(place, points))
    figures = ("std", deviation)
    runs[:4].stats(names(), figures, executor=pool, progress=False)

    def on_one_thread() -> object:
        with ThreadPoolExecutor(1) as single:
            return runs.stats(names(), figures, executor=single, progress=False)

    return Pair(
        ours=lambda: runs.stats(names(), figures, executor=pool, progress=False),
        peer=on_one_thread,
        equal=lambda mine, theirs: mine.equals(theirs),
        after=close,
    )


@row("campaign", "from data, two spawned processes", against="one thread", target=0.6)
def two_processes(place: Place) -> Pair:
    """Work on two processes."""
    pool = ProcessPoolExecutor(2, multiprocessing.get_context("spawn"))
    return beside_one_thread(place, pool, pool.shutdown)


@row("campaign", "from data, a cluster of two processes", against="one thread", target=0.6)
def two_workers(place: Place) -> Pair:
    """Work on a cluster."""
    from distributed import Client, LocalCluster

    cluster = LocalCluster(
        n_workers=2, threads_per_worker=1, processes=True, dashboard_address=None
    )
    client = Client(cluster)

    def close() -> None:
        client.close()
        cluster.close()

    return beside_one_thread(place, client.get_executor(), close)


@row("campaign", "refresh of 10,000 runs, 40 changed", against="opening all", target=0.1)
def refresh(place: Place) -> Pair:
    """Look at a catalogue again."""
    count = place.size(10_000, 100)

    def write(path: Path) -> None:
        fixtures.write_campaign(path / "first", 1, 50, VARIABLES)
        for i in range(count):
            shutil.copytree(path / "first" / "case_00000", path / "runs" / f"case_{i:05d}")

    root = place.fixture(f"refreshed_{count}", write) / "runs"
    file = place.root / "refreshed.parquet"
    tb.open_campaign(root).save(file, progress=False)
    for i in range(40):
        os.utime(root / f"case_{i * count // 40:05d}" / "bench.$TE")
    saved = tb.open_campaign(file)
    return Pair(
        ours=lambda: saved.refresh(progress=False),
        peer=lambda: tb.open_campaign(root).save(place.root / "again.parquet", progress=False),
        equal=lambda mine, _: len(mine) == count,
    )


def enlarged(saved: Path, path: Path, copies: int) -> None:
    """Write the runs of a catalogue many times, under other paths."""
    import pyarrow as pa
    import pyarrow.parquet as pq
    from tabulon._catalogue_file import writer_of

    whole = pq.read_table(saved)
    is_variable = whole["level"].to_numpy() == 2
    parts = [whole.filter(~is_variable), whole.filter(is_variable)]
    runs = 1 + int(whole["run"].to_numpy().max())
    with path.open("w+b") as stream, writer_of(stream, whole.schema) as writer:
        for copy in range(copies):
            for part in parts:
                numbers = pa.array(part["run"].to_numpy() + np.int32(copy * runs))
                paths = [one and f"{one}_{copy}" for one in part["path"].to_pylist()]
                columns = {"run": numbers, "path": pa.array(paths, pa.string())}
                names = whole.schema.names
                writer.write_table(
                    pa.table([columns.get(name, part[name]) for name in names], whole.schema)
                )


@growth(
    "campaign",
    "stats of two variables, catalogue of 0.6 to 10 million rows",
    sizes=(640_000, 2_560_000, 10_240_000),
    quick=(1_280, 2_560, 5_120),
    exponent=1.05,
)
def stats_of_rows(rows: int, place: Place) -> Call:
    """Open a catalogue of that many rows of variables and make a table of two of them."""
    variables = 128
    runs = place.size(500, 10)
    file = place.root / f"rows_{rows}.parquet"
    if not file.exists():
        few = place.fixture(
            f"rows_{runs}", lambda path: fixtures.write_campaign(path, runs, 10, variables)
        )
        saved = place.root / f"rows_{runs}.parquet"
        tb.open_campaign(few).save(saved, progress=False)
        enlarged(saved, file, rows // (runs * variables))
    wanted = fixtures.variable_names(variables)[:2]
    return lambda: tb.open_campaign(file).stats(wanted, FIGURES, progress=False)


@row("campaign", "open_campaign of 50,000 runs", against="os.walk", target=1.0)
def open_all(place: Place) -> Pair:
    """Find the runs of a tree."""
    tree = tree_of(place)
    return Pair(
        ours=lambda: tb.open_campaign(tree),
        peer=lambda: termination_files(tree),
        equal=lambda mine, theirs: len(mine) == len(theirs),
    )
