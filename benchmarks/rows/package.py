"""Rows of the package that people use."""

from __future__ import annotations

import os
import subprocess
import sys
from collections.abc import Callable
from pathlib import Path

import fixtures
import numpy as np
import tabulon as tb
from harness import ROUNDS, Pair, Place, each, limit, row, seconds_of

from rows.formats import same_data
from rows.reading import WIDE


def small(place: Place) -> Path:
    """Return a run with a group of 2.4 MB."""
    directory = place.fixture(
        "small", lambda path: fixtures.write_binary_group(path, "bench", 20_000, 30)
    )
    return directory / "bench"


@row("package", 'open_run and run["x"].values, 2.4 MB', against="h5py.File, dataset[:]", target=1.5)
def one_variable(place: Place) -> Pair:
    """Open a small run for one variable."""
    import h5py

    path = small(place)
    name = fixtures.variable_names(30)[7]
    store = path.with_suffix(".h5")
    if not store.exists():
        table = np.fromfile(f"{path}.$01", "<f4").reshape(-1, 30)
        with h5py.File(store, "w") as file:
            for column, each_name in enumerate(fixtures.variable_names(30)):
                file[each_name] = np.ascontiguousarray(table[:, column])

    def peer() -> np.ndarray:
        with h5py.File(store) as file:
            return file[name][:]

    return Pair(lambda: tb.open_run(path)[name].values, peer, np.array_equal)


def frames(place: Place, peer: str) -> Pair:
    """Make a DataFrame of ten variables of a large group."""
    directory, other = same_data(place, peer)
    names = fixtures.variable_names(WIDE)[:: WIDE // 10]

    def with_asammdf() -> object:
        from asammdf import MDF

        with MDF(other) as file:
            return file.to_dataframe(channels=names)

    def with_nptdms() -> object:
        from nptdms import TdmsFile

        with TdmsFile.open(str(other)) as file:
            import pandas as pd

            return pd.DataFrame({name: file["Loads"][name][:] for name in names})

    return Pair(
        ours=lambda: tb.open_run(directory / "bench").to_pandas(names),
        peer=with_asammdf if peer == "asammdf" else with_nptdms,
        equal=lambda mine, theirs: np.array_equal(mine[names].to_numpy(), theirs[names].to_numpy()),
    )


@row("package", "to_pandas of ten variables, 240 MB", against="asammdf to_dataframe", target=0.5)
def frame_and_asammdf(place: Place) -> Pair:
    """Make a DataFrame."""
    return frames(place, "asammdf")


@row("package", "to_pandas of ten variables, 240 MB", against="npTDMS as DataFrame", target=0.5)
def frame_and_nptdms(place: Place) -> Pair:
    """Make a DataFrame."""
    return frames(place, "npTDMS")


@row("package", "to_xarray, one row of a variable", against="netCDF by h5netcdf", target=0.7)
def one_row(place: Place) -> Pair:
    """Open a group lazily for one row."""
    import xarray as xr

    path = small(place)
    name = fixtures.variable_names(30)[7]
    store = path.with_suffix(".nc")
    if not store.exists():
        tb.open_run(path).groups[1].to_xarray().to_netcdf(store, engine="h5netcdf")

    def peer() -> float:
        with xr.open_dataset(store, engine="h5netcdf") as dataset:
            return float(dataset[name][100])

    return Pair(
        ours=lambda: float(tb.open_run(path).groups[1].to_xarray()[name][100]),
        peer=peer,
        equal=lambda mine, theirs: mine == theirs,
    )


def interpreter(*arguments: str) -> Callable[[], int]:
    """Return a call of an interpreter, which finds things compiled as an installed package does."""
    compiled = {"PYTHONDONTWRITEBYTECODE": "", "PYTHONPATH": os.pathsep.join(sys.path)}
    command = [sys.executable, *arguments]

    def call() -> int:
        done = subprocess.run(
            command, stdout=subprocess.DEVNULL, check=True, env={**os.environ, **compiled}
        )
        return done.returncode

    return call


@row("package", "import of runs and campaigns", against="import of NumPy", target=1.3)
def imports(place: Place) -> Pair:
    """Start an interpreter for the package."""
    names = "import tabulon; tabulon.open_run, tabulon.open_campaign"
    return Pair(interpreter("-c", names), interpreter("-c", "import numpy"), int.__eq__)


@limit("package", "tabulon --help", target=300.0, unit="ms")
def help_text(place: Place) -> float:
    """Start the command line."""
    call = interpreter("-m", "tabulon", "--help")
    call()
    return min(seconds_of(call) for _ in range(ROUNDS)) * 1e3


@limit("package", 'run["x"] of a run that is known', target=2.0, unit="us")
def lookup(place: Place) -> float:
    """Look a variable up."""
    run, name = tb.open_run(small(place)), fixtures.variable_names(30)[7]
    run[name]
    return each(lambda: run[name])


@limit("package", "v.mean() that is known", target=5.0, unit="us")
def known_mean(place: Place) -> float:
    """Ask for a figure again."""
    variable = tb.open_run(small(place))[fixtures.variable_names(30)[7]]
    variable.mean()
    return each(variable.mean)
