"""Rows that go through directories of runs."""

from __future__ import annotations

import os
from pathlib import Path

import _TabulonAPI_Python as api
import fixtures
from harness import Call, Pair, Place, each, growth, limit, row

from rows.flat import variable


def one_directory(place: Place, runs: int) -> Path:
    """Return a directory of many runs."""
    return place.fixture(f"flat_{runs}", lambda path: fixtures.write_flat(path, runs))


@growth(
    "directories",
    "first mean of each run of a directory",
    sizes=(250, 1_000, 4_000),
    quick=(10, 40, 160),
    exponent=1.09,
)
def first_means(runs: int, place: Place) -> Call:
    """Take one figure of each run. 1.09: a run of 16 times as many takes 1.3 times as long."""
    directory = one_directory(place, runs)
    name = fixtures.variable_names(1)[0]

    def call() -> float:
        api.TabulonApi_clear_runs()
        return sum(
            api.Variable1D_Float32_get_mean(
                variable(api.TabulonApi_get_run(str(directory), f"run_{i:05d}"), name)
            )
            for i in range(runs)
        )

    return call


def tree_of(place: Place) -> Path:
    """Return a tree of 50,000 runs in 1,000 directories."""
    directories, runs = place.size(1_000, 20), place.size(50_000, 200)
    return place.fixture(f"tree_{runs}", lambda path: fixtures.write_tree(path, directories, runs))


def termination_files(tree: Path) -> list[str]:
    """Return the paths of all termination files below a directory."""
    found = []
    for directory, _, names in os.walk(tree):
        found += [os.path.join(directory, name) for name in names if name.endswith(".$TE")]  # noqa: PTH118
    return found


def search(tree: Path) -> object:
    """Return all runs below a directory that the settings let pass."""
    api.TabulonApi_clear_runs()
    return api.TabulonApi__get_runs_native_array(str(tree))


@row("directories", "search of 50,000 runs, no filter", against="os.walk", target=0.5)
def search_all(place: Place) -> Pair:
    """Find all runs of a tree."""
    tree = tree_of(place)
    return Pair(
        ours=lambda: search(tree),
        peer=lambda: termination_files(tree),
        equal=lambda mine, theirs: len(mine) == len(theirs),
    )


def without(path: str, phrase: str) -> bool:
    """Return whether a file lacks a phrase."""
    with open(path) as file:  # noqa: PTH123 the plain road is the peer
        return phrase not in file.read()


@row(
    "directories",
    "search of 50,000 runs by completion state",
    against="os.walk and reading the file",
    target=0.8,
)
def search_by_state(place: Place) -> Pair:
    """Find the runs of a tree that have failed."""
    tree = tree_of(place)
    settings = api.TabulonApi_SearchSettings_set_completion_state_filter
    settings(api.CompletionState_Errored)
    return Pair(
        ours=lambda: search(tree),
        peer=lambda: [p for p in termination_files(tree) if not without(p, "*** ERROR")],
        equal=lambda mine, theirs: len(mine) == len(theirs),
        after=lambda: settings(api.CompletionState_AllCompletionStates),
    )


def content_of(path: str) -> str:
    """Return the line of a header that names its calculation."""
    with open(path) as file:  # noqa: PTH123 the plain road is the peer
        return next(line for line in file if line.startswith("CONTENT"))


@row(
    "directories",
    "search of 50,000 runs by kind of calculation",
    against="os.walk and reading the line in Python",
    target=0.7,
)
def search_by_kind(place: Place) -> Pair:
    """Find the runs of a tree that are of one kind."""
    tree = tree_of(place)
    settings = api.TabulonApi_SearchSettings_set_calculation_type_filter
    settings(api.CalculationType_PowerProductionSimulation)

    def peer() -> list[str]:
        return [
            path for path in termination_files(tree) if "'POWPROD'" in content_of(path[:-3] + "%01")
        ]

    return Pair(
        ours=lambda: search(tree),
        peer=peer,
        equal=lambda mine, theirs: len(mine) == len(theirs),
        after=lambda: settings(api.CalculationType_AllCalculationTypes),
    )


@limit("directories", "first run from RunsIterator", target=5.0, unit="ms")
def first_run(place: Place) -> float:
    """Take one run of a large tree."""
    tree = tree_of(place)
    return each(lambda: api.RunsIterator_get_next_run(api.new_RunsIterator(str(tree))), 20) / 1e3
