"""Rows that read binary groups."""

from __future__ import annotations

from pathlib import Path

import _TabulonAPI_Python as api
import fixtures
import numpy as np
from harness import Pair, Place, each, limit, row

from rows.flat import array_of, fresh_array, fresh_run, set_buffered, variable

WIDE = 300  # variables of a wide group
BLOCK = 4096  # points that NumPy turns at a time


def wide(place: Place, megabytes: int) -> tuple[Path, Path, int]:
    """Return directory, data file and points of a group of 300 variables."""
    points = place.size(megabytes * 1_000_000 // (4 * WIDE), 2_000)
    directory = place.fixture(
        f"wide_{points}", lambda path: fixtures.write_binary_group(path, "bench", points, WIDE)
    )
    return directory, directory / "bench.$01", points


def table_of(path: Path, *shape: int) -> np.ndarray:
    """Return a data file as a mapped array."""
    return np.memmap(path, "<f4", "r", shape=shape)


def columns_of(path: Path, points: int, variables: int) -> np.ndarray:
    """Return all variables, shape (variables, points), turned in blocks."""
    table = table_of(path, points, variables)
    turned = np.empty((variables, points), dtype=np.float32)
    for start in range(0, points, BLOCK):
        turned[:, start : start + BLOCK] = table[start : start + BLOCK].T
    return turned


def first_variable(place: Place, megabytes: int, *, buffered: bool) -> Pair:
    """Read one variable of a run that is not known yet."""
    directory, path, points = wide(place, megabytes)
    name = fixtures.variable_names(WIDE)[7]
    set_buffered(buffered)
    return Pair(
        ours=lambda: fresh_array(directory, name),
        peer=lambda: np.array(table_of(path, points, WIDE)[:, 7]),
        equal=np.array_equal,
        after=lambda: set_buffered(True),
    )


@row("read", "first variable, 240 MB, buffered", against="np.memmap column, copied", target=1.5)
def first_of_240_buffered(place: Place) -> Pair:
    """Read the first variable of a large group."""
    return first_variable(place, 240, buffered=True)


@row("read", "first variable, 240 MB, not buffered", against="np.memmap column, copied", target=1.5)
def first_of_240_unbuffered(place: Place) -> Pair:
    """Read the only variable of a large group."""
    return first_variable(place, 240, buffered=False)


@row("read", "first variable, 8 MB, buffered", against="np.memmap column, copied", target=2.0)
def first_of_8_buffered(place: Place) -> Pair:
    """Read the first variable of a small group."""
    return first_variable(place, 8, buffered=True)


@row("read", "first variable, 8 MB, not buffered", against="np.memmap column, copied", target=1.5)
def first_of_8_unbuffered(place: Place) -> Pair:
    """Read the only variable of a small group."""
    return first_variable(place, 8, buffered=False)


@row("read", "first variable, 240 MB, cold", against="np.fromfile and a slice, cold", target=1.0)
def first_cold(place: Place) -> Pair:
    """Read the first variable of a file that the system has not in memory."""
    directory, path, points = wide(place, 240)
    name = fixtures.variable_names(WIDE)[7]
    set_buffered(True)
    return Pair(
        ours=lambda: fresh_array(directory, name),
        peer=lambda: np.fromfile(path, "<f4").reshape(points, WIDE)[:, 7].copy(),
        equal=np.array_equal,
        cold=[path],
    )


@row("read", "all 300 variables, one after another", against="NumPy turning blocks", target=1.3)
def all_variables(place: Place) -> Pair:
    """Read a whole group by variables."""
    directory, path, points = wide(place, 240)
    names = fixtures.variable_names(WIDE)

    def ours() -> list[np.ndarray]:
        run = fresh_run(directory)
        return [array_of(run, name) for name in names]

    return Pair(
        ours=ours,
        peer=lambda: columns_of(path, points, WIDE),
        equal=lambda mine, theirs: all(map(np.array_equal, mine, theirs)),
    )


@row("read", "first variable of each of 30 runs of 41 MB", against="np.memmap column", target=1.5)
def first_of_many(place: Place) -> Pair:
    """Read one variable of each run of a set."""
    points = place.size(34_000, 500)

    def write(path: Path) -> None:
        fixtures.write_binary_group(path / "run_00", "bench", points, WIDE)
        for number in range(1, 30):
            fixtures.copy_run(path / "run_00", path / f"run_{number:02d}")

    root = place.fixture(f"thirty_{points}", write)
    folders = sorted(root.iterdir())
    name = fixtures.variable_names(WIDE)[7]

    def ours() -> list[np.ndarray]:
        api.TabulonApi_clear_runs()
        return [array_of(api.TabulonApi_get_run(str(folder), "bench"), name) for folder in folders]

    def peer() -> list[np.ndarray]:
        return [np.array(table_of(folder / "bench.$01", points, WIDE)[:, 7]) for folder in folders]

    return Pair(ours, peer, lambda mine, theirs: all(map(np.array_equal, mine, theirs)))


def two_axes(place: Place) -> tuple[Path, Path, tuple[int, int, int]]:
    """Return directory, data file and shape of a group over two axes."""
    shape = (place.size(50_000, 500), 20, 30)
    directory = place.fixture(
        f"two_axes_{shape[0]}", lambda path: fixtures.write_two_axis_group(path, "bench", shape)
    )
    return directory, directory / "bench.$01", shape


def fresh_variable_2d(directory: Path) -> object:
    """Return a variable over two axes of a run that is not known yet."""
    name = fixtures.variable_names(30)[4]
    return api.Run__RUNPREFIX_get_variable_2d_float32(fresh_run(directory), name)


@row("read", "two axes, one row", against="np.memmap, copied", target=2.0)
def one_row(place: Place) -> Pair:
    """Read one secondary value of a variable."""
    directory, path, shape = two_axes(place)
    return Pair(
        ours=lambda: api.Variable2D_Float32__get_data_at_index_numpy_from_vector(
            fresh_variable_2d(directory), 3
        ),
        peer=lambda: np.array(table_of(path, *shape)[:, 3, 4]),
        equal=np.array_equal,
    )


@row("read", "two axes, the whole variable", against="np.memmap, copied", target=1.3)
def whole_variable(place: Place) -> Pair:
    """Read all secondary values of a variable."""
    directory, path, shape = two_axes(place)

    def ours() -> list[np.ndarray]:
        held = fresh_variable_2d(directory)
        at_index = api.Variable2D_Float32__get_data_at_index_numpy_from_vector
        return [at_index(held, i) for i in range(shape[1])]

    return Pair(
        ours=ours,
        peer=lambda: np.ascontiguousarray(table_of(path, *shape)[:, :, 4].T),
        equal=lambda mine, theirs: all(map(np.array_equal, mine, theirs)),
    )


@limit("read", "a loaded variable as an array", target=5.0, unit="us")
def loaded_array(place: Place) -> float:
    """Take a variable that is in memory."""
    directory, _, _ = wide(place, 8)
    held = variable(fresh_run(directory), fixtures.variable_names(WIDE)[7])
    get = api.Variable1D_Float32__get_data_numpy_from_vector
    get(held)
    return each(lambda: get(held))


@limit("read", "the name of a held run", target=1.0, unit="us")
def name_of_run(place: Place) -> float:
    """Call the cheapest getter."""
    directory, _, _ = wide(place, 8)
    run = fresh_run(directory)
    return each(lambda: api.Run_get_name(run))
