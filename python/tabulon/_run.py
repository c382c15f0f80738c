"""Runs."""

from __future__ import annotations

import os
from collections.abc import Iterator, Mapping, Sequence
from datetime import datetime, timezone
from fnmatch import fnmatchcase
from pathlib import Path
from typing import TYPE_CHECKING, Any, ClassVar, NamedTuple, TypeAlias

from numpy.typing import DTypeLike

from tabulon import _native
from tabulon._errors import (
    AmbiguousNameError,
    DataError,
    NameNotFoundError,
    RunNotFoundError,
    TabulonError,
)
from tabulon._group import Group, Variable, read_together
from tabulon._names import Names, did_you_mean, quoted
from tabulon._public import public
from tabulon._shapes import Description, Problem
from tabulon._vocabulary import CalculationType, CompletionState

if TYPE_CHECKING:
    import pandas as pd
    import xarray as xr

__all__ = ["Groups", "Run", "StrPath", "VariableName", "open_run", "run_of_files"]

StrPath: TypeAlias = "str | os.PathLike[str]"
VariableName: TypeAlias = "str | tuple[str | int, str]"

_TERMINATION, _MESSAGES, _VERIFICATION = ".$TE", ".$ME", ".$VE"


@public
def open_run(path: StrPath, name: str | None = None, *, partial: bool = False) -> Run:
    """Return a run.

    Parameters
    ----------
    path
        The path of the run without extension, or any file of it; with `name`, its directory.
    name
        The name of the run in the directory `path`.
    partial
        Whether a run in progress, or one that was cut off, is read as far as it goes. Else rows
        that are missing are an error.

    Raises
    ------
    RunNotFoundError
        If there is no termination file of the run.

    Examples
    --------
    >>> import tabulon as tb
    >>> run = tb.open_run(tb.sample("power_curve"))
    >>> run.ok, str(run.calculation)
    (True, 'SteadyPowerCurve')
    """
    given = os.fspath(path) if name is None else os.path.join(os.fspath(path), name)  # noqa: PTH118
    found = _native.find_run(os.path.abspath(given))  # noqa: PTH100 - keeps symbolic links
    if found is None:
        raise RunNotFoundError(f"no run {given!r}{_runs_nearby(Path(given))}", path=given)
    return Run(found.path, partial=partial)


def _runs_nearby(path: Path) -> str:
    """Return the end of a message on a run that is not there."""
    try:
        if path.is_dir():
            names = sorted(file.stem for file in path.iterdir() if file.suffix == _TERMINATION)
            more = f" and {len(names) - 5} more" if len(names) > 5 else ""
            runs = f"; runs in it: {', '.join(map(repr, names[:5]))}{more}"
            return f", which is a directory{runs if names else ' without runs'}"
        if not path.parent.is_dir():
            return f": there is no directory {os.fspath(path.parent)!r}"
        return did_you_mean(
            path.name, (file.stem for file in path.parent.iterdir() if file.suffix == _TERMINATION)
        )
    except OSError:
        return ""


class _Contents(NamedTuple):
    """The groups of a run, as they were when somebody first asked."""

    groups: dict[int, Group]
    damaged: dict[int, TabulonError]
    by_name: Names
    numbers: list[int]
    variables: dict[str, list[tuple[int, str]]]


@public
class Run:
    """A run of the simulator: what it is, how it ended, and its groups of variables.

    A run is a handle, that is a path: it can be pickled, and equals another of the same path. How
    it ended is looked up whenever it is asked for; headers of groups are read once, when something
    first asks for the contents, and ``open_run`` gives a handle that reads them anew.

    Parameters
    ----------
    path
        The path without extension. Nothing looks whether there is a run; ``open_run`` does.
    partial
        Whether rows that are missing are no error.

    Examples
    --------
    >>> import tabulon as tb
    >>> run = tb.open_run(tb.sample("idling_live"))
    >>> run["Electrical power"].unit
    'W'
    >>> run["Blade 1 loads", "Blade 1 out-of-plane deflection"].dims
    ('time', 'distance_along_blade')
    >>> "Rotor speed" in run
    True
    """

    __slots__ = ("__weakref__", "_contents", "_files", "_partial", "_path")

    # Is it over groups, variables or names? So neither.
    __iter__: ClassVar[None] = None

    def __init__(self, path: StrPath, *, partial: bool = False) -> None:
        self._path = os.path.abspath(os.fspath(path))  # noqa: PTH100 - keeps symbolic links
        self._partial = partial
        self._contents: _Contents | None = None
        self._files: _native.RunRecord | _native.RunFiles | None = None

    @property
    def name(self) -> str:
        """The name of its files, without extension."""
        return os.path.basename(self._path)  # noqa: PTH119

    @property
    def path(self) -> str:
        """The absolute path, without extension. ``os.fspath(run)`` is its termination file."""
        return self._path

    @property
    def directory(self) -> str:
        """The directory of its files."""
        return os.path.dirname(self._path)  # noqa: PTH120

    @property
    def partial(self) -> bool:
        """Whether rows that are missing are no error."""
        return self._partial

    @property
    def state(self) -> CompletionState:
        """How the run ended, as its termination file tells now.

        Raises
        ------
        DataError
            If it cannot be read.
        """
        return _native.completion_state(os.fspath(self))

    @property
    def ok(self) -> bool:
        """Whether the run completed normally."""
        return self.state == CompletionState.CompletedNormally

    @property
    def calculation(self) -> CalculationType:
        """What the run calculated, as its first readable header tells."""
        found = self._record()
        for header in found.headers:
            kind = _native.calculation_of_header(self._beside(header.name))
            if kind != CalculationType.Unknown:
                return kind
        return _native.calculation_of_extensions(found.extensions)

    @property
    def messages(self) -> str:
        """The text of the message file; empty if there is none."""
        found = self._record().messages
        if found is None:
            return ""
        try:
            text = Path(self._beside(found)).read_bytes()
        except OSError as error:
            raise DataError(str(error), path=self._beside(found)) from None
        try:
            return text.decode("utf-8")
        except UnicodeDecodeError:
            return text.decode("latin-1")

    @property
    def parameters(self) -> dict[str | tuple[str, str], str]:
        """The named parameters of the headers: text by name.

        A name that has another value in a second group is there once more as ``(group, name)``.

        Examples
        --------
        >>> import tabulon as tb
        >>> tb.open_run(tb.sample("power_curve")).parameters
        {'Air density, kg/m3': '1.225'}
        """
        found: dict[str | tuple[str, str], str] = {}
        for group in self._read().groups.values():
            for line in group._table.parameters:
                name, colon, text = line.rpartition(":")
                key, value = (name.strip(), text.strip()) if colon else (text.strip(), "")
                if found.setdefault(key, value) != value:
                    found[group.name, key] = value
        return found

    @property
    def started(self) -> datetime | None:
        """The last write of the verification file, with time zone; None if there is none."""
        return _last_write(self._record().verification, self)

    @property
    def finished(self) -> datetime | None:
        """The last write of the termination file, with time zone; None for a run in progress."""
        found = self._record().termination
        if found is None or self.state == CompletionState.InProgress:
            return None
        return _last_write(found, self)

    @property
    def groups(self) -> Groups:
        """The groups by name or number, in the order of their numbers.

        Raises
        ------
        RunNotFoundError
            If there is no such run any more.
        """
        return Groups(self)

    def variables(self, pattern: str = "*") -> list[Variable]:
        """Return the variables of all groups whose name matches, in the order of the headers.

        Parameters
        ----------
        pattern
            With ``*``, ``?`` and ``[...]`` as of file names; in any case.

        Examples
        --------
        >>> import tabulon as tb
        >>> run = tb.open_run(tb.sample("power_curve"))
        >>> [variable.name for variable in run.variables("*coefficient")]
        ['Power coefficient', 'Thrust coefficient']
        """
        wanted = pattern.casefold()
        return [
            variable
            for group in self._read().groups.values()
            for variable in group.values()
            if fnmatchcase(variable.name.casefold(), wanted)
        ]

    def to_pandas(
        self,
        variables: VariableName | Variable | Sequence[VariableName | Variable],
        units: Mapping[Any, str] | None = None,
    ) -> pd.DataFrame:
        """Return variables, of one group or of several over the same primary axis, as a DataFrame.

        Parameters
        ----------
        variables
            Names, or pairs of a group (by name or number) and a name.
        units
            Another unit by name or pair, for those that should have one.

        Returns
        -------
        pandas.DataFrame
            A column for each variable, named as asked for; over two axes, for each secondary
            value. The index is the primary axis. ``attrs["units"]`` has the unit of each column.

        Raises
        ------
        NameNotFoundError, AmbiguousNameError
            As of ``run[...]``; also for a name in `units` that is not in `variables`.
        DataError
            If the variables are on different axes, or data cannot be read.

        Examples
        --------
        >>> import tabulon as tb
        >>> run = tb.open_run(tb.sample("idling_live"))
        >>> names = ["Rotor speed", "Electrical power"]
        >>> frame = run.to_pandas(names, units={"Rotor speed": "rpm"})
        >>> frame.attrs["units"]["Rotor speed"]
        'rpm'
        """
        from tabulon._export.pandas import check_axes, frame_of

        one = isinstance(variables, str | tuple | Variable)
        wanted: Sequence[Any] = [variables] if one else list(variables)
        found = [(key, key if isinstance(key, Variable) else self[key]) for key in wanted]
        left = dict(units or {})
        columns: list[tuple[Any, Variable]] = []
        for key, variable in found:
            unit = left.pop(key, None) or left.pop(variable.name, None)
            named = variable.name if isinstance(key, str | Variable) else key
            columns.append((named, variable if unit is None else variable.to(unit)))
        if left:
            asked = [str(variable.name) for _, variable in found]
            name = next(iter(left))
            raise NameNotFoundError(
                f"a unit for {name!r}, which is not asked for{did_you_mean(str(name), asked)}"
            )
        chosen = [variable for _, variable in columns]
        check_axes(chosen)
        return frame_of(_told_apart(columns), read_together(chosen))

    def to_xarray(self) -> xr.DataTree:
        """Return all groups as a DataTree, which reads what is asked of it.

        Returns
        -------
        xarray.DataTree
            A child for each group, by its name; a ``/`` in a name becomes ``_``.

        Examples
        --------
        >>> import tabulon as tb
        >>> tree = tb.open_run(tb.sample("idling_live")).to_xarray()
        >>> tree["Summary"]["Electrical power"].attrs["units"]
        'W'
        """
        from tabulon._export.xarray import tree_of

        groups = [(g.name, g.axes, list(g.values())) for g in self._read().groups.values()]
        return tree_of(self.name, groups)

    def check(self) -> list[Problem]:
        """Return what is wrong with the files of the run; an empty list if nothing is.

        All data is read where a header has figures.

        Returns
        -------
        list of Problem
            Each has `kind`, `path` and `text`. The kinds are "data missing", "data short", "data
            long", "data torn", "data damaged", "header damaged" and "figures".

        Examples
        --------
        >>> import tabulon as tb
        >>> tb.open_run(tb.sample("idling_live")).check()
        []
        """
        from tabulon._check import problems_of

        contents = self._fresh()
        return problems_of(
            [group._table for group in contents.groups.values()], list(contents.damaged.values())
        )

    def write_group(
        self,
        name: str,
        data: pd.DataFrame | xr.Dataset,
        *,
        units: Mapping[Any, str] | None = None,
        dtype: DTypeLike = "float32",
        text: bool = False,
        overwrite: bool = False,
    ) -> Group:
        """Write a group into the run, under the next free number, and return it.

        An existing termination file is not touched; where there is none, one is written.

        Parameters
        ----------
        name
            The name of the group.
        data
            A DataFrame, whose index is the axis; columns of two levels (variable, secondary value)
            are over two axes. Or a Dataset whose variables have the same one or two dims.
        units
            The units of columns and axes by name, beside those of ``attrs["units"]``, over which
            they go. Values are converted to SI. An axis named ``time`` is in s if not told.
        dtype
            float32, float64 or int32.
        text
            Whether the data file is text.
        overwrite
            Whether a group of this name is written over.

        Raises
        ------
        DataError
            If a unit is missing or cannot be converted, values do not fit the type or, in text,
            are not finite, or the group exists. Nothing is written then.

        Examples
        --------
        >>> import tempfile
        >>> import tabulon as tb
        >>> run = tb.open_run(tb.sample("idling_live"))
        >>> frame = run.to_pandas(["Rotor speed", "Electrical power"])
        >>> with tempfile.TemporaryDirectory() as directory:
        ...     derived = tb.Run(f"{directory}/derived").write_group("Copy", frame)
        ...     print(derived.number, derived["Rotor speed"].unit)
        1 rad/s
        """
        from tabulon._write import write_group

        self._files = None
        present = _native.find_run(self._path)
        contents = None if present is None else self._fresh()
        number, replaced = _number_for(name, contents, overwrite)
        write_group(self._path, number, name, data, units or {}, dtype, text, replaced)
        self._contents = None
        return self._read().groups[number]

    def __getitem__(self, key: VariableName) -> Variable:
        if isinstance(key, tuple):
            if len(key) != 2:
                raise NameNotFoundError(f"write run[variable] or run[group, variable], not {key!r}")
            return self.groups[key[0]][key[1]]
        contents = self._contents or self._read()
        found = contents.variables.get(key)
        if found is not None and len(found) == 1:
            number, name = found[0]
            return contents.groups[number][name]
        return self._sought(contents, key)

    def __contains__(self, key: object) -> bool:
        try:
            self[key]  # type: ignore[index]
        except AmbiguousNameError:
            return True
        except NameNotFoundError:
            return False
        return True

    def __fspath__(self) -> str:
        return self._path + _TERMINATION

    def __eq__(self, other: object) -> bool:
        return self._path == other._path if isinstance(other, Run) else NotImplemented

    def __hash__(self) -> int:
        return hash(self._path)

    def __reduce__(self) -> tuple[Any, ...]:
        return _run_of, (self._path, self._partial)

    def __repr__(self) -> str:
        return f"<tabulon.Run {self.name!r} in {self.directory!r}>"

    def __str__(self) -> str:
        from tabulon._html import text_of

        return text_of(self._described())

    def _repr_html_(self) -> str:
        from tabulon._html import html_of

        return html_of(self._described())

    def _ipython_key_completions_(self) -> list[Any]:
        found: list[Any] = []
        for name, places in self._read().variables.items():
            groups = self._read().groups
            found += [name] if len(places) == 1 else [(groups[n].name, name) for n, _ in places]
        return found

    def __dask_tokenize__(self) -> tuple[Any, ...]:
        try:
            status = os.stat(self)  # noqa: PTH116
        except OSError:
            return "tabulon.Run", self._path, self._partial
        return "tabulon.Run", self._path, self._partial, status.st_mtime_ns, status.st_size

    def _record(self) -> _native.RunRecord | _native.RunFiles:
        if self._files is not None:
            return self._files
        found = _native.find_run(self._path)
        if found is None:
            raise RunNotFoundError(f"no run {self._path!r}", path=self._path)
        return found

    def _beside(self, file_name: str) -> str:
        return os.path.join(self.directory, file_name)  # noqa: PTH118

    def _read(self) -> _Contents:
        if self._contents is None:
            self._contents = self._fresh()
        return self._contents

    def _fresh(self) -> _Contents:
        """Return the groups as the disk has them now. A damaged header hides no other."""
        groups: dict[int, Group] = {}
        damaged: dict[int, TabulonError] = {}
        variables: dict[str, list[tuple[int, str]]] = {}
        for header in self._record().headers:
            try:
                group = Group(self, _native.open_table(self._beside(header.name)))
            except TabulonError as error:
                damaged[header.number] = error
                continue
            groups[header.number] = group
            for name in group:
                places = variables.setdefault(name, [])
                if not places or places[-1][0] != header.number:
                    places.append((header.number, name))
        by_name = Names([group.name for group in groups.values()])
        return _Contents(groups, damaged, by_name, list(groups), variables)

    def _sought(self, contents: _Contents, key: object) -> Variable:
        """Return a variable whose name is not spelled so, or stands in several groups."""
        if not isinstance(key, str):
            raise NameNotFoundError(f"no variable {key!r}: a name is a text", path=self._path)
        found = contents.variables.get(key) or [
            (number, name)
            for folded, number, name in self._any_case(contents)
            if folded == key.casefold()
        ]
        if len(found) == 1:
            number, name = found[0]
            return contents.groups[number][name]
        if found:
            pairs = [f"run[{_key_of(contents, number)!r}, {name!r}]" for number, name in found]
            in_groups = quoted([contents.groups[number].name for number, _ in found])
            text = f"{key!r} is a variable of groups {in_groups}; write {' or '.join(pairs)}"
            raise AmbiguousNameError(text, path=self._path)
        hint = self._other_meaning(contents, key) or did_you_mean(key, contents.variables)
        if contents.damaged:
            files = ", ".join(str(error.path) for error in contents.damaged.values())
            hint += f"; headers that could not be read: {files}"
        raise NameNotFoundError(f"no variable {key!r}{hint}", path=self._path)

    def _other_meaning(self, contents: _Contents, key: str) -> str:
        """Return what to write for a name that is that of a group or of an axis."""
        for group in contents.groups.values():
            if group.name.casefold() == key.casefold():
                return f"; it is a group: run.groups[{group.name!r}]"
            for axis, dim in zip(group._axis_infos, group._dims, strict=True):
                if key.casefold() in (axis.name.casefold(), dim):
                    return f"; it is an axis: run.groups[{group.name!r}].coords[{dim!r}]"
        return ""

    def _any_case(self, contents: _Contents) -> Iterator[tuple[str, int, str]]:
        for name, places in contents.variables.items():
            folded = name.casefold()
            for number, spelled_so in places:
                yield folded, number, spelled_so

    def _described(self) -> Description:
        contents = self._read()
        facts = [
            ("Directory", self.directory),
            ("Ended", str(self.state)),
            ("Calculation", str(self.calculation)),
            ("Started", _moment(self.started)),
            ("Finished", _moment(self.finished)),
            *(("Damaged", str(error)) for error in contents.damaged.values()),
        ]
        opened = len(contents.groups) == 1
        sections = tuple(group._section(opened) for group in contents.groups.values())
        return Description("Run", self.name, tuple(facts), sections)


class Groups(Mapping["str | int", Group]):
    """The groups of a run, by name or number, in the order of their numbers.

    Iterating gives names; the number where a name stands for more than one group.

    Examples
    --------
    >>> import tabulon as tb
    >>> groups = tb.open_run(tb.sample("idling_live")).groups
    >>> list(groups)
    ['Summary', 'Blade 1 loads']
    >>> groups[2] == groups["blade 1 loads"]
    True
    """

    __slots__ = ("_run",)

    def __init__(self, run: Run) -> None:
        self._run = run

    def __getitem__(self, key: str | int) -> Group:
        contents = self._run._read()
        if isinstance(key, int):
            return self._numbered(contents, key)
        places = contents.by_name.places(key) if isinstance(key, str) else ()
        if len(places) == 1:
            return contents.groups[contents.numbers[places[0]]]
        if not places:
            hint = did_you_mean(str(key), [group.name for group in contents.groups.values()])
            if contents.damaged:
                files = ", ".join(str(error.path) for error in contents.damaged.values())
                hint += f"; headers that could not be read: {files}"
            raise NameNotFoundError(f"no group {key!r}{hint}", path=self._run.path)
        numbers = [str(contents.numbers[place]) for place in places]
        text = f"{key!r} is the name of groups {' and '.join(numbers)}; write the number"
        raise AmbiguousNameError(text, path=self._run.path)

    def __iter__(self) -> Iterator[str | int]:
        contents = self._run._read()
        return iter([_key_of(contents, number) for number in contents.groups])

    def __len__(self) -> int:
        return len(self._run._read().groups)

    def __repr__(self) -> str:
        return f"<groups of {self._run!r}>"

    def _ipython_key_completions_(self) -> list[str | int]:
        return list(self)

    def _numbered(self, contents: _Contents, number: int) -> Group:
        if number in contents.groups:
            return contents.groups[number]
        if number in contents.damaged:
            raise contents.damaged[number]
        known = ", ".join(map(str, contents.numbers)) or "none"
        raise NameNotFoundError(f"no group {number}; there are {known}", path=self._run.path)


def _key_of(contents: _Contents, number: int) -> str | int:
    """Return the name of a group; its number where the name is not its alone."""
    name = contents.groups[number].name
    return name if len(contents.by_name.exact(name)) == 1 else number


def _told_apart(columns: list[tuple[Any, Variable]]) -> list[tuple[Any, Variable]]:
    """Return columns whose names differ: with its group where a name stands twice."""
    names = [name for name, _ in columns]
    return [
        (name if names.count(name) == 1 else (variable.group.name, variable.name), variable)
        for name, variable in columns
    ]


def _number_for(name: str, contents: _Contents | None, overwrite: bool) -> tuple[int, str | None]:
    """Return the number under which a group is written, and the header that it replaces."""
    if contents is None:
        return 1, None
    places = contents.by_name.places(name)
    if not places:
        return max([*contents.groups, *contents.damaged], default=0) + 1, None
    number = contents.numbers[places[0]]
    if not overwrite:
        raise DataError(
            f"the run has a group {name!r} already, number {number}; overwrite=True replaces it",
            path=contents.groups[number]._table.path,
        )
    return number, contents.groups[number]._table.path


def _last_write(file_name: str | None, run: Run) -> datetime | None:
    if file_name is None:
        return None
    try:
        seconds = os.stat(run._beside(file_name)).st_mtime  # noqa: PTH116
    except OSError:
        return None
    return datetime.fromtimestamp(seconds, tz=timezone.utc).astimezone()


def _moment(time: datetime | None) -> str:
    return "" if time is None else time.isoformat(sep=" ", timespec="seconds")


def _run_of(path: str, partial: bool) -> Run:
    return Run(path, partial=partial)


def run_of_files(path: str, files: _native.RunRecord | _native.RunFiles | None) -> Run:
    """Return a run whose files a listing has told, so that its directory is not listed again."""
    run = Run(path)
    run._files = files
    return run
