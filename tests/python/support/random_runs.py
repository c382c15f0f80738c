"""Random runs: from a seed, their files byte by byte and a plain model of what is read from them.

Nothing here knows the library. The model holds what scripts are to be told, in plain values, for
the type in which the run is to be read.
"""

from __future__ import annotations

from collections.abc import Sequence
from dataclasses import dataclass, field
from pathlib import Path
from random import Random
from typing import Any

import numpy as np
from numpy.typing import NDArray

from support.random_data import SERVED, SPELLINGS, RandomData, Shape, binary_data, text_data
from support.random_headers import Field, broken, header_bytes, with_decoys, with_variables
from support.random_text import (
    Words,
    blanks,
    item,
    number_of,
    quoted,
    real_token,
    text_of,
    unit_of,
    whole_token,
)
from support.run_files import WORDS, Word

#: Setting of the type for reading -> element type; None leaves the type of the file.
TARGETS = {0: None, 1: "float32", 2: "float64", 7: None, -1: None}
INTERVAL, NUMBERS, TEXTS = 0, 1, 2
#: CONTENT -> type of calculation, whether groups of it can be asked for.
CALCULATIONS = {
    b"POWPROD": (10, True),
    b"UserDefined": (1000, True),
    b"EQLD": (25, True),
    b"Linearisation": (33, True),
    b"WIND": (3, False),
    b"powprod": (-1, False),
    b"Two words": (-1, False),
}
ENDINGS = {
    b"Run completed.\n": 1,
    b"*** ERROR\nRun in progress": 0,
    b"*** ERROR: Aborted by user  \r\n": 4,
    b"*** ERROR\n": 3,
    b"Aborted by user": -1,
    b" \n": -1,
}


@dataclass(frozen=True)
class AxisModel:
    """An axis, as scripts see it."""

    name: str
    code: bytes
    kind: int
    #: All values of an axis of numbers; the labels of one of texts.
    values: Sequence[float] | Sequence[str]
    #: How many values the axis says it has.
    size: int
    step: float = 0.0

    @property
    def unit(self) -> str:
        return unit_of(self.code)


@dataclass(frozen=True)
class Figures:
    """A block of statistics: the rows of values at the extremes, and the means."""

    rows: list[list[float]]
    means: list[float]


@dataclass(frozen=True)
class GroupModel:
    """An output group, as scripts see it."""

    extension: str
    name: str
    content: bytes
    text: bool
    #: Type of the values as read; None if scripts cannot be given values of this group.
    dtype: str | None
    shape: Shape
    primary: AxisModel
    secondary: AxisModel | None
    names: list[str]
    codes: list[bytes]
    #: [variable, secondary, point]
    values: NDArray[Any]
    #: One block for each secondary value, from the first on; there may be less of them.
    blocks: list[Figures]
    header: bytes = field(repr=False)
    data_name: str = ""
    data: bytes = field(repr=False, default=b"")

    @property
    def axes(self) -> list[AxisModel]:
        return [self.primary] + ([self.secondary] if self.secondary else [])


@dataclass(frozen=True)
class RandomRun:
    """A run: its files, and what is to be read from them with a setting of the type."""

    seed: int
    name: str
    data_type_for_reading: int
    buffered: bool
    ending: bytes
    groups: list[GroupModel]

    def write(self, folder: Path) -> None:
        folder.mkdir(parents=True, exist_ok=True)
        (folder / f"{self.name}.$TE").write_bytes(self.ending)
        for group in self.groups:
            (folder / f"{self.name}{group.extension}").write_bytes(group.header)
            (folder / group.data_name).write_bytes(group.data)


class GroupMaker:
    """Makes one random group."""

    def __init__(self, rng: Random, target: str | None) -> None:
        self.rng = rng
        self.word: Word = rng.choice(("R*4", "R*4", "R*8", "I*4", "I*2", "I*8"))
        self.dtype = target or SERVED.get(self.word)
        self.text = rng.random() < 0.5
        two_axes = rng.random() < 0.5
        points = rng.choice((0, 1, 2, 3, 5, 8)) if rng.random() < 0.985 else rng.randint(500, 1500)
        secondary = rng.randint(1, 4) if two_axes else None
        held = points or rng.choice((0, 0, 1, 3))
        self.shape = Shape(points, secondary, rng.choice((1, 1, 2, 3, 5)), held)

    def make(self, name: bytes, variables: list[bytes], run: str, extension: str) -> GroupModel:
        rng, words = self.rng, Words(self.rng)
        data = self._data()
        primary, primary_fields = self._axis(words, self.shape.points, is_primary=True)
        secondary, secondary_fields = None, []
        if self.shape.secondary is not None:
            secondary, secondary_fields = self._axis(words, self.shape.secondary, is_primary=False)
        codes = [words.code() for _ in variables]
        data_name = rng.choice((run + extension.replace("%", "$"), f"data of {run}{extension}.x"))
        content = rng.choice(list(CALCULATIONS)) if rng.random() < 0.3 else b"POWPROD"
        fields = self._top(name, content, data_name, data.head_lines)
        fields += [*secondary_fields, *primary_fields]
        blocks, ending = self._behind_axes()
        fields = with_variables(rng, fields + ending, self._names(variables), self._codes(codes))
        return GroupModel(
            extension,
            text_of(name),
            b" ".join(content.split()),
            self.text,
            self.dtype,
            self.shape,
            primary,
            secondary,
            [text_of(variable) for variable in variables],
            codes,
            data.values,
            blocks,
            header_bytes(rng, with_decoys(rng, fields)),
            data_name,
            data.content,
        )

    def _data(self) -> RandomData:
        form = text_data if self.text else binary_data
        return form(self.rng, self.word, self.dtype or "float64", self.shape)

    def _top(self, name: bytes, content: bytes, data_name: str, head: int) -> list[Field]:
        rng, shape = self.rng, self.shape
        sizes = [shape.variables, *([shape.secondary] if shape.secondary else []), shape.points]
        dimensions = [b"%d" % size for size in sizes] + rng.choice(([], [], [], [b"x", b"9"]))
        file = rng.choice((b"%s", b"'%s'", b'"%s"')) % data_name.encode()
        return [
            Field(b"FILE", [file], continued=False),
            Field(b"ACCESS", [b"S" if self.text else b"D"]),
            Field(b"FORM", rng.choice(([b"F"], [b"F", b"G"], [b""]))),
            Field(b"RECL", [b"%d" % rng.choice((WORDS[self.word][1], 8, 0, -3))]),
            Field(b"FORMAT", [rng.choice(SPELLINGS[self.word]).encode()], continued=False),
            *([Field(b"HEADREC", [b"%d" % head], continued=False, tied=True)] if head else []),
            Field(b"CONTENT", [quoted(rng, content)]),
            Field(b"CONFIG", [rng.choice((b"''", b"", b"'TRANSIENT'", b"' x  y '"))]),
            Field(b"NDIMENS", [b"%d" % len(sizes)]),
            Field(b"DIMENS", broken(rng, dimensions)),
            Field(b"GENLAB", [quoted(rng, name)]),
        ]

    def _axis(self, words: Words, size: int, *, is_primary: bool) -> tuple[AxisModel, list[Field]]:
        rng = self.rng
        name = rng.choice((b"Time", b"TIME", words.name())) if is_primary else words.name()
        kind = rng.choice((INTERVAL, INTERVAL, NUMBERS, TEXTS))
        code = words.code()
        values, fields, step = self._axis_values(kind, size, is_primary=is_primary)
        method = {INTERVAL: 2, NUMBERS: 3, TEXTS: 1}[kind]
        head = [
            Field(b"AXISLAB", [quoted(rng, name)]),
            Field(b"AXIUNIT", [quoted(rng, code, always=rng.random() < 0.3)]),
            Field(b"AXIMETH", [b"%d" % method]),
        ]
        return AxisModel(text_of(name), code, kind, values, size, step), head + fields

    def _axis_values(
        self, kind: int, size: int, *, is_primary: bool
    ) -> tuple[Sequence[float] | Sequence[str], list[Field], float]:
        rng = self.rng
        if kind == INTERVAL:
            start, step = real_token(rng), "0"
            while float(step) == 0:
                step = rng.choice((real_token(rng, widest=5), "0.05", "5.0000000E-02"))
            # The start comes second: value = index * step + start.
            values = [i * float(step) + float(start) for i in range(size)]
            lines = [Field(b"MIN", [start.encode()], continued=False)]
            return values, [*lines, Field(b"STEP", [step.encode()], continued=False)], float(step)
        # Data over labels may be shorter than they are many, or longer.
        count = max(1, size + (rng.choice((0, 0, -1, 2)) if is_primary else 0))
        if kind == NUMBERS:
            tokens = [real_token(rng, widest=90) for _ in range(count)]
            if rng.random() < 0.2:
                tokens[-1] = tokens[0]
            rows = broken(rng, [token.encode() for token in tokens])
            return [float(token) for token in tokens], [Field(b"AXIVAL", rows)], 0.0
        words = Words(rng)
        labels = [words.name() for _ in range(count)]
        if rng.random() < 0.2:
            labels[-1] = labels[0]
        rows = broken(rng, [item(rng, label) for label in labels])
        return [text_of(label) for label in labels], [Field(b"AXITICK", rows)], 0.0

    def _names(self, variables: list[bytes]) -> Field:
        return Field(b"VARIAB", broken(self.rng, [item(self.rng, name) for name in variables]))

    def _codes(self, codes: list[bytes]) -> Field:
        return Field(b"VARUNIT", broken(self.rng, [item(self.rng, code) for code in codes]))

    def _behind_axes(self) -> tuple[list[Figures], list[Field]]:
        """Return the figures of the header, and all lines behind the axes."""
        rng, fields = self.rng, []
        if rng.random() < 0.3:
            lines = [rng.choice((b"a = 1", b" 'x", b"ULOADS 1", b"\tb\t")) for _ in range(2)]
            lines = lines[: rng.randint(0, 2)]
            fields.append(Field(b"NVARS", [b"%d" % len(lines)], continued=False, tied=True))
            fields += [Field(b"", [line], continued=False, tied=True) for line in lines]
        blocks: list[Figures] = []
        if rng.random() < 0.6:
            count = self.shape.rows if rng.random() < 0.8 else rng.randint(0, self.shape.rows)
            for _ in range(count):
                figures, lines_of_block = self._block()
                blocks.append(figures)
                fields += lines_of_block
        if (
            fields and rng.random() < 0.1
        ):  # figures are looked for on the next line, and nowhere else
            places = [i for i, each in enumerate(fields) if each.label in (b"NVARS", b"ULOADS")]
            fields.insert(places[0], Field(b"", [b"REMARK"], continued=False, tied=True))
            blocks = []
        return blocks, fields

    def _block(self) -> tuple[Figures, list[Field]]:
        rng, count, dtype = self.rng, self.shape.variables, self.dtype or "float64"
        whole = self.word.startswith("I") and (dtype == "int32" or rng.random() < 0.5)

        def row() -> list[str]:
            if dtype == "int32" and rng.random() < 0.1:  # the front of it is a whole number
                return [f"{rng.randint(-9, 9)}.5E+01" for _ in range(count)]
            return [whole_token(rng, 32) if whole else real_token(rng) for _ in range(count)]

        rows = [row() for _ in range(2 * count)]
        means = [real_token(rng) for _ in range(count)]
        times = [[whole_token(rng, 31) for _ in range(count)] for _ in range(2)]
        spread = [blanks(rng).join(token.encode() for token in tokens) for tokens in rows]
        fields = [Field(b"ULOADS", spread, tied=True)]
        for label, tokens in ((b"MAXTIME", times[0]), (b"MINTIME", times[1]), (b"MEAN", means)):
            line = b"  ".join(token.encode() for token in tokens)
            fields.append(Field(label, [line], continued=False, tied=True))
        numbers = [[number_of(token, dtype) for token in tokens] for tokens in rows]
        return Figures(numbers, [float(mean) for mean in means]), fields


def random_run(seed: int) -> RandomRun:
    """Return the run of a seed."""
    rng = Random(seed)
    setting = rng.choice((0, 0, 1, 2, 7, -1))
    words, run = Words(rng), rng.choice(("run", "a.b", "two words", "100%", "Gr\u00f6\u00dfe"))
    shared = [words.name(), words.name()]
    groups = []
    for number in rng.sample((1, 2, 7, 10, 99, 100, 2147483647), rng.choice((1, 1, 2, 3))):
        maker = GroupMaker(rng, TARGETS[setting])
        names = [words.name() for _ in range(maker.shape.variables)]
        if rng.random() < 0.3:  # the same name stands in other groups too
            names[-1] = rng.choice(shared)
        extension = rng.choice((f".%{number:02}", f".%{number}", f".%{number:04}"))
        groups.append(maker.make(words.name(), names, run, extension))
    buffered = rng.random() < 0.7
    return RandomRun(seed, run, setting, buffered, rng.choice(list(ENDINGS)), groups)


def computed_figures(group: GroupModel, secondary: int) -> Figures:
    """Return the figures of the data: of equal values the first counts, sums are of the type."""
    series = [table[secondary] for table in group.values]
    rows, means = [], []
    for values in series:
        highest = lowest = 0
        for place, value in enumerate(values.tolist()):
            if value > values[highest]:
                highest = place
            if value < values[lowest]:
                lowest = place
        rows += [[other[place].item() for other in series] for place in (highest, lowest)]
        with np.errstate(all="ignore"):
            total = np.add.accumulate(values, dtype=values.dtype)[-1]
            means.append(float(total) / len(values))
    return Figures(rows, means)
