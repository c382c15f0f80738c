"""Campaigns that were saved: answered by a file, where it can."""

from __future__ import annotations

import io
import os
from collections.abc import Callable, Iterator, Sequence
from concurrent.futures import Executor
from functools import partial
from itertools import groupby
from pathlib import Path
from typing import TYPE_CHECKING, Any, NamedTuple

import numpy as np
from numpy.typing import NDArray

from tabulon._campaign import Campaign, Unreadable, _keys, _Listing, _with_failures
from tabulon._catalogue_file import (
    Contents,
    Stamp,
    contents_of_run,
    damage_told,
    listing_of,
    opened,
    row_groups,
    schema,
    stamp_of,
    tables_of,
)
from tabulon._catalogue_rows import (
    PlainRows,
    Row,
    bounds_rows,
    chosen_rows,
    figure_rows,
    plain_rows,
    rows_named,
    rows_spelled_so,
)
from tabulon._errors import DataError, NameNotFoundError, RunNotFoundError, TabulonError
from tabulon._figures import (
    Figure,
    RunFigures,
    figure_name,
    figures_of_run,
)
from tabulon._optional import require
from tabulon._parallel import Failure, Outcome, Progress, failure_of, outcomes
from tabulon._run import Run, VariableName
from tabulon._vocabulary import CalculationType, CompletionState

if TYPE_CHECKING:
    import pandas as pd
    import pyarrow as pa
    import pyarrow.parquet as pq

__all__ = ["open_catalogue", "save"]

# Runs whose rows are made, and kept in memory, at a time.
_AT_A_TIME = 512


class Known(NamedTuple):
    """What a catalogue knows of a run without its variables."""

    path: str
    state: CompletionState
    calculation: CalculationType
    rows: tuple[dict[str, Any], ...]
    """What stands in the file: of the run, and of its groups."""

    def files(self) -> list[tuple[str, Stamp]]:
        """Return paths with their stamps: the termination file, headers, data files."""
        folder = os.path.dirname(self.path)  # noqa: PTH120 - of many
        found = [_stamped(folder, row, "file", "written", "size") for row in self.rows]
        found += [
            _stamped(folder, row, "data_file", "data_written", "data_size")
            for row in self.rows[1:]
            if row.get("data_file")
        ]
        return found

    def errors(self) -> list[tuple[str, str, str]]:
        """Return what is damaged: class, text and path."""
        folder = os.path.dirname(self.path)  # noqa: PTH120 - of many
        return [
            (row["error"], row["text"], os.path.join(folder, row["file"]))  # noqa: PTH118
            for row in self.rows
            if row.get("error")
        ]


class Part(NamedTuple):
    """A Parquet file, or the bytes of one, and the places of its runs in the campaign."""

    source: str | bytes
    stamp: Stamp | None
    name: str
    """What it is called in messages."""
    places: NDArray[np.int32]
    """By the number of a run in the file; -1 for a run that is not in the campaign."""

    def file(self) -> pq.ParquetFile:
        """Return the file, if it is the one that was opened."""
        if isinstance(self.source, bytes):
            return opened(io.BytesIO(self.source), self.name)
        if self.stamp is not None and stamp_of(self.source) != self.stamp:
            text = f"{self.source} has changed since it was opened: open it again"
            raise DataError(text, path=self.source)
        return opened(self.source, self.source)


class Catalogue(Campaign):
    """A campaign that a file knows."""

    __slots__ = ("_known", "_parts")

    def __init__(
        self,
        known: Sequence[Known],
        parts: Sequence[Part],
        unreadable: tuple[Unreadable, ...] = (),
        listing: _Listing | None = None,
    ) -> None:
        super().__init__([(one.path, None) for one in known], unreadable, listing)
        self._known = known
        self._parts = parts

    def __reduce__(self) -> tuple[Any, ...]:
        return Catalogue, (self._known, self._parts, self.unreadable, self._listing)

    def _chosen(self, places: Sequence[int]) -> Campaign:
        new = np.full(len(self), -1, dtype=np.int32)
        new[np.asarray(places, dtype=np.intp)] = np.arange(len(places), dtype=np.int32)
        return Catalogue(
            [self._known[place] for place in places], _moved(self._parts, new), self.unreadable
        )

    def filter(
        self,
        name: str | None = None,
        ok: bool | None = None,
        state: Any = None,  # noqa: ANN401 - as of Campaign
        calculation: Any = None,  # noqa: ANN401
        where: Callable[[Run], object] | None = None,
    ) -> Campaign:
        """Return the runs that pass all of these, as of ``Campaign.filter``; runs as saved."""
        from tabulon._campaign import _several

        campaign = self if name is None else self._named(name, None)
        states, kinds = _several(state), _several(calculation)
        assert isinstance(campaign, Catalogue)
        chosen = campaign._chosen(
            [
                place
                for place, one in enumerate(campaign._known)
                if (ok is None or (one.state == CompletionState.CompletedNormally) == ok)
                and (states is None or one.state in states)
                and (kinds is None or one.calculation in kinds)
            ]
        )
        return chosen if where is None else Campaign.filter(chosen, where=where)

    def _kinds(self) -> list[tuple[CompletionState, CalculationType]]:
        return [(one.state, one.calculation) for one in self._known]

    def stats(
        self,
        variables: VariableName | Sequence[VariableName],
        figures: Sequence[Figure] = ("min", "max", "mean", "std"),
        *,
        verify: bool | None = None,
        executor: Executor | None = None,
        progress: bool | None = None,
    ) -> pd.DataFrame:
        """Return figures of variables of all runs, as of ``Campaign.stats``; from the catalogue."""
        from tabulon._export.campaign import stats_frame

        names = [figure_name(figure) for figure in figures]
        if verify or any(figure not in ("min", "max", "mean") for figure in figures):
            return super().stats(
                variables, figures, verify=bool(verify), executor=executor, progress=progress
            )
        keys = _keys(variables)
        plain, others = self._plain_rows(keys, names)
        answered = self._answered(keys, partial(figure_rows, figures=tuple(names)), others)
        work = partial(figures_of_run, variables=keys, figures=tuple(names), verify=False)
        found = self._completed(answered, work, executor, progress)
        frame = stats_frame(self, found, names, plain)
        return _with_failures(frame, self._failures(found), len(self))

    def extremes(
        self,
        variables: VariableName | Sequence[VariableName],
        also: VariableName | Sequence[VariableName] = (),
        *,
        verify: bool | None = None,
        executor: Executor | None = None,
        progress: bool | None = None,
    ) -> pd.DataFrame:
        """Return extremes over all runs, as of ``Campaign.extremes``; runs found by the file."""
        from tabulon._export.campaign import extremes_frame
        from tabulon._figures import bounds_of_run

        if verify:
            return super().extremes(
                variables, also, verify=True, executor=executor, progress=progress
            )
        keys = _keys(variables)
        work = partial(bounds_of_run, variables=keys, verify=False)
        answered = self._answered(keys, bounds_rows, range(len(self)))
        found = self._completed(answered, work, executor, progress)
        return self._extremes(keys, _keys(also), found, extremes_frame)

    def _completed(
        self,
        found: list[Outcome | None],
        work: Callable[[Run], Any],
        executor: Executor | None,
        progress: bool | None,
    ) -> list[Outcome]:
        """Return what was found, with the runs of which the file has no figures read."""
        open_places = [place for place, one in enumerate(found) if one is None]
        read = outcomes(work, [self[place] for place in open_places], executor, progress)
        for place, outcome in zip(open_places, read, strict=True):
            found[place] = outcome
        return [outcome for outcome in found if outcome is not None]

    def _plain_rows(
        self, keys: Sequence[VariableName], figures: Sequence[str]
    ) -> tuple[PlainRows, Sequence[int]]:
        """Return the rows of runs in which all variables are clear, and the places of the others.

        The names are as they are spelled, each in one group, with figures: whole columns do.
        """
        blocks = []
        for part in self._parts:
            file = part.file()
            for i in row_groups(file, variables=True):
                with damage_told(part.name):
                    blocks.append(rows_spelled_so(file, i, keys, figures, part.places))
        return plain_rows(blocks, keys, figures, [one.path for one in self._known])

    def _answered(
        self,
        keys: Sequence[VariableName],
        rows_of: Callable[[int, list[Row]], list[Any]],
        places: Sequence[int],
    ) -> list[Outcome | None]:
        """Return what the file answers for each run; None where it has no figures.

        Only the runs at these places are looked at; of the others nothing is told.
        """
        found: list[Outcome | None] = [Outcome(RunFigures([], []), None)] * len(self)
        wanted = {(key if isinstance(key, str) else key[1]).casefold() for key in keys}
        by_run: dict[int, dict[str, list[Row]]] = {place: {} for place in places}
        for row in self._rows(wanted) if by_run else ():
            if row.run in by_run:
                by_run[row.run].setdefault(row.variable.casefold(), []).append(row)
        for place, rows in by_run.items():
            found[place] = self._outcome(self._known[place], keys, rows, rows_of)
        return found

    def _outcome(
        self,
        one: Known,
        keys: Sequence[VariableName],
        rows: dict[str, list[Row]],
        rows_of: Callable[[int, list[Row]], list[Any]],
    ) -> Outcome | None:
        made: list[Any] = []
        failures: list[Failure] = []
        for place, key in enumerate(keys):
            name = key if isinstance(key, str) else key[1]
            chosen = chosen_rows(key, rows.get(name.casefold(), []))
            if chosen is None or any(np.isnan(row.min) for row in chosen):
                return None  # several groups, or no figures: the run itself tells
            if chosen:
                made += rows_of(place, chosen)
            else:
                failures.append(self._miss(one, key, rows))
        return Outcome(RunFigures(made, failures), None)

    def _miss(self, one: Known, key: VariableName, rows: dict[str, list[Row]]) -> Failure:
        errors = one.errors()
        damaged = "".join(f"; {text}" for _, text, _ in errors)
        path = errors[0][2] if errors else one.path
        return failure_of(NameNotFoundError(f"no variable {key!r}{damaged}", path=path))

    def _rows(self, wanted: set[str]) -> Iterator[Row]:
        """Give the rows of variables of these names, in any case."""
        for part in self._parts:
            file = part.file()
            for i in row_groups(file, variables=True):
                with damage_told(part.name):
                    table = rows_named(file, i, wanted)
                for row in table:
                    place = int(part.places[row[0]])
                    if place >= 0:
                        yield Row.of(place, row)

    def refresh(
        self, *, executor: Executor | None = None, progress: bool | None = None
    ) -> Campaign:
        """Return the campaign as it is now; only runs that are new or have changed are read."""
        now = self._now()
        old = {one.path: place for place, one in enumerate(self._known)}
        checks = [self._known[old[path]] if path in old else None for path, _ in now]
        pairs = list(zip(now, checks, strict=True))
        same = [one.value for one in outcomes(_is_unchanged, pairs, progress=False)]
        changed = [place for place, unchanged in enumerate(same) if not unchanged]
        new = np.full(len(self), -1, dtype=np.int32)
        known: list[Known] = []
        for place, (path, _) in enumerate(now):
            if same[place]:
                new[old[path]] = place
        stream = io.BytesIO()
        read = _write(stream, [now[place] for place in changed], None, executor, progress)
        fresh = iter(read)
        for place, (path, _) in enumerate(now):
            known.append(self._known[old[path]] if same[place] else next(fresh))
        part = Part(
            stream.getvalue(), None, "the refreshed part", np.array(changed, dtype=np.int32)
        )
        parts = [*_moved(self._parts, new), part] if changed else _moved(self._parts, new)
        return Catalogue(known, parts, self.unreadable, self._listing)

    def _now(self) -> list[Any]:
        """Return what is kept of the runs that are there now."""
        if self._listing is not None:
            return list(self._listing.campaign()._found)
        return [kept for kept in self._found if Path(f"{kept[0]}.$TE").exists()]


def _moved(parts: Sequence[Part], new: NDArray[np.int32]) -> list[Part]:
    """Return parts whose runs have other places; a part without runs goes."""
    moved = []
    for part in parts:
        places = np.where(part.places >= 0, new[part.places], -1).astype(np.int32)
        if (places >= 0).any():
            moved.append(part._replace(places=places))
    return moved


def _is_unchanged(pair: tuple[Any, Known | None]) -> bool:
    """Return whether the files of a run are as the catalogue knows them."""
    (_, files), known = pair
    if known is None:
        return False
    headers = {os.path.join(files.directory, h.name) for h in files.headers} if files else None  # noqa: PTH118
    seen = {path for path, _ in known.files() if "%" in os.path.splitext(path)[1]}  # noqa: PTH122
    if headers is not None and headers != seen:
        return False
    return all(stamp_of(path) == stamp for path, stamp in known.files())


# Writing.


def save(campaign: Campaign, path: str, executor: Executor | None, progress: bool | None) -> None:
    """Write the catalogue of a campaign; a file that is there is replaced by a whole one."""
    parquet = require("pyarrow.parquet", "parquet")
    unfinished = f"{path}.unfinished"
    listing = None if campaign._listing is None else list(campaign._listing)
    try:
        with open(unfinished, "wb") as stream:  # noqa: PTH123 - beside the others
            if isinstance(campaign, Catalogue):
                with parquet.ParquetWriter(
                    stream, schema(listing), write_page_checksum=True
                ) as writer:
                    for table in _all_rows(campaign._parts, schema(listing)):
                        writer.write_table(table)
            else:
                _write(stream, list(campaign._found), listing, executor, progress)
        os.replace(unfinished, path)  # noqa: PTH105
    except OSError as error:
        raise TabulonError(f"{path} cannot be written: {error}", path=path) from None
    finally:
        if Path(unfinished).exists():
            Path(unfinished).unlink()


def _write(
    stream: Any,  # noqa: ANN401 - a binary file
    kept: Sequence[Any],
    listing: Any,  # noqa: ANN401 - what JSON can hold
    executor: Executor | None,
    progress: bool | None,
) -> list[Known]:
    """Write what is read of runs, and return what is known of them."""
    parquet = require("pyarrow.parquet", "parquet")
    made = schema(listing)
    known: list[Known] = []
    with (
        parquet.ParquetWriter(stream, made, write_page_checksum=True) as writer,
        Progress(len(kept), progress) as bar,
    ):
        for start in range(0, len(kept), _AT_A_TIME):
            some = Campaign(kept[start : start + _AT_A_TIME])
            found = some._outcomes(contents_of_run, executor, bar)
            contents = [
                _lost(run.path, one) if one.failure is not None else one.value
                for run, one in zip(some, found, strict=True)
            ]
            for table in tables_of(list(enumerate(contents, start)), made):
                if table.num_rows:
                    writer.write_table(table)
            known += map(_known, contents)
    return known


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


# Reading.


def open_catalogue(path: str) -> Catalogue:
    """Return the campaign of a catalogue; no run is touched."""
    stamp = stamp_of(path)
    if stamp.size is None:
        raise RunNotFoundError(f"no catalogue {path!r}", path=path)
    file = opened(path, path)
    with damage_told(path):
        known, count = _known_runs(file)
    listing = listing_of(file)
    sought = None
    if listing is not None:
        roots, name, regex, recursive = listing
        sought = _Listing(tuple(roots), name, regex, recursive)
    part = Part(path, stamp, path, np.arange(count, dtype=np.int32))
    return Catalogue(known, [part], (), sought)


def _known_runs(file: pq.ParquetFile) -> tuple[list[Known], int]:
    columns = [
        "level", "run", "path", "state", "calculation", "file", "written", "size",
        "data_file", "data_written", "data_size", "error", "text",
    ]  # fmt: skip
    rows = []
    for i in row_groups(file, variables=False):
        rows += file.read_row_group(i, columns).to_pylist()
    rows.sort(key=lambda row: (row["run"], row["level"]))
    known = [
        _known(Contents(first, list(others), []))
        for _, (first, *others) in groupby(rows, key=lambda row: row["run"])
    ]
    return known, len(known)


def _known(contents: Contents) -> Known:
    run = contents.run
    return Known(
        run["path"],
        CompletionState(_or(run.get("state"), CompletionState.Unknown)),
        CalculationType(_or(run.get("calculation"), CalculationType.Unknown)),
        (run, *contents.groups),
    )


def _or(value: int | None, other: int) -> int:
    return other if value is None else value


def _stamped(
    folder: str, row: dict[str, Any], name: str, written: str, size: str
) -> tuple[str, Stamp]:
    return os.path.join(folder, row[name]), Stamp(row.get(written), row.get(size))  # noqa: PTH118
