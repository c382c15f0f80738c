"""DataFrames and Datasets as plain columns over one or two axes."""

from __future__ import annotations

from collections.abc import Mapping
from typing import TYPE_CHECKING, Any, NamedTuple

import numpy as np
from numpy.typing import NDArray

from tabulon._errors import DataError, NameNotFoundError
from tabulon._names import did_you_mean

if TYPE_CHECKING:
    import pandas as pd
    import xarray as xr

__all__ = ["Column", "Tabular", "tabular"]


class Column(NamedTuple):
    """Values with a name and a unit: a variable, or the values of an axis."""

    name: str
    unit: str
    values: NDArray[Any]


class Tabular(NamedTuple):
    """Variables over one or two axes."""

    axes: tuple[Column, ...]
    """The primary axis first."""
    columns: tuple[Column, ...]
    """Values of shape ``(points,)``, or ``(points, secondary values)``."""


def tabular(data: pd.DataFrame | xr.Dataset, units: Mapping[Any, str]) -> Tabular:
    """Return a DataFrame or a Dataset as plain columns.

    Parameters
    ----------
    data
        What is to be written.
    units
        Units by name, which go over those of ``attrs``.

    Raises
    ------
    DataError
        If it has no columns or rows, something has no name or no unit, or dims differ.
    NameNotFoundError
        If there is a unit for something that is not there.
    """
    kind = type(data).__mro__
    sought = _Units(units)
    if any(base.__module__.startswith("pandas.") and base.__name__ == "DataFrame" for base in kind):
        found = _of_frame(data, sought)
    elif any(base.__module__.startswith("xarray.") and base.__name__ == "Dataset" for base in kind):
        found = _of_dataset(data, sought)
    else:
        raise DataError(f"a DataFrame or a Dataset can be written, not a {type(data).__name__}")
    sought.must_be_used({*(axis.name for axis in found.axes), *(c.name for c in found.columns)})
    if not found.columns:
        raise DataError("there are no variables to write")
    if not len(found.axes[0].values):
        raise DataError("there are no rows to write")
    return found


class _Units:
    """Units that somebody gave by name."""

    def __init__(self, given: Mapping[Any, str]) -> None:
        self._given = dict(given)
        self._used: set[Any] = set()

    def of(self, name: object, attribute: object) -> str:
        if name in self._given:
            self._used.add(name)
            given: str = self._given[name]
            return given
        if isinstance(attribute, str):
            return attribute
        if name == "time":
            return "s"
        raise DataError(f"{name!r} has no unit: name it in units, or in attrs['units']")

    def must_be_used(self, known: set[str]) -> None:
        for name in self._given:
            if name not in self._used:
                hint = did_you_mean(str(name), known)
                raise NameNotFoundError(f"a unit for {name!r}, which is not there{hint}")


def _of_frame(frame: Any, units: _Units) -> Tabular:  # noqa: ANN401 - of a package that may be missing
    told = frame.attrs.get("units")
    attributes: Mapping[Any, Any] = told if isinstance(told, Mapping) else {}
    if frame.index.nlevels > 1:
        raise DataError("the index has several levels; a group has one primary axis")
    primary = _axis(frame.index.name, frame.index.to_numpy(), units, attributes)
    if frame.columns.nlevels == 1:
        columns = [
            Column(
                _text(name), units.of(name, attributes.get(name)), frame.iloc[:, place].to_numpy()
            )
            for place, name in enumerate(frame.columns)
        ]
        return Tabular((primary,), tuple(columns))
    if frame.columns.nlevels > 2:
        raise DataError("columns have more than two levels: variable and secondary value")
    places: dict[Any, list[int]] = {}
    values: dict[Any, list[Any]] = {}
    for place, (name, value) in enumerate(frame.columns):
        places.setdefault(name, []).append(place)
        values.setdefault(name, []).append(value)
    if len({tuple(one) for one in values.values()}) != 1:
        raise DataError("the variables have different secondary values")
    along = next(iter(values.values()))
    secondary = _axis(frame.columns.names[1], np.array(along), units, attributes)
    blocks = [
        Column(_text(name), units.of(name, attributes.get(name)), frame.iloc[:, at].to_numpy())
        for name, at in places.items()
    ]
    return Tabular((primary, secondary), tuple(blocks))


def _of_dataset(dataset: Any, units: _Units) -> Tabular:  # noqa: ANN401 - as above
    dims = {variable.dims for variable in dataset.data_vars.values()}
    if len(dims) > 1:
        raise DataError(f"the variables have different dims: {', '.join(map(str, sorted(dims)))}")
    axes = []
    for dim in dims.pop() if dims else ():
        if dim not in dataset.coords:
            raise DataError(f"dimension {dim!r} has no values")
        values = dataset.coords[dim]
        axis = _axis(dim, values.to_numpy(), units, {dim: values.attrs.get("units")})
        axes.append(axis._replace(name=_text(values.attrs.get("long_name", dim))))
    if dataset.data_vars and len(axes) not in (1, 2):
        raise DataError(f"a group has one or two axes, not {len(axes)}")
    columns = [
        Column(_text(name), units.of(name, variable.attrs.get("units")), variable.to_numpy())
        for name, variable in dataset.data_vars.items()
    ]
    return Tabular(tuple(axes), tuple(columns))


def _axis(
    name: object, values: NDArray[Any], units: _Units, attributes: Mapping[Any, Any]
) -> Column:
    if name is None:
        raise DataError("an axis has no name: set frame.index.name, such as 'time'")
    if values.dtype.kind == "m":
        return Column(_text(name), "s", values / np.timedelta64(1, "s"))
    if values.dtype.kind in "OUS":
        if not all(isinstance(value, str) for value in values):
            raise DataError(f"axis {name!r} has values that are neither numbers nor all texts")
        attribute = attributes.get(name, "1")
        return Column(_text(name), units.of(name, attribute or "1"), values.astype(object))
    if values.dtype.kind not in "iuf":
        raise DataError(f"axis {name!r} has values of {values.dtype}, not numbers or texts")
    return Column(_text(name), units.of(name, attributes.get(name)), values.astype(np.float64))


def _text(name: object) -> str:
    """Return the name of a column; of a pair (group, name) the name."""
    if isinstance(name, tuple) and len(name) == 2:
        name = name[1]
    if not isinstance(name, str):
        raise DataError(f"a name must be a text, not {name!r}")
    return name
