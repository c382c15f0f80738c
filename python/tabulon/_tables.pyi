"""
Group files without state: any number of threads, only the wanted columns, in one pass.

The interpreter's lock is released in all that touches a file. No call changes what another
returned.
"""

from collections.abc import Sequence
import os
from typing import Annotated, Any, overload

import numpy
import numpy.typing
from numpy.typing import NDArray


class TableError(Exception):
    """
    A file that is missing, damaged or cut off.

    `args` are the attributes `text`, `code` (of the reader: 81 for a header that does not open,
    5000 for a missing data file, 25 for missing rows, 127 for an unknown FORMAT, ...), `path`, `field` (the label of the header, or "rows";
    empty if there is none) and `found` (what stands there).
    """

    @property
    def text(self) -> str: ...

    @property
    def code(self) -> int: ...

    @property
    def path(self) -> str: ...

    @property
    def field(self) -> str: ...

    @property
    def found(self) -> str: ...

    def __str__(self) -> str: ...

class Selection:
    """
    Columns and rows that are wanted.

    Parameters
    ----------
    variables : positions of variables in the header.
    secondary : positions on the secondary axis; None takes all.
    first : row of the file.
    count : rows; None takes those up to the last that the header expects, or that is there if it
        expects none.
    step : rows of the file from one wanted row to the next.
    """

    def __init__(self, variables: Sequence[int], secondary: Sequence[int] | None = None, first: int = 0, count: int | None = None, step: int = 1) -> None: ...

    @property
    def variables(self) -> list[int]: ...

    @property
    def secondary(self) -> list[int] | None: ...

    @property
    def first(self) -> int: ...

    @property
    def count(self) -> int | None: ...

    @property
    def step(self) -> int: ...

class Reduction:
    """
    Figures of columns: arrays with an element a column, in the order of the selection.

    Values that are not finite are counted and left out; without a finite one figures are NaN and
    rows -1. The deviation is that of the population.
    """

    @property
    def minimum(self) -> NDArray[numpy.float64]: ...

    @property
    def maximum(self) -> NDArray[numpy.float64]: ...

    @property
    def minimum_row(self) -> NDArray[numpy.int64]:
        """Row of the file; the first of equals."""

    @property
    def maximum_row(self) -> NDArray[numpy.int64]: ...

    @property
    def mean(self) -> NDArray[numpy.float64]: ...

    @property
    def deviation(self) -> NDArray[numpy.float64]: ...

    @property
    def count(self) -> NDArray[numpy.int64]:
        """Finite values."""

    @property
    def not_finite(self) -> NDArray[numpy.int64]: ...

class StoredFigures:
    """
    Figures that a header holds: arrays (variables, secondary values), one secondary value with one
    axis. Times are values of the primary axis. NaN stands for a block that the header does not
    have.
    """

    @property
    def minimum(self) -> NDArray[numpy.float64]: ...

    @property
    def maximum(self) -> NDArray[numpy.float64]: ...

    @property
    def mean(self) -> NDArray[numpy.float64]: ...

    @property
    def minimum_time(self) -> NDArray[numpy.float64]: ...

    @property
    def maximum_time(self) -> NDArray[numpy.float64]: ...

    @property
    def at_minimum(self) -> NDArray[numpy.float64] | None:
        """All variables of the group where the one asked for has its minimum."""

    @property
    def at_maximum(self) -> NDArray[numpy.float64] | None: ...

INTERVAL_AXIS: int = 0

VALUE_AXIS: int = 1

LABEL_AXIS: int = 2

class VariableInfo:
    """A variable of a group."""

    @property
    def name(self) -> str: ...

    @property
    def quantity(self) -> str:
        """The code of the header."""

    @property
    def unit(self) -> str:
        """SI unit of the code; empty if the code is not known."""

class AxisInfo:
    """An axis of a group."""

    @property
    def name(self) -> str: ...

    @property
    def quantity(self) -> str: ...

    @property
    def unit(self) -> str: ...

    @property
    def kind(self) -> int:
        """INTERVAL_AXIS, VALUE_AXIS or LABEL_AXIS."""

    @property
    def count(self) -> int:
        """The entry of DIMENS."""

    @property
    def minimum(self) -> float:
        """Of an interval axis: value i is i * step + minimum."""

    @property
    def step(self) -> float: ...

    @property
    def values(self) -> NDArray[numpy.float64] | None:
        """Of an axis of values, as many as the header lists."""

    @property
    def labels(self) -> list[str] | None:
        """Of an axis of labels, likewise."""

class Rows:
    """How far a data file has come."""

    @property
    def expected(self) -> int:
        """The last entry of DIMENS."""

    @property
    def found(self) -> int:
        """Whole rows that are there now; more than expected in a long file."""

    @property
    def torn(self) -> bool:
        """Something stands behind the last whole row."""

class GroupTable:
    """
    A group's header as it was when it was opened, and the road to its data file.

    Nothing is kept open and nothing changes: any number of threads may use one table. What a call
    returns is the data file at one time.
    """

    @property
    def path(self) -> str: ...

    @property
    def data_path(self) -> str: ...

    @property
    def name(self) -> str: ...

    @property
    def number(self) -> int:
        """Of the extension; -1 if it has none."""

    @property
    def calculation(self) -> int:
        """
        Code of the kind of calculation that CONTENT names; -1 if it is not known.
        """

    @property
    def content(self) -> str: ...

    @property
    def config(self) -> str: ...

    @property
    def parameters(self) -> list[str]:
        """The lines that NVARS counts."""

    @property
    def binary(self) -> bool: ...

    @property
    def stored_type(self) -> int:
        """
        1 float32, 2 float64, 3 int16, 4 int32, 5 the integer of FORMAT I*8 (32 bits).
        """

    @property
    def dtype(self) -> str:
        """The type in which values are read unchanged."""

    @property
    def header_records(self) -> int: ...

    @property
    def dimensions(self) -> list[int]: ...

    @property
    def variables(self) -> list[VariableInfo]: ...

    @property
    def axes(self) -> list[AxisInfo]:
        """Primary first."""

    @property
    def has_figures(self) -> bool: ...

    @staticmethod
    def open(path: str | os.PathLike[str]) -> GroupTable:
        """Read a header once, without its figures."""

    def data_size(self) -> int | None:
        """Bytes of the data file; None if there is no such file."""

    def rows(self) -> Rows:
        """Rows expected and found. Of a text file all lines are counted."""

    def shape_of(self, selection: Selection) -> tuple[int, int]:
        """Columns and rows that `read` gives."""

    def read(self, selection: Selection, dtype: numpy.typing.DTypeLike = "float64") -> numpy.typing.NDArray[Any]:
        """
        Read the selection in one pass: a new array (columns, rows).

        Column `v * S + s` is the v-th variable at the s-th secondary value asked for. `dtype` is
        "float64", "float32" or "int32".
        """

    @overload
    def read_into(self, selection: Selection, out: Annotated[NDArray[numpy.float64], dict(shape=(None, None), device='cpu')]) -> None:
        """
        Read the selection into `out`, an array (columns, rows) of float64, float32 or int32.

        The values of a column must lie behind each other; columns may lie apart. An array of another
        type is a TypeError, one of another shape or layout a ValueError; neither is filled.
        """

    @overload
    def read_into(self, selection: Selection, out: Annotated[NDArray[numpy.float32], dict(shape=(None, None), device='cpu')]) -> None: ...

    @overload
    def read_into(self, selection: Selection, out: Annotated[NDArray[numpy.int32], dict(shape=(None, None), device='cpu')]) -> None: ...

    def reduce(self, selection: Selection) -> Reduction:
        """Figures of the selection in one pass, without making the series."""

    def stored_figures(self, variables: Sequence[int], at: int | None = None) -> StoredFigures | None:
        """
        Figures that the header holds of some variables, or None.

        `at` is a variable for whose extremes the values of all others are wanted.
        """

class HeaderFile:
    """A group header by its file name."""

    @property
    def name(self) -> str: ...

    @property
    def number(self) -> int: ...

class RunRecord:
    """The files of a run, by their names as the directory lists them."""

    @property
    def path(self) -> str:
        """Without an extension."""

    @property
    def directory(self) -> str:
        """With a trailing separator."""

    @property
    def name(self) -> str: ...

    @property
    def termination(self) -> str: ...

    @property
    def messages(self) -> str | None: ...

    @property
    def verification(self) -> str | None: ...

    @property
    def headers(self) -> list[HeaderFile]:
        """In the order of their numbers."""

    @property
    def extensions(self) -> list[str]:
        """Of files that tell the kind of a calculation without header."""

    @property
    def state(self) -> int | None:
        """Code of the completion state, if it was asked for."""

class Unreadable:
    """A directory that could not be listed."""

    @property
    def path(self) -> str: ...

    @property
    def text(self) -> str: ...

class RunList:
    """What a walk found."""

    @property
    def runs(self) -> list[RunRecord]:
        """A directory after the other, in the natural order of their names."""

    @property
    def unreadable(self) -> list[Unreadable]: ...

def list_runs(root: str | os.PathLike[str], recursive: bool = True, completion: bool = False) -> RunList:
    """Runs below a directory in one walk. A missing root is a TableError."""

def find_run(path: str | os.PathLike[str], completion: bool = False) -> RunRecord | None:
    """
    The files of one run: the path of any of them, or one without extension.

    None if there is no termination file. Only its directory is listed.
    """

def completion_state(termination_path: str | os.PathLike[str]) -> int:
    """Code of how a run ended, by the text of its termination file."""

def calculation_of_header(path: str | os.PathLike[str]) -> int:
    """
    Code of the kind of calculation of a header, which is read up to CONTENT only.
    """

def calculation_of_content(content: str) -> int: ...

def calculation_of_extension(extension: str) -> int:
    """
    Of a file that a calculation without header leaves: ".$mx" and the like.
    """

def calculation_name(calculation: int) -> str:
    """For example "Power production simulation"."""

def unit_of_quantity(code: str) -> str:
    """SI unit of a quantity code; empty if the code is not known."""
