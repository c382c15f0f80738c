"""Reads a random run through the extension module, and compares everything with its model."""

from __future__ import annotations

import math
from collections.abc import Callable, Sequence
from pathlib import Path
from random import Random
from typing import Any

import _TabulonAPI_Python as native
import numpy as np
from numpy.typing import NDArray

from support.flat import DATA_TYPES, SUFFIXES, Flat, error_of, get_axis, get_group, get_run
from support.random_runs import (
    CALCULATIONS,
    ENDINGS,
    INTERVAL,
    TEXTS,
    AxisModel,
    Figures,
    GroupModel,
    RandomRun,
    computed_figures,
)
from support.random_text import other_case, unit_of

NO_FIGURES = "Header does not contain stats"
NOT_SERVED = "Data type is not supported by the Tabulon API"
NOT_SUPPORTED = "The request cannot be fulfilled for an unsupported calculation type"
NOT_TIME = "Unable to get the simulation length in seconds"
AMBIGUOUS = "The variable was found in more than one output group"
NO_NUMBERS = "Labelled string axis labels cannot be requested as numeric labels"


def refused(call: Callable[[], object], words: str) -> None:
    text = error_of(call)
    assert words in text, text


def same(found: float, expected: float) -> None:
    """Compare numbers; NaN equals NaN, and the type counts."""
    assert type(found) is type(expected), (found, expected)
    assert found == expected or (math.isnan(found) and math.isnan(expected)), (found, expected)


def same_bits(found: NDArray[Any], expected: NDArray[Any]) -> None:
    assert found.dtype == expected.dtype
    assert found.shape == expected.shape
    assert found.tobytes() == expected.tobytes(), (found, expected)


def same_numbers(found: Sequence[float], expected: NDArray[Any]) -> None:
    """Compare Python numbers from the library with values of a type, bit for bit."""
    numbers = expected.tolist()
    assert [type(number) for number in found] == [type(number) for number in numbers]
    assert np.array(found).tobytes() == np.array(numbers).tobytes(), (found, numbers)


def rounded_length(step: float, count: int) -> float:
    """Return step x count to four decimals, halves away from zero."""
    scaled = step * count * 10000
    whole = math.trunc(scaled) if math.isfinite(scaled) else scaled
    return (whole + (math.copysign(1, scaled) if abs(scaled - whole) >= 0.5 else 0)) / 10000


class RunCheck:
    """The check of one run."""

    def __init__(self, run: RandomRun, folder: Path) -> None:
        self.model, self.folder, self.rng = run, folder, Random(run.seed + 1)
        native.TabulonApi_clear_runs()
        native.TabulonApi_CacheSettings_set_data_type_for_reading(run.data_type_for_reading)
        native.TabulonApi_CacheSettings_set_buffered_read_enabled(run.buffered)
        self.run = get_run(folder, run.name)

    def check(self) -> None:
        self._run_facts()
        groups = list(self.model.groups)
        self.rng.shuffle(groups)
        self._names_in_the_run()
        for group in groups:
            GroupCheck(self, group).check()
        self._all_groups()

    def _headers(self) -> list[GroupModel]:
        """Return the groups in the order in which the directory has their headers."""
        by_name = {f"{self.model.name}{group.extension}": group for group in self.model.groups}
        return [by_name[path.name] for path in self.folder.iterdir() if path.name in by_name]

    @property
    def is_supported(self) -> bool:
        return CALCULATIONS[self._headers()[0].content][1]

    def _run_facts(self) -> None:
        model, state = self.model, ENDINGS[self.model.ending]
        assert self.run.get_name() == model.name
        assert self.run.get_directory() == f"{self.folder}/"
        content = model.ending.decode().rstrip(" \t\r\n")
        assert self.run.get_termination_file_content() == content
        assert self.run.get_completion_state() == state
        assert self.run.has_finished() is ("Run in progress" not in content)
        assert self.run.was_successful() is (state == 1)
        assert self.run.was_unsuccessful() is (state in (2, 3, 4))
        type_of_first, supported = CALCULATIONS[self._headers()[0].content]
        assert self.run.get_calculation_type() == type_of_first
        assert self.run.is_calculation_type_supported() is supported

    def _names_in_the_run(self) -> None:
        """Names are sought in all groups, and two groups may have the same."""
        holders: dict[str, list[GroupModel]] = {}
        for group in self.model.groups:
            for name in group.names:
                holders.setdefault(name, []).append(group)
        for name, groups in holders.items():
            ask = other_case(self.rng, name)
            if any(group.dtype is None for group in groups):
                refused(lambda ask=ask: self.run._get_variable(ask), NOT_SERVED)
            elif len(groups) > 1:
                refused(lambda ask=ask: self.run._get_variable(ask), AMBIGUOUS)
                assert self.run.contains_variable_1d(ask) is True
                assert self.run.contains_variable_2d(ask) is True
            else:
                variable = Flat("Variable", self.run._get_variable(ask))
                assert variable.get_name() == name
                assert self.run.contains_variable_1d(ask) is (groups[0].secondary is None)
                assert self.run.contains_variable_2d(ask) is (groups[0].secondary is not None)
        refused(lambda: self.run._get_variable("No such name"), "The variable was not found")

    def _all_groups(self) -> None:
        if not self.is_supported:
            refused(self.run._get_all_groups_native_array, NOT_SUPPORTED)
        elif any(group.dtype is None for group in self.model.groups):
            refused(self.run._get_all_groups_native_array, NOT_SERVED)
        else:
            found = [Flat("Group", group) for group in self.run._get_all_groups_native_array()]
            assert {group.get_name() for group in found} == {g.name for g in self.model.groups}
            assert len(found) == len(self.model.groups)


class GroupCheck:
    """The check of one group: its facts, its figures before and after its data, and the data."""

    def __init__(self, owner: RunCheck, model: GroupModel) -> None:
        self.owner, self.run, self.model, self.rng = owner, owner.run, model, owner.rng

    def check(self) -> None:
        model = self.model
        if not self.owner.is_supported:
            refused(lambda: get_group(self.run, model.name), NOT_SUPPORTED)
        elif model.dtype is None:
            refused(lambda: get_group(self.run, model.name), NOT_SERVED)
        else:
            self._group_facts(get_group(self.run, other_case(self.rng, model.name)))
        if model.dtype is None:
            find = self.run._get_variable_from_specific_output_group
            refused(lambda: find(model.names[0], model.name), NOT_SERVED)
            return
        variables = [self._variable(name) for name in model.names]
        for place, variable in enumerate(variables):
            self._variable_facts(place, variable)
        self._figures(variables, self._stored)
        self._read(variables)
        self._figures(variables, self._computed)
        self._unload_one(variables)

    # What the header tells.

    def _group_facts(self, group: Flat) -> None:
        model = self.model
        assert group.get_name() == model.name
        assert group.get_number() == int(model.extension[2:])
        path = f"{self.owner.folder}/{self.owner.model.name}{model.extension}"
        assert group.get_header_file_path() == path
        assert group._get_variable_names_native_array() == tuple(model.names)
        assert group.get_number_of_variables() == len(model.names)
        assert group.get_number_of_independent_variables() == len(model.axes)
        assert group.get_calculation_short_name() == model.content.decode()
        assert group.get_calculation_type() == CALCULATIONS[model.content][0]
        assert group.get_variable_data_type() == DATA_TYPES[str(model.dtype)]
        assert group.get_variable_data_format() == (0 if model.text else 1)
        assert group.get_data_point_count() == model.shape.points
        self._length(group)
        for place, axis in enumerate(model.axes):
            self._axis(get_axis(group, self.rng.choice((place, axis.name))), axis)

    def _length(self, owner: Flat) -> None:
        axis = self.model.primary
        if axis.kind == INTERVAL and axis.name.lower() == "time":
            expected = rounded_length(axis.step, self.model.shape.points)
            assert owner.get_time_domain_simulation_length() == expected
        else:
            refused(owner.get_time_domain_simulation_length, NOT_TIME)

    def _axis(self, axis: Flat, model: AxisModel) -> None:
        assert axis.get_name() == model.name
        assert axis.get_siunit() == model.unit
        assert axis.get_axis_type() == model.kind
        assert axis.get_number_of_values() == model.size
        texts = axis._get_values_as_string_native_array()
        if model.kind == TEXTS:
            assert texts == tuple(model.values)
            refused(axis._get_values_as_number_native_array, NO_NUMBERS)
            return
        digits = 15 if self.model.dtype == "float64" else 7
        assert texts == tuple(f"{value:.{digits}E}" for value in model.values)
        numbers = np.array(model.values, "float64")
        same_bits(axis._get_values_as_number_numpy_from_vector(), numbers)
        same_numbers(axis._get_values_as_number_native_array(), numbers)

    def _variable(self, name: str) -> Flat:
        axes = len(self.model.axes)
        way = f"_RUNPREFIX_get_variable_{axes}d_from_specific_output_group_{self.model.dtype}"
        names = (other_case(self.rng, each) for each in (name, self.model.name))
        family = f"Variable{axes}D_{SUFFIXES[str(self.model.dtype)]}"
        return Flat(family, getattr(self.run, way)(*names))

    def _variable_facts(self, place: int, flat: Flat) -> None:
        model, variable = self.model, Flat("Variable", flat.pointer)
        assert variable.get_name() == model.names[place]
        assert variable.get_quantity_code() == model.codes[place].decode(errors="surrogateescape")
        assert variable.get_siunit() == unit_of(model.codes[place])
        assert variable.get_number_of_independent_variables() == len(model.axes)
        assert variable.get_parent_group_name() == model.name
        assert variable.get_parent_group_number() == int(model.extension[2:])
        assert variable.get_data_point_count() == model.shape.points
        assert variable.get_data_type() == DATA_TYPES[str(model.dtype)]
        assert variable.get_data_format() == (0 if model.text else 1)
        self._length(variable)
        for axis, expected in zip(
            variable._get_independent_variables_native_array(), model.axes, strict=True
        ):
            self._axis(Flat("IndependentVariable", axis), expected)

    # Figures.

    def _stored(self, secondary: int) -> Figures | None:
        blocks = self.model.blocks
        return blocks[secondary] if secondary < len(blocks) else None

    def _computed(self, secondary: int) -> Figures:
        return computed_figures(self.model, secondary)

    def _figures(self, variables: list[Flat], told: Callable[[int], Figures | None]) -> None:
        if not self.model.shape.held:
            return
        for secondary in range(self.model.shape.rows):
            figures = told(secondary)
            for place, variable in enumerate(variables):
                self._figures_of(variable, place, secondary, figures)

    def _figures_of(
        self, variable: Flat, place: int, secondary: int, figures: Figures | None
    ) -> None:
        flat = self.model.secondary is None
        ending, where = ("", ()) if flat else ("_at_index", (secondary,))
        mean = getattr(variable, f"get_mean{ending}")
        if figures is None:
            refused(lambda: mean(*where), NO_FIGURES)
        else:
            same(mean(*where), figures.means[place])
        other = self.rng.randrange(len(self.model.names))
        name = other_case(self.rng, self.model.names[other])
        for extreme, row in (("maximum", 2 * place), ("minimum", 2 * place + 1)):
            plain = getattr(variable, f"get_{extreme}{ending}")
            at_once = getattr(variable, f"get_{extreme}_contemporaneous{ending}")
            if figures is None:
                refused(lambda plain=plain: plain(*where), NO_FIGURES)
                refused(lambda at_once=at_once: at_once(name, *where), NO_FIGURES)
            else:
                same(plain(*where), figures.rows[row][place])
                same(at_once(name, *where), figures.rows[row][other])

    # Data.

    def _read(self, variables: list[Flat]) -> None:
        requests = [(p, s) for p in range(len(variables)) for s in range(self.model.shape.rows)]
        self.rng.shuffle(requests)
        loaded: set[tuple[int, int]] = set()
        for place, secondary in requests:
            variable, table = variables[place], self.model.values[place]
            loaded |= {(place, row) for row in self._read_row(variable, table, secondary)}
            if (place, secondary) not in loaded:  # another row has the same value, and came first
                same_bits(
                    variable._get_data_at_index_numpy_from_vector(secondary), table[secondary]
                )
                loaded.add((place, secondary))
            self._figures_in_between(variables, secondary, loaded)

    def _figures_in_between(
        self, variables: list[Flat], secondary: int, loaded: set[tuple[int, int]]
    ) -> None:
        """Some of the data does not tell the figures: the header does, if it has them."""
        if not self.model.shape.held or self.rng.random() < 0.7:
            return
        whole = all((place, secondary) in loaded for place in range(len(variables)))
        figures = self._computed(secondary) if whole else self._stored(secondary)
        if figures is not None:
            place = self.rng.randrange(len(variables))
            self._figures_of(variables[place], place, secondary, figures)

    def _read_row(self, variable: Flat, table: NDArray[Any], secondary: int) -> range:
        """Read a row in one of the ways there are, and return the rows that were read with it."""
        if self.model.secondary is None:
            same_bits(variable._get_data_numpy_from_vector(), table[0])
            same_numbers(variable._get_data_native_array(), table[0])
            return range(1)
        if self.rng.random() < 0.2:
            way = "_get_data_for_all_independent_variable_values_native_array"
            for row, expected in zip(getattr(variable, way)(), table, strict=True):
                same_numbers(row, expected)
            return range(len(table))
        way, key = self._way_to(secondary)
        row = key_of(self.model, way, key)
        same_bits(getattr(variable, f"_get_data_at_{way}_numpy_from_vector")(key), table[row])
        same_numbers(getattr(variable, f"_get_data_at_{way}_native_array")(key), table[row])
        return range(row, row + 1)

    def _way_to(self, secondary: int) -> tuple[str, int | float | str]:
        """Return how to ask for a secondary value: by its index, its number or its text."""
        axis = self.model.secondary
        assert axis is not None
        value = axis.values[secondary]
        ways: list[tuple[str, int | float | str]] = [("index", secondary), ("value", value)]
        if axis.kind != TEXTS:
            ways.append(("value", repr(value)))
        return self.rng.choice(ways)

    def _unload_one(self, variables: list[Flat]) -> None:
        """What was unloaded is read again, and figures come from the header meanwhile."""
        place = self.rng.randrange(len(variables))
        unload = self.run.unload_variable_from_specific_group
        assert unload(self.model.names[place], self.model.name) is True
        if self.model.blocks and self.model.shape.held:
            self._figures_of(variables[place], place, 0, self._stored(0))
        secondary = self.rng.randrange(self.model.shape.rows)
        self._read_row(variables[place], self.model.values[place], secondary)


def key_of(model: GroupModel, way: str, key: float | str) -> int:
    """Return the index that a key leads to: of equal values the first."""
    if way == "index":
        return int(key)
    assert model.secondary is not None
    values = list(model.secondary.values)
    return values.index(key if model.secondary.kind == TEXTS else float(key))
