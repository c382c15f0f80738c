"""Campaigns: many runs as one."""

from __future__ import annotations

import os
import warnings
from collections.abc import Callable, Iterable, Sequence
from concurrent.futures import Executor
from functools import partial
from pathlib import Path
from typing import TYPE_CHECKING, Any, Literal, overload

from tabulon._choice import Choice, Kind, kind_of, several
from tabulon._errors import RunNotFoundError
from tabulon._figures import (
    IN_HEADERS,
    AtExtreme,
    Figure,
    bounds_of_run,
    figure_names,
    figures_of_run,
    values_at_extreme,
)
from tabulon._kept import Kept, outcomes_of, plain
from tabulon._optional import require
from tabulon._parallel import Failure, Outcome, failure_of
from tabulon._public import public
from tabulon._results import Results, failure_record
from tabulon._run import Run, StrPath, VariableName, run_of_files
from tabulon._seek import Listing, Unreadable, name_test
from tabulon._shapes import Description
from tabulon._vocabulary import CalculationType, CompletionState

if TYPE_CHECKING:
    import pandas as pd
    import xarray as xr

    from tabulon._catalogue import Catalogue

__all__ = ["Campaign", "open_campaign"]


@public
def open_campaign(
    *roots: StrPath, name: str = "*", regex: str | None = None, recursive: bool = True
) -> Campaign:
    """Return the runs below directories, or those of a catalogue.

    Parameters
    ----------
    *roots
        Directories; a run that two of them reach counts once. Or the one file that ``save`` wrote.
    name
        Only runs whose name matches, with ``*``, ``?`` and ``[...]`` as of file names; in any case.
    regex
        Only runs whose whole name matches this regular expression.
    recursive
        Whether directories within the directories count.

    Raises
    ------
    RunNotFoundError
        If there is no such directory or catalogue.
    DataError
        If a catalogue is damaged, or of another version.

    Examples
    --------
    >>> import tabulon as tb
    >>> runs = tb.open_campaign(tb.sample("power_curve").parent, name="power*")
    >>> [run.name for run in runs]
    ['power_curve']
    """
    if not roots:
        raise TypeError("open_campaign() needs a directory, or the file of a catalogue")
    if len(roots) == 1 and Path(roots[0]).is_file():
        from tabulon._catalogue import Catalogue

        known, listing = Catalogue.opened(_absolute(roots[0]))
        campaign = Campaign([(path, None) for path in known.paths], (), listing, known)
        return campaign._named(name, regex)
    for root in roots:
        if Path(root).is_file():
            raise RunNotFoundError(f"{os.fspath(root)!r} is a file: a catalogue is opened alone")
    listing = Listing(tuple(map(_absolute, roots)), name, regex, recursive)
    return Campaign(*listing.found(), listing)


def _absolute(path: StrPath) -> str:
    return os.path.abspath(os.fspath(path))  # noqa: PTH100 - keeps symbolic links


@public
class Campaign(Sequence[Run]):
    """Many runs, in the natural order of their paths: ``run2`` stands before ``run10``.

    A campaign is a sequence of handles: it can be sliced and pickled, and any number of threads may
    use it. Which runs there are was looked up once, by ``open_campaign``; what they hold is read
    when it is asked for. Nothing that is set elsewhere has an influence.

    Examples
    --------
    >>> import tabulon as tb
    >>> runs = tb.open_campaign(tb.sample("power_curve").parent)
    >>> len(runs), runs[-1].name, [run.name for run in runs.filter(ok=True)]
    (2, 'power_curve', ['power_curve'])
    """

    __slots__ = ("__weakref__", "_found", "_known", "_listing", "_places", "unreadable")

    unreadable: tuple[Unreadable, ...]
    """Directories that could not be read: `path` and `text`."""

    def __init__(
        self,
        found: Sequence[Kept],
        unreadable: tuple[Unreadable, ...] = (),
        listing: Listing | None = None,
        known: Catalogue | None = None,
    ) -> None:
        self._found = found
        self._listing = listing
        self._known = known
        self._places: dict[str, int] | None = None
        self.unreadable = unreadable

    # A sequence of runs.

    def __len__(self) -> int:
        return len(self._found)

    @overload
    def __getitem__(self, key: int) -> Run: ...
    @overload
    def __getitem__(self, key: slice) -> Campaign: ...
    def __getitem__(self, key: int | slice) -> Run | Campaign:
        if isinstance(key, slice):
            return self._chosen(range(len(self))[key])
        path, files = self._found[key]
        return run_of_files(path, files)

    def __contains__(self, run: object) -> bool:
        if not isinstance(run, Run):
            return False
        if self._places is None:
            self._places = {path: place for place, (path, _) in enumerate(self._found)}
        return run.path in self._places

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, Campaign):
            return NotImplemented
        return self._paths() == other._paths()

    def __hash__(self) -> int:
        return hash(tuple(self._paths()))

    def __reduce__(self) -> tuple[Any, ...]:
        return Campaign, (plain(self._found), self.unreadable, self._listing, self._known)

    # Fewer runs.

    def filter(
        self,
        name: str | None = None,
        ok: bool | None = None,
        state: CompletionState | Iterable[CompletionState] | None = None,
        calculation: CalculationType | Iterable[CalculationType] | None = None,
        where: Callable[[Run], object] | None = None,
    ) -> Campaign:
        """Return the runs that pass all of these.

        Parameters
        ----------
        name
            A pattern of names, as of ``open_campaign``.
        ok
            Whether the run completed normally.
        state, calculation
            How the run ended, and what calculation it is; one or more of them.
        where
            Called with a run; what it raises is raised.

        Examples
        --------
        >>> import tabulon as tb
        >>> runs = tb.open_campaign(tb.sample("power_curve").parent)
        >>> [run.name for run in runs.filter(where=lambda run: "Rotor speed" in run)]
        ['idling_live', 'power_curve']
        """
        campaign = self if name is None else self._named(name, None)
        choice = Choice(
            ok, several(state, CompletionState), several(calculation, CalculationType), where
        )
        if campaign._known is not None:
            kinds = campaign._known.kinds()
            campaign = campaign._chosen([p for p, kind in enumerate(kinds) if choice.of_kind(kind)])
            choice = Choice(where=where)
        if choice == Choice():
            return campaign
        found = outcomes_of(choice.passes, campaign._found, progress=False, raising=True)
        return campaign._chosen([place for place, one in enumerate(found) if one.value])

    def _named(self, name: str, regex: str | None) -> Campaign:
        if name == "*" and regex is None:
            return self
        passes = name_test(name, regex)
        places = [
            place
            for place, (path, _) in enumerate(self._found)
            if passes(os.path.basename(path))  # noqa: PTH119 - of many
        ]
        return self._chosen(places)

    def _chosen(self, places: Sequence[int]) -> Campaign:
        """Return some of the runs."""
        known = None if self._known is None else self._known.chosen(places)
        return Campaign([self._found[place] for place in places], self.unreadable, None, known)

    def _paths(self) -> list[str]:
        return [path for path, _ in self._found]

    # Work on all runs.

    def map(
        self,
        function: Callable[[Run], Any],
        *,
        executor: Executor | None = None,
        progress: bool | None = None,
        errors: Literal["collect", "raise"] = "collect",
    ) -> Results:
        """Return what a function gives of each run.

        Parameters
        ----------
        function
            Called with a run. For processes it has to stand in a module.
        executor
            Any ``concurrent.futures`` executor: of processes, of a Dask client
            (``client.get_executor()``), of MPI. It is left open. Threads if None: reading lets
            other threads go on.
        progress
            A bar on standard error: None where tqdm is installed and the job takes more than a
            second, True at once, False never.
        errors
            "collect": runs that failed are in ``failures`` of what is returned. "raise": the first
            failure is raised.

        Returns
        -------
        Results
            A mapping of run to value in the order of the campaign.

        Examples
        --------
        >>> import tabulon as tb
        >>> def largest(run):
        ...     return run["Rotor speed"].to("rpm").max()
        >>> runs = tb.open_campaign(tb.sample("power_curve").parent)
        >>> [f"{value:.1f}" for value in runs.map(largest).values()]
        ['0.6', '12.1']
        """
        if errors not in ("collect", "raise"):
            raise ValueError(f"errors is 'collect' or 'raise', not {errors!r}")
        if not callable(function):
            raise TypeError(f"map takes a function of a run, not {function!r}")
        found = outcomes_of(function, self._found, executor, progress, errors == "raise")
        return Results(self, found)

    def stats(
        self,
        variables: VariableName | Sequence[VariableName],
        figures: Figure | Sequence[Figure] = ("min", "max", "mean", "std"),
        *,
        verify: bool | None = None,
        executor: Executor | None = None,
        progress: bool | None = None,
    ) -> pd.DataFrame:
        """Return figures of variables of all runs.

        Parameters
        ----------
        variables
            Names, or pairs of a group (by name or number) and a name.
        figures
            "min", "max" and "mean" come from the header where it has them; "std" (of the
            population) always from the data, and so do functions: each is called with the values
            of a variable, shape ``(points,)``, and its ``__name__`` is that of its column.
        verify
            Whether the size of each data file is looked at first, so that good figures of a header
            never hide data that is missing. True if None; of a catalogue False.
        executor, progress
            As of ``map``.

        Returns
        -------
        pandas.DataFrame
            A row for each run, variable and secondary value: `run`, `path`, `group`, `variable`,
            `secondary` (value or label; missing over one axis), `unit`, and a column for each
            figure. ``attrs["failures"]`` is a list of dicts (`run`, `error`, `text`, `path`) of
            what failed, of which a warning tells too.

        Examples
        --------
        >>> import tabulon as tb
        >>> runs = tb.open_campaign(tb.sample("power_curve").parent).filter(ok=True)
        >>> table = runs.stats(["Rotor speed"], ["min", "max"])
        >>> table[["run", "variable", "unit"]].values.tolist()
        [['power_curve', 'Rotor speed', 'rad/s']]
        """
        from tabulon._export.campaign import stats_frame

        require("pandas", "pandas")  # before the work
        keys = _keys(variables)
        asked = (figures,) if isinstance(figures, str) or callable(figures) else tuple(figures)
        names = figure_names(asked)
        verify = self._known is None if verify is None else verify
        work = partial(figures_of_run, variables=keys, figures=asked, verify=verify)
        columns, told = None, None
        if self._known is not None and not verify and all(one in IN_HEADERS for one in asked):
            columns, told = self._known.figures(keys, names)
        found = self._completed(told, work, executor, progress)
        return self._told(stats_frame(self._paths(), found, names, columns), self._failures(found))

    def extremes(
        self,
        variables: VariableName | Sequence[VariableName],
        also: VariableName | Sequence[VariableName] = (),
        *,
        verify: bool | None = None,
        executor: Executor | None = None,
        progress: bool | None = None,
    ) -> pd.DataFrame:
        """Return the largest and the smallest value of each variable over all runs.

        Parameters
        ----------
        variables
            Names, or pairs of a group (by name or number) and a name.
        also
            Other variables, on the same axes or on the primary axis alone: what they did then.
        verify
            As of ``stats``.
        executor, progress
            As of ``map``.

        Returns
        -------
        pandas.DataFrame
            Two rows for each variable and secondary value: `variable`, `secondary`, `kind` ("max"
            or "min"), `value`, `unit`, `run`, `path`, `time` (the value of the primary axis), and
            a column for each of `also`: its value in that row, missing where the run has none,
            which is a failure too. The run is found by the figures of
            the headers, what is told of it comes from its data. ``attrs["units"]`` has the units of
            the columns, ``attrs["failures"]`` is as of ``stats``.

        Examples
        --------
        >>> import tabulon as tb
        >>> runs = tb.open_campaign(tb.sample("power_curve").parent)
        >>> table = runs.extremes(["Rotor speed"], also=["Electrical power"])
        >>> table[["kind", "run", "time"]].values.tolist()[0][:2]
        ['max', 'power_curve']
        """
        from tabulon._export.campaign import extremes_frame
        from tabulon._ultimate import Ultimate, ultimates

        require("pandas", "pandas")  # before the work
        keys, others = _keys(variables), _keys(also)
        verify = self._known is None if verify is None else verify
        work = partial(bounds_of_run, variables=keys, verify=verify)
        columns, told = None, None
        if self._known is not None and not verify:
            columns, told = self._known.bounds(keys)
        found = self._completed(told, work, executor, progress)
        failures = self._failures(found)

        def read(run: int, one: Ultimate) -> AtExtreme:
            return values_at_extreme(self[run], one.key, one.place, one.largest, others)

        rows = []
        for one in ultimates(keys, found, columns):
            row, missed = one.settled(read)
            if row is not None:
                rows.append(row)
                missed += [(row.run, error) for error in row.found.missed]
            failures += [failure_record(self[run], failure_of(error)) for run, error in missed]
        return self._told(extremes_frame(self, rows, others), failures)

    def _completed(
        self,
        told: list[Outcome | None] | None,
        work: Callable[[Run], Any],
        executor: Executor | None,
        progress: bool | None,
    ) -> list[Outcome]:
        """Return what a catalogue has found, with the runs read of which it knows too little."""
        if told is None:
            return outcomes_of(work, self._found, executor, progress)
        left = [kept for kept, one in zip(self._found, told, strict=True) if one is None]
        read = iter(outcomes_of(work, left, executor, progress))
        return [next(read) if one is None else one for one in told]

    def _failures(self, found: Sequence[Outcome]) -> list[dict[str, str]]:
        told = []
        for place, outcome in enumerate(found):
            failures: list[Failure] = (
                [outcome.failure] if outcome.failure is not None else outcome.value[1]
            )
            told += [failure_record(self[place], failure) for failure in failures]
        return told

    def _told(self, frame: pd.DataFrame, failures: list[dict[str, str]]) -> pd.DataFrame:
        """Return a table with what failed beside it, and warn once."""
        frame.attrs["failures"] = failures
        if failures:
            first = failures[0]
            warnings.warn(
                f"{_counted(len(failures), 'failure')} in {_counted(len(self), 'run')}, the first"
                f" in {first['run']!r}: {first['text']}; all are in attrs['failures']",
                stacklevel=3,
            )
        return frame

    def to_xarray(self, variables: VariableName | Sequence[VariableName]) -> xr.Dataset:
        """Return variables of all runs as one Dataset, which reads what is asked of it.

        Parameters
        ----------
        variables
            Names, or pairs of a group (by name or number) and a name, all of one group.

        Returns
        -------
        xarray.Dataset
            Over `run` and the axes of the variables, with a Dask chunk for each run. Runs that are
            shorter than the longest are padded with NaN (integers become float64); the coordinate
            `rows` over `run` has their lengths, `path` their paths.

        Raises
        ------
        NameNotFoundError, DataError
            If a run lacks a variable, or has it on other axes. ``filter`` takes such runs out.
        """
        from tabulon._export.campaign import dataset_of

        return dataset_of(self, _keys(variables))

    # A catalogue.

    def save(
        self, path: StrPath, *, executor: Executor | None = None, progress: bool | None = None
    ) -> None:
        """Write a catalogue: what the headers of all runs tell, as one Parquet file.

        ``open_campaign`` opens it without touching the runs; its ``stats`` and ``extremes`` are
        answered by it where it can. It has the runs, groups, variables, units, counts and figures
        of the headers, and the sizes and last writes of all files, so that ``refresh`` knows what
        has changed.

        Parameters
        ----------
        path
            The file. One that is there is replaced when the new one is whole.
        executor, progress
            As of ``map``.
        """
        from tabulon._catalogue_write import save

        save(os.fspath(path), self._found, self._known, self._listing, executor, progress)

    def refresh(
        self, *, executor: Executor | None = None, progress: bool | None = None
    ) -> Campaign:
        """Return the campaign as it is now: runs that are new, gone or changed are looked at.

        Of a catalogue only these are read; a campaign of directories is listed anew, and one that
        was filtered or sliced keeps those of its runs that are still there.
        """
        if self._listing is not None:
            found, unreadable = self._listing.found()
        else:
            there = outcomes_of(_is_there, self._found, executor, progress=False)
            found = [kept for kept, one in zip(self._found, there, strict=True) if one.value]
            unreadable = self.unreadable
        if self._known is None:
            return Campaign(found, unreadable, self._listing)
        from tabulon._catalogue_write import refreshed

        known = refreshed(self._known, found, executor, progress)
        return Campaign([(path, None) for path, _ in found], unreadable, self._listing, known)

    # What is shown.

    def summary(self) -> list[dict[str, str]]:
        """Return a record for each run: `run`, `path`, `state` and `calculation`, as text."""
        return [
            {"run": run.name, "path": run.path, "state": str(state), "calculation": str(kind)}
            for run, (state, kind) in zip(self, self._kinds(), strict=True)
        ]

    def _kinds(self) -> list[Kind]:
        if self._known is not None:
            return self._known.kinds()
        found = outcomes_of(kind_of, self._found, progress=False)
        unknown = CompletionState.Unknown, CalculationType.Unknown
        return [unknown if one.failure else one.value for one in found]

    def __repr__(self) -> str:
        folders = {os.path.dirname(path) for path, _ in self._found}  # noqa: PTH120 - of many
        where = f" in {os.path.commonpath(folders)!r}" if folders else ""
        return f"<tabulon.Campaign of {len(self):,} runs{where}>"

    def __str__(self) -> str:
        from tabulon._html import text_of

        return text_of(self._described())

    def _repr_html_(self) -> str:
        from tabulon._html import html_of

        return html_of(self._described())

    def _described(self) -> Description:
        from tabulon._overview import described

        return described(self, self._kinds(), len(self.unreadable))


def _is_there(run: Run) -> bool:
    return os.path.exists(run)  # noqa: PTH110 - of many; what cannot be reached is not there


def _keys(variables: VariableName | Sequence[VariableName]) -> tuple[VariableName, ...]:
    """Return the variables that are asked for; a name, or a pair, is one of them."""
    if isinstance(variables, str):
        return (variables,)
    if isinstance(variables, tuple) and len(variables) == 2 and isinstance(variables[1], str):
        return (variables,)  # type: ignore[return-value]
    return tuple(variables)


def _counted(count: int, noun: str) -> str:
    return f"{count:,} {noun}{'' if count == 1 else 's'}"
