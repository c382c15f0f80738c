"""What workers make of one run: figures, extremes, and what happened at an extreme.

All functions here stand in a module and take and give plain values, so that they go to any process.
"""

from __future__ import annotations

from collections.abc import Callable, Sequence
from typing import Any, NamedTuple

import numpy as np
from numpy.typing import NDArray

from tabulon import _native
from tabulon._errors import DataError
from tabulon._group import Group, Variable
from tabulon._parallel import Failure, failure_of
from tabulon._run import Run, VariableName

__all__ = [
    "IN_HEADERS",
    "Bounds",
    "Figure",
    "FigureRow",
    "RunFigures",
    "bounds_of_run",
    "check_rows",
    "figure_names",
    "figures_of_run",
    "furthest",
    "values_at_extreme",
]

Figure = str | Callable[[NDArray[Any]], Any]

IN_HEADERS = ("min", "max", "mean")
_IN_DATA = {"min": "minimum", "max": "maximum", "mean": "mean", "std": "deviation"}
_OTHER_COLUMNS = ("run", "path", "group", "variable", "secondary", "unit")
# Digits behind the first one that a header writes, by the type of the data.
_DIGITS = {"float32": 7, "float64": 15, "int32": 7}
# More numbers of a type than this are never written alike.
_NEIGHBOURS = 16


class FigureRow(NamedTuple):
    """Figures of one variable, at one secondary value."""

    wanted: int
    """The place of the variable among those that were asked for."""
    group: str
    variable: str
    secondary: Any
    unit: str
    figures: tuple[Any, ...]


class RunFigures(NamedTuple):
    """What a run gave."""

    rows: list[FigureRow]
    failures: list[Failure]


def figure_names(figures: Sequence[Figure]) -> list[str]:
    """Return the names of figures: those of their columns.

    Raises
    ------
    DataError
        If there is no such figure, or a name stands for two columns.
    """
    names = [_figure_name(figure) for figure in figures]
    for place, name in enumerate(names):
        if name in names[:place] or name in _OTHER_COLUMNS:
            text = f"two columns would be named {name!r}; the __name__ of a function names its own"
            raise DataError(text)
    return names


def _figure_name(figure: Figure) -> str:
    if callable(figure):
        return str(getattr(figure, "__name__", type(figure).__name__))
    if figure not in _IN_DATA:
        known = ", ".join(map(repr, _IN_DATA))
        raise DataError(f"no figure {figure!r}; there are {known}, or give a function")
    return figure


def check_rows(group: Group) -> None:
    """Look whether a data file holds what its header expects.

    Raises
    ------
    DataError
        If it is missing, or rows are.
    """
    table = group._table
    rows = _native.rows_of(table)
    if rows.found and (rows.found >= rows.expected or group.run.partial):
        return
    if table.data_size() is None:
        text = f"group {group.name!r} has no data file {table.data_path}"
        raise DataError(text, path=table.data_path)
    if rows.found < rows.expected and not group.run.partial:
        text = f"group {group.name!r} has {rows.found} rows of {rows.expected}"
        raise DataError(f"{text} in {table.data_path}", path=table.data_path)


def figures_of_run(
    run: Run, variables: Sequence[VariableName], figures: Sequence[Figure], verify: bool
) -> RunFigures:
    """Return figures of variables of a run; each group is read once at most."""
    rows: list[FigureRow] = []
    found, failures = _grouped(run, variables)
    for group, wanted in found:
        try:
            if verify:
                check_rows(group)
            rows += _figures_of_group(group, wanted, figures)
        except Exception as error:
            failures.append(failure_of(error))
    rows.sort(key=lambda row: row.wanted)
    return RunFigures(rows, failures)


def _grouped(
    run: Run, variables: Sequence[VariableName]
) -> tuple[list[tuple[Group, list[tuple[int, Variable]]]], list[Failure]]:
    """Return the variables by group, each with its place among those asked for; and the misses."""
    by_number: dict[int, tuple[Group, list[tuple[int, Variable]]]] = {}
    failures: list[Failure] = []
    for place, key in enumerate(variables):
        try:
            variable = run[key]
        except KeyError as error:
            failures.append(failure_of(error))
            continue
        group = variable.group
        by_number.setdefault(group.number, (group, []))[1].append((place, variable))
    return list(by_number.values()), failures


def _figures_of_group(
    group: Group, wanted: Sequence[tuple[int, Variable]], figures: Sequence[Figure]
) -> list[FigureRow]:
    places = [variable._place for _, variable in wanted]
    columns = _columns_of(group, places, figures)
    secondary = group.axes[1].values.tolist() if len(group.dims) > 1 else [None]
    rows = []
    for i, (asked, variable) in enumerate(wanted):
        for s, value in enumerate(secondary):
            told = tuple(column[i * len(secondary) + s] for column in columns)
            rows.append(FigureRow(asked, group.name, variable.name, value, variable.unit, told))
    return rows


def _columns_of(group: Group, places: list[int], figures: Sequence[Figure]) -> list[list[Any]]:
    """Return a list for each figure, over variables and secondary values."""
    table, count = group._table, group._count()
    named = [figure for figure in figures if isinstance(figure, str)]
    header = None
    if count is None and any(name in IN_HEADERS for name in named):
        header = _native.stored_figures(table, places)
    from_header = IN_HEADERS if header is not None else ()
    data = None
    if any(name not in from_header for name in named):
        data = _native.reduce(table, places, count)
    values = None
    if len(named) < len(figures):
        values = _native.read(table, places, count=count)
        values.flags.writeable = False
    columns: list[list[Any]] = []
    for figure in figures:
        if callable(figure):
            columns.append([_plain(figure(column)) for column in values])  # type: ignore[union-attr]
        elif figure in from_header:
            columns.append(getattr(header, figure).ravel().tolist())
        else:
            columns.append(getattr(data, _IN_DATA[figure]).tolist())
    return columns


def _plain(value: Any) -> Any:  # noqa: ANN401 - whatever a function gave
    return value.item() if isinstance(value, np.generic) else value


class Bounds(NamedTuple):
    """Beyond what no value of a variable lies at one secondary value.

    A header rounds its figures, so that the extreme of the data may be another than it says.
    """

    wanted: int
    place: int
    secondary: Any
    unit: str
    lowest: float
    highest: float


def bounds_of_run(
    run: Run, variables: Sequence[VariableName], verify: bool
) -> tuple[list[Bounds], list[Failure]]:
    """Return between what the extremes of variables lie, as the header or the data has them."""
    found: list[Bounds] = []
    groups, failures = _grouped(run, variables)
    for group, wanted in groups:
        try:
            if verify:
                check_rows(group)
            found += _bounds_of_group(group, wanted)
        except Exception as error:
            failures.append(failure_of(error))
    return found, failures


def _bounds_of_group(group: Group, wanted: Sequence[tuple[int, Variable]]) -> list[Bounds]:
    places = [variable._place for _, variable in wanted]
    table = group._table
    header = _native.stored_figures(table, places) if group._count() is None else None
    if header is not None:
        low = furthest(header.min.ravel(), table.dtype, -np.inf).tolist()
        high = furthest(header.max.ravel(), table.dtype, np.inf).tolist()
    else:
        data = _native.reduce(table, places, group._count())
        low, high = data.minimum.tolist(), data.maximum.tolist()
    secondary = group.axes[1].values.tolist() if len(group.dims) > 1 else [None]
    return [
        Bounds(
            asked,
            s,
            value,
            variable.unit,
            low[i * len(secondary) + s],
            high[i * len(secondary) + s],
        )
        for i, (asked, variable) in enumerate(wanted)
        for s, value in enumerate(secondary)
    ]


def furthest(values: NDArray[np.float64], dtype: str, end: float) -> NDArray[np.float64]:
    """Return how far numbers of a type may lie towards an end that a header writes as these.

    Parameters
    ----------
    values
        Figures of a header.
    dtype
        The type of the data.
    end
        Minus or plus infinity.
    """
    with np.errstate(divide="ignore", invalid="ignore", over="ignore", under="ignore"):
        size = np.where(np.isfinite(values), np.abs(values), 0.0)
        last = np.floor(np.log10(size)) - _DIGITS[dtype]  # the place of the last digit written
        # what was read of the text is itself the nearest of the numbers that there are
        half = 0.5 * 10.0**last * (1 + 1e-6) + 0.5 * np.spacing(size)
        if dtype == "int32":
            found = values + np.copysign(np.where(half < 1, 0.0, np.floor(half)), end)
            return np.asarray(found, np.float64)
        found = values.astype(dtype)
        for _ in range(_NEIGHBOURS):
            further = np.nextafter(found, found.dtype.type(end))
            alike = np.abs(further.astype(np.float64) - values) <= half
            if not alike.any():
                break
            found = np.where(alike, further, found)
        # a number may be written as one that lies further out than itself
        wider = np.maximum if end > 0 else np.minimum
        return np.asarray(wider(found.astype(np.float64), values))


class AtExtreme(NamedTuple):
    """An extreme as the data has it."""

    value: float
    axis_value: Any
    """The value of the primary axis where it stands."""
    others: list[Any]
    """Of other variables in that row; None where there is none."""
    missed: list[Exception]
    """Why there is none."""


def values_at_extreme(
    run: Run, key: VariableName, place: int, largest: bool, also: Sequence[VariableName]
) -> AtExtreme:
    """Return an extreme as the data has it, and what others did then.

    Parameters
    ----------
    run
        The run.
    key
        The variable.
    place
        The place of the secondary value; 0 over one axis.
    largest
        Whether the largest value is sought; the first of equals counts.
    also
        Variables on the same axes, or on the primary axis alone.

    Raises
    ------
    DataError
        If data of the variable cannot be read.
    """
    variable = run[key]
    values = variable[:, place] if len(variable.dims) > 1 else variable.values
    finite = np.where(np.isfinite(values), values, -np.inf if largest else np.inf)
    row = int(finite.argmax() if largest else finite.argmin())
    found = AtExtreme(float(values[row]), variable.axes[0].values[row].item(), [], [])
    for other in also:
        try:
            found.others.append(_value_beside(run, variable, other, row, place))
        except Exception as error:
            found.others.append(None)
            found.missed.append(error)
    return found


def _value_beside(run: Run, variable: Variable, key: VariableName, row: int, place: int) -> Any:  # noqa: ANN401
    other = run[key]
    own, its = variable.axes, other.axes
    if not np.array_equal(own[0].values, its[0].values):
        raise DataError(
            f"{other.name!r} and {variable.name!r} are not on the same axis: they have"
            f" {len(its[0].values)} and {len(own[0].values)} points of {its[0].dim!r}"
            f" and {own[0].dim!r}",
            path=run.path,
        )
    if len(its) == 1:
        return _plain(other[row])
    if len(own) == 1 or not np.array_equal(own[1].values, its[1].values):
        raise DataError(
            f"{other.name!r} is over {its[1].dim!r}, and {variable.name!r} is not", path=run.path
        )
    return _plain(other[row, place])
