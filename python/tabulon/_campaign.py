"""Campaigns: many runs as one."""

from __future__ import annotations

import os
import re
import warnings
from collections import Counter
from collections.abc import Callable, Iterable, Sequence
from concurrent.futures import Executor
from fnmatch import translate
from functools import partial
from pathlib import Path
from typing import TYPE_CHECKING, Any, Literal, NamedTuple, TypeAlias, overload

from tabulon import _native
from tabulon._errors import DataError, TabulonError
from tabulon._figures import Figure, bounds_of_run, figure_name, figures_of_run, values_at_extreme
from tabulon._native import RunFiles
from tabulon._natural import in_natural_order
from tabulon._parallel import Failure, Outcome, Progress, failure_of, outcomes
from tabulon._public import public
from tabulon._results import Results, failure_record
from tabulon._run import Run, StrPath, VariableName, run_of_files
from tabulon._vocabulary import CalculationType, CompletionState

if TYPE_CHECKING:
    import pandas as pd
    import xarray as xr

__all__ = ["Campaign", "Unreadable", "open_campaign"]

_SHOWN = 10  # runs at either end of a table


@public
class Unreadable(NamedTuple):
    """A directory that could not be read."""

    path: str
    """The directory."""
    text: str
    """Why not."""


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
        from tabulon._catalogue import open_catalogue

        return open_catalogue(os.fspath(roots[0]))._named(name, regex)
    return _Listing(tuple(map(_absolute, roots)), name, regex, recursive).campaign()


def _absolute(path: StrPath) -> str:
    return os.path.abspath(os.fspath(path))  # noqa: PTH100 - keeps symbolic links


class _Listing(NamedTuple):
    """How runs were sought, so that they can be sought again."""

    roots: tuple[str, ...]
    name: str
    regex: str | None
    recursive: bool

    def campaign(self) -> Campaign:
        """Return the runs that are there now."""
        listed = [_native.list_runs(root, self.recursive) for root in self.roots]
        passes = _name_test(self.name, self.regex)
        once = _Once()
        records = [
            record
            for runs, _ in listed
            for record in runs
            if passes(record.name) and (len(listed) == 1 or once.first(record))
        ]
        unreadable = dict.fromkeys(
            Unreadable(one.path, one.text) for _, failed in listed for one in failed
        )
        found = [(record.path, record) for record in in_natural_order(records)]
        return Campaign(found, tuple(unreadable), listing=self)


class _Once:
    """Whether a run was met before, also by another path."""

    def __init__(self) -> None:
        self._met: set[tuple[str, str]] = set()
        self._canonical: dict[str, str] = {}

    def first(self, record: _native.RunRecord) -> bool:
        """Return whether a run is met for the first time."""
        folder = self._canonical.get(record.directory)
        if folder is None:
            folder = self._canonical[record.directory] = os.path.realpath(record.directory)
        before = len(self._met)
        self._met.add((folder, record.name))
        return len(self._met) > before


def _name_test(name: str, regex: str | None) -> Callable[[str], object]:
    """Return what tells whether a name passes."""
    if regex is not None:
        try:
            expression = re.compile(regex)
        except re.error as error:
            raise DataError(f"{regex!r} is no regular expression: {error}") from None
        wanted = None if name == "*" else re.compile(translate(name), re.IGNORECASE)
        return lambda text: expression.fullmatch(text) and (wanted is None or wanted.match(text))
    return (lambda _: True) if name == "*" else re.compile(translate(name), re.IGNORECASE).match


# What a campaign keeps of a run: its path, and its files where they are known.
_Kept: TypeAlias = "tuple[str, RunFiles | _native.RunRecord | None]"


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

    __slots__ = ("__weakref__", "_found", "_listing", "_places", "unreadable")

    unreadable: tuple[Unreadable, ...]
    """Directories that could not be read: `path` and `text`."""

    def __init__(
        self,
        found: Sequence[_Kept],
        unreadable: tuple[Unreadable, ...] = (),
        listing: _Listing | None = None,
    ) -> None:
        self._found = found
        self._listing = listing
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
        return Campaign, (self._plain(), self.unreadable, self._listing)

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
        states = _several(state)
        calculations = _several(calculation)
        test = partial(_passes, ok, states, calculations, where)
        if (ok, states, calculations, where) == (None, None, None, None):
            return campaign
        found = campaign._outcomes(test, progress=False, raising=True)
        return campaign._chosen([place for place, one in enumerate(found) if one.value])

    def _named(self, name: str, regex: str | None) -> Campaign:
        if name == "*" and regex is None:
            return self
        passes = _name_test(name, regex)
        places = [
            place
            for place, (path, _) in enumerate(self._found)
            if passes(os.path.basename(path))  # noqa: PTH119 - of many
        ]
        return self._chosen(places)

    def _chosen(self, places: Sequence[int]) -> Campaign:
        """Return some of the runs."""
        found = self._found
        return Campaign([found[place] for place in places], self.unreadable)

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
        found = self._outcomes(function, executor, progress, errors == "raise")
        return Results(self, found)

    def stats(
        self,
        variables: VariableName | Sequence[VariableName],
        figures: Sequence[Figure] = ("min", "max", "mean", "std"),
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

        keys = _keys(variables)
        names = [figure_name(figure) for figure in figures]
        work = partial(
            figures_of_run,
            variables=keys,
            figures=tuple(figures),
            verify=True if verify is None else verify,
        )
        found = self._outcomes(work, executor, progress)
        failures = self._failures(found)
        frame = stats_frame(self, found, names)
        return _with_failures(frame, failures, len(self))

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
            a column for each of `also`: its value in that row. The run is found by the figures of
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

        keys, others = _keys(variables), _keys(also)
        work = partial(bounds_of_run, variables=keys, verify=True if verify is None else verify)
        found = self._outcomes(work, executor, progress)
        return self._extremes(keys, others, found, extremes_frame)

    def _extremes(
        self,
        keys: Sequence[VariableName],
        others: Sequence[VariableName],
        found: Sequence[Outcome],
        frame_of: Callable[..., pd.DataFrame],
    ) -> pd.DataFrame:
        from tabulon._ultimate import Ultimate, ultimates

        failures = self._failures(found)
        wanted = ultimates(keys, found)

        def read(run: int, one: Ultimate) -> tuple[float, Any, list[Any]]:
            return values_at_extreme(self[run], one.key, one.place, one.largest, others)

        rows = []
        for one in wanted:
            row, missed = one.settled(read)
            failures += [failure_record(self[run], failure_of(error)) for run, error in missed]
            if row is not None:
                rows.append(row)
        return _with_failures(frame_of(self, rows, others), failures, len(self))

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
        from tabulon._catalogue import save

        save(self, os.fspath(path), executor, progress)

    def refresh(
        self, *, executor: Executor | None = None, progress: bool | None = None
    ) -> Campaign:
        """Return the campaign as it is now: runs that are new, gone or changed are looked at.

        Of a catalogue only these are read; a campaign of directories is listed anew, and one that
        was filtered or sliced keeps those of its runs that are still there.
        """
        if self._listing is not None:
            return self._listing.campaign()
        return self.filter(where=lambda run: Path(run).exists())

    # What is shown.

    def summary(self) -> list[dict[str, str]]:
        """Return a record for each run: `run`, `path`, `state` and `calculation`, as text."""
        return [
            {"run": run.name, "path": run.path, "state": str(state), "calculation": str(kind)}
            for run, (state, kind) in zip(self, self._kinds(), strict=True)
        ]

    def _kinds(self) -> list[tuple[CompletionState, CalculationType]]:
        found = self._outcomes(_kind_of, progress=False)
        unknown = CompletionState.Unknown, CalculationType.Unknown
        return [unknown if one.failure else one.value for one in found]

    def _outcomes(
        self,
        function: Callable[[Run], Any],
        executor: Executor | None = None,
        progress: bool | Progress | None = None,
        raising: bool = False,
    ) -> list[Outcome]:
        """Return what becomes of each run; each is a new handle, so that nothing read is kept."""
        kept = self._found if executor is None else self._plain()
        return outcomes(_OnRun(function), kept, executor, progress, raising)

    def _plain(self) -> list[_Kept]:
        """Return what is kept of the runs in a form that goes to other processes."""
        return [(path, _plain_files(files)) for path, files in self._found]

    def _failures(self, found: Sequence[Outcome]) -> list[dict[str, str]]:
        told = []
        for place, outcome in enumerate(found):
            failures: list[Failure] = (
                [outcome.failure] if outcome.failure is not None else outcome.value[1]
            )
            told += [failure_record(self[place], failure) for failure in failures]
        return told

    def __repr__(self) -> str:
        where = f" in {os.path.commonpath(self._paths())!r}" if self._found else ""
        return f"<tabulon.Campaign of {len(self):,} runs{where}>"

    def __str__(self) -> str:
        from tabulon._html import text_of

        return text_of(self._described())

    def _repr_html_(self) -> str:
        from tabulon._html import html_of

        return html_of(self._described())

    def _described(self) -> Any:  # noqa: ANN401 - plain rows
        from tabulon._shapes import Description, Section

        kinds = self._kinds()
        states = Counter(str(state) for state, _ in kinds)
        calculations = Counter(str(kind) for _, kind in kinds)
        facts = [
            ("Runs", f"{len(self):,}"),
            ("Ended", _counted(states)),
            ("Calculations", _counted(calculations)),
        ]
        if self.unreadable:
            facts.append(("Unreadable", f"{len(self.unreadable):,} directories"))
        sections = []
        for title, places in _ends(len(self)):
            lines = tuple(
                (self[p].name, str(kinds[p][0]), str(kinds[p][1]), self[p].directory)
                for p in places
            )
            heads = ("Run", "Ended", "Calculation", "Directory")
            sections.append(Section(title, "", heads, lines, True))
        return Description("Campaign", f"{len(self):,} runs", tuple(facts), tuple(sections))


class _OnRun:
    """A function of a run, called with what a campaign keeps of one."""

    def __init__(self, function: Callable[[Run], Any]) -> None:
        self._function = function

    def __call__(self, kept: _Kept) -> Any:  # noqa: ANN401 - whatever the function gives
        return self._function(run_of_files(*kept))


def _plain_files(files: Any) -> RunFiles | None:  # noqa: ANN401 - a record of the reader
    return files if files is None or isinstance(files, RunFiles) else RunFiles.of(files)


def _keys(variables: VariableName | Sequence[VariableName]) -> tuple[VariableName, ...]:
    """Return the variables that are asked for; a name, or a pair, is one of them."""
    if isinstance(variables, str):
        return (variables,)
    if isinstance(variables, tuple) and len(variables) == 2 and isinstance(variables[1], str):
        return (variables,)  # type: ignore[return-value]
    return tuple(variables)


def _several(wanted: Any) -> frozenset[Any] | None:  # noqa: ANN401 - one or more
    if wanted is None:
        return None
    return frozenset([wanted] if isinstance(wanted, int) else wanted)


def _kind_of(run: Run) -> tuple[CompletionState, CalculationType]:
    return run.state, run.calculation


def _passes(
    ok: bool | None,
    states: frozenset[CompletionState] | None,
    calculations: frozenset[CalculationType] | None,
    where: Callable[[Run], object] | None,
    run: Run,
) -> bool:
    try:
        if ok is not None and run.ok != ok:
            return False
        if states is not None and run.state not in states:
            return False
        if calculations is not None and run.calculation not in calculations:
            return False
    except TabulonError:
        return False  # what cannot be read is neither
    return where is None or bool(where(run))


def _with_failures(frame: pd.DataFrame, failures: list[dict[str, str]], runs: int) -> pd.DataFrame:
    """Return the table with what failed beside it, and warn once."""
    frame.attrs["failures"] = failures
    if failures:
        first = failures[0]
        warnings.warn(
            f"{_counted_as(len(failures), 'failure')} in {_counted_as(runs, 'run')}, the first in"
            f" {first['run']!r}: {first['text']}; all are in attrs['failures']",
            stacklevel=3,
        )
    return frame


def _counted_as(count: int, noun: str) -> str:
    return f"{count:,} {noun}{'' if count == 1 else 's'}"


def _counted(counts: Counter[str]) -> str:
    return ", ".join(f"{count:,} {name}" for name, count in counts.most_common()) or "none"


def _ends(count: int) -> list[tuple[str, range]]:
    if count <= 2 * _SHOWN:
        return [("Runs", range(count))] if count else []
    return [("First", range(_SHOWN)), ("Last", range(count - _SHOWN, count))]
