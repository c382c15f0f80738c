"""The road to the native readers, which keep no state; their errors become those of the package."""

from __future__ import annotations

import os
from collections.abc import Sequence
from functools import lru_cache
from typing import Any, NamedTuple

import numpy as np
from numpy.typing import NDArray

from tabulon import _tables
from tabulon._errors import DataError, RunNotFoundError, TabulonError
from tabulon._public import public
from tabulon._tables import (
    LABEL_AXIS,
    VALUE_AXIS,
    AxisInfo,
    GroupTable,
    Reduction,
    RunRecord,
    VariableInfo,
)
from tabulon._vocabulary import CalculationType, CompletionState

__all__ = [
    "LABEL_AXIS",
    "VALUE_AXIS",
    "AxisInfo",
    "Figures",
    "GroupTable",
    "Rows",
    "RunFiles",
    "RunRecord",
    "VariableInfo",
    "calculation_of_extensions",
    "calculation_of_header",
    "completion_state",
    "find_run",
    "has_all_figures",
    "is_torn",
    "list_runs",
    "open_table",
    "read",
    "read_into",
    "reduce",
    "rows_of",
    "stored_figures",
    "unit_of",
]

# What the reader says of data that ends before the rows that are asked for.
_ROWS_ARE_MISSING = 25
_NO_DIRECTORY = 139


@public
class Rows(NamedTuple):
    """How many rows a group should have, and how many whole ones its data file holds."""

    expected: int
    """What the header says; 0 where it leaves it open."""
    found: int
    """Whole rows that are there; 0 without a data file."""


class Figures(NamedTuple):
    """Figures of columns: arrays with one element a column."""

    min: NDArray[np.float64]
    max: NDArray[np.float64]
    mean: NDArray[np.float64]


class HeaderName(NamedTuple):
    """A header, by its file name and its number."""

    name: str
    number: int


class RunFiles(NamedTuple):
    """The files of a run as plain values, which go to other processes; else as `RunRecord`."""

    path: str
    directory: str
    name: str
    termination: str
    messages: str | None
    verification: str | None
    headers: tuple[HeaderName, ...]
    extensions: tuple[str, ...]

    @classmethod
    def of(cls, record: RunRecord) -> RunFiles:
        """Return the files that a record tells of."""
        return cls(
            record.path,
            record.directory,
            record.name,
            record.termination,
            record.messages,
            record.verification,
            tuple(HeaderName(header.name, header.number) for header in record.headers),
            tuple(record.extensions),
        )


def list_runs(root: str, recursive: bool) -> tuple[list[RunRecord], list[_tables.Unreadable]]:
    """Return the runs below a directory in natural order, and the directories that failed.

    Raises
    ------
    RunNotFoundError
        If there is no such directory.
    """
    try:
        listed = _tables.list_runs(root, recursive)
    except _tables.TableError as error:
        raise RunNotFoundError(f"no directory {root!r}", code=error.code, path=root) from None
    return listed.runs, listed.unreadable


def find_run(path: str) -> RunRecord | None:
    """Return the files of a run, from its path with or without an extension; None if no run."""
    try:
        return _tables.find_run(path)
    except _tables.TableError as error:
        if error.code == _NO_DIRECTORY:
            return None
        raise RunNotFoundError(str(error), code=error.code, path=error.path or path) from None


def open_table(path: str) -> GroupTable:
    """Return a group by its header.

    Raises
    ------
    DataError
        If the header is missing or damaged.
    """
    try:
        return GroupTable.open(path)
    except _tables.TableError as error:
        raise _damaged(error, path) from None


def completion_state(path: str) -> CompletionState:
    """Return what a termination file tells of how its run ended."""
    try:
        return CompletionState(_tables.completion_state(path))
    except _tables.TableError as error:
        raise _damaged(error, path) from None


def calculation_of_header(path: str) -> CalculationType:
    """Return the calculation that a header names, which is read no further; Unknown if damaged."""
    try:
        return CalculationType(_tables.calculation_of_header(path))
    except _tables.TableError:
        return CalculationType.Unknown


def calculation_of_extensions(extensions: Sequence[str]) -> CalculationType:
    """Return the calculation that files without a header tell of."""
    kinds = (CalculationType(_tables.calculation_of_extension(one)) for one in extensions)
    return next(
        (kind for kind in kinds if kind != CalculationType.Unknown), CalculationType.Unknown
    )


def unit_of(quantity: str) -> str:
    """Return the unit of the library for a quantity code, with real superscripts; may be empty."""
    return _tables.unit_of_quantity(quantity)


def rows_of(table: GroupTable) -> Rows:
    """Return how many rows there are. Text is read once through for it."""
    if table.data_size() is None:
        return Rows(table.dimensions[-1], 0)
    try:
        rows = table.rows()
    except _tables.TableError as error:
        raise _damaged(error, table.data_path) from None
    return Rows(rows.expected, rows.found)


def is_torn(table: GroupTable) -> bool:
    """Return whether something stands behind the last whole row."""
    try:
        return table.rows().torn
    except _tables.TableError as error:
        raise _damaged(error, table.data_path) from None


def read(
    table: GroupTable,
    variables: Sequence[int],
    secondary: Sequence[int] | None = None,
    first: int = 0,
    count: int | None = None,
    step: int = 1,
) -> NDArray[Any]:
    """Return values as the file has them.

    Parameters
    ----------
    table
        The group.
    variables
        Places of variables.
    secondary
        Places of secondary values; all if None.
    first, count, step
        The rows; up to what the header expects if `count` is None.

    Returns
    -------
    numpy.ndarray
        Shape ``(len(variables) * secondary values, rows)``.

    Raises
    ------
    DataError
        If the data file is missing, damaged, or ends too early.
    """
    selection = _tables.Selection(variables, secondary, first, count, step)
    try:
        return table.read(selection, table.dtype)
    except _tables.TableError as error:
        raise _unread(table, error) from None


def read_into(
    table: GroupTable, variables: Sequence[int], count: int | None, out: NDArray[Any]
) -> None:
    """Fill an array of shape ``(columns, rows)`` and the table's dtype; errors as of `read`."""
    try:
        table.read_into(_tables.Selection(variables, None, 0, count), out)
    except _tables.TableError as error:
        raise _unread(table, error) from None


def reduce(table: GroupTable, variables: Sequence[int], count: int | None = None) -> Reduction:
    """Return figures of whole columns, read once and not kept; errors as of `read`."""
    try:
        return table.reduce(_tables.Selection(variables, None, 0, count))
    except _tables.TableError as error:
        raise _unread(table, error) from None


def stored_figures(table: GroupTable, variables: Sequence[int]) -> Figures | None:
    """Return the figures of the header, if it has them; a row for each variable.

    Raises
    ------
    DataError
        If they are damaged.
    """
    if not table.has_figures:
        return None
    try:
        stored = table.stored_figures(variables)
    except _tables.TableError as error:
        raise _damaged(error, table.path) from None
    return None if stored is None else Figures(stored.minimum, stored.maximum, stored.mean)


def has_all_figures(path: str) -> bool:
    """Return whether a header has figures for every secondary value; False if it is damaged."""
    try:
        status = os.stat(path)  # noqa: PTH116 - a path object costs more than the question
    except OSError:
        return False
    return _has_all_figures(path, status.st_mtime_ns, status.st_size)


@lru_cache(maxsize=1024)
def _has_all_figures(path: str, _written: int, _size: int) -> bool:
    try:
        stored = GroupTable.open(path).stored_figures([0])
    except (_tables.TableError, IndexError):
        return False
    # A time is NaN for a block that is not there only; a mean is that of NaN among the data too.
    return stored is not None and not np.isnan(stored.maximum_time).any()


def _damaged(error: _tables.TableError, path: str) -> TabulonError:
    return DataError(str(error), code=error.code, path=error.path or path)


def _unread(table: GroupTable, error: _tables.TableError) -> TabulonError:
    """Return the error for data that could not be read; of rows that are missing, how many."""
    if error.code != _ROWS_ARE_MISSING or table.data_size() is None:
        return _damaged(error, table.data_path)
    rows = rows_of(table)
    return DataError(
        f"group {table.name!r} has {rows.found} rows of {rows.expected} in {table.data_path};"
        " partial=True of open_run reads what is there",
        code=error.code,
        path=table.data_path,
    )
