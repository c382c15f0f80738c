"""Reads a group through the module of tables, and compares everything with its model."""

from __future__ import annotations

from pathlib import Path
from random import Random
from typing import Any

import _TabulonAPI_Python as native
import numpy as np
import tabulon._tables as tables
from numpy.typing import NDArray

from support.flat import SUFFIXES, Flat, get_run
from support.random_data import STORED
from support.random_runs import CALCULATIONS, INTERVAL, TEXTS, AxisModel, GroupModel, RandomRun
from support.random_text import unit_of
from support.run_checks import same_bits

NUMBERS_OF_TYPES = {"R*4": 1, "R*8": 2, "I*2": 3, "I*4": 4, "I*8": 5}


def readable(unit: str) -> str:
    """Return a unit of the library, in which signs are bytes of Latin-1, as text."""
    return unit.encode(errors="surrogateescape").decode("latin-1")


def finite_figures(values: NDArray[Any]) -> tuple[float, ...]:
    """Return minimum, maximum, their places, mean, deviation, finite and other values."""
    wide = values.astype("float64")
    finite = np.isfinite(wide)
    if not finite.any():
        nan = float("nan")
        return nan, nan, -1, -1, nan, nan, 0, len(wide)
    low = int(np.argmin(np.where(finite, wide, np.inf)))
    high = int(np.argmax(np.where(finite, wide, -np.inf)))
    kept = wide[finite]
    with np.errstate(all="ignore"):
        mean, deviation = kept.mean(), kept.std()
    count = int(finite.sum())
    return wide[low], wide[high], low, high, mean, deviation, count, len(wide) - count


class TableCheck:
    """The check of one group of a random run."""

    def __init__(self, run: RandomRun, model: GroupModel, folder: Path) -> None:
        self.run, self.model, self.folder = run, model, folder
        self.rng = Random(run.seed + 2)
        self.dtype = model.dtype or "float64"
        self.table = tables.GroupTable.open(folder / f"{run.name}{model.extension}")

    def check(self) -> None:
        self._facts()
        for axis, expected in zip(self.table.axes, self.model.axes, strict=True):
            self._axis(axis, expected)
        self._rows()
        self._whole()
        for _ in range(3):
            self._part()
        self._figures()
        self._library()

    def _facts(self) -> None:
        table, model = self.table, self.model
        assert table.name == model.name
        assert table.number == int(model.extension[2:])
        assert table.content == model.content.decode()
        assert table.calculation == CALCULATIONS[model.content][0]
        assert table.binary is not model.text
        assert Path(table.data_path) == self.folder / model.data_name
        assert table.data_size() == len(model.data)
        assert [variable.name for variable in table.variables] == model.names
        codes = [code.decode(errors="surrogateescape") for code in model.codes]
        assert [variable.quantity for variable in table.variables] == codes
        units = [readable(unit_of(code)) for code in model.codes]
        assert [variable.unit for variable in table.variables] == units

    def _axis(self, axis: Any, model: AxisModel) -> None:  # noqa: ANN401
        assert (axis.name, axis.kind) == (model.name, model.kind)
        assert axis.unit == readable(model.unit)
        assert axis.count == model.size or model.kind != INTERVAL
        if model.kind == INTERVAL:
            values = [i * axis.step + axis.minimum for i in range(axis.count)]
            assert (values, axis.step) == (list(model.values), model.step)
            assert axis.values is None
            assert axis.labels is None
        elif model.kind == TEXTS:
            assert axis.labels == list(model.values)
        else:
            same_bits(axis.values, np.array(model.values, "float64"))

    def _rows(self) -> None:
        rows = self.table.rows()
        assert rows.expected == self.model.shape.points
        assert rows.found >= self.model.shape.held
        if self.model.shape.points == 0:
            assert (rows.found, rows.torn) == (self.model.shape.held, False)

    def _read(self, selection: Any) -> NDArray[Any]:  # noqa: ANN401
        values = self.table.read(selection, self.dtype)
        assert values.shape == self.table.shape_of(selection)
        assert values.flags.c_contiguous
        out = np.full(values.shape, 17, self.dtype)
        self.table.read_into(selection, out)
        same_bits(out, values)
        return values

    def _whole(self) -> None:
        selection = tables.Selection(range(len(self.model.names)))
        expected = self.model.values
        expected = expected.reshape(expected.shape[0] * expected.shape[1], expected.shape[2])
        same_bits(self._read(selection), expected)
        self._reduced(selection, expected, np.arange(expected.shape[1]))

    def _part(self) -> None:
        rng, shape, values = self.rng, self.model.shape, self.model.values
        variables = rng.choices(range(shape.variables), k=rng.randint(0, 4))
        secondary = rng.choice((None, rng.choices(range(shape.rows), k=rng.randint(1, 3))))
        first, step = rng.randint(0, shape.held), rng.randint(1, 3)
        count = rng.randint(0, (shape.held - first + step - 1) // step)
        if rng.random() < 0.2 and shape.held == shape.points:
            count = len(range(first, shape.held, step))
            selection = tables.Selection(variables, secondary, first, None, step)
        else:
            selection = tables.Selection(variables, secondary, first, count, step)
        rows = first + step * np.arange(count)
        chosen = values[variables][:, list(range(shape.rows)) if secondary is None else secondary]
        expected = np.ascontiguousarray(chosen[:, :, rows])
        expected = expected.reshape(chosen.shape[0] * chosen.shape[1], count)
        same_bits(self._read(selection), expected)
        self._reduced(selection, expected, rows)

    def _reduced(self, selection: Any, values: NDArray[Any], rows: NDArray[Any]) -> None:  # noqa: ANN401
        if self.dtype != self.table.dtype:  # figures are those of the stored values
            return
        figures = self.table.reduce(selection)
        for place, column in enumerate(values):
            low, high, low_row, high_row, mean, deviation, count, others = finite_figures(column)
            np.testing.assert_equal([figures.minimum[place], figures.maximum[place]], [low, high])
            assert figures.minimum_row[place] == (rows[low_row] if low_row >= 0 else -1)
            assert figures.maximum_row[place] == (rows[high_row] if high_row >= 0 else -1)
            assert (figures.count[place], figures.not_finite[place]) == (count, others)
            if np.isfinite(mean) and np.isfinite(deviation):
                scale = max(abs(low), abs(high))
                assert abs(figures.mean[place] - mean) <= 1e-13 * scale
                assert abs(figures.deviation[place] - deviation) <= 1e-9 * scale

    def _figures(self) -> None:
        model, count = self.model, len(self.model.names)
        assert self.table.has_figures is bool(model.blocks)
        wanted = self.rng.sample(range(count), self.rng.randint(1, count))
        at = self.rng.randrange(count)
        figures = self.table.stored_figures(wanted, at)
        if not model.blocks:
            assert figures is None
            return
        if not self._is_stored_type():
            return
        for s in range(model.shape.rows):
            if s >= len(model.blocks):
                assert np.isnan(figures.minimum[:, s]).all()
                continue
            block = model.blocks[s]
            for place, variable in enumerate(wanted):
                found = [
                    figures.maximum[place, s],
                    figures.minimum[place, s],
                    figures.mean[place, s],
                ]
                rows = (block.rows[2 * variable], block.rows[2 * variable + 1])
                np.testing.assert_equal(
                    found, [rows[0][variable], rows[1][variable], block.means[variable]]
                )
            np.testing.assert_equal(figures.at_maximum[:, s].tolist(), block.rows[2 * at])
            np.testing.assert_equal(figures.at_minimum[:, s].tolist(), block.rows[2 * at + 1])

    def _is_stored_type(self) -> bool:
        code = self.table.stored_type
        word = next(word for word, number in NUMBERS_OF_TYPES.items() if number == code)
        return STORED[word] == self.model.dtype

    def _library(self) -> None:
        """The flat module tells the same."""
        model = self.model
        if model.dtype is None:
            return
        native.TabulonApi_clear_runs()
        native.TabulonApi_CacheSettings_set_data_type_for_reading(self.run.data_type_for_reading)
        run = get_run(self.folder, self.run.name)
        axes = len(model.axes)
        way = f"_RUNPREFIX_get_variable_{axes}d_from_specific_output_group_{model.dtype}"
        for place, name in enumerate(model.names):
            pointer = getattr(run, way)(name, model.name)
            variable = Flat(f"Variable{axes}D_{SUFFIXES[model.dtype]}", pointer)
            own = self.table.read(tables.Selection([place]), model.dtype)
            for s in range(model.shape.rows):
                if axes == 1:
                    same_bits(own[0], variable._get_data_numpy_from_vector())
                else:
                    same_bits(own[s], variable._get_data_at_index_numpy_from_vector(s))
