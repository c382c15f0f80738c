"""Scenarios: groups that differ in one property each, with what is to be read from them."""

from __future__ import annotations

from collections.abc import Callable
from dataclasses import dataclass, replace
from pathlib import Path
from typing import Any

import numpy as np
from numpy.typing import NDArray

from support.run_files import (
    Axis,
    GroupFiles,
    IntervalAxis,
    RunFiles,
    TextAxis,
    ValueAxis,
    Variable,
    Word,
)

#: FORMAT -> type in which the library reads it.
DTYPES: dict[Word, str] = {"R*4": "float32", "R*8": "float64", "I*4": "int32"}

POINTS = 5
TIME = IntervalAxis("Time", "T", start=10.0, step=0.5, size=POINTS)
WIND = ValueAxis("Wind speed", "L/T", (4.0, 8.5, 12.0, 16.0, 25.0))
CASES = TextAxis("Load case", "N", ("idle", "1.1 a", "start up", "stop", "1.1 b"))
STATIONS = ValueAxis("Distance along blade", "L", (0.0, 20.5, 41.0))
HEIGHTS = IntervalAxis("Height", "L", start=1.0, step=2.0, size=3)
SECTIONS = TextAxis("Section", "N", ("root", "mid span", "tip"))


@dataclass(frozen=True)
class Scenario:
    """A run with one group, and the values of its variables by name."""

    name: str
    group: GroupFiles

    @property
    def run(self) -> str:
        return "run"

    @property
    def dtype(self) -> str:
        return DTYPES[self.group.word]

    @property
    def values(self) -> dict[str, NDArray[Any]]:
        """The values of each variable: shape (points,), or (secondary values, points)."""
        return {variable.name: variable.values for variable in self.group.variables}

    @property
    def has_statistics(self) -> bool:
        """Whether the header holds the figures of all data."""
        blocks, secondary = self.group.statistics_blocks, self.group.secondary
        return blocks is None or blocks >= (secondary.size if secondary else 1)

    def write(self, folder: Path) -> Path:
        """Write the run, and return its folder."""
        return RunFiles([self.group], self.run).write(folder)


def _values(word: Word, secondary: int) -> list[NDArray[Any]]:
    """Return three variables; maxima, minima and means differ between them and between rows."""
    table = np.array([[2, -3, 7, 5, 1], [40, 10, -20, 30, 60], [-100, 500, 400, -200, 300]])
    table = table if word.startswith("I") else table + 0.25
    rows = [table * (1 if s % 2 == 0 else -1) + 3 * s for s in range(max(secondary, 1))]
    stacked = np.stack(rows, axis=1).astype(DTYPES[word])
    return [variable if secondary else variable[0] for variable in stacked]


def group_1d(word: Word = "R*4", primary: Axis = TIME, **changes: object) -> GroupFiles:
    """Return a group of three variables over one axis."""
    quantities = ("P", "A/T", "FL")
    names = ("Electrical power", "Rotor speed", "Tower moment")
    variables = [
        Variable(*parts) for parts in zip(names, quantities, _values(word, 0), strict=True)
    ]
    group = GroupFiles("Summary", variables, primary, word=word)
    return replace(group, **changes)  # type: ignore[arg-type]


def group_2d(
    word: Word = "R*4", primary: Axis = TIME, secondary: Axis = STATIONS, **changes: object
) -> GroupFiles:
    """Return a group of three variables over two axes."""
    names = ("Blade moment", "Blade shear force", "Blade deflection")
    variables = [
        Variable(*parts)
        for parts in zip(names, ("FL", "F", "L"), _values(word, secondary.size), strict=True)
    ]
    group = GroupFiles("Blade loads", variables, primary, secondary, word=word)
    return replace(group, **changes)  # type: ignore[arg-type]


def only_first(group: GroupFiles) -> GroupFiles:
    """Return the group with its first variable alone."""
    return replace(group, variables=group.variables[:1])


def _of_both_forms(name: str, make: Callable[..., GroupFiles]) -> list[Scenario]:
    scenarios = [
        Scenario(f"{name} {DTYPES[word]} {'text' if text else 'binary'}", make(word, text=text))
        for word in DTYPES
        for text in (False, True)
    ]
    return [
        *scenarios,
        Scenario(f"{name} without statistics", make(statistics_blocks=0)),
        Scenario(f"{name} text without statistics", make(text=True, statistics_blocks=0)),
        Scenario(f"{name} equally long lines", make(text=True, width=9)),
        Scenario(f"{name} text CRLF", make(text=True, newline="\r\n")),
        Scenario(f"{name} text CRLF of equal length", make(text=True, newline="\r\n", width=9)),
        Scenario(f"{name} text HEADREC", make(text=True, head_records=("made by", "a test 1 2"))),
        Scenario(f"{name} one variable text", only_first(make(text=True))),
        Scenario(f"{name} named parameters", make(named_parameters=("one", "ULOADS 2"))),
        Scenario(f"{name} over labelled numbers", make(primary=WIND)),
        Scenario(f"{name} over labelled texts", make(primary=CASES)),
    ]


SCENARIOS_1D = _of_both_forms("1d", group_1d)
SCENARIOS_2D = [
    *_of_both_forms("2d", group_2d),
    Scenario("2d at an interval", group_2d(secondary=HEIGHTS)),
    Scenario("2d at labelled texts", group_2d(secondary=SECTIONS)),
    Scenario("2d at labelled texts, text", group_2d(secondary=SECTIONS, text=True)),
    Scenario("2d with the first block of statistics only", group_2d(statistics_blocks=1)),
]
