"""Which form of an overloaded function of the extension module takes a call."""

from __future__ import annotations

from pathlib import Path

import _TabulonAPI_Python as native
import numpy as np
import pytest
from support.flat import message, tables_error
from support.small_runs import variable_2d, write_run
from surface_table import overload_text


@pytest.fixture
def run(tmp_path: Path) -> object:
    write_run(tmp_path)
    return native.TabulonApi_get_run(str(tmp_path), "run")


def test_numbers_and_texts_are_told_apart(run: object) -> None:
    variable = variable_2d(run, "float64")
    mean = native.Variable2D_Float64_get_mean_at_value
    native.Variable2D_Float64__get_data_for_all_independent_variable_values_native_array(variable)
    native.Variable2D_Float64__get_data_for_all_independent_variable_values_native_array(
        variable_2d(run, "float64", "y")
    )
    assert mean(variable, 1.5) == mean(variable, "1.5") == 2.0
    assert mean(variable, 2.5) == mean(variable, np.float64(2.5)) == 5.0
    group = native.Run_get_group(run, "2d float64")
    name = native.IndependentVariable_get_name
    folder = native.Run_get_directory(run)
    asked = "Independent variable name requested: '0'"
    for get, held, context in (
        (
            native.Group_get_independent_variable,
            group,
            f"Group name: '2d float64'; {asked}",
        ),
        (
            native.Variable2D_Float64_get_independent_variable,
            variable,
            f"{asked}Series name: 'x 2d float64'; File path: {folder}2d float64",
        ),
    ):
        assert name(get(held, native.IndependentVariableId_PrimaryIndependentVariable)) == "Time"
        assert name(get(held, True)) == "Radius"
        assert name(get(held, "radius")) == "Radius"
        text = message(lambda g=get, h=held: g(h, "0"), RuntimeError)
        assert text == tables_error("Independent variable was not found", context)


def test_what_counts_as_a_number(run: object) -> None:
    name = "Variable2D_Float64_get_mean_at_value"
    mean, variable = getattr(native, name), variable_2d(run, "float64")
    for number, shown in ((True, "1"), (-7, "-7"), (1e300, "1e+300"), (np.float64(7), "7")):
        assert message(lambda n=number: mean(variable, n), RuntimeError) == tables_error(
            "Axis value not found - unable to return corresponding axis index",
            f"Axis name: 'Radius'; axis value: {shown}",
        )
    for other in (10**400, 1.5j, np.float32(1.5), np.int64(1), b"1.5"):
        assert message(lambda o=other: mean(variable, o), TypeError) == overload_text(name)


def test_labels_are_numbers_first_then_strings() -> None:
    for labels, kind in (
        ([1, 2.5], native.AxisTypeId_LabelledValueAxis),
        (np.array([1.0, 2.5]), native.AxisTypeId_LabelledValueAxis),
        (["a", "b"], native.AxisTypeId_LabelledStringAxis),
        ("ab", native.AxisTypeId_LabelledStringAxis),
        (native.new_ArrayOfString(["a", "b"]), native.AxisTypeId_LabelledStringAxis),
    ):
        axis = native.new_IndependentVariable("Name", "N", labels)
        assert native.IndependentVariable_get_axis_type(axis) == kind
        assert native.IndependentVariable_get_number_of_values(axis) == 2
    interval = native.new_IndependentVariable("Time", "s", 0, 1)
    assert native.IndependentVariable_get_axis_type(interval) == native.AxisTypeId_IntervalAxis
    mixed = lambda: native.new_IndependentVariable("Name", "N", ["a", 1])  # noqa: E731
    assert message(mixed, TypeError) == overload_text("new_IndependentVariable")


def test_second_argument_of_a_runs_iterator(tmp_path: Path) -> None:
    write_run(tmp_path)
    write_run(tmp_path, "other")

    def names(*arguments: object) -> set[str]:
        iterator = native.new_RunsIterator(str(tmp_path), *arguments)
        found = iter(lambda: native.RunsIterator_get_next_run(iterator), None)
        return {native.Run_get_name(run) for run in found}

    assert names(native.SearchScope_RootDirectoryOnly) == {"run", "other"}
    assert names("other") == {"other"}
    assert names("other", native.SearchScope_RootDirectoryOnly) == {"other"}
    assert names() == {"run", "other"}


def test_next_run_is_none_at_the_end_and_from_then_on(tmp_path: Path) -> None:
    iterator = native.new_RunsIteratorRegex(str(tmp_path), ".*")
    assert native.RunsIterator_get_next_run(iterator) is None
    assert native.RunsIterator_get_next_run(iterator) is None
