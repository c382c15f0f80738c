"""Writing groups. The files are made aside, looked at, and moved into place as a whole."""

from __future__ import annotations

import os
import tempfile
from collections.abc import Mapping
from contextlib import suppress
from functools import lru_cache
from pathlib import Path
from typing import TYPE_CHECKING, Any

import numpy as np
from numpy.typing import DTypeLike, NDArray

from tabulon import _native
from tabulon._axes import interval_values
from tabulon._errors import DataError, TabulonError
from tabulon._tabular import Column, Tabular, tabular
from tabulon._units import CODES, conversion, quantity_of, readable, spelled

if TYPE_CHECKING:
    import pandas as pd
    import xarray as xr

__all__ = ["write_group"]

_TYPES = ("float32", "float64", "int32")
_TERMINATION = ".$TE"

# How far a value of an axis may be from what its text in the header gives.
_AXIS_TOLERANCE = 1e-6


def write_group(
    run_path: str,
    number: int,
    name: str,
    data: pd.DataFrame | xr.Dataset,
    units: Mapping[Any, str],
    dtype: DTypeLike,
    text: bool,
    replaced: str | None,
) -> None:
    """Write a group of a run; parameters and errors are those of ``Run.write_group``.

    Parameters
    ----------
    run_path
        The path of the run, without extension.
    number
        The number of the group.
    name, data, units, dtype, text
        What is written.
    replaced
        The header of a group that goes.
    """
    stored = _stored_type(dtype)
    table = _in_si(tabular(data, units), stored, text)
    try:
        with tempfile.TemporaryDirectory(prefix=".tabulon-", dir=_existing(run_path)) as aside:
            header = Path(aside, f"{Path(run_path).name}.%{number:02d}")
            _make_files(header, name, table, stored, text)
            _must_read_back(header, name, table)
            Path(run_path).parent.mkdir(parents=True, exist_ok=True)
            _move_into_place(header, Path(run_path), replaced)
    except OSError as error:
        raise TabulonError(f"group {name!r} cannot be written: {error}", path=run_path) from None


def _stored_type(dtype: DTypeLike) -> np.dtype[Any]:
    try:
        found = np.dtype(dtype)
    except TypeError as error:
        raise DataError(str(error)) from None
    if found.name not in _TYPES:
        raise DataError(f"dtype must be {', '.join(_TYPES)}, not {found.name}")
    return found


def _in_si(table: Tabular, dtype: np.dtype[Any], text: bool) -> Tabular:
    """Return columns in SI units, of the type in which they are written."""
    axes = tuple(_axis_in_si(axis) for axis in table.axes)
    columns = []
    for column in table.columns:
        unit, values = _converted(column)
        values = _of_type(column.name, values, dtype)
        if text and not np.isfinite(values).all():
            raise DataError(
                f"{column.name!r} has values that are not finite; text cannot hold them"
            )
        columns.append(Column(column.name, unit, values))
    return Tabular(axes, tuple(columns))


def _axis_in_si(axis: Column) -> Column:
    if axis.values.dtype == object:
        return axis._replace(unit=_quantity(axis.unit))
    unit, values = _converted(axis)
    if not np.isfinite(values).all():
        raise DataError(f"axis {axis.name!r} has values that are not finite")
    return Column(axis.name, unit, values)


def _converted(column: Column) -> tuple[str, NDArray[Any]]:
    """Return the quantity code of a column, and its values in the SI unit of it."""
    values = column.values
    if values.dtype.kind not in "iuf" and not (values.dtype.kind == "b"):
        raise DataError(f"{column.name!r} has values of {values.dtype}, not numbers")
    unit = readable(column.unit)
    code = _quantity(unit)
    if unit == spelled(code) or column.unit in _library_units():
        return code, values
    found = conversion(unit, spelled(code))
    return code, found.of(values.astype(np.float64), np.dtype(np.float64))


def _quantity(unit: str) -> str:
    """Return the quantity code of a unit, spelled as the library does or as pint reads it."""
    if not unit.strip():
        raise DataError("a unit is empty; write '1' for none")
    return _library_units().get(unit) or quantity_of(unit)


@lru_cache(maxsize=1)
def _library_units() -> dict[str, str]:
    """Return quantity codes by the unit as the library spells it."""
    return {_native.unit_of(code): code for code in reversed(CODES)}


def _of_type(name: str, values: NDArray[Any], dtype: np.dtype[Any]) -> NDArray[Any]:
    """Return values in a type that holds them."""
    if dtype.kind == "i":
        limits = np.iinfo(dtype)
        fits = np.isfinite(values) & (values >= limits.min) & (values <= limits.max)
        if not fits.all() or not np.array_equal(values, np.trunc(values)):
            raise DataError(f"{name!r} has values that {dtype} does not hold; give another dtype")
        return values.astype(dtype)
    with np.errstate(over="ignore"):
        converted = values.astype(dtype)
    if not np.array_equal(np.isinf(converted), np.isinf(values)):
        raise DataError(f"{name!r} has values beyond {dtype}; give dtype='float64'")
    return converted


def _make_files(header: Path, name: str, table: Tabular, dtype: np.dtype[Any], text: bool) -> None:
    from tabulon import api

    form = api.VariableDataFormat.ASCII if text else api.VariableDataFormat.Binary
    try:
        axes = [_independent(axis) for axis in table.axes]
        make: Any = api.output_group_1d if len(axes) == 1 else api.output_group_2d
        group = make(header, name, *axes, dtype=dtype, variable_data_format=form)
        for column in table.columns:
            group.add_variable_with_data(
                column.name, _written(column.unit), np.ascontiguousarray(column.values.T)
            )
        api.write_output(group)
    except RuntimeError as error:
        raise DataError(f"group {name!r} cannot be written: {error}") from None


def _independent(axis: Column) -> Any:  # noqa: ANN401 - a class of the subpackage
    from tabulon import api

    unit = _written(axis.unit)
    if axis.values.dtype == object:
        return api.IndependentVariable(axis.name, unit, list(axis.values))
    interval = _interval(axis.values)
    if interval is not None:
        return api.IndependentVariable(axis.name, unit, *interval)
    return api.IndependentVariable(axis.name, unit, axis.values.tolist())


def _written(code: str) -> str:
    """Return the unit that the library writes as a quantity code: one that it does not know, so."""
    return _native.unit_of(code) if code != "N" else "."


def _interval(values: NDArray[np.float64]) -> tuple[float, float] | None:
    """Return start and step of evenly spaced values, if a header can hold them as such."""
    if len(values) < 2:
        return None
    start = float(f"{values[0]:.7e}")
    step = float(f"{(values[-1] - values[0]) / (len(values) - 1):.7e}")
    if (
        step == 0.0
        or np.abs(interval_values(start, step, len(values)) - values).max()
        > abs(step) * _AXIS_TOLERANCE
    ):
        return None
    return start, step


def _must_read_back(header: Path, name: str, table: Tabular) -> None:
    """Make sure that the header holds what it should."""
    written = _native.open_table(os.fspath(header))
    if written.name != name:
        raise DataError(f"a header cannot hold the group name {name!r}")
    for column, variable in zip(table.columns, written.variables, strict=True):
        if variable.name != column.name:
            raise DataError(f"a header cannot hold the name {column.name!r}")
    for axis, info in zip(table.axes, written.axes, strict=True):
        found: Any = info.labels if info.kind == _native.LABEL_AXIS else info.values
        if info.kind not in (_native.LABEL_AXIS, _native.VALUE_AXIS):
            found = interval_values(info.minimum, info.step, len(axis.values))
        same = len(found) == len(axis.values) and (
            list(found) == list(axis.values)
            if info.kind == _native.LABEL_AXIS
            else np.allclose(found, axis.values, rtol=_AXIS_TOLERANCE, atol=_slack(axis.values))
        )
        if info.name != axis.name or not same:
            raise DataError(f"a header cannot hold the axis {axis.name!r} with its values")


def _slack(values: NDArray[np.float64]) -> float:
    """Return how far a value may be off where it is next to zero: a small part of a step."""
    steps = np.abs(np.diff(values))
    return float(steps[steps > 0].min() * _AXIS_TOLERANCE) if (steps > 0).any() else 0.0


def _move_into_place(header: Path, run: Path, replaced: str | None) -> None:
    """Move files where they belong: the header last, so that nobody meets it without its data."""
    data = header.with_suffix(header.suffix.replace("%", "$"))
    if replaced is not None:
        Path(replaced).unlink()
    data.replace(run.parent / data.name)
    ended = header.with_suffix(_TERMINATION)
    with suppress(FileExistsError), (run.parent / ended.name).open("xb") as file:
        file.write(ended.read_bytes())
    header.replace(run.parent / header.name)


def _existing(run_path: str) -> Path:
    """Return the nearest directory of a path that is there."""
    return next(parent for parent in Path(run_path).parents if parent.is_dir())
