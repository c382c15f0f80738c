"""Tables and datasets of campaigns."""

from __future__ import annotations

import os
from collections.abc import Sequence
from typing import TYPE_CHECKING, Any

import numpy as np
from numpy.typing import NDArray

from tabulon._errors import DataError
from tabulon._export.xarray import coordinates_of
from tabulon._optional import require
from tabulon._shapes import Axis

if TYPE_CHECKING:
    import pandas as pd
    import xarray as xr

    from tabulon._catalogue_rows import Columns
    from tabulon._figures import FigureRow
    from tabulon._parallel import Outcome
    from tabulon._run import Run, VariableName
    from tabulon._ultimate import Settled

__all__ = ["dataset_of", "extremes_frame", "stats_frame"]

_HEADS = ("group", "variable", "secondary", "unit")


def stats_frame(
    paths: Sequence[str],
    found: Sequence[Outcome],
    figures: Sequence[str],
    columns: Columns | None = None,
) -> pd.DataFrame:
    """Return a row for each run, variable and secondary value.

    Parameters
    ----------
    paths
        The paths of the runs.
    found
        What became of each.
    figures
        The names of the figures.
    columns
        Rows of runs of which `found` tells nothing.
    """
    pandas = require("pandas", "pandas")
    read: list[tuple[int, FigureRow]] = [
        (place, row)
        for place, outcome in enumerate(found)
        if outcome.failure is None
        for row in outcome.value.rows
    ]
    places = np.array([place for place, _ in read], dtype=np.intp)
    heads: dict[str, NDArray[Any]] = {
        name: _objects([getattr(row, name) for _, row in read]) for name in _HEADS
    }
    told: list[Any] = [[row.figures[f] for _, row in read] for f in range(len(figures))]
    if columns is not None:
        places = np.concatenate([columns.places, places])
        heads = {name: np.concatenate([getattr(columns, name), heads[name]]) for name in _HEADS}
        stored = columns.figures
        told = [np.concatenate([one, more]) for one, more in zip(stored, told, strict=True)]
    names = _objects([os.path.basename(path) for path in paths])  # noqa: PTH119 - of many
    frame = pandas.DataFrame({"run": names[places], "path": _objects(paths)[places], **heads})
    frame["secondary"] = frame["secondary"].infer_objects()
    for figure, column in zip(figures, told, strict=True):
        frame[figure] = column
    if columns is not None and read and len(columns.places):
        frame = frame.iloc[np.argsort(places, kind="stable")].reset_index(drop=True)
    return frame  # type: ignore[no-any-return]


def _objects(values: Sequence[Any]) -> NDArray[np.object_]:
    """Return things as an array of them, whatever they are."""
    found = np.empty(len(values), dtype=object)
    found[:] = values
    return found


def extremes_frame(
    runs: Sequence[Run], rows: Sequence[Settled], also: Sequence[VariableName]
) -> pd.DataFrame:
    """Return a row for each extreme that was found."""
    pandas = require("pandas", "pandas")
    frame = pandas.DataFrame(
        [
            (
                row.one.key if isinstance(row.one.key, str) else row.one.key[1],
                row.one.secondary,
                row.one.kind,
                row.found.value,
                row.one.unit,
                runs[row.run].name,
                runs[row.run].path,
                row.found.axis_value,
            )
            for row in rows
        ],
        columns=["variable", "secondary", "kind", "value", "unit", "run", "path", "time"],
    )
    for i, key in enumerate(also):
        frame[key] = [row.found.others[i] for row in rows]
    frame.attrs["units"] = {}
    for i, key in enumerate(also):
        having = next((row.run for row in rows if row.found.others[i] is not None), None)
        if having is not None:
            frame.attrs["units"][key] = runs[having][key].unit
    return frame  # type: ignore[no-any-return]


def dataset_of(runs: Sequence[Run], keys: Sequence[VariableName]) -> xr.Dataset:
    """Return variables of all runs over `run` and their axes, a Dask chunk for each run."""
    xarray = require("xarray", "xarray")
    require("dask.array", "dask")
    axes, lengths = _common_axes(runs, keys)
    names = [run.name for run in runs]
    labels = names if len(set(names)) == len(names) else [run.path for run in runs]
    variables = {
        key if isinstance(key, str) else key[1]: _stacked(runs, key, axes, lengths) for key in keys
    }
    coordinates = {
        **coordinates_of(axes),
        "run": ("run", np.array(labels, dtype=object)),
        "path": ("run", np.array([run.path for run in runs], dtype=object)),
        "rows": ("run", np.array(lengths, dtype=np.int64)),
    }
    return xarray.Dataset(variables, coordinates)  # type: ignore[no-any-return]


def _common_axes(
    runs: Sequence[Run], keys: Sequence[VariableName]
) -> tuple[tuple[Axis, ...], list[int]]:
    """Return the axes of the longest run, and the lengths of all."""
    if not runs or not keys:
        raise DataError("a dataset needs a run and a variable at least")
    found = []
    for run in runs:
        own = [run[key].axes for key in keys]
        for axes, key in zip(own[1:], keys[1:], strict=True):
            if not _agree(axes, own[0]):
                raise DataError(
                    f"{keys[0]!r} and {key!r} are on different axes in {run.path}", path=run.path
                )
        found.append(own[0])
    lengths = [len(axes[0].values) for axes in found]
    longest = int(np.argmax(lengths))
    for run, axes in zip(runs, found, strict=True):
        if not _agree(axes, found[longest]):
            raise DataError(
                f"{keys[0]!r} is on other axes in {run.path} than in {runs[longest].path}",
                path=run.path,
            )
    return found[longest], lengths


def _agree(short: tuple[Axis, ...], long: tuple[Axis, ...]) -> bool:
    """Return whether axes are the same, but that the primary one may end earlier."""
    if len(short) != len(long):
        return False
    points = min(len(short[0].values), len(long[0].values))
    cut = [(short[0].values[:points], long[0].values[:points])]
    cut += [(one.values, other.values) for one, other in zip(short[1:], long[1:], strict=True)]
    return all(one.dim == other.dim for one, other in zip(short, long, strict=True)) and all(
        np.array_equal(one, other) for one, other in cut
    )


def _stacked(
    runs: Sequence[Run], key: VariableName, axes: tuple[Axis, ...], lengths: Sequence[int]
) -> xr.Variable:
    import dask.array as da
    from dask.base import tokenize
    from dask.highlevelgraph import HighLevelGraph

    xarray = require("xarray", "xarray")
    variable = runs[0][key]
    shape = tuple(len(axis.values) for axis in axes)
    dtype = np.result_type(*{run[key].dtype for run in runs})
    if len(set(lengths)) > 1 and dtype.kind == "i":
        dtype = np.dtype(np.float64)
    name = f"tabulon-{tokenize([run.__dask_tokenize__() for run in runs], key)}"
    rest = (0,) * len(shape)
    graph: dict[Any, Any] = {
        (name, place, *rest): (_padded, run, key, shape, dtype) for place, run in enumerate(runs)
    }
    chunks = ((1,) * len(runs), *((size,) for size in shape))
    layers = HighLevelGraph.from_collections(name, graph, dependencies=[])
    data = da.Array(layers, name, chunks, dtype=dtype)  # type: ignore[no-untyped-call]
    attributes = {"units": variable.unit, "long_name": variable.name}
    return xarray.Variable(("run", *(axis.dim for axis in axes)), data, attributes)  # type: ignore[no-any-return]


def _padded(
    run: Run, key: VariableName, shape: tuple[int, ...], dtype: np.dtype[Any]
) -> NDArray[Any]:
    """Return the values of a run, shape ``(1, *shape)``, NaN behind its last row."""
    values = run[key].values
    if values.shape == shape:
        return values.astype(dtype)[np.newaxis]
    block = np.full((1, *shape), np.nan, dtype)
    block[0, : len(values)] = values
    return block
