"""Opens a run in every way there is, whatever its files hold."""

from __future__ import annotations

from collections.abc import Callable
from pathlib import Path
from typing import Any

import _TabulonAPI_Python as native

from support.flat import DATA_TYPES, SUFFIXES, Flat, get_run

KINDS = {number: kind for kind, number in DATA_TYPES.items()}
FAR = 2**40
WHOLE = "_get_data_for_all_independent_variable_values_native_array"


class Reader:
    """Counts what a run gives and what it refuses."""

    def __init__(self) -> None:
        self.given = 0
        self.refused = 0

    def ask(self, call: Callable[..., Any], *arguments: object) -> Any:  # noqa: ANN401
        """Return what a call gives; None if the library refuses it in its own words."""
        try:
            result = call(*arguments)
        except RuntimeError as error:
            text = str(error)
            assert "error" in text.split(":")[0] or "filesystem" in text, text
            assert "bad_alloc" not in text, text
            self.refused += 1
            return None
        self.given += 1
        return result

    def read(self, folder: Path, name: str) -> None:
        native.TabulonApi_clear_runs()
        run = get_run(folder)
        for group in self.ask(run._get_all_groups_native_array) or ():
            self._group(Flat("Group", group))
        pointer = self.ask(run._get_variable, name)
        if pointer is not None:
            self._variable(run, Flat("Variable", pointer), name)

    def _group(self, group: Flat) -> None:
        for call in (
            group.get_name,
            group.get_data_point_count,
            group.get_time_domain_simulation_length,
            group.get_variable_data_type,
            group._get_variable_names_native_array,
        ):
            self.ask(call)
        for axis in self.ask(group._get_independent_variables_native_array) or ():
            self._axis(Flat("IndependentVariable", axis))

    def _axis(self, axis: Flat) -> None:
        self.ask(axis.get_number_of_values)
        self.ask(axis._get_values_as_number_numpy_from_vector)
        self.ask(axis._get_values_as_string_native_array)
        self.ask(axis._get_values_as_number_native_array)

    def _variable(self, run: Flat, variable: Flat, name: str) -> None:
        axes = variable.get_number_of_independent_variables()
        kind = KINDS[variable.get_data_type()]
        pointer = self.ask(getattr(run, f"_RUNPREFIX_get_variable_{axes}d_{kind}"), name)
        typed = Flat(f"Variable{axes}D_{SUFFIXES[kind]}", pointer)
        way = self._over_one_axis if axes == 1 else self._over_two_axes
        way(typed, name)
        way(typed, name)
        self.ask(run.unload_variable, name)
        way(typed, name)

    def _over_one_axis(self, variable: Flat, name: str) -> None:
        self.ask(variable.get_mean)
        self.ask(variable.get_maximum)
        self.ask(variable._get_data_native_array)
        self.ask(variable._get_data_numpy_from_vector)
        self.ask(variable.get_minimum_contemporaneous, name)

    def _over_two_axes(self, variable: Flat, name: str) -> None:
        self.ask(variable.get_mean_at_index, 0)
        for index in (0, 1, FAR):
            self.ask(variable._get_data_at_index_numpy_from_vector, index)
            self.ask(variable.get_maximum_at_index, index)
        self.ask(variable._get_data_at_value_native_array, 0.0)
        self.ask(variable._get_data_at_value_native_array, "a")
        self.ask(getattr(variable, WHOLE))
        self.ask(variable.get_minimum_contemporaneous_at_index, name, 1)
