"""Rows that read headers: names, kinds, figures."""

from __future__ import annotations

import itertools
import re
from pathlib import Path

import _TabulonAPI_Python as api
import fixtures
import numpy as np
from harness import Call, Pair, Place, each, growth, limit, row

from rows.flat import fresh_run, variable

PER_GROUP = 500
NAME = re.compile(r"'([^']*)'")


def groups(place: Place, count: int) -> Path:
    """Return the directory of a run of many groups."""
    per_group = place.size(PER_GROUP, 20)
    return place.fixture(
        f"groups_{count}_{per_group}",
        lambda path: fixtures.write_many_groups(path, "bench", count, per_group),
    )


def header_texts(directory: Path) -> list[str]:
    """Return the text of each header, read the plain way."""
    texts = []
    for path in sorted(directory.glob("bench.%*")):
        with open(path) as file:  # noqa: PTH123 the plain road is the peer
            texts.append(file.read())
    return texts


@row("headers", "find one name, 100 groups x 500", against="Python reading the headers", target=2.0)
def find_one(place: Place) -> Pair:
    """Find a variable in the last of many groups."""
    directory = groups(place, place.size(100, 5))
    return Pair(
        ours=lambda: variable(fresh_run(directory), "wanted"),
        peer=lambda: header_texts(directory),
        equal=lambda mine, theirs: any("'wanted'" in text for text in theirs),
    )


def listed_names(directory: Path) -> list[str]:
    """Return the names of all variables of a run that is not known yet."""
    run = fresh_run(directory)
    names: list[str] = []
    for group in api.Run__get_all_groups_native_array(run):
        names.extend(api.Group__get_variable_names_native_array(group))
    return names


def split_names(directory: Path) -> list[str]:
    """Return the names that the headers hold, split the plain way."""
    names: list[str] = []
    for text in header_texts(directory):
        line = next(line for line in text.splitlines() if line.startswith("VARIAB"))
        names.extend(NAME.findall(line))
    return names


@row(
    "headers",
    "names of all variables, 1,000 groups x 500",
    against="Python reading and splitting the headers",
    target=1.5,
)
def all_names(place: Place) -> Pair:
    """List the variables of all groups."""
    directory = groups(place, place.size(1_000, 10))
    return Pair(
        ours=lambda: listed_names(directory),
        peer=lambda: split_names(directory),
        equal=lambda mine, theirs: sorted(mine) == sorted(theirs),
    )


@growth(
    "headers",
    "names of all variables over the number of groups",
    sizes=(64, 256, 1_024),
    quick=(4, 16, 64),
    exponent=1.1,
)
def names_over_groups(count: int, place: Place) -> Call:
    """List the variables of runs of ever more groups."""
    directory = groups(place, count)
    return lambda: listed_names(directory)


@limit("headers", "a name not asked for before, 1,000 groups", target=5.0, unit="us")
def new_name(place: Place) -> float:
    """Look up names of a run whose headers are read."""
    directory = groups(place, place.size(1_000, 10))
    names = listed_names(directory)
    run = fresh_run(directory)
    variable(run, "wanted")
    different = itertools.cycle(names[:: max(1, len(names) // 20_000)])
    return each(lambda: variable(run, next(different)), place.size(2_000, 20))


@row(
    "headers",
    "one mean from a header of 800 variables, 20 MB of figures",
    against="open().read() of it",
    target=1.5,
)
def one_mean(place: Place) -> Pair:
    """Take one figure from a long header."""
    variables = place.size(800, 20)
    directory = place.fixture(
        f"figures_{variables}",
        lambda path: fixtures.write_binary_group(path, "bench", 3, variables),
    )
    name = fixtures.variable_names(variables)[variables // 2]
    mean = float(fixtures.load_table(3, variables)[:, variables // 2].mean(dtype=np.float64))
    return Pair(
        ours=lambda: api.Variable1D_Float32_get_mean(variable(fresh_run(directory), name)),
        peer=lambda: header_texts(directory),
        equal=lambda mine, theirs: abs(mine - mean) <= 1e-6 * abs(mean),
    )


@growth(
    "headers",
    "one mean over the figures in the header",
    sizes=(128, 256, 512),
    quick=(8, 16, 32),
    exponent=2.1,
)
def mean_over_variables(variables: int, place: Place) -> Call:
    """Take one figure from ever longer headers: their length goes with the square of this size."""
    directory = place.fixture(
        f"figures_{variables}",
        lambda path: fixtures.write_binary_group(path, "bench", 3, variables),
    )
    name = fixtures.variable_names(variables)[variables // 2]
    return lambda: api.Variable1D_Float32_get_mean(variable(fresh_run(directory), name))


@row(
    "headers",
    "figures of 10 variables, headers of 2,000 runs",
    against="h5py attributes of the same",
    target=0.1,
)
def figures_of_runs(place: Place) -> Pair:
    """Take three figures of ten variables from each run."""
    import h5py

    count, variables = place.size(2_000, 20), 30
    root = place.fixture(
        f"campaign_{count}", lambda path: fixtures.write_campaign(path, count, 50, variables)
    )
    names = fixtures.variable_names(variables)[:10]
    store = root / "figures.h5"
    folders = sorted(path for path in root.iterdir() if path.is_dir())
    with h5py.File(store, "w") as file:
        for folder in folders:
            run = fresh_run(folder)
            for name in names:
                held = variable(run, name)
                attributes = file.create_group(f"{folder.name}/{name}").attrs
                attributes["min"] = api.Variable1D_Float32_get_minimum(held)
                attributes["max"] = api.Variable1D_Float32_get_maximum(held)
                attributes["mean"] = api.Variable1D_Float32_get_mean(held)

    def ours() -> list[float]:
        api.TabulonApi_clear_runs()
        figures = []
        for folder in folders:
            run = api.TabulonApi_get_run(str(folder), "bench")
            for name in names:
                held = variable(run, name)
                figures.append(api.Variable1D_Float32_get_minimum(held))
                figures.append(api.Variable1D_Float32_get_maximum(held))
                figures.append(api.Variable1D_Float32_get_mean(held))
        return figures

    def peer() -> list[float]:
        with h5py.File(store) as file:
            return [
                float(file[f"{folder.name}/{name}"].attrs[figure])
                for folder in folders
                for name in names
                for figure in ("min", "max", "mean")
            ]

    return Pair(ours, peer, lambda mine, theirs: mine == theirs)


def maximum_without_figures(variables: int, place: Place) -> Call:
    """Return a call that takes a maximum of a group of which one variable is not loaded."""
    directory = place.fixture(
        f"plain_{variables}",
        lambda path: fixtures.write_binary_group(path, "bench", 100, variables, figures=False),
    )
    names = fixtures.variable_names(variables)

    run = fresh_run(directory)
    for name in names[:-1]:
        api.Variable1D_Float32__get_data_numpy_from_vector(variable(run, name))
    held = variable(run, names[0])
    return lambda: api.Variable1D_Float32_get_maximum(held)


@limit("headers", "one maximum, 400 variables, no header figures", target=5.0, unit="ms")
def one_maximum(place: Place) -> float:
    """Compute one figure of a group that is loaded but for one variable."""
    return each(maximum_without_figures(place.size(400, 20), place), 5) / 1e3


@growth(
    "headers",
    "one maximum over the variables of its group",
    sizes=(100, 400, 1_600),
    quick=(10, 40, 160),
    exponent=1.1,
)
def maximum_over_variables(variables: int, place: Place) -> Call:
    """Compute one figure of ever wider groups."""
    call = maximum_without_figures(variables, place)
    return lambda: [call() for _ in range(20)]
