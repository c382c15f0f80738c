"""Variables as xarray objects, which read what is asked of them."""

from __future__ import annotations

from collections.abc import Sequence
from typing import TYPE_CHECKING, Any

import numpy as np
from numpy.typing import NDArray

from tabulon._optional import require
from tabulon._shapes import Axis, ReadVariable

if TYPE_CHECKING:
    import xarray as xr

__all__ = ["array_of", "coordinates_of", "dataset_of", "tree_of", "variable_of"]


def array_of(variable: ReadVariable) -> xr.DataArray:
    """Return a variable as a DataArray."""
    xarray = require("xarray", "xarray")
    coordinates = coordinates_of(variable.axes)
    return xarray.DataArray(variable_of(variable), coordinates, name=variable.name)  # type: ignore[no-any-return]


def dataset_of(name: str, axes: Sequence[Axis], variables: Sequence[ReadVariable]) -> xr.Dataset:
    """Return the variables of a group as a Dataset."""
    xarray = require("xarray", "xarray")
    made = {variable.name: variable_of(variable) for variable in variables}
    return xarray.Dataset(made, coordinates_of(axes), {"long_name": name})  # type: ignore[no-any-return]


def tree_of(
    name: str, groups: Sequence[tuple[str, Sequence[Axis], Sequence[ReadVariable]]]
) -> xr.DataTree:
    """Return groups as a DataTree, a child for each."""
    xarray = require("xarray", "xarray")
    children: dict[str, Any] = {}
    for group_name, axes, variables in groups:
        child = _child_name(group_name, children)
        children[child] = dataset_of(group_name, axes, variables)
    return xarray.DataTree.from_dict(children, name=name.replace("/", "_"))  # type: ignore[no-any-return]


def variable_of(variable: ReadVariable) -> xr.Variable:
    """Return a variable without its axes."""
    xarray = require("xarray", "xarray")
    dims = tuple(axis.dim for axis in variable.axes)
    data = _lazy(variable)
    attributes = {"units": variable.unit, "long_name": variable.name}
    return xarray.Variable(dims, data, attributes, {"preferred_chunks": _chunks(variable)})  # type: ignore[no-any-return]


def coordinates_of(axes: Sequence[Axis]) -> dict[str, Any]:
    """Return axes as coordinates, those that have values."""
    xarray = require("xarray", "xarray")
    return {
        axis.dim: xarray.Variable(
            (axis.dim,), _plain(axis.values), {"units": axis.unit, "long_name": axis.name}
        )
        for axis in axes
    }


# A chunk for Dask: large enough that calls do not count, small enough for any worker.
_CHUNK_BYTES = 16 * 2**20


def _chunks(variable: ReadVariable) -> dict[str, int]:
    """Return how many points Dask should take at a time: cut along the primary axis only."""
    points, *others = variable.shape
    row = variable.dtype.itemsize * int(np.prod(others, dtype=np.int64))
    dims = [axis.dim for axis in variable.axes]
    lengths = [max(1, min(points, _CHUNK_BYTES // max(row, 1))), *others]
    return dict(zip(dims, lengths, strict=True))


def _lazy(variable: ReadVariable) -> Any:  # noqa: ANN401 - a class of xarray
    indexing = require("xarray.core.indexing", "xarray")
    from tabulon._export.lazy import LazyValues

    return indexing.LazilyIndexedArray(LazyValues(variable))


def _child_name(name: str, taken: dict[str, Any]) -> str:
    plain = name.replace("/", "_") or "_"
    child, number = plain, 2
    while child in taken:
        child, number = f"{plain} ({number})", number + 1
    return child


def _plain(values: NDArray[Any]) -> NDArray[Any]:
    return values.astype(object) if values.dtype.kind == "U" else values
