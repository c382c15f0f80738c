"""Writes the files of a run as bytes, on its own: nothing here knows the library."""

from __future__ import annotations

import struct
from collections.abc import Iterator, Sequence
from dataclasses import dataclass, field
from pathlib import Path
from typing import Literal, TypeAlias

import numpy as np
from numpy.typing import NDArray

Word: TypeAlias = Literal["R*4", "R*8", "I*2", "I*4", "I*8"]

#: FORMAT -> code of the word in a data file, RECL. A word of I*8 takes 4 bytes, whatever RECL says.
WORDS: dict[Word, tuple[str, int]] = {
    "R*4": ("f", 4),
    "R*8": ("d", 8),
    "I*2": ("h", 2),
    "I*4": ("i", 4),
    "I*8": ("i", 8),
}


@dataclass(frozen=True)
class IntervalAxis:
    """An axis at a fixed step."""

    name: str = "Time"
    quantity: str = "T"
    start: float = 0.0
    step: float = 0.5
    size: int = 0

    method = 2

    def value_lines(self) -> list[str]:
        return [f"MIN \t{self.start:.7E}", f"STEP\t{self.step:.7E}"]

    def numbers(self) -> list[float]:
        return [self.start + i * self.step for i in range(self.size)]


@dataclass(frozen=True)
class ValueAxis:
    """An axis of labelled numbers."""

    name: str
    quantity: str
    labels: tuple[float, ...]

    method = 3

    @property
    def size(self) -> int:
        return len(self.labels)

    def value_lines(self) -> list[str]:
        return ["AXIVAL\t" + " ".join(f"{label:.7f}" for label in self.labels)]

    def numbers(self) -> list[float]:
        return list(self.labels)


@dataclass(frozen=True)
class TextAxis:
    """An axis of labelled texts."""

    name: str
    quantity: str
    labels: tuple[str, ...]

    method = 1

    @property
    def size(self) -> int:
        return len(self.labels)

    def value_lines(self) -> list[str]:
        return ["AXITICK\t" + " ".join(f"'{label}'" for label in self.labels)]

    def numbers(self) -> list[float]:
        """Return the indices, which statistics take for times."""
        return [float(i) for i in range(self.size)]


Axis: TypeAlias = IntervalAxis | ValueAxis | TextAxis


@dataclass(frozen=True)
class Variable:
    """A variable: values of shape (points,), or (secondary values, points)."""

    name: str
    quantity: str
    values: NDArray[np.generic]


@dataclass(frozen=True)
class GroupFiles:
    """An output group, as its two files have it."""

    name: str
    variables: Sequence[Variable]
    primary: Axis
    secondary: Axis | None = None
    number: int = 1
    word: Word = "R*4"
    text: bool = False
    #: Text data: each number takes this many places, so that lines are equally long.
    width: int = 0
    #: Text data: lines in front of the data.
    head_records: Sequence[str] = ()
    newline: str = "\n"
    content: str = "POWPROD"
    config: str = "TRANSIENT"
    named_parameters: Sequence[str] | None = None
    #: Blocks of statistics; None for all that belong there.
    statistics_blocks: int | None = None
    #: Added to each figure of the header, so that it shows where a figure comes from.
    statistics_offset: float = 0.0

    @property
    def axes(self) -> list[Axis]:
        """The axes in the order of the header: the secondary one first."""
        return ([self.secondary] if self.secondary else []) + [self.primary]

    def header(self, run: str) -> bytes:
        """Return the content of the header file."""
        lines = [
            f"FILE\t{run}.${self.number:02}",
            f"ACCESS\t{'S' if self.text else 'D'}",
            "FORM\tF",
            f"RECL\t{WORDS[self.word][1]}",
            f"FORMAT\t{self.word}",
        ]
        if self.head_records:
            lines.append(f"HEADREC\t{len(self.head_records)}")
        sizes = [len(self.variables), *(axis.size for axis in self.axes)]
        lines += [
            f"CONTENT\t'{self.content}'",
            f"CONFIG\t'{self.config}'",
            f"NDIMENS\t{len(sizes)}",
            "DIMENS\t" + "\t".join(map(str, sizes)),
            f"GENLAB\t'{self.name}'",
            "VARIAB\t" + " ".join(f"'{variable.name}'" for variable in self.variables),
            "VARUNIT\t" + " ".join(variable.quantity for variable in self.variables),
        ]
        for axis in self.axes:
            lines += [f"AXISLAB\t'{axis.name}'", f"AXIUNIT\t{axis.quantity}"]
            lines += [f"AXIMETH\t{axis.method}", *axis.value_lines()]
        if self.named_parameters is not None:
            lines += [f"NVARS\t{len(self.named_parameters)}", *self.named_parameters]
        lines += self._statistics()
        return "".join(line + self.newline for line in lines).encode("utf-8", "surrogateescape")

    def data(self) -> bytes:
        """Return the content of the data file."""
        return self._text_data() if self.text else self._binary_data()

    def write(self, folder: Path, run: str) -> None:
        """Write header and data file."""
        (folder / f"{run}.%{self.number:02}").write_bytes(self.header(run))
        (folder / f"{run}.${self.number:02}").write_bytes(self.data())

    def _rows(self) -> Iterator[Iterator[list[float]]]:
        """Yield for each point, for each secondary value: the values of all variables."""
        tables = [np.atleast_2d(variable.values).tolist() for variable in self.variables]
        for point in range(len(tables[0][0])):
            yield ([table[s][point] for table in tables] for s in range(len(tables[0])))

    def _binary_data(self) -> bytes:
        words = [word for point in self._rows() for row in point for word in row]
        return struct.pack(f"<{len(words)}{WORDS[self.word][0]}", *words)

    def _text_data(self) -> bytes:
        lines = list(self.head_records)
        for point in self._rows():
            rows = list(point)
            # With a single variable the values of all secondary values stand in one line.
            joined = [[row[0] for row in rows]] if len(self.variables) == 1 else rows
            lines += [" ".join(f"{value!r:>{self.width}}" for value in row) for row in joined]
        return "".join(line + self.newline for line in lines).encode()

    def _statistics(self) -> list[str]:
        tables = [np.atleast_2d(variable.values) for variable in self.variables]
        blocks = len(tables[0]) if self.statistics_blocks is None else self.statistics_blocks
        lines: list[str] = []
        for s in range(blocks):
            lines += self._block([table[s] for table in tables])
        return lines

    def _block(self, series: list[NDArray[np.generic]]) -> list[str]:
        digits = 15 if self.word == "R*8" else 7
        whole = self.word.startswith("I")

        def figures(values: list[float], whole: bool) -> str:
            shifted = [value + self.statistics_offset for value in values]
            return "".join(
                f"   {round(value)}" if whole else f"   {value:.{digits}E}" for value in shifted
            )

        extremes = [index for values in series for index in (values.argmax(), values.argmin())]
        rows = [figures([other[i].item() for other in series], whole) for i in extremes]
        times = [round(self.primary.numbers()[i]) for i in extremes]
        means = [float(values.mean(dtype=np.float64)) for values in series]
        return [
            "ULOADS" + rows[0],
            *rows[1:],
            "MAXTIME" + "".join(f" {time}" for time in times[::2]),
            "MINTIME" + "".join(f" {time}" for time in times[1::2]),
            "MEAN" + figures(means, whole=False),
        ]


@dataclass(frozen=True)
class RunFiles:
    """A run, as its files have it."""

    groups: Sequence[GroupFiles] = ()
    name: str = "run"
    termination: str = "Run completed.\n"
    message: str | None = "No messages.\n"
    verification: str | None = "Verified.\n"
    #: Other files of the run: extension -> content.
    others: dict[str, bytes] = field(default_factory=dict)

    def write(self, folder: Path) -> Path:
        """Write all files, and return the folder."""
        folder.mkdir(parents=True, exist_ok=True)
        texts = {".$TE": self.termination, ".$ME": self.message, ".$VE": self.verification}
        for extension, text in texts.items():
            if text is not None:
                (folder / f"{self.name}{extension}").write_bytes(text.encode())
        for extension, content in self.others.items():
            (folder / f"{self.name}{extension}").write_bytes(content)
        for group in self.groups:
            group.write(folder, self.name)
        return folder
