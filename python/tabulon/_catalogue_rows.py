"""The rows of a catalogue's variables: one by one, or by whole columns where names are clear."""

from __future__ import annotations

from collections.abc import Sequence
from typing import TYPE_CHECKING, Any, NamedTuple

import numpy as np
from numpy.typing import NDArray

from tabulon._figures import Bounds, FigureRow, furthest
from tabulon._optional import require
from tabulon._run import VariableName

if TYPE_CHECKING:
    import pyarrow as pa
    import pyarrow.parquet as pq

__all__ = [
    "Columns",
    "Row",
    "blocks_of",
    "bounds_rows",
    "chosen_rows",
    "columns_of",
    "figure_rows",
    "odd_places",
    "rows_named",
]

_COLUMNS = [
    "run", "number", "place", "group", "variable", "secondary_place", "secondary_value",
    "secondary_label", "unit", "dtype", "min", "max", "mean",
]  # fmt: skip


def rows_named(file: pq.ParquetFile, i: int, wanted: set[str]) -> list[tuple[Any, ...]]:
    """Return the rows of a row group whose variable has one of these names, in any case."""
    pa = require("pyarrow", "parquet")
    compute = require("pyarrow.compute", "parquet")
    names = file.read_row_group(i, ["variable"])["variable"].combine_chunks()
    known = names.dictionary.to_pylist()
    codes = [code for code, name in enumerate(known) if name.casefold() in wanted]
    if not codes:
        return []
    at = compute.is_in(names.indices, pa.array(codes, names.indices.type))
    table = file.read_row_group(i, _COLUMNS).filter(at)
    return list(zip(*(table[name].to_pylist() for name in _COLUMNS), strict=True))


class Row(NamedTuple):
    """A variable of a run, at one secondary value."""

    run: int
    number: int
    group: str
    variable: str
    secondary_place: int
    secondary: Any
    unit: str
    dtype: str
    min: float
    max: float
    mean: float

    @classmethod
    def of(cls, place: int, cells: tuple[Any, ...]) -> Row:
        """Return a row from the cells of `_COLUMNS`."""
        _, number, _, group, variable, s_place, value, label, unit, dtype, *figures = cells
        low, high, mean = (np.nan if figure is None else figure for figure in figures)
        secondary = label if label is not None else value
        return cls(
            place, number, group, variable, s_place or 0, secondary, unit, dtype, low, high, mean
        )


def figure_rows(asked: int, rows: list[Row], figures: tuple[str, ...]) -> list[FigureRow]:
    return [
        FigureRow(
            asked,
            row.group,
            row.variable,
            row.secondary,
            row.unit,
            tuple(getattr(row, figure) for figure in figures),
        )
        for row in rows
    ]


def bounds_rows(asked: int, rows: list[Row]) -> list[Bounds]:
    return [
        Bounds(
            asked,
            row.secondary_place,
            row.secondary,
            row.unit,
            float(furthest(np.array(row.min), row.dtype, -np.inf)),
            float(furthest(np.array(row.max), row.dtype, np.inf)),
        )
        for row in rows
    ]


def chosen_rows(key: VariableName, rows: list[Row]) -> list[Row] | None:
    """Return the rows of the variable that is meant; None if that is not clear."""
    group, name = (None, key) if isinstance(key, str) else key
    if isinstance(group, int):
        rows = [row for row in rows if row.number == group]
    elif group is not None:
        exact = [row for row in rows if row.group == group]
        rows = exact or [row for row in rows if row.group.casefold() == group.casefold()]
    rows = [row for row in rows if row.variable == name] or rows
    meant = {(row.number, row.variable) for row in rows}
    twice = len({(row.number, row.variable, row.secondary_place) for row in rows}) < len(rows)
    return None if len(meant) > 1 or twice else rows


class Columns(NamedTuple):
    """Rows of variables by columns: an element of each for a row, in the order of a table."""

    places: NDArray[np.int32]
    """The run, by its place in the campaign."""
    wanted: NDArray[np.int32]
    """The variable, by its place among those that were asked for."""
    numbers: NDArray[np.int32]
    """The number of the group."""
    secondary_places: NDArray[np.int32]
    group: NDArray[np.object_]
    variable: NDArray[np.object_]
    secondary: NDArray[np.object_]
    unit: NDArray[np.object_]
    dtype: NDArray[np.object_]
    figures: tuple[NDArray[np.float64], ...]

    def at(self, rows: NDArray[Any]) -> Columns:
        """Return some of the rows."""
        *columns, figures = self
        chosen = [column[rows] for column in columns]
        return Columns._make([*chosen, tuple(figure[rows] for figure in figures)])


def blocks_of(
    file: pq.ParquetFile,
    i: int,
    keys: Sequence[VariableName],
    figures: Sequence[str],
    places: NDArray[np.int32],
) -> list[Columns]:
    """Return the rows of a row group, for each variable that was asked for.

    A name counts as it is spelled, or in any case where only one name of the row group is so.
    """
    names = _Words(file, i, "variable")
    by_key = [names.meant(key if isinstance(key, str) else key[1]) for key in keys]
    hit = np.flatnonzero(np.isin(names.codes, by_key))
    if not len(hit):
        return []
    columns = ["run", "number", "secondary_place", "secondary_value", *figures]
    table = file.read_row_group(i, columns, use_threads=False)
    at = places[table["run"].to_numpy()[hit]]
    hit, at = hit[at >= 0], at[at >= 0]
    groups, labels = _Words(file, i, "group"), _Words(file, i, "secondary_label")
    rows = Columns(
        at,
        names.codes[hit],
        table["number"].to_numpy()[hit],
        table["secondary_place"].fill_null(0).to_numpy()[hit],
        groups.texts[groups.codes[hit]],
        names.texts[names.codes[hit]],
        _secondary(labels, table["secondary_value"], hit),
        _Words(file, i, "unit").at(hit),
        _Words(file, i, "dtype").at(hit),
        tuple(table[figure].to_numpy()[hit] for figure in figures),
    )
    found = []
    for asked, (key, code) in enumerate(zip(keys, by_key, strict=True)):
        chosen = rows.wanted == code
        group = None if isinstance(key, str) else key[0]
        if isinstance(group, int):
            chosen &= rows.numbers == group
        elif group is not None:
            chosen &= groups.codes[hit] == groups.meant(group)
        one = rows.at(np.flatnonzero(chosen))
        found.append(one._replace(wanted=np.full(len(one.places), asked, np.int32)))
    return found


class _Words:
    """A column of texts: each text once, and where it stands."""

    def __init__(self, file: pq.ParquetFile, i: int, column: str) -> None:
        read = file.read_row_group(i, [column], use_threads=False)[column].combine_chunks()
        self.codes: NDArray[np.int32] = read.indices.fill_null(-1).to_numpy()
        known = read.dictionary.to_pylist()
        if None in known:
            raise ValueError(f"column {column!r} has words that are none")
        # the last element stands for what is missing
        self.texts = np.array([*known, None], dtype=object)

    def at(self, rows: NDArray[Any]) -> NDArray[np.object_]:
        """Return the texts of some rows."""
        found: NDArray[np.object_] = self.texts[self.codes[rows]]
        return found

    def meant(self, name: str) -> int:
        """Return the code of a name, one that no row has if it is not there or not clear."""
        known: list[str] = self.texts[:-1].tolist()
        if name in known:
            return known.index(name)
        folded = name.casefold()
        like = [code for code, text in enumerate(known) if text.casefold() == folded]
        return like[0] if len(like) == 1 else len(known)


def _secondary(labels: _Words, values: pa.ChunkedArray, rows: NDArray[Any]) -> NDArray[np.object_]:
    """Return labels, values, or None for variables over one axis."""
    found = labels.at(rows)
    if values.null_count < len(values):
        numbers = values.to_numpy()[rows]
        is_number = ~np.isnan(numbers)
        found[is_number] = numbers[is_number].tolist()
    return found


def odd_places(blocks: Sequence[Sequence[Columns]], asked: int, count: int) -> NDArray[np.bool_]:
    """Return which runs lack a variable, have it more than once, or have no figures of it."""
    odd = np.zeros(count, dtype=bool)
    for wanted in range(asked):
        block = joined([parts[wanted] for parts in blocks if parts], 0)
        lacking = np.ones(count, dtype=bool)
        lacking[block.places] = False
        odd |= lacking
        for figure in block.figures:
            odd[block.places[np.isnan(figure)]] = True
        block = block.at(np.argsort(block.places, kind="stable"))
        again = block.places[1:] == block.places[:-1]
        twice = (block.numbers[1:] != block.numbers[:-1]) | (
            block.secondary_places[1:] <= block.secondary_places[:-1]
        )
        odd[block.places[1:][again & twice]] = True
    return odd


def columns_of(
    blocks: Sequence[Sequence[Columns]], asked: int, figures: int, odd: NDArray[np.bool_]
) -> Columns:
    """Return the rows of all runs but the odd ones, in the order of runs and of what was asked."""
    whole = [parts[wanted] for wanted in range(asked) for parts in blocks if parts]
    rows = joined(whole, figures)
    order = np.argsort(rows.places, kind="stable")
    return rows.at(order[~odd[rows.places[order]]])


def joined(blocks: Sequence[Columns], figures: int) -> Columns:
    """Return rows one behind the other."""
    if not blocks:
        whole, texts, number = np.empty(0, np.int32), np.empty(0, object), np.empty(0)
        return Columns._make([*[whole] * 4, *[texts] * 5, (number,) * figures])
    *columns, stored = zip(*blocks, strict=True)
    whole_columns = [np.concatenate(column) for column in columns]
    return Columns._make([*whole_columns, tuple(map(np.concatenate, zip(*stored, strict=True)))])
