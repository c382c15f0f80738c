"""What a catalogue knows of the runs of a campaign, and answers without touching them."""

from __future__ import annotations

import os
from collections.abc import Callable, Iterator, Sequence
from functools import partial
from typing import TYPE_CHECKING, Any, NamedTuple

import numpy as np
from numpy.typing import NDArray

from tabulon._catalogue_file import (
    RUN,
    Stamp,
    damage_told,
    listing_of,
    opened,
    row_groups,
    stamp_of,
)
from tabulon._catalogue_rows import (
    Columns,
    Row,
    blocks_of,
    bounds_rows,
    chosen_rows,
    columns_of,
    figure_rows,
    odd_places,
    rows_named,
)
from tabulon._choice import Kind
from tabulon._errors import DataError, NameNotFoundError, RunNotFoundError
from tabulon._figures import RunFigures
from tabulon._parallel import Failure, Outcome, failure_of
from tabulon._run import VariableName
from tabulon._seek import Listing
from tabulon._vocabulary import CalculationType, CompletionState

if TYPE_CHECKING:
    import pyarrow as pa
    import pyarrow.parquet as pq

__all__ = ["Catalogue", "Files", "Part", "moved"]

_NONE = np.empty(0, np.int32)


class Part(NamedTuple):
    """A Parquet file, or the bytes of one, and the places of its runs in the campaign."""

    source: str | bytes
    stamp: Stamp | None
    name: str
    """What it is called in messages."""
    places: NDArray[np.int32]
    """By the number of a run in the file; -1 for a run that is not in the campaign. Empty while
    it is not known which runs there are."""

    def file(self) -> pq.ParquetFile:
        """Return the file, if it is the one that was opened."""
        if isinstance(self.source, bytes):
            return opened(self.source, self.name)
        if self.stamp is not None and stamp_of(self.source) != self.stamp:
            text = f"{self.source} has changed since it was opened: open it again"
            raise DataError(text, path=self.source)
        return opened(self.source, self.source)

    def rows(self, columns: Sequence[str], variables: bool) -> Iterator[pa.Table]:
        """Give the rows of variables, or those of runs and groups, block by block."""
        file = self.file()
        for i in self.blocks(file, variables):
            with damage_told(self.name):
                yield file.read_row_group(i, list(columns), use_threads=False)

    def blocks(self, file: pq.ParquetFile, variables: bool) -> Iterator[int]:
        """Give the row groups of variables, or those of runs and groups, that are of use."""
        for i, runs in row_groups(file, variables):
            if not len(self.places) or (self.places[runs] >= 0).any():
                yield i


def moved(parts: Sequence[Part], new: NDArray[np.int32]) -> list[Part]:
    """Return parts whose runs have other places; a part without runs goes."""
    found = []
    for part in parts:
        places = np.where(part.places >= 0, new[part.places], -1).astype(np.int32)
        if (places >= 0).any():
            found.append(part._replace(places=places))
    return found


class Files(NamedTuple):
    """The files of a run: names of headers, and of all files with their stamps."""

    headers: list[str]
    stamps: list[tuple[str, tuple[int | None, int | None]]]


class Catalogue(NamedTuple):
    """What files know of runs: an element of each list for a run."""

    paths: Sequence[str]
    states: NDArray[np.int32]
    calculations: NDArray[np.int32]
    parts: Sequence[Part]

    @classmethod
    def opened(cls, path: str) -> tuple[Catalogue, Listing | None]:
        """Return what a file knows, and how its runs were sought; no run is touched.

        Raises
        ------
        RunNotFoundError
            If there is no such file.
        DataError
            If it is no catalogue, is damaged, or is of another version.
        """
        stamp = stamp_of(path)
        if stamp.size is None:
            raise RunNotFoundError(f"no catalogue {path!r}", path=path)
        part = Part(path, stamp, path, _NONE)
        with damage_told(path):
            listing = listing_of(part.file())
            sought = None if listing is None else Listing(tuple(listing[0]), *listing[1:])
            known = cls.of_part(part)
            known.kinds()  # no other than there are
        return known, sought

    @classmethod
    def of_part(cls, part: Part) -> Catalogue:
        """Return what one file knows, of all its runs in the order of their numbers."""
        numbers, states, kinds = [_NONE], [_NONE], [_NONE]
        paths: list[str] = []
        for table in part.rows(["level", "run", "path", "state", "calculation"], variables=False):
            runs = table.filter(table["level"].to_numpy() == RUN)
            numbers.append(runs["run"].to_numpy())
            paths += runs["path"].to_pylist()
            states.append(runs["state"].fill_null(CompletionState.Unknown).to_numpy())
            kinds.append(runs["calculation"].fill_null(CalculationType.Unknown).to_numpy())
        order = np.argsort(np.concatenate(numbers), kind="stable")
        places = np.arange(len(order), dtype=np.int32)
        if not np.array_equal(np.concatenate(numbers)[order], places):
            raise DataError(f"{part.name} is no catalogue, or is damaged: runs are missing")
        return cls(
            [paths[at] for at in order.tolist()],
            np.concatenate(states)[order],
            np.concatenate(kinds)[order],
            [part._replace(places=places)],
        )

    def chosen(self, places: Sequence[int]) -> Catalogue:
        """Return what is known of some of the runs."""
        at = np.asarray(places, dtype=np.intp)
        new = np.full(len(self.paths), -1, dtype=np.int32)
        new[at] = np.arange(len(at), dtype=np.int32)
        paths = [self.paths[place] for place in places]
        parts = moved(self.parts, new)
        return Catalogue(paths, self.states[at], self.calculations[at], parts)

    def kinds(self) -> list[Kind]:
        """Return how the runs ended, and what they calculated."""
        states = {int(one): CompletionState(one) for one in np.unique(self.states)}
        kinds = {int(one): CalculationType(one) for one in np.unique(self.calculations)}
        told = zip(self.states.tolist(), self.calculations.tolist(), strict=True)
        return [(states[state], kinds[kind]) for state, kind in told]

    def figures(
        self, keys: Sequence[VariableName], figures: Sequence[str]
    ) -> tuple[Columns, list[Outcome | None]]:
        """Return figures of variables.

        Returns
        -------
        Columns
            Of the runs in which all variables are clear: whole columns of the file do.
        list
            What the file tells of each of the other runs; None of one that has to be read.
        """
        rows_of = partial(figure_rows, figures=tuple(figures))
        return self._answered(keys, figures, rows_of)

    def bounds(self, keys: Sequence[VariableName]) -> tuple[Columns, list[Outcome | None]]:
        """Return smallest and largest values of variables, as of `figures`."""
        return self._answered(keys, ("min", "max"), bounds_rows)

    def _answered(
        self,
        keys: Sequence[VariableName],
        figures: Sequence[str],
        rows_of: Callable[[int, list[Row]], list[Any]],
    ) -> tuple[Columns, list[Outcome | None]]:
        blocks = []
        for part in self.parts:
            file = part.file()
            for i in part.blocks(file, variables=True):
                with damage_told(part.name):
                    blocks.append(blocks_of(file, i, keys, figures, part.places))
        odd = odd_places(blocks, len(keys), len(self.paths))
        columns = columns_of(blocks, len(keys), len(figures), odd)
        return columns, self._of_others(keys, rows_of, np.flatnonzero(odd).tolist())

    def _of_others(
        self,
        keys: Sequence[VariableName],
        rows_of: Callable[[int, list[Row]], list[Any]],
        places: Sequence[int],
    ) -> list[Outcome | None]:
        """Return what the file tells of runs, row by row; of all the others that is nothing."""
        found: list[Outcome | None] = [Outcome(RunFigures([], []), None)] * len(self.paths)
        if not places:
            return found
        by_run: dict[int, dict[str, list[Row]]] = {place: {} for place in places}
        wanted = {(key if isinstance(key, str) else key[1]).casefold() for key in keys}
        for row in self._rows(wanted):
            if row.run in by_run:
                by_run[row.run].setdefault(row.variable.casefold(), []).append(row)
        damaged = self._damaged(places)
        for place, rows in by_run.items():
            told = damaged.get(place, [])
            found[place] = _outcome(self.paths[place], told, keys, rows, rows_of)
        return found

    def _rows(self, wanted: set[str]) -> Iterator[Row]:
        """Give the rows of variables of these names, in any case."""
        for part in self.parts:
            file = part.file()
            for i in part.blocks(file, variables=True):
                with damage_told(part.name):
                    table = rows_named(file, i, wanted)
                    rows = [Row.of(int(part.places[row[0]]), row) for row in table]
                yield from (row for row in rows if row.run >= 0)

    def _damaged(self, places: Sequence[int]) -> dict[int, list[tuple[str, str]]]:
        """Return what is damaged of these runs: text and path."""
        wanted = set(places)
        found: dict[int, list[tuple[str, str]]] = {}
        for part in self.parts:
            for table in part.rows(["run", "file", "text"], variables=False):
                columns = (table[name].to_pylist() for name in ("run", "file", "text"))
                for number, file, text in zip(*columns, strict=True):
                    place = int(part.places[number])
                    if text is not None and place in wanted:
                        path = f"{_folder(self.paths[place])}{file}"
                        found.setdefault(place, []).append((text, path))
        return found

    def files(self) -> list[Files]:
        """Return the files of each run as they were."""
        found = [Files([], []) for _ in self.paths]
        names = ["level", "run", "file", "written", "size"]
        names += ["data_file", "data_written", "data_size"]
        for part in self.parts:
            for table in part.rows(names, variables=False):
                columns = [table[name].to_pylist() for name in names]
                for level, number, file, written, size, data, data_written, data_size in zip(
                    *columns, strict=True
                ):
                    place = part.places[number]
                    if place < 0:
                        continue
                    one = found[place]
                    one.stamps.append((file, (written, size)))
                    if level != RUN:
                        one.headers.append(file)
                    if data:
                        one.stamps.append((data, (data_written, data_size)))
        return found


def _outcome(
    path: str,
    damaged: Sequence[tuple[str, str]],
    keys: Sequence[VariableName],
    rows: dict[str, list[Row]],
    rows_of: Callable[[int, list[Row]], list[Any]],
) -> Outcome | None:
    """Return what rows of a run tell of variables; None where that is not clear."""
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
            text = "; ".join([f"no variable {key!r}", *(told for told, _ in damaged)])
            at = damaged[0][1] if damaged else path
            failures.append(failure_of(NameNotFoundError(text, path=at)))
    return Outcome(RunFigures(made, failures), None)


def _folder(path: str) -> str:
    """Return the directory of a run, with a separator behind it."""
    return path[: max(path.rfind("/"), path.rfind(os.sep)) + 1]
