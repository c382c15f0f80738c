"""Lays out the files of a run as bytes, from arrays and nothing else.

The format is told in ``docs/format.md``. A run is built in memory as a mapping
of file name to content, so that it can be written, or compared with what
stands on disk.
"""

from __future__ import annotations

import math
import struct
from collections.abc import Iterator, Sequence
from dataclasses import dataclass, field
from typing import Literal, TypeAlias

import numpy as np
from numpy.typing import NDArray

Word: TypeAlias = Literal["R*4", "R*8", "I*4"]
Numbers: TypeAlias = NDArray[np.float64] | Sequence[int]

_STRUCT_CODES = {"R*4": "f", "R*8": "d", "I*4": "i"}
_SIZES = {"R*4": 4, "R*8": 8, "I*4": 4}
_PRECISIONS = {"R*4": 7, "R*8": 15, "I*4": 7}
# Fewer digits than the word holds: the last bits of a simulated value depend on
# the machine, and the bundled files must not.
_DIGITS = {"R*4": 6, "R*8": 9}
_TEXT_DIGITS = 5


@dataclass(frozen=True)
class Interval:
    """An axis at a fixed step."""

    name: str
    quantity: str
    minimum: float
    step: float

    def lines(self, precision: int) -> list[str]:
        """Return the header lines that describe the axis."""
        return [
            *_axis_head(self.name, self.quantity, 2),
            f"MIN \t{self.minimum:.{precision}E}",
            f"STEP\t{self.step:.{precision}E}",
        ]

    def value(self, index: int) -> float:
        """Return the value of the axis at a point."""
        return self.minimum + index * self.step


@dataclass(frozen=True)
class Values:
    """An axis of labelled numbers."""

    name: str
    quantity: str
    labels: tuple[float, ...]

    def lines(self, precision: int) -> list[str]:
        """Return the header lines that describe the axis."""
        labels = " ".join(f"{label:.{precision}f}" for label in self.labels)
        return [*_axis_head(self.name, self.quantity, 3), f"AXIVAL\t{labels}"]

    def value(self, index: int) -> float:
        """Return the label of a point."""
        return self.labels[index]


@dataclass(frozen=True)
class Labels:
    """An axis of labelled strings."""

    name: str
    labels: tuple[str, ...]
    quantity: str = "N"

    def lines(self, precision: int) -> list[str]:
        """Return the header lines that describe the axis."""
        del precision
        labels = " ".join(f"'{label}'" for label in self.labels)
        return [*_axis_head(self.name, self.quantity, 1), f"AXITICK\t{labels}"]


def _axis_head(name: str, quantity: str, method: int) -> list[str]:
    return [f"AXISLAB\t'{name}'", f"AXIUNIT\t{quantity}", f"AXIMETH\t{method}"]


@dataclass(frozen=True)
class Variable:
    """One variable: shape (points,), or (secondary values, points) in a two-axis group."""

    name: str
    quantity: str
    data: Numbers


@dataclass(frozen=True)
class Group:
    """One output group.

    Attributes
    ----------
    word : str
        Stored word: "R*4", "R*8" or "I*4".
    text : bool
        Values as lines of text instead of words.
    head : tuple of str
        Lines that stand before the values of a text file.
    parameters : tuple of str, optional
        Named parameters; without any, the header says nothing of them.
    statistics : bool
        Whether the header carries extremes and means.
    """

    number: int
    name: str
    variables: Sequence[Variable]
    primary: Interval | Values
    secondary: Values | Labels | None = None
    word: Word = "R*4"
    text: bool = False
    head: tuple[str, ...] = ()
    parameters: tuple[str, ...] | None = None
    statistics: bool = False

    def table(self) -> NDArray[np.float64]:
        """Return the values as stored, shape (variables, secondary values, points)."""
        rows = []
        for variable in self.variables:
            values = np.array(variable.data, dtype=np.float64)
            if self.word != "I*4":
                values = _rounded(values, _TEXT_DIGITS if self.text else _DIGITS[self.word])
            if self.word == "R*4":
                values = values.astype(np.float32).astype(np.float64)
            rows.append(np.atleast_2d(values))
        return np.stack(rows)


@dataclass(frozen=True)
class Run:
    """A run and its groups, with the texts of its three side files."""

    name: str
    content: str
    configuration: str
    termination: str
    message: str
    verification: str
    groups: Sequence[Group] = field(default_factory=tuple)

    def files(self) -> Iterator[tuple[str, bytes]]:
        """Yield file names and contents in the order in which a run makes them."""
        yield f"{self.name}.$VE", self.verification.encode("ascii")
        yield f"{self.name}.$ME", self.message.encode("ascii")
        for group in self.groups:
            table = group.table()
            yield f"{self.name}.${group.number:02d}", _data(group, table)
            yield f"{self.name}.%{group.number:02d}", _header(self, group, table)
        yield f"{self.name}.$TE", self.termination.encode("ascii")


def _rounded(values: NDArray[np.float64], digits: int) -> NDArray[np.float64]:
    """Round to so many digits of the greatest magnitude, and zero to plus zero."""
    greatest = float(np.abs(values).max())
    if greatest == 0.0:
        return np.abs(values)
    decimals = digits - 1 - math.floor(math.log10(greatest))
    rounded: NDArray[np.float64] = np.round(values, decimals) + 0.0
    return rounded


def _header(run: Run, group: Group, table: NDArray[np.float64]) -> bytes:
    count, secondary, points = table.shape
    two_axes = group.secondary is not None
    dimensions = [count, secondary, points] if two_axes else [count, points]
    precision = _PRECISIONS[group.word]
    lines = [
        f"FILE\t{run.name}.${group.number:02d}",
        f"ACCESS\t{'S' if group.text else 'D'}",
        "FORM\tF",
        f"RECL\t{_SIZES[group.word]}",
        f"FORMAT\t{group.word}",
        *([f"HEADREC\t{len(group.head)}"] if group.head else []),
        f"CONTENT\t'{run.content}'",
        f"CONFIG\t'{run.configuration}'",
        f"NDIMENS\t{len(dimensions)}",
        "DIMENS\t" + "\t".join(str(size) for size in dimensions),
        f"GENLAB\t'{group.name}'",
        "VARIAB\t" + " ".join(f"'{variable.name}'" for variable in group.variables),
        "VARUNIT\t" + " ".join(variable.quantity for variable in group.variables),
    ]
    if group.secondary is not None:
        lines += group.secondary.lines(precision)
    lines += group.primary.lines(precision)
    if group.parameters is not None:
        lines += [f"NVARS\t{len(group.parameters)}", *group.parameters]
    if group.statistics:
        for index in range(secondary):
            lines += _statistics(table[:, index], group.primary, precision)
    return _lines(lines)


def _statistics(
    columns: NDArray[np.float64], primary: Interval | Values, precision: int
) -> list[str]:
    """Return one block: values at each extreme, times of the extremes, means."""
    highs = [int(index) for index in columns.argmax(axis=1)]
    lows = [int(index) for index in columns.argmin(axis=1)]
    rows = [columns[:, index].tolist() for pair in zip(highs, lows, strict=True) for index in pair]
    means = [math.fsum(column) / len(column) for column in columns.tolist()]
    return [
        "ULOADS" + _padded(rows[0], precision),
        *(_padded(row, precision) for row in rows[1:]),
        "MAXTIME" + "".join(f" {int(primary.value(index))}" for index in highs),
        "MINTIME" + "".join(f" {int(primary.value(index))}" for index in lows),
        "MEAN" + _padded(means, precision),
    ]


def _padded(values: Sequence[float], precision: int) -> str:
    """Line up numbers: a minus sign takes the place of one of the three blanks."""
    texts = (f"{value:.{precision}E}" for value in values)
    return "".join(("  " if text.startswith("-") else "   ") + text for text in texts)


def _data(group: Group, table: NDArray[np.float64]) -> bytes:
    """Return the values, points slowest, then secondary values, then variables."""
    ordered = table.transpose(2, 1, 0)
    if not group.text:
        flat = ordered.ravel().tolist()
        words = [int(value) for value in flat] if group.word == "I*4" else flat
        return struct.pack(f"<{len(words)}{_STRUCT_CODES[group.word]}", *words)
    count, secondary, _ = table.shape
    # A line holds the variables of a point, or, of a single one, its secondary values.
    width = secondary if count == 1 else count
    rows = ordered.reshape(-1, width).tolist()
    return _lines([*group.head, *("".join(f"{value:12.4E}" for value in row) for row in rows)])


def _lines(lines: Sequence[str]) -> bytes:
    return "".join(line + "\n" for line in lines).encode("ascii")
