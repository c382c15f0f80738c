"""Variables as pandas objects."""

from __future__ import annotations

from collections.abc import Sequence
from typing import TYPE_CHECKING, Any

import numpy as np
from numpy.typing import NDArray

from tabulon._errors import DataError
from tabulon._optional import require
from tabulon._shapes import Axis, ReadVariable

if TYPE_CHECKING:
    import pandas as pd

__all__ = ["check_axes", "frame_of", "series_of"]


def series_of(variable: ReadVariable, block: NDArray[Any]) -> pd.Series[Any] | pd.DataFrame:
    """Return a variable as a Series, or over two axes as a DataFrame.

    Parameters
    ----------
    variable
        What it is.
    block
        Its values, shape ``(secondary values, points)``; pandas gets the memory.
    """
    pandas = require("pandas", "pandas")
    axes = variable.axes
    made: Any
    if len(axes) == 1:
        made = pandas.Series(block[0], _index(axes[0]), name=variable.name, copy=False)
    else:
        made = pandas.DataFrame(block.T, _index(axes[0]), _index(axes[1]), copy=False)
    made.attrs["units"] = variable.unit
    made.attrs["long_name"] = variable.name
    return made  # type: ignore[no-any-return]


def check_axes(variables: Sequence[ReadVariable]) -> None:
    """Make sure that variables can stand beside each other.

    Raises
    ------
    DataError
        If they are on different primary axes.
    """
    for variable in variables[1:]:
        first, other = variables[0].axes[0], variable.axes[0]
        if first is not other and not (
            first.dim == other.dim and np.array_equal(first.values, other.values)
        ):
            raise DataError(
                f"{variables[0].name!r} and {variable.name!r} are on different axes:"
                f" {_told(first)} and {_told(other)}"
            )


def frame_of(
    columns: Sequence[tuple[Any, ReadVariable]], blocks: Sequence[NDArray[Any]]
) -> pd.DataFrame:
    """Return variables over the same primary axis as a DataFrame.

    Parameters
    ----------
    columns
        What each is called, and what it is.
    blocks
        The values of all in their order, each of shape ``(columns, points)``; pandas gets the
        memory.
    """
    pandas = require("pandas", "pandas")
    frames = [pandas.DataFrame(block.T, copy=False) for block in blocks]
    if not frames:
        return pandas.DataFrame()  # type: ignore[no-any-return]
    frame = frames[0] if len(frames) == 1 else pandas.concat(frames, axis=1, copy=False)
    frame.index = _index(columns[0][1].axes[0])
    frame.columns = _labels(columns)
    units = {axis.dim: axis.unit for _, variable in columns for axis in variable.axes}
    frame.attrs["units"] = {**units, **{name: variable.unit for name, variable in columns}}
    return frame  # type: ignore[no-any-return]


def _index(axis: Axis) -> Any:  # noqa: ANN401 - a class of a package that may be missing
    pandas = require("pandas", "pandas")
    values = axis.values.astype(object) if axis.values.dtype.kind == "U" else axis.values
    return pandas.Index(values, name=axis.dim)


def _labels(columns: Sequence[tuple[Any, ReadVariable]]) -> Any:  # noqa: ANN401 - as above
    pandas = require("pandas", "pandas")
    secondary = [variable.axes[1] for _, variable in columns if len(variable.axes) > 1]
    if not secondary:
        return pandas.Index([name for name, _ in columns], tupleize_cols=False)
    tuples = [
        (name, value)
        for name, variable in columns
        for value in (variable.axes[1].values.tolist() if len(variable.axes) > 1 else [""])
    ]
    dims = {axis.dim for axis in secondary}
    return pandas.MultiIndex.from_tuples(
        tuples, names=["variable", dims.pop() if len(dims) == 1 else "secondary"]
    )


def _told(axis: Axis) -> str:
    values = axis.values
    if not values.size:
        return f"{axis.name!r} without values"
    return f"{axis.name!r} ({len(values)} values, {values[0]} to {values[-1]} {axis.unit})"
