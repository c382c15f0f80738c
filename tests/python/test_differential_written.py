"""Random output groups leave files that hold what was given, by a parser of their own."""

from __future__ import annotations

import os
from pathlib import Path
from typing import Any

import _TabulonAPI_Python as native
import numpy as np
import pytest
from numpy.typing import NDArray
from support.flat import Flat, get_run, get_variable
from support.random_outputs import CODES, OutputAxis, OutputModel, Writer, random_output
from support.random_text import number_of
from support.seeds import files_of_seed
from support.written_files import WrittenAxis, binary_values, parse_header, text_tokens

GROUPS = int(os.environ.get("TABULON_DIFFERENTIAL_GROUPS", "500"))
FIRST_SEED = int(os.environ.get("TABULON_DIFFERENTIAL_SEED", "1"))
BATCHES = 10
FORMATS = {"float32": b"R*4", "float64": b"R*8", "int32": b"I*4"}


def stored(text: str) -> bytes:
    return text.encode("utf-8", "surrogateescape")


class Check:
    """The check of one output group."""

    def __init__(self, seed: int, folder: Path) -> None:
        self.model: OutputModel = random_output(seed)
        self.path = folder / "out.%07"
        self.writer = Writer(self.model, self.path, seed)

    def check(self) -> None:
        pieces = self.model.pieces
        for place, points in enumerate(pieces):
            self.writer.give(points)
            # What was written stays changeable: each time the whole is written anew.
            if place % 2 == 0 or place == len(pieces) - 1:
                self._write_and_compare()
        before = [path.read_bytes() for path in sorted(self.path.parent.iterdir())]
        assert native.TabulonApi_write_output(self.writer.group.pointer, 1) is False
        assert [path.read_bytes() for path in sorted(self.path.parent.iterdir())] == before

    def _write_and_compare(self) -> None:
        assert native.TabulonApi_write_output(self.writer.group.pointer) is True
        names = {"out.%07", "out.$07"} | ({"out.$TE"} if self.model.makes_run else set())
        assert {path.name for path in self.path.parent.iterdir()} == names
        self._header()
        content = (self.path.parent / "out.$07").read_bytes()
        self._text(content) if self.model.text else self._binary(content)
        if self.model.makes_run:
            ending = (self.path.parent / "out.$TE").read_bytes()
            assert ending == b"User-generated output group 'out.%07'\n"
            self._read_back()

    @property
    def _sizes(self) -> list[int]:
        return [*self.model.sizes[:-1], self.writer.done]

    def _header(self) -> None:
        model, header = self.model, parse_header(self.path.read_bytes())
        word = FORMATS[model.dtype]
        assert header.fields == {
            "FILE": b"out.$07",
            "ACCESS": b"S" if model.text else b"D",
            "FORM": b"F",
            "RECL": word[-1:],
            "FORMAT": word,
            "CONTENT": stored(model.source),
            "CONFIG": stored(model.config),
            "NDIMENS": b"%d" % len(self._sizes),
            "GENLAB": stored(model.name),
        }
        assert header.sizes == self._sizes
        assert header.names == [stored(name) for name in model.names]
        assert header.codes == [CODES[unit] for unit in model.units]
        # No figures: they are for calculations that are written while they run.
        assert header.rest == []
        for found, axis in zip(header.axes, model.axes, strict=True):
            self._axis(found, axis)

    def _axis(self, found: WrittenAxis, axis: OutputAxis) -> None:
        digits = 15 if self.model.dtype == "float64" else 7
        assert (found.name, found.code) == (stored(axis.name), CODES[axis.unit])
        labels = axis.labels
        if labels is None:
            assert found.method == 2
            expected = [f"{number:.{digits}E}" for number in axis.given]
        elif isinstance(labels[0], str):
            assert found.method == 1
            expected = [str(label) for label in labels]
        else:
            assert found.method == 3
            expected = [f"{number:.{digits}f}" for number in labels]
        assert found.tokens == [stored(token) for token in expected]

    def _binary(self, content: bytes) -> None:
        values = binary_values(content, FORMATS[self.model.dtype], self._sizes)
        expected = self.model.values[:, :, : self.writer.done]
        assert values.tobytes() == expected.tobytes()

    def _text(self, content: bytes) -> None:
        table = text_tokens(content, self._sizes)
        expected = self.model.values[:, :, : self.writer.done]
        assert table == [[[self._token(v) for v in row] for row in rows] for rows in expected]

    def _token(self, value: np.generic) -> bytes:
        """Return a number with the white space in front of it; the sign takes a blank's place."""
        code = {"float32": ".7e", "float64": ".15e", "int32": "d"}[self.model.dtype]
        text = format(value.item(), code)
        if np.signbit(value):
            return f" -{text.lstrip('-')}".encode()
        return f"  {text}".encode()

    def _read_back(self) -> None:
        """What was written can be read, and has the values of its file."""
        values = self.model.values[:, :, : self.writer.done]
        if self.model.text:
            if not np.isfinite(values).all():
                return  # a text file has no numbers for these
            tokens = [self._token(value).decode().strip() for value in values.flat]
            numbers = [number_of(token, self.model.dtype) for token in tokens]
            values = np.array(numbers, self.model.dtype).reshape(values.shape)
        run = get_run(self.path.parent, "out")
        for name, table in zip(self.model.names, values, strict=True):
            self._read_variable(
                get_variable(run, name, self.model.dtype, len(self.model.axes)), table
            )
        native.TabulonApi_clear_runs()

    def _read_variable(self, variable: Flat, table: NDArray[Any]) -> None:
        for place, row in enumerate(table):
            found = (
                variable._get_data_numpy_from_vector()
                if self.model.secondary is None
                else variable._get_data_at_index_numpy_from_vector(place)
            )
            assert found.tobytes() == row.tobytes()


@pytest.mark.parametrize("batch", range(min(BATCHES, GROUPS)))
def test_random_output_groups_leave_what_was_given(batch: int, tmp_path: Path) -> None:
    for seed in range(FIRST_SEED + batch, FIRST_SEED + GROUPS, BATCHES):
        folder = tmp_path / f"seed {seed}"
        test = "tests/python/test_differential_written.py"
        with files_of_seed("output group", seed, folder, "TABULON_DIFFERENTIAL_GROUPS", test):
            Check(seed, folder).check()
