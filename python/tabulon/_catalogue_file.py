"""The file of a catalogue: Parquet, read by columns.

One table has rows of three levels, each in row groups of its own, so that a reader of runs does not
meet the variables:

- a run: its path, how it ended, its calculation, its termination file;
- a group: its number and name, its header, its data file, its rows;
- a variable at one secondary value: its name, unit and type, and the figures of the header.

Rows of groups and variables name their run by its number. ``file``, ``written`` (nanoseconds) and
``size`` are those of the termination file or the header; ``data_file`` and so on those of the data.

Pages have checksums, as Parquet has them. The footer has none, and a reader that trusts a damaged
one may fall over: so 25 bytes in front of it, which readers of Parquet pass over, seal it.
"""

from __future__ import annotations

import io
import json
import os
import struct
import zlib
from collections.abc import Iterator, Sequence
from contextlib import closing, contextmanager
from typing import TYPE_CHECKING, Any, NamedTuple

import numpy as np

from tabulon import _native
from tabulon._errors import DataError, TabulonError
from tabulon._group import Group
from tabulon._optional import require
from tabulon._run import Run
from tabulon._units import spelled

if TYPE_CHECKING:
    import pyarrow as pa
    import pyarrow.parquet as pq

__all__ = [
    "GROUP",
    "RUN",
    "VARIABLE",
    "Stamp",
    "contents_of_run",
    "damage_told",
    "listing_of",
    "opened",
    "schema",
    "stamp_of",
    "tables_of",
    "writer_of",
]

VERSION = 1
RUN, GROUP, VARIABLE = 0, 1, 2
_KEY = b"tabulon.catalogue"
_SEAL = struct.Struct("<17sII")  # key, version, checksum of all that follows
_TAIL = 8  # bytes behind the footer: its length, and the mark of Parquet
_DIFFERING = ("path", "text", "min", "max", "mean")
_TEXTS = ("group", "variable", "secondary_label", "unit", "dtype")


class Stamp(NamedTuple):
    """What tells one state of a file from another; None where there is no such file."""

    written: int | None
    size: int | None


def stamp_of(path: str) -> Stamp:
    """Return the stamp of a file."""
    try:
        status = os.stat(path)  # noqa: PTH116 - of many
    except OSError:
        return Stamp(None, None)
    return Stamp(status.st_mtime_ns, status.st_size)


class Contents(NamedTuple):
    """What a catalogue keeps of a run: rows of its levels, as columns."""

    run: dict[str, Any]
    groups: list[dict[str, Any]]
    variables: list[dict[str, Any]]
    """One for each group: columns."""


def contents_of_run(run: Run) -> Contents:
    """Return what the headers of a run tell. What is damaged is told as such."""
    stamp = stamp_of(os.fspath(run))
    told = {
        "path": run.path,
        "file": os.path.basename(os.fspath(run)),  # noqa: PTH119 - of many
        "written": stamp.written,
        "size": stamp.size,
    }
    try:
        told |= {"state": int(run.state), "calculation": int(run.calculation)}
        found = run._read()
    except TabulonError as error:
        return Contents({**told, **_told(error)}, [], [])
    groups, variables = [], []
    names = {header.number: header.name for header in run._record().headers}
    for number, damage in found.damaged.items():
        groups.append({**_header(run, number, names[number]), **_told(damage)})
    for number, group in found.groups.items():
        row = _header(run, number, names[number]) | _data(group)
        try:
            variables.append(_variables(group))
        except TabulonError as error:
            row |= _told(error)
        groups.append(row)
    return Contents(told, groups, variables)


def _told(error: TabulonError) -> dict[str, Any]:
    return {"error": type(error).__name__, "text": str(error)}


def _header(run: Run, number: int, name: str) -> dict[str, Any]:
    stamp = stamp_of(run._beside(name))
    return {"number": number, "file": name, "written": stamp.written, "size": stamp.size}


def _data(group: Group) -> dict[str, Any]:
    path = group._table.data_path
    stamp = stamp_of(path)
    return {
        "group": group.name,
        "rows": group._expected,
        "data_file": path,
        "data_written": stamp.written,
        "data_size": stamp.size,
    }


def _variables(group: Group) -> dict[str, Any]:
    table = group._table
    infos = [(info.name, spelled(info.quantity)) for info in group._infos]
    count = len(infos)
    axes = table.axes
    secondary = axes[1].count if len(axes) > 1 else 1
    figures = _native.stored_figures(table, range(count))
    none = np.full(count * secondary, np.nan)
    labels: list[Any] = [None]
    if len(axes) > 1:
        labels = group.axes[1].values.tolist()
    is_text = bool(labels) and isinstance(labels[0], str)
    places = np.repeat(np.arange(count, dtype=np.int32), secondary)
    return {
        "number": group.number,
        "group": group.name,
        "dtype": table.dtype,
        "names": [name for name, _ in infos],
        "units": [unit for _, unit in infos],
        "place": places,
        "secondary_place": np.tile(np.arange(secondary, dtype=np.int32), count),
        "labels": labels if is_text else None,
        "values": None if is_text or labels == [None] else np.array(labels, dtype=np.float64),
        "two_axes": len(axes) > 1,
        "min": none if figures is None else figures.min.ravel(),
        "max": none if figures is None else figures.max.ravel(),
        "mean": none if figures is None else figures.mean.ravel(),
    }


def schema(listing: Any = None) -> pa.Schema:  # noqa: ANN401 - what JSON can hold
    """Return the schema of the table; the listing is how the runs were sought."""
    pa = require("pyarrow", "parquet")
    text = pa.dictionary(pa.int32(), pa.string())
    whole = ("run", "state", "calculation", "number", "place", "secondary_place")
    fields = [pa.field("level", pa.int8())]
    fields += [pa.field(name, pa.int32()) for name in whole]
    fields += [pa.field(name, pa.int64()) for name in ("written", "size", "rows")]
    fields += [pa.field(name, pa.int64()) for name in ("data_written", "data_size")]
    fields += [pa.field(name, pa.string()) for name in ("path", "file", "data_file")]
    fields += [pa.field(name, pa.string()) for name in ("error", "text")]
    fields += [pa.field(name, text) for name in _TEXTS]
    fields += [pa.field(name, pa.float64()) for name in ("secondary_value", "min", "max", "mean")]
    return pa.schema(fields, metadata={_KEY: json.dumps(listing).encode()})


@contextmanager
def writer_of(stream: Any, made: pa.Schema) -> Iterator[pq.ParquetWriter]:  # noqa: ANN401 - a file
    """Give what writes a catalogue; it looks for equal values where there are any."""
    parquet = require("pyarrow.parquet", "parquet")
    repeated = [field.name for field in made if field.name not in _DIFFERING]
    with parquet.ParquetWriter(
        stream, made, write_page_checksum=True, use_dictionary=repeated
    ) as writer:
        yield writer
    footer = _footer(stream)
    stream.seek(-len(footer), os.SEEK_END)
    stream.write(_SEAL.pack(_KEY, VERSION, zlib.crc32(footer)) + footer)


def _footer(stream: Any) -> bytes:  # noqa: ANN401 - a binary file
    stream.seek(-_TAIL, os.SEEK_END)
    size = _TAIL + int.from_bytes(stream.read(4), "little")
    stream.seek(-size, os.SEEK_END)
    return bytes(stream.read(size))


def _version(stream: Any) -> int:  # noqa: ANN401 - a binary file
    """Return the version of a catalogue whose footer is whole."""
    try:
        footer = _footer(stream)
        stream.seek(-len(footer) - _SEAL.size, os.SEEK_END)
        key, version, checksum = _SEAL.unpack(stream.read(_SEAL.size))
    except OSError:  # a place in front of the file
        raise ValueError("it is too short") from None
    if key != _KEY or checksum != zlib.crc32(footer):
        raise ValueError("its seal is missing or broken")
    return int(version)


def tables_of(
    contents: Sequence[tuple[int, Contents]], made: pa.Schema
) -> tuple[pa.Table, pa.Table]:
    """Return the rows of runs and groups, and those of variables, of numbered runs."""
    pa = require("pyarrow", "parquet")
    rows = []
    blocks = []
    for number, one in contents:
        rows.append({"level": RUN, "run": number, **one.run})
        rows += [{"level": GROUP, "run": number, **group} for group in one.groups]
        blocks += [_block(pa, number, columns, made) for columns in one.variables]
    files = pa.Table.from_pylist(rows, schema=made)
    if not blocks:
        return files, made.empty_table()
    return files, pa.Table.from_batches(blocks, schema=made).unify_dictionaries()


def _block(pa: Any, run: int, columns: dict[str, Any], made: pa.Schema) -> pa.RecordBatch:  # noqa: ANN401
    """Return the variables of a group as a block of rows."""
    places, secondary = columns["place"], columns["secondary_place"]
    size = len(places)
    zeros = np.zeros(size, dtype=np.int32)

    def text(indices: Any, values: list[Any]) -> Any:  # noqa: ANN401 - an array of arrow
        return pa.DictionaryArray.from_arrays(pa.array(indices), pa.array(values, pa.string()))

    given = {
        "level": pa.array(np.full(size, VARIABLE, dtype=np.int8)),
        "run": pa.array(np.full(size, run, dtype=np.int32)),
        "number": pa.array(np.full(size, columns["number"], dtype=np.int32)),
        "place": pa.array(places),
        "group": text(zeros, [columns["group"]]),
        "dtype": text(zeros, [columns["dtype"]]),
        "variable": text(places, columns["names"]),
        "unit": text(places, columns["units"]),
    }
    if columns["two_axes"]:
        given["secondary_place"] = pa.array(secondary)
    if columns["labels"] is not None:
        given["secondary_label"] = text(secondary, columns["labels"])
    if columns["values"] is not None:
        given["secondary_value"] = pa.array(columns["values"][secondary])
    for figure in ("min", "max", "mean"):
        given[figure] = pa.array(columns[figure], from_pandas=True)  # NaN: the header has none
    arrays = [given.get(field.name, pa.nulls(size, field.type)) for field in made]
    return pa.RecordBatch.from_arrays(arrays, schema=made)


@contextmanager
def damage_told(name: str) -> Iterator[None]:
    """Make what fails within an error of the package: the file is no catalogue, or is damaged."""
    pa = require("pyarrow", "parquet")
    try:
        yield
    except (pa.ArrowException, OSError, LookupError, TypeError, ValueError) as error:
        if isinstance(error, TabulonError):
            raise
        raise DataError(f"{name} is no catalogue, or is damaged: {error}", path=name) from None


def opened(source: str | bytes, name: str) -> pq.ParquetFile:
    """Return the file of a catalogue, given its path or its bytes.

    Raises
    ------
    DataError
        If it is none, is damaged, or is of another version.
    """
    parquet = require("pyarrow.parquet", "parquet")
    with damage_told(name):
        stream = open(source, "rb") if isinstance(source, str) else io.BytesIO(source)  # noqa: PTH123, SIM115
        with closing(stream):
            version = _version(stream)
    if version != VERSION:
        raise DataError(
            f"{name} is a catalogue of version {version}; this release reads {VERSION}", path=name
        )
    with damage_told(name):
        given = source if isinstance(source, str) else io.BytesIO(source)
        return parquet.ParquetFile(given, pre_buffer=False, page_checksum_verification=True)


def listing_of(file: pq.ParquetFile) -> Any:  # noqa: ANN401 - what JSON can hold
    """Return how the runs of a catalogue were sought."""
    return json.loads(file.schema_arrow.metadata[_KEY])


def row_groups(file: pq.ParquetFile, variables: bool) -> Iterator[tuple[int, slice]]:
    """Give the row groups of variables, or those of runs and groups, with the runs they are of."""
    level, run = map(file.schema_arrow.get_field_index, ("level", "run"))
    for i in range(file.num_row_groups):
        group = file.metadata.row_group(i)
        levels, runs = group.column(level).statistics, group.column(run).statistics
        if levels is None or (levels.max == VARIABLE) == variables:
            yield i, slice(None) if runs is None else slice(runs.min, runs.max + 1)
