"""Rows that read text groups."""

from __future__ import annotations

from pathlib import Path

import fixtures
import numpy as np
from harness import Pair, Place, row

from rows.flat import array_of, fresh_array, fresh_run

VARIABLES = 30


def text_group(place: Place) -> tuple[Path, Path]:
    """Return directory and data file of a text group of 48 MB."""
    points = place.size(100_000, 1_000)
    directory = place.fixture(
        f"text_{points}", lambda path: fixtures.write_text_group(path, "bench", points, VARIABLES)
    )
    return directory, directory / "bench.$01"


def frame_of(path: Path, columns: list[int] | None = None) -> object:
    """Return columns of a table of text, read by pandas."""
    import pandas as pd

    return pd.read_csv(path, sep=r"\s+", header=None, dtype=np.float32, usecols=columns)


def agree(mine: np.ndarray, theirs: np.ndarray) -> bool:
    """Return whether values agree; pandas' fast conversion is a digit off here and there."""
    return bool(np.allclose(mine, theirs, rtol=1e-6))


@row("text", "one variable of 48 MB of text", against="pandas.read_csv, usecols", target=0.15)
def one_variable(place: Place) -> Pair:
    """Read one variable."""
    directory, path = text_group(place)
    name = fixtures.variable_names(VARIABLES)[3]
    return Pair(
        ours=lambda: fresh_array(directory, name),
        peer=lambda: frame_of(path, [3]),
        equal=lambda mine, theirs: agree(mine, theirs[3].to_numpy()),
    )


@row("text", "all 30 variables of 48 MB of text", against="pandas.read_csv", target=0.25)
def all_variables(place: Place) -> Pair:
    """Read all variables one after another."""
    directory, path = text_group(place)
    names = fixtures.variable_names(VARIABLES)

    def ours() -> list[np.ndarray]:
        run = fresh_run(directory)
        return [array_of(run, name) for name in names]

    return Pair(
        ours=ours,
        peer=lambda: frame_of(path),
        equal=lambda mine, theirs: agree(np.stack(mine, axis=1), theirs.to_numpy()),
    )
