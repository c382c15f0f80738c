"""What is wrong with the files of a run."""

from __future__ import annotations

from collections.abc import Iterator, Sequence

import numpy as np
from numpy.typing import NDArray

from tabulon import _native
from tabulon._errors import TabulonError
from tabulon._shapes import Problem

__all__ = ["problems_of"]

# Headers write figures with eight digits; a data file of text may have seven, or fewer.
_TOLERANCE = 2e-5


def problems_of(
    tables: Sequence[_native.GroupTable], damaged: Sequence[TabulonError]
) -> list[Problem]:
    """Return what is wrong with the groups whose headers could be read, and with the others."""
    found = [Problem("header damaged", error.path or "", str(error)) for error in damaged]
    for table in tables:
        found += _problems_of_group(table)
    return found


def _problems_of_group(table: _native.GroupTable) -> Iterator[Problem]:
    if table.data_size() is None:
        text = f"group {table.name!r} has no data file {table.data_path}"
        yield Problem("data missing", table.data_path, text)
        return
    try:
        rows, torn = _native.rows_of(table), _native.is_torn(table)
        yield from _problems_of_rows(table, rows, torn)
        if rows.found >= rows.expected and rows.found:
            yield from _problems_of_figures(table)
    except TabulonError as error:
        kind = "header damaged" if error.path == table.path else "data damaged"
        yield Problem(kind, error.path or table.data_path, str(error))


def _problems_of_rows(
    table: _native.GroupTable, rows: _native.Rows, torn: bool
) -> Iterator[Problem]:
    counts = f"group {table.name!r} has {rows.found} rows of {rows.expected} in {table.data_path}"
    if rows.found < rows.expected:
        yield Problem("data short", table.data_path, counts)
    elif rows.found > rows.expected > 0:
        yield Problem("data long", table.data_path, counts)
    if torn:
        text = f"group {table.name!r}: {table.data_path} ends within a row"
        yield Problem("data torn", table.data_path, text)


def _problems_of_figures(table: _native.GroupTable) -> Iterator[Problem]:
    places = range(len(table.variables))
    stored = _native.stored_figures(table, places)
    if stored is None:
        return
    data = _native.reduce(table, places)
    shape = stored.min.shape
    low, high, mean = (
        figures.reshape(shape) for figures in (data.minimum, data.maximum, data.mean)
    )
    size = np.maximum(np.abs(low), np.abs(high))
    for word, header, computed in (
        ("minimum", stored.min, low),
        ("maximum", stored.max, high),
        ("mean", stored.mean, mean),
    ):
        for place, column in np.argwhere(_differ(header, computed, size)):
            name = table.variables[place].name
            at = f" at place {column} of the secondary axis" if shape[1] > 1 else ""
            yield Problem(
                "figures",
                table.path,
                f"group {table.name!r}: the header has {header[place, column]:g} as the {word} of"
                f" {name!r}{at}, the data {computed[place, column]:g}",
            )


def _differ(
    header: NDArray[np.float64], computed: NDArray[np.float64], size: NDArray[np.float64]
) -> NDArray[np.bool_]:
    """Return where figures differ; not where the header has none, or the data no finite value."""
    with np.errstate(invalid="ignore"):
        differ = ~(np.abs(header - computed) <= _TOLERANCE * size)
    told: NDArray[np.bool_] = differ & ~np.isnan(header) & np.isfinite(computed)
    return told
