"""The rows of a catalogue's variables: one by one, or by whole columns where names are clear."""

from __future__ import annotations

from collections.abc import Sequence
from itertools import chain
from typing import TYPE_CHECKING, Any, NamedTuple

import numpy as np
from numpy.typing import NDArray

from tabulon._figures import Bounds, FigureRow, rounded
from tabulon._optional import require
from tabulon._run import VariableName

if TYPE_CHECKING:
    import pyarrow as pa
    import pyarrow.parquet as pq

__all__ = [
    "PlainRows",
    "Row",
    "bounds_rows",
    "chosen_rows",
    "figure_rows",
    "plain_rows",
    "rows_named",
    "rows_spelled_so",
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
            rounded(row.min, np.dtype(row.dtype)),
            rounded(row.max, np.dtype(row.dtype)),
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


class PlainRows(NamedTuple):
    """Rows of a table, by columns: what stands in front of the figures, and the figures."""

    places: NDArray[np.int32]
    heads: list[tuple[Any, ...]]
    figures: list[NDArray[np.float64]]


class Block(NamedTuple):
    """Rows of one variable that was asked for."""

    wanted: int
    places: NDArray[np.int32]
    numbers: NDArray[np.int32]
    secondary: NDArray[np.int32]
    texts: list[list[Any]]
    """Group, variable, secondary value and unit."""
    figures: list[NDArray[np.float64]]


def rows_spelled_so(
    file: pq.ParquetFile,
    i: int,
    keys: Sequence[VariableName],
    figures: Sequence[str],
    places: NDArray[np.int32],
) -> list[Block]:
    """Return the rows of a row group whose variables are spelled as they are asked for."""
    pa = require("pyarrow", "parquet")
    compute = require("pyarrow.compute", "parquet")
    columns = ["run", "number", "group", "variable", "secondary_place", "secondary_value"]
    columns += ["secondary_label", "unit", *figures]
    table = file.read_row_group(i, columns)
    wanted = pa.array(sorted({key if isinstance(key, str) else key[1] for key in keys}))
    table = table.filter(compute.is_in(table["variable"], wanted)).combine_chunks()
    at = places[table["run"].to_numpy()]
    blocks = []
    for asked, key in enumerate(keys):
        group, name = (None, key) if isinstance(key, str) else key
        chosen = compute.equal(table["variable"], name)
        if isinstance(group, int):
            chosen = compute.and_(chosen, compute.equal(table["number"], group))
        elif group is not None:
            chosen = compute.and_(chosen, compute.equal(table["group"], group))
        mask = chosen.to_numpy(zero_copy_only=False) & (at >= 0)
        blocks.append(_block_of(asked, table.filter(pa.array(mask)), at[mask], figures))
    return blocks


def _block_of(
    asked: int, table: pa.Table, places: NDArray[np.int32], figures: Sequence[str]
) -> Block:
    compute = require("pyarrow.compute", "parquet")
    labels, values = table["secondary_label"], table["secondary_value"]
    secondary: list[Any] = [None] * len(table)
    if labels.null_count < len(table):
        secondary = _texts(labels)
    elif values.null_count < len(table):
        secondary = values.to_numpy().tolist()
    return Block(
        asked,
        places,
        table["number"].to_numpy(),
        compute.fill_null(table["secondary_place"], 0).to_numpy(),
        [_texts(table["group"]), _texts(table["variable"]), secondary, _texts(table["unit"])],
        [table[figure].to_numpy() for figure in figures],
    )


def _texts(column: pa.ChunkedArray) -> list[Any]:
    pa = require("pyarrow", "parquet")
    return column.cast(pa.string()).to_numpy(zero_copy_only=False).tolist()  # type: ignore[no-any-return]


def plain_rows(
    found: Sequence[Sequence[Block]],
    keys: Sequence[VariableName],
    figures: Sequence[str],
    paths: Sequence[str],
) -> tuple[PlainRows, list[int]]:
    """Return the rows of the runs that have each variable once and with figures.

    Returns
    -------
    PlainRows
        In the order of the runs, and of the variables that were asked for.
    list of int
        The places of the other runs.
    """
    odd = np.zeros(len(paths), dtype=bool)
    blocks = [_joined([group[asked] for group in found]) for asked in range(len(keys))]
    for block in blocks:
        odd |= _odd_places(block, len(paths))
    names = [path.replace("\\", "/").rpartition("/")[2] for path in paths]
    places: list[NDArray[np.int32]] = []
    heads: list[tuple[Any, ...]] = []
    for block in blocks:
        places.append(block.places)
        runs = block.places.tolist()
        heads += zip([names[p] for p in runs], [paths[p] for p in runs], *block.texts, strict=True)
    at = np.concatenate([np.empty(0, np.int32), *places])
    order = np.argsort(at, kind="stable")
    order = order[~odd[at[order]]]
    columns = [
        np.concatenate([np.empty(0), *(block.figures[f] for block in blocks)])[order]
        for f in range(len(figures))
    ]
    kept = PlainRows(at[order], [heads[row] for row in order.tolist()], columns)
    return kept, np.flatnonzero(odd).tolist()


def _joined(blocks: Sequence[Block]) -> Block:
    if not blocks:
        none = np.empty(0, np.int32)
        return Block(0, none, none, none, [[], [], [], []], [np.empty(0)] * 8)
    return Block(
        blocks[0].wanted,
        np.concatenate([block.places for block in blocks]),
        np.concatenate([block.numbers for block in blocks]),
        np.concatenate([block.secondary for block in blocks]),
        [list(chain.from_iterable(block.texts[t] for block in blocks)) for t in range(4)],
        [np.concatenate(parts) for parts in zip(*(block.figures for block in blocks), strict=True)],
    )


def _odd_places(block: Block, count: int) -> NDArray[np.bool_]:
    """Return which runs lack a variable, have it more than once, or have no figures of it."""
    odd = np.ones(count, dtype=bool)
    odd[block.places] = False
    for figure in block.figures:
        odd[block.places[np.isnan(figure)]] = True
    order = np.argsort(block.places, kind="stable")
    places, numbers, secondary = (a[order] for a in (block.places, block.numbers, block.secondary))
    again = places[1:] == places[:-1]
    twice = (numbers[1:] != numbers[:-1]) | (secondary[1:] <= secondary[:-1])
    odd[places[1:][again & twice]] = True
    return odd
