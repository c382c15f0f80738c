"""Groups and their variables."""

from __future__ import annotations

from collections.abc import Callable, Iterator, Mapping, Sequence
from itertools import groupby
from typing import TYPE_CHECKING, Any, Protocol

import numpy as np
from numpy.typing import DTypeLike, NDArray

from tabulon import _native
from tabulon._axes import (
    dimension_names,
    frozen,
    interval_values,
    label_values,
    place_on_axis,
    places_between,
)
from tabulon._errors import AmbiguousNameError, NameNotFoundError
from tabulon._names import Names, did_you_mean
from tabulon._native import Rows
from tabulon._public import public
from tabulon._shapes import Axis, Description, Section
from tabulon._slices import parts_of
from tabulon._units import Conversion, conversion, readable, spelled

if TYPE_CHECKING:
    import pandas as pd
    import xarray as xr
    from matplotlib.axes import Axes

    from tabulon._vocabulary import CalculationType, CompletionState

__all__ = ["Group", "Variable", "read_together"]


class GroupOwner(Protocol):
    """What a group knows of its run."""

    @property
    def path(self) -> str:
        """The path of the run, without extension."""

    @property
    def name(self) -> str:
        """The name of the run."""

    @property
    def directory(self) -> str:
        """The directory of its files."""

    @property
    def state(self) -> CompletionState:
        """How the run ended."""

    @property
    def ok(self) -> bool:
        """Whether the run completed normally."""

    @property
    def calculation(self) -> CalculationType:
        """What the run calculated."""

    @property
    def partial(self) -> bool:
        """Whether rows that are missing are no error."""

    @property
    def groups(self) -> Mapping[str | int, Group]:
        """The groups by name or number."""

    def __getitem__(self, key: str | tuple[str | int, str], /) -> Variable:
        """Return a variable of the run."""

    def __fspath__(self) -> str:
        """Return the path of the termination file."""

    def __dask_tokenize__(self) -> tuple[Any, ...]:
        """Return what tells the run from others, also after its files changed."""


@public
class Group(Mapping[str, "Variable"]):
    """A group of a run: a table of variables over one or two axes, by name.

    ``Run.groups`` gives groups. A group is a handle: it can be pickled, and equals another of the
    same run and number. Its header is read once, when the run is first asked for its contents.

    Examples
    --------
    >>> import tabulon as tb
    >>> loads = tb.open_run(tb.sample("idling_live")).groups["Blade 1 loads"]
    >>> loads.number, len(loads), loads.dims
    (2, 4, ('time', 'distance_along_blade'))
    >>> list(loads)[0]
    'Blade 1 out-of-plane bending moment'
    """

    __slots__ = (
        "__weakref__",
        "_axes",
        "_axis_infos",
        "_dims",
        "_expected",
        "_figures",
        "_infos",
        "_names",
        "_run",
        "_table",
    )

    def __init__(self, run: GroupOwner, table: _native.GroupTable) -> None:
        self._run = run
        self._table = table
        self._expected = table.dimensions[-1]
        self._infos = table.variables
        self._axis_infos = table.axes
        self._dims = dimension_names(info.name for info in self._axis_infos)
        self._names = Names([info.name for info in self._infos])
        self._axes: tuple[Axis, ...] | None = None
        self._figures: dict[tuple[int, str], Any] = {}

    @property
    def run(self) -> GroupOwner:
        """The run."""
        return self._run

    @property
    def name(self) -> str:
        """The name in the header."""
        return self._table.name

    @property
    def number(self) -> int:
        """The number in the extension of its files."""
        return self._table.number

    @property
    def axes(self) -> tuple[Axis, ...]:
        """The axes of all variables, the primary one first: name, dim, unit and values of each."""
        points = self._points()
        if self._axes is None or len(self._axes[0].values) != points:
            infos = self._axis_infos
            counts = [points, *(info.count for info in infos[1:])]
            self._axes = tuple(
                Axis(info.name, dim, spelled(info.quantity), _values_of(info, count))
                for info, dim, count in zip(infos, self._dims, counts, strict=True)
            )
        return self._axes

    @property
    def dims(self) -> tuple[str, ...]:
        """The names of the axes in lower case with underscores, the primary one first."""
        return self._dims

    @property
    def coords(self) -> dict[str, NDArray[Any]]:
        """The values of each axis by its dim: float64 or text, read-only."""
        return {axis.dim: axis.values for axis in self.axes}

    @property
    def rows(self) -> Rows:
        """How many rows the header expects, and how many the data file holds now.

        A data file of text is read once for it.
        """
        return _native.rows_of(self._table)

    def to_pandas(self) -> pd.DataFrame:
        """Return all variables as a DataFrame.

        Returns
        -------
        pandas.DataFrame
            A row for each point of the primary axis, which is the index, and a column for each
            variable; over two axes, for each variable and secondary value. ``attrs["units"]`` has
            the unit of each column and of the index. All memory is its own.

        Raises
        ------
        DataError
            If the data file is missing, damaged, or ends too early.

        Examples
        --------
        >>> import tabulon as tb
        >>> frame = tb.open_run(tb.sample("power_curve")).groups["Steady power curve"].to_pandas()
        >>> frame.shape, frame.index.name
        ((45, 7), 'wind_speed')
        """
        from tabulon._export.pandas import frame_of

        variables = [self._at(place) for place in range(len(self))]
        return frame_of([(v.name, v) for v in variables], read_together(variables))

    def to_xarray(self) -> xr.Dataset:
        """Return all variables as a Dataset, which reads what is asked of it.

        Returns
        -------
        xarray.Dataset
            A data variable for each variable, over ``dims``, with ``units`` and ``long_name``.

        Examples
        --------
        >>> import tabulon as tb
        >>> loads = tb.open_run(tb.sample("idling_live")).groups["Blade 1 loads"].to_xarray()
        >>> loads.sizes["distance_along_blade"]
        3
        """
        from tabulon._export.xarray import dataset_of

        return dataset_of(self.name, self.axes, list(self.values()))

    def __getitem__(self, name: str) -> Variable:
        places = self._names.exact(name) if isinstance(name, str) else ()
        if len(places) == 1:
            return Variable(self, places[0])
        return self._at(self._place_of(name))

    def __iter__(self) -> Iterator[str]:
        return (info.name for info in self._infos)

    def __len__(self) -> int:
        return len(self._infos)

    def __contains__(self, name: object) -> bool:
        return isinstance(name, str) and bool(self._names.places(name))

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, Group):
            return NotImplemented
        return self.number == other.number and self._run == other._run

    def __hash__(self) -> int:
        return hash((self._run, self.number))

    def __reduce__(self) -> tuple[Any, ...]:
        return _group_of, (self._run, self.number)

    def __repr__(self) -> str:
        return f"<tabulon.Group {self.number} {self.name!r} of {self._run.name!r}>"

    def __str__(self) -> str:
        from tabulon._html import text_of

        return text_of(self._described())

    def _repr_html_(self) -> str:
        from tabulon._html import html_of

        return html_of(self._described())

    def _ipython_key_completions_(self) -> list[str]:
        return list(self)

    def __dask_tokenize__(self) -> tuple[Any, ...]:
        return "tabulon.Group", self._run.__dask_tokenize__(), self.number

    def _described(self) -> Description:
        rows = self.rows
        facts = (
            ("Run", self._run.path),
            ("Header", self._table.path),
            ("Axes", ", ".join(_axis_text(axis) for axis in self.axes)),
            ("Rows", f"{rows.found:,} of {rows.expected:,}"),
        )
        return Description(
            f"Group {self.number}",
            self.name,
            facts,
            (self._section(opened=True)._replace(title="Variables"),),
        )

    def _section(self, opened: bool) -> Section:
        lines = tuple((info.name, spelled(info.quantity)) for info in self._infos)
        sizes = zip(self._dims, self._sizes(), strict=True)
        note = " x ".join(f"{dim} {size:,}" for dim, size in sizes)
        return Section(f"{self.number} {self.name}", note, ("Variable", "Unit"), lines, opened)

    def _sizes(self) -> tuple[int, ...]:
        return self._expected, *(info.count for info in self._axis_infos[1:])

    def _place_of(self, name: str) -> int:
        places = self._names.places(name) if isinstance(name, str) else ()
        if not places:
            text = f"no variable {name!r} in group {self.name!r}{did_you_mean(str(name), self)}"
            raise NameNotFoundError(text, path=self._table.path)
        if len(places) > 1:
            spelled_so = {self._infos[place].name for place in places}
            if len(spelled_so) > 1:
                hint = f"write one of {', '.join(map(repr, sorted(spelled_so)))}"
                text = f"{name!r} is more than one variable of group {self.name!r}; {hint}"
                raise AmbiguousNameError(text, path=self._table.path)
        return places[0]

    def _at(self, place: int) -> Variable:
        return Variable(self, place)

    def _points(self) -> int:
        """Return how many points there are to read."""
        if self._expected and not self._run.partial:
            return self._expected
        info = self._axis_infos[0]
        labels = info.values if info.kind == _native.VALUE_AXIS else info.labels
        found = self.rows.found
        return found if labels is None else min(found, len(labels))

    def _count(self) -> int | None:
        """Return how many rows are read where all are wanted: None for those of the header."""
        return self._points() if self._run.partial else None

    def _figure(self, place: int, name: str) -> NDArray[np.float64]:
        """Return a figure of a variable, an array over the secondary axis.

        Those of the header count wherever it has them: so an answer is the same at any time.
        """
        known = self._figures.get((place, name))
        if known is None:
            keep = not self._run.partial
            found = self._figures_of(place, name, keep)
            known = found[name]
            if keep:
                self._figures.update({(place, other): figure for other, figure in found.items()})
        return known

    def _figures_of(self, place: int, name: str, stored: bool) -> dict[str, NDArray[np.float64]]:
        header = _native.stored_figures(self._table, [place]) if stored else None
        found = {} if header is None else {n: f[0] for n, f in header._asdict().items()}
        if name in found and not np.isnan(found[name]).any():
            return found
        data = _native.reduce(self._table, [place], self._count())
        computed = {
            "min": data.minimum,
            "max": data.maximum,
            "mean": data.mean,
            "std": data.deviation,
        }
        # a header may have figures for the first secondary values only; NaN stands for the others
        return {
            other: np.where(np.isnan(found[other]), figure, found[other])
            if other in found
            else figure
            for other, figure in computed.items()
        }


@public
class Variable:
    """A variable of a group.

    ``run["Rotor speed"]`` and groups give variables. Nothing is read until values are asked for;
    all values that were once read stay as long as the variable does. A variable is a handle: it
    can be pickled, and goes as its path to another process.

    Examples
    --------
    >>> import tabulon as tb
    >>> speed = tb.open_run(tb.sample("idling_live"))["Rotor speed"]
    >>> speed.unit, speed.dims, speed.shape, str(speed.dtype)
    ('rad/s', ('time',), (601,), 'float32')
    >>> print(f"{speed.to('rpm').max():.2f} rpm")
    0.56 rpm
    """

    __slots__ = ("__weakref__", "_conversion", "_group", "_place", "_unit", "_values")

    def __init__(
        self,
        group: Group,
        place: int,
        unit: str | None = None,
        convert: Conversion | None = None,
    ) -> None:
        self._group = group
        self._place = place
        self._unit = unit
        self._conversion = convert
        self._values: NDArray[Any] | None = None

    @property
    def name(self) -> str:
        """The name in the header."""
        return self._group._infos[self._place].name

    @property
    def group(self) -> Group:
        """The group."""
        return self._group

    @property
    def unit(self) -> str:
        """The unit of the values, in SI unless ``to`` changed it; "1" where there is none."""
        return self._unit or spelled(self._group._infos[self._place].quantity)

    @property
    def axes(self) -> tuple[Axis, ...]:
        """The axes, the primary one first: name, dim, unit and values of each."""
        return self._group.axes

    @property
    def dims(self) -> tuple[str, ...]:
        """The names of the axes in lower case with underscores, the primary one first."""
        return self._group.dims

    @property
    def coords(self) -> dict[str, NDArray[Any]]:
        """The values of each axis by its dim: float64 or text, read-only."""
        return self._group.coords

    @property
    def shape(self) -> tuple[int, ...]:
        """``(points,)``, or ``(points, secondary values)``."""
        return self._group._points(), *(info.count for info in self._group._axis_infos[1:])

    @property
    def dtype(self) -> np.dtype[Any]:
        """The type of the values: float32, float64 or int32, and a float in another unit."""
        stored = np.dtype(self._group._table.dtype)
        return np.dtype(np.float64) if self._conversion and stored.kind == "i" else stored

    @property
    def values(self) -> NDArray[Any]:
        """All values.

        Returns
        -------
        numpy.ndarray
            Shape ``shape``, of ``dtype``, in ``unit``; read-only.

        Raises
        ------
        DataError
            If the data file is missing, damaged, or ends too early.
        """
        if self._values is not None:
            return self._values
        group = self._group
        block = _native.read(group._table, [self._place], count=group._count())
        values = self._finished(block)
        if not group._run.partial:
            self._values = values
        return values

    def __array__(self, dtype: DTypeLike | None = None, copy: bool | None = None) -> NDArray[Any]:
        values = self.values
        if dtype is not None and np.dtype(dtype) != values.dtype:
            if copy is False:
                raise ValueError(
                    f"values of {values.dtype} are no {np.dtype(dtype)} without a copy"
                )
            return values.astype(dtype)
        return values.copy() if copy else values

    def __array_function__(
        self,
        function: Callable[..., Any],
        types: object,
        args: tuple[Any, ...],
        kwargs: dict[str, Any],
    ) -> Any:  # noqa: ANN401 - as of NumPy
        """Have functions of NumPy work on the values: ``numpy.mean`` knows more than ``mean``."""
        return function(*_as_arrays(args), **_as_arrays(kwargs))

    def __getitem__(self, key: Any, /) -> Any:  # noqa: ANN401 - as of NumPy
        """Return some values, as NumPy's basic slicing does; only they are read.

        Any other key, such as a mask, reads all. Errors are those of ``values``, and IndexError.
        """
        if self._values is not None:
            return self._values[key]
        shape = self.shape
        found = parts_of(key, shape)
        if found is None:
            return frozen(self.values[key])
        (rows, *columns), rest = found
        if 0 in (rows.length, *(column.length for column in columns)):
            return np.empty(shape, self.dtype)[key]
        block = _native.read(
            self._group._table,
            [self._place],
            list(columns[0].places) if columns else None,
            rows.first,
            rows.length,
            rows.step,
        )
        return self._finished(block)[rest]

    def sel(self, **wanted: Any) -> Any:  # noqa: ANN401 - as of NumPy
        """Return values by axis value or label; only they are read.

        Parameters
        ----------
        **wanted
            For a dim: a value or label, a list of them, or a slice whose ends both count.

        Returns
        -------
        numpy.ndarray or scalar
            As of ``variable[...]``, read-only.

        Raises
        ------
        NameNotFoundError
            If there is no such dim, value or label.

        Examples
        --------
        >>> import tabulon as tb
        >>> run = tb.open_run(tb.sample("idling_live"))
        >>> run["Blade 1 out-of-plane deflection"].sel(distance_along_blade=24.6).shape
        (601,)
        >>> run["Rotor speed"].sel(time=slice(10, 20)).shape
        (101,)
        """
        places: dict[str, Any] = {}
        for dim, one in wanted.items():
            axis = next((axis for axis in self.axes if axis.dim == dim), None)
            if axis is None:
                known = f"; it has {', '.join(map(repr, self.dims))}"
                raise NameNotFoundError(f"{self.name!r} has no dimension {dim!r}{known}")
            places[dim] = _places(axis, one)
        keys = [places.get(dim, slice(None)) for dim in self.dims]
        lists = [key for key in keys if isinstance(key, list)]
        if not lists:
            return self[tuple(keys)]
        # a list a dim takes each of them with each, and a single value drops its dim
        values: Any = self.values
        for axis_place in reversed(range(len(keys))):
            values = values[(slice(None),) * axis_place + (keys[axis_place],)]
        return frozen(values)

    def to(self, unit: str) -> Variable:
        """Return the variable in another unit; pint converts.

        Parameters
        ----------
        unit
            As pint reads it: ``"rpm"``, ``"kN m"``, ``"deg"``.

        Raises
        ------
        DataError
            If there is no such unit, or no way to it.
        ModuleNotFoundError
            If pint is not installed.

        Examples
        --------
        >>> import tabulon as tb
        >>> power = tb.open_run(tb.sample("power_curve"))["Electrical power"]
        >>> print(f"{power.to('MW').max():.3f}")
        5.000
        """
        target = readable(unit)
        own = spelled(self._group._infos[self._place].quantity)
        if target == own:
            return Variable(self._group, self._place)
        return Variable(self._group, self._place, target, conversion(own, target))

    def min(self) -> Any:  # noqa: ANN401 - as of NumPy
        """Return the smallest value, of all that are finite.

        Returns
        -------
        float, int or numpy.ndarray
            Over two axes an array over the secondary one, shape ``(secondary values,)``. It comes
            from the header where that has it, else from one pass over the data.

        Raises
        ------
        DataError
            If the data has to be read, and is missing, damaged, or ends too early.

        Examples
        --------
        >>> import tabulon as tb
        >>> run = tb.open_run(tb.sample("idling_live"))
        >>> run["Blade 1 out-of-plane bending moment"].min().shape
        (3,)
        """
        return self._figure("min")

    def max(self) -> Any:  # noqa: ANN401 - as of NumPy
        """Return the largest value, as ``min`` does the smallest."""
        return self._figure("max")

    def mean(self) -> Any:  # noqa: ANN401 - as of NumPy
        """Return the mean, as ``min`` does the smallest value."""
        return self._figure("mean")

    def std(self) -> Any:  # noqa: ANN401 - as of NumPy
        """Return the standard deviation (of the population), as ``min`` does the smallest value.

        Headers do not have it: it always comes from the data.
        """
        return self._figure("std")

    def to_pandas(self, unit: str | None = None) -> pd.Series[Any] | pd.DataFrame:
        """Return the values as a Series; over two axes as a DataFrame.

        Parameters
        ----------
        unit
            Another unit, as of ``to``.

        Returns
        -------
        pandas.Series or pandas.DataFrame
            The index is the primary axis, the columns are the secondary one. ``attrs["units"]``
            has the unit. All memory is its own.

        Examples
        --------
        >>> import tabulon as tb
        >>> speed = tb.open_run(tb.sample("idling_live"))["Rotor speed"].to_pandas("rpm")
        >>> print(f"{speed.loc[0.3]:.2f}")
        0.43
        """
        from tabulon._export.pandas import series_of

        variable = self if unit is None else self.to(unit)
        return series_of(variable, read_together([variable])[0])

    def to_xarray(self) -> xr.DataArray:
        """Return the variable as a DataArray, which reads what is asked of it.

        Returns
        -------
        xarray.DataArray
            Over ``dims``, with ``units`` and ``long_name``.

        Examples
        --------
        >>> import tabulon as tb
        >>> moment = tb.open_run(tb.sample("idling_live"))["Blade 1 out-of-plane deflection"]
        >>> moment.to_xarray().sel(distance_along_blade=61.5).sizes["time"]
        601
        """
        from tabulon._export.xarray import array_of

        return array_of(self)

    def plot(self, ax: Axes | None = None, unit: str | None = None) -> Axes:
        """Plot against the primary axis, a line for each secondary value.

        Parameters
        ----------
        ax
            Where to plot; a new figure if None.
        unit
            Another unit, as of ``to``.

        Returns
        -------
        matplotlib.axes.Axes
            With labels that tell names and units.
        """
        from tabulon._export.plot import plot

        return plot(self if unit is None else self.to(unit), ax)

    def __len__(self) -> int:
        return self.shape[0]

    def __iter__(self) -> Iterator[Any]:
        return iter(self.values)

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, Variable):
            return NotImplemented
        return self._identity() == other._identity()

    def __hash__(self) -> int:
        return hash(self._identity())

    def __reduce__(self) -> tuple[Any, ...]:
        return _variable_of, (self._group, self.name, self._unit)

    def __repr__(self) -> str:
        return f"<tabulon.Variable {self.name!r} [{self.unit}] of {self._group.name!r}>"

    def __str__(self) -> str:
        from tabulon._html import text_of

        return text_of(self._described())

    def _repr_html_(self) -> str:
        from tabulon._html import html_of

        return html_of(self._described())

    def __dask_tokenize__(self) -> tuple[Any, ...]:
        return "tabulon.Variable", self._group.__dask_tokenize__(), self.name, self.unit

    def _described(self) -> Description:
        facts = (
            ("Unit", self.unit),
            ("Type", str(self.dtype)),
            ("Shape", " x ".join(f"{size:,}" for size in self.shape)),
            ("Group", f"{self._group.number} {self._group.name}"),
            ("Run", self._group._run.path),
        )
        lines = tuple((axis.name, axis.unit, _span(axis.values)) for axis in self.axes)
        axes = Section("Axes", "", ("Axis", "Unit", "Values"), lines, opened=True)
        return Description("Variable", self.name, facts, (axes,))

    def _identity(self) -> tuple[Group, int, str | None]:
        return self._group, self._place, self._unit

    def _figure(self, name: str) -> Any:  # noqa: ANN401 - as of NumPy
        found = self._group._figures.get((self._place, name))
        figure = self._group._figure(self._place, name) if found is None else found
        convert = self._conversion
        if convert is not None:
            figure = figure * convert.factor + (0.0 if name == "std" else convert.offset)
        if len(self._group._dims) > 1:
            return frozen(np.array(figure))
        value = float(figure[0])
        if name in ("min", "max") and self.dtype.kind == "i" and value.is_integer():
            return int(value)
        return value

    def _finished(self, block: NDArray[Any]) -> NDArray[Any]:
        """Return what was read, of shape (columns, rows), as a person sees it."""
        if self._conversion is not None:
            block = self._conversion.of(block, self.dtype)
        frozen(block)
        return block.T if len(self._group._dims) > 1 else block[0]


def read_together(variables: Sequence[Variable]) -> list[NDArray[Any]]:
    """Return the values of variables in blocks of shape ``(columns, points)``, in their order.

    Neighbours of one group are read in one pass. The memory is the caller's.
    """
    blocks: list[NDArray[Any]] = []
    for (group, dtype), run in groupby(variables, lambda v: (v.group, v.dtype)):
        together = list(run)
        places = [variable._place for variable in together]
        block = _native.read(group._table, places, count=group._count())
        width = len(block) // len(together)
        if block.dtype != dtype:
            block = block.astype(dtype)
        for place, variable in enumerate(together):
            if variable._conversion is not None:
                part = slice(place * width, (place + 1) * width)
                block[part] = variable._conversion.of(block[part], dtype)
        blocks.append(block)
    return blocks


def _as_arrays(given: Any) -> Any:  # noqa: ANN401 - whatever NumPy takes
    """Return arguments with values in the place of variables."""
    if isinstance(given, Variable):
        return given.values
    if isinstance(given, dict):
        return {key: _as_arrays(one) for key, one in given.items()}
    return type(given)(map(_as_arrays, given)) if type(given) in (list, tuple) else given


def _values_of(info: _native.AxisInfo, count: int) -> NDArray[Any]:
    if info.kind == _native.LABEL_AXIS:
        return label_values((info.labels or [])[:count])
    if info.kind == _native.VALUE_AXIS:
        values = info.values
        return frozen(np.array([] if values is None else values[:count], dtype=np.float64))
    return interval_values(info.minimum, info.step, count)


def _places(axis: Axis, wanted: Any) -> int | slice | list[int]:  # noqa: ANN401 - as of pandas
    if isinstance(wanted, slice):
        return places_between(axis.name, axis.values, wanted)
    if isinstance(wanted, Sequence | np.ndarray) and not isinstance(wanted, str):
        return [place_on_axis(axis.name, axis.values, one) for one in wanted]
    return place_on_axis(axis.name, axis.values, wanted)


def _axis_text(axis: Axis) -> str:
    return f"{axis.name} [{axis.unit}] {_span(axis.values)}"


def _span(values: NDArray[Any]) -> str:
    """Return a few words on the values of an axis."""
    if not values.size:
        return "none"
    first, last = values[0].item(), values[-1].item()
    if isinstance(first, str):
        return f"{first} … {last} ({len(values):,})"
    return f"{first:g} … {last:g} ({len(values):,})"


def _group_of(run: GroupOwner, number: int) -> Group:
    return run.groups[number]


def _variable_of(group: Group, name: str, unit: str | None) -> Variable:
    return group[name] if unit is None else group[name].to(unit)
