"""Catalogues are written: all of a campaign, or what is new in one."""

from __future__ import annotations

import io
import os
import time
from collections.abc import Iterator, Sequence
from concurrent.futures import Executor
from typing import TYPE_CHECKING, Any

import numpy as np
from numpy.typing import NDArray

from tabulon._catalogue import Catalogue, Files, Part, moved
from tabulon._catalogue_file import (
    Contents,
    contents_of_run,
    damage_told,
    schema,
    stamp_of,
    tables_of,
    writer_of,
)
from tabulon._errors import TabulonError
from tabulon._kept import Kept, outcomes_of, plain
from tabulon._optional import require
from tabulon._parallel import Outcome, Progress, outcomes
from tabulon._seek import Listing

if TYPE_CHECKING:
    import pyarrow as pa

__all__ = ["refreshed", "save"]

# Runs whose rows are made, and kept in memory, at a time.
_AT_A_TIME = 512
# Runs that are looked at first, and how long a local drive takes for each.
_FIRST = 32
_LOCAL = 0.0005  # seconds


def save(
    path: str,
    found: Sequence[Kept],
    known: Catalogue | None,
    listing: Listing | None,
    executor: Executor | None,
    progress: bool | None,
) -> None:
    """Write the catalogue of runs; a file that is there is replaced by a whole one.

    Parameters
    ----------
    path
        The file.
    found
        The runs.
    known
        What is known of them already.
    listing
        How they were sought.
    executor, progress
        As of ``Campaign.map``.
    """
    made = schema(None if listing is None else list(listing))
    unfinished = f"{path}.unfinished"
    try:
        with open(unfinished, "w+b") as stream:  # noqa: PTH123 - beside the others
            if known is None:
                _write(stream, found, made, executor, progress)
            else:
                with writer_of(stream, made) as writer:
                    for table in _all_rows(known.parts, made):
                        writer.write_table(table)
        os.replace(unfinished, path)  # noqa: PTH105
    except OSError as error:
        raise TabulonError(f"{path} cannot be written: {error}", path=path) from None
    finally:
        if os.path.exists(unfinished):  # noqa: PTH110
            os.unlink(unfinished)  # noqa: PTH108


def _write(
    stream: Any,  # noqa: ANN401 - a binary file
    kept: Sequence[Kept],
    made: pa.Schema,
    executor: Executor | None,
    progress: bool | None,
) -> None:
    """Write what is read of runs."""
    with writer_of(stream, made) as writer, Progress(len(kept), progress) as bar:
        for start in range(0, len(kept), _AT_A_TIME):
            some = kept[start : start + _AT_A_TIME]
            found = outcomes_of(contents_of_run, some, executor, bar)
            contents = [
                _lost(path, one) if one.failure is not None else one.value
                for (path, _), one in zip(some, found, strict=True)
            ]
            for table in tables_of(list(enumerate(contents, start)), made):
                if table.num_rows:
                    writer.write_table(table)


def _lost(path: str, outcome: Outcome) -> Contents:
    """Return what is kept of a run that no worker has read."""
    assert outcome.failure is not None
    failed = {"error": outcome.failure.error, "text": outcome.failure.text}
    return Contents({"path": path, "file": f"{os.path.basename(path)}.$TE", **failed}, [], [])  # noqa: PTH119


def _all_rows(parts: Sequence[Part], made: pa.Schema) -> Iterator[pa.Table]:
    """Give the rows of parts with the places of the runs as their numbers."""
    pa = require("pyarrow", "parquet")
    for part in parts:
        file = part.file()
        for i in range(file.num_row_groups):
            with damage_told(part.name):
                table = file.read_row_group(i)
                places = part.places[table["run"].to_numpy()]
            at = table.schema.get_field_index("run")
            table = table.set_column(at, made.field("run"), pa.array(places))
            table = table.filter(pa.array(places >= 0))
            if table.num_rows:
                yield table.replace_schema_metadata(made.metadata).cast(made)


# Only what has changed.


def refreshed(
    known: Catalogue, found: Sequence[Kept], executor: Executor | None, progress: bool | None
) -> Catalogue:
    """Return what is known of the runs that are there now; those that are new or changed are read.

    Parameters
    ----------
    known
        What was known of those before.
    found
        The runs that are there now.
    executor, progress
        As of ``Campaign.map``.
    """
    old = {path: place for place, path in enumerate(known.paths)}
    was = np.array([old.get(path, -1) for path, _ in found], dtype=np.intp)
    same = _unchanged(known, found, was, executor)
    new = np.full(len(known.paths), -1, dtype=np.int32)
    new[was[same]] = np.flatnonzero(same)
    parts = moved(known.parts, new)
    states, kinds = np.zeros((2, len(found)), dtype=np.int32)
    states[same], kinds[same] = known.states[was[same]], known.calculations[was[same]]
    changed = np.flatnonzero(~same).astype(np.int32)
    if len(changed):
        stream = io.BytesIO()
        _write(stream, [found[place] for place in changed], schema(), executor, progress)
        name = "the refreshed part"
        read = Catalogue.of_part(Part(stream.getvalue(), None, name, changed))
        states[changed], kinds[changed] = read.states, read.calculations
        parts.append(read.parts[0]._replace(places=changed))
    return Catalogue([path for path, _ in found], states, kinds, parts)


def _unchanged(
    known: Catalogue, found: Sequence[Kept], was: NDArray[np.intp], executor: Executor | None
) -> NDArray[np.bool_]:
    """Return of each run whether its files are as they were known.

    A local drive answers sooner than a thread is asked: others are asked only where it is slow.
    """
    files = known.files()
    kept = found if executor is None else plain(found)
    pairs = [(one, files[at] if at >= 0 else None) for one, at in zip(kept, was, strict=True)]
    start = time.perf_counter()
    told = [_is_unchanged(pair) for pair in pairs[:_FIRST]]
    if time.perf_counter() - start < _LOCAL * len(told):
        told += [_is_unchanged(pair) for pair in pairs[_FIRST:]]
    else:
        asked = outcomes(_is_unchanged, pairs[_FIRST:], executor, progress=False)
        told += [bool(one.value) for one in asked]
    return np.array(told, dtype=bool)


def _is_unchanged(pair: tuple[Kept, Files | None]) -> bool:
    """Return whether the files of a run are as a catalogue knows them."""
    (path, listed), known = pair
    if known is None:
        return False
    if listed is not None and {header.name for header in listed.headers} != set(known.headers):
        return False
    folder = os.path.dirname(path)  # noqa: PTH120 - of many
    return all(
        stamp_of(os.path.join(folder, name)) == stamp  # noqa: PTH118
        for name, stamp in known.stamps
    )
