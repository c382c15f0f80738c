"""A run whose files are rewritten, removed and put back, each time with other values.

Every version of a file has values of its own, so that a value shows from which version it came.
"""

from __future__ import annotations

import os
from dataclasses import dataclass
from pathlib import Path
from typing import Any

import numpy as np
from numpy.typing import NDArray

from support.run_files import GroupFiles, IntervalAxis, ValueAxis, Variable, Word

POINTS = 4
STATIONS = (0.0, 20.5)
#: Added to the figures of a header, which so show that they were not computed from the data.
OFFSET = 50_000.0


@dataclass(frozen=True)
class GroupShape:
    """An output group, as all versions have it."""

    number: int
    name: str
    word: Word
    stored: str
    names: tuple[str, ...]
    two_axes: bool = False

    @property
    def rows(self) -> int:
        return len(STATIONS) if self.two_axes else 1

    def values(self, version: int) -> NDArray[np.float64]:
        """Return the values: [variable, secondary, point]; whole, and exact in any type."""
        variable, row, point = np.ogrid[0 : len(self.names), 0 : self.rows, 0:POINTS]
        spread = (3 * point + variable + row + version) % POINTS
        return 10.0 * spread + 100 * variable + 50 * row + 1000 * (version % 40) + self.number

    def files(self, version: int, *, text: bool) -> GroupFiles:
        values = self.values(version).astype(self.stored)
        tables = values if self.two_axes else values[:, 0]
        return GroupFiles(
            self.name,
            [Variable(*each) for each in zip(self.names, "LFP", tables, strict=False)],
            IntervalAxis(size=POINTS),
            ValueAxis("Station", "L", STATIONS) if self.two_axes else None,
            number=self.number,
            word=self.word,
            text=text,
            # Text data of one version is of another length than that of the next.
            width=12 + version % 2,
            statistics_offset=OFFSET,
        )


#: "Common" stands in two groups.
SHAPES = (
    GroupShape(1, "Summary", "R*4", "float32", ("Speed", "Common")),
    GroupShape(2, "Blade", "R*8", "float64", ("Moment", "Shear", "Twist"), two_axes=True),
    GroupShape(3, "Control", "I*4", "int32", ("Common", "State")),
)


class ChangingRun:
    """The files of the run on disk, with the version of each; None for a file that is not there."""

    def __init__(self, folder: Path, texts: tuple[bool, ...]) -> None:
        self.folder, self.texts = folder, texts
        self.headers: dict[int, int | None] = {}
        self.data: dict[int, int | None] = {}
        self.ending: int | None = None
        self._clock = 0
        for place in range(len(SHAPES)):
            self.write_header(place)
            self.write_data(place)
        self.write_ending()

    def _tick(self) -> int:
        self._clock += 1
        return self._clock

    def _replace(self, name: str, content: bytes, version: int) -> None:
        """Put a file in place at once; its time differs from that of all others before it."""
        made = self.folder.parent / "in the making"
        made.write_bytes(content)
        seconds = 1_600_000_000 + version
        os.utime(made, (seconds, seconds))
        made.replace(self.folder / name)

    def _files(self, place: int, version: int) -> GroupFiles:
        return SHAPES[place].files(version, text=self.texts[place])

    def write_header(self, place: int) -> None:
        version = self.headers[place] = self._tick()
        name = f"run.%{SHAPES[place].number:02}"
        self._replace(name, self._files(place, version).header("run"), version)

    def write_data(self, place: int) -> None:
        version = self.data[place] = self._tick()
        name = f"run.${SHAPES[place].number:02}"
        self._replace(name, self._files(place, version).data(), version)

    def write_ending(self) -> None:
        version = self.ending = self._tick()
        self._replace("run.$TE", ending_text(version).encode(), version)

    def remove_header(self, place: int) -> None:
        (self.folder / f"run.%{SHAPES[place].number:02}").unlink(missing_ok=True)
        self.headers[place] = None

    def remove_data(self, place: int) -> None:
        (self.folder / f"run.${SHAPES[place].number:02}").unlink(missing_ok=True)
        self.data[place] = None

    def remove_ending(self) -> None:
        (self.folder / "run.$TE").unlink(missing_ok=True)
        self.ending = None

    def listed(self) -> list[int]:
        """Return the groups whose headers are there, in the order of the directory."""
        places = {f"run.%{shape.number:02}": place for place, shape in enumerate(SHAPES)}
        return [places[path.name] for path in self.folder.iterdir() if path.name in places]


def ending_text(version: int) -> str:
    return f"Run completed, version {version}."


def stored_figures(shape: GroupShape, version: int) -> tuple[NDArray[Any], NDArray[Any]]:
    """Return what the header of a version says: extremes and means."""
    rows, means = data_figures(shape.values(version))
    return rows + OFFSET, means + OFFSET


def data_figures(values: NDArray[Any]) -> tuple[NDArray[Any], NDArray[Any]]:
    """Return the figures of data: [2 * variable + (0 or 1), other variable, secondary], means."""
    variables, rows, _ = values.shape
    extremes = np.empty((2 * variables, variables, rows), values.dtype)
    for variable in range(variables):
        for row in range(rows):
            series = values[variable, row]
            for kind, place in enumerate((series.argmax(), series.argmin())):
                extremes[2 * variable + kind, :, row] = values[:, row, place]
    return extremes, values.mean(axis=2, dtype="float64")
