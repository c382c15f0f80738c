"""Random output groups: plain values of what a script writes, and the writing of them."""

from __future__ import annotations

from collections.abc import Iterable, Sequence
from dataclasses import dataclass
from pathlib import Path
from random import Random
from typing import Any

import _TabulonAPI_Python as native
import numpy as np
from numpy.typing import NDArray

from support.flat import SUFFIXES, Flat
from support.random_data import converted
from support.random_text import Words, other_case, random_real, random_whole, text_of

#: Unit that a script gives -> quantity code in the header, as bytes of a file.
CODES = {
    "m": b"L",
    "rad/s": b"A/T",
    "N": b"F",
    "A": b"I",
    "rad": b"A",
    "J": b"PT",
    ".": b"Unquantifiable",
    "Unitless": b"Unitless",
    "kgm\udcb2": b"MLL",
    "kgm\u00b2": "kgm\u00b2".encode(),
    "L": b"L",
    "own unit": b"own unit",
    "a\tb": b"a\tb",
}


@dataclass(frozen=True)
class OutputAxis:
    """An axis as a script gives it: start and step, or labels."""

    name: str
    unit: str
    given: tuple[Any, ...]

    @property
    def labels(self) -> Sequence[float] | Sequence[str] | None:
        return self.given[0] if len(self.given) == 1 else None

    def make(self) -> object:
        return native.new_IndependentVariable(self.name, self.unit, *self.given)


@dataclass(frozen=True)
class OutputModel:
    """An output group: all that a script gives, in plain values."""

    dtype: str
    text: bool
    name: str
    source: str
    config: str
    primary: OutputAxis
    secondary: OutputAxis | None
    names: list[str]
    units: list[str]
    #: [variable, secondary, point]
    values: NDArray[Any]
    #: Points of each piece in which data is given.
    pieces: list[int]
    makes_run: bool

    @property
    def axes(self) -> list[OutputAxis]:
        """The axes in file order: the secondary one first."""
        return ([self.secondary] if self.secondary else []) + [self.primary]

    @property
    def sizes(self) -> list[int]:
        variables, rows, points = self.values.shape
        return [variables, *([rows] if self.secondary else []), points]


def _number(rng: Random, dtype: str) -> float:
    if dtype == "int32":
        return random_whole(rng, 32)
    if rng.random() < 0.05:
        return rng.choice((np.nan, -np.nan, np.inf, -np.inf, -0.0, 0.0))
    return random_real(rng, widest=37 if dtype == "float32" else 300)


def _axis(rng: Random, size: int) -> OutputAxis:
    """Return an axis for so many points; labels of a primary axis may be more."""
    words, unit = Words(rng), rng.choice(list(CODES))
    name, kind = text_of(words.name()), rng.choice(("interval", "numbers", "texts"))
    if kind == "interval":
        step = rng.choice((0.05, -0.25, random_real(rng, widest=5) or 1.0))
        return OutputAxis(name, unit, (random_real(rng), step))
    if kind == "numbers":
        return OutputAxis(name, unit, ([random_real(rng, widest=20) for _ in range(size)],))
    return OutputAxis(name, unit, ([text_of(words.name()) for _ in range(size)],))


def random_output(seed: int) -> OutputModel:
    """Return the output group of a seed."""
    rng = Random(seed)
    words, dtype = Words(rng), rng.choice(list(SUFFIXES))
    pieces = [rng.choice((1, 1, 2, 5)) for _ in range(rng.randint(1, 4))]
    if rng.random() < 0.02:
        pieces.append(rng.choice((2048, 1000)))
    points, variables = sum(pieces), rng.choice((1, 1, 2, 4))
    rows = rng.randint(1, 3) if rng.random() < 0.5 else None
    count = variables * (rows or 1) * points
    values = converted(np.array([_number(rng, dtype) for _ in range(count)]), dtype)
    return OutputModel(
        dtype,
        rng.random() < 0.5,
        text_of(words.name()),
        rng.choice(("UserDefined", "POWPROD", "anything at all")),
        rng.choice(("", "TABLE", "my own")),
        _axis(rng, points + rng.choice((0, 0, 3))),
        _axis(rng, rows) if rows else None,
        [text_of(words.name()) for _ in range(variables)],
        [rng.choice(list(CODES)) for _ in range(variables)],
        values.reshape(variables, rows or 1, points),
        pieces,
        rng.random() < 0.9,
    )


def _in_some_form(rng: Random, row: NDArray[Any], dtype: str) -> Iterable[float]:
    """Return numbers in one of the forms in which a script may have them."""
    form = rng.randrange(5)
    if form == 0:
        return row.copy()
    if form == 1:
        return tuple(row.tolist())
    if form == 2:
        return iter(row.tolist())
    if form == 3:
        element = {"float32": "Float", "float64": "Double", "int32": "Int"}[dtype]
        array: Iterable[float] = getattr(native, f"new_ArrayOf{element}")(row.tolist())
        return array
    return row.tolist()


class Writer:
    """Makes the output group of a model, and gives it its data piece by piece."""

    def __init__(self, model: OutputModel, path: Path, seed: int) -> None:
        self.model, self.rng = model, Random(seed + 1)
        axes = [axis.make() for axis in reversed(model.axes)]
        family = f"OutputGroup{len(axes)}D_{SUFFIXES[model.dtype]}"
        given = (str(path), model.name, model.source, model.config, *axes, 0 if model.text else 1)
        self.group = Flat(family, getattr(native, f"new_{family}")(*given))
        if not model.makes_run:
            Flat("OutputGroup", self.group.pointer).set_tefile_creation(1)
        self.done = 0

    def give(self, points: int) -> None:
        """Give so many further points of each variable."""
        for place, name in enumerate(self.model.names):
            data = self._data(place, slice(self.done, self.done + points))
            if self.done:
                self.group._append_data_native_array(other_case(self.rng, name), data)
            elif self.rng.random() < 0.5:
                unit = self.model.units[place]
                self.group._add_variable_with_data_native_array(name, unit, data)
            else:
                self.group.add_variable(name, self.model.units[place])
                self.group._append_data_native_array(name, data)
        self.done += points

    def _data(self, place: int, points: slice) -> Iterable[Any]:
        table = self.model.values[place][:, points]
        if self.model.secondary is None:
            return _in_some_form(self.rng, table[0], self.model.dtype)
        rows = [_in_some_form(self.rng, row, self.model.dtype) for row in table]
        return rows if self.rng.random() < 0.7 else iter(rows)
