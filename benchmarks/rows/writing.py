"""Rows that write output groups."""

from __future__ import annotations

from pathlib import Path

import _TabulonAPI_Python as api
import fixtures
import numpy as np
from harness import Pair, Place, row


def out_of(place: Place) -> Path:
    """Return a directory to write into."""
    return place.fixture("out", lambda path: None)


def time_axis() -> object:
    """Return a time axis."""
    return api.new_IndependentVariable("Time", "s", 0.0, 0.05)


def group_of(directory: Path, columns: list[np.ndarray], number: int, form: int) -> object:
    """Return an output group of float columns."""
    path = str(directory / f"out.%{number:02d}")
    group = api.new_OutputGroup1D_Float32(
        path, "Out", "UserDefined", "TRANSIENT", time_axis(), form
    )
    for i, column in enumerate(columns):
        api.OutputGroup1D_Float32__add_variable_with_data_native_array(group, f"v{i}", "Nm", column)
    return group


def table(points: int, variables: int) -> list[np.ndarray]:
    """Return columns to write."""
    return list(np.ascontiguousarray(fixtures.load_table(points, variables).T))


def large_group(place: Place, *, anew: bool) -> Pair:
    """Write a large group, into new files or over those of the round before."""
    directory = out_of(place)
    columns = table(place.size(200_000, 2_000), 300)
    group = group_of(directory, columns, 1, api.VariableDataFormat_Binary)
    data, peer = directory / "out.$01", directory / "peer.bin"
    return Pair(
        ours=lambda: api.TabulonApi_write_output(group),
        peer=lambda: np.stack(columns, axis=1).astype("<f4").tofile(peer),
        equal=lambda *_: data.read_bytes() == peer.read_bytes(),
        new=(data, peer) if anew else (),
    )


@row("write", "write_output, 240 MB binary", against="np.stack(...).tofile", target=0.5)
def write_binary(place: Place) -> Pair:
    """Write a large group into new files."""
    return large_group(place, anew=True)


@row("write", "write_output over 240 MB", against="np.stack(...).tofile", target=1.0)
def write_over(place: Place) -> Pair:
    """Write a large group over one: the disk takes part, which both wait for."""
    return large_group(place, anew=False)


@row("write", "write_output, text", against="np.savetxt", target=0.1)
def write_text(place: Place) -> Pair:
    """Write a group as text."""
    directory = out_of(place)
    columns = table(place.size(100_000, 1_000), 30)
    group = group_of(directory, columns, 2, api.VariableDataFormat_ASCII)
    stacked = np.stack(columns, axis=1)
    peer = directory / "peer.txt"
    return Pair(
        ours=lambda: api.TabulonApi_write_output(group),
        peer=lambda: np.savetxt(peer, stacked, fmt="%.7e"),
        equal=lambda *_: np.allclose(np.loadtxt(directory / "out.$02"), stacked),
    )


@row("write", "append_data of 40 MB", against="array.copy()", target=2.0)
def append(place: Place) -> Pair:
    """Hand a script's array over."""
    directory = out_of(place)
    values = np.random.default_rng(3).standard_normal(place.size(10_000_000, 100_000))
    values = values.astype(np.float32)

    def ours() -> object:
        path = str(directory / "append.%01")
        group = api.new_OutputGroup1D_Float32(path, "Out", "UserDefined", "TRANSIENT", time_axis())
        api.OutputGroup1D_Float32_add_variable(group, "v", "Nm")
        api.OutputGroup1D_Float32__append_data_native_array(group, "v", values)
        return group

    return Pair(ours, values.copy, lambda mine, theirs: np.array_equal(theirs, values))
