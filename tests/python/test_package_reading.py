"""Runs, groups and variables as the package reads them."""

from __future__ import annotations

import os
from dataclasses import replace
from pathlib import Path

import numpy as np
import pytest
from support.run_files import IntervalAxis, RunFiles, TextAxis
from support.scenarios import SCENARIOS_1D, SCENARIOS_2D, Scenario, group_1d, group_2d
from tabulon import api

scenarios_1d = pytest.mark.parametrize("scenario", SCENARIOS_1D, ids=lambda s: s.name)
scenarios_2d = pytest.mark.parametrize("scenario", SCENARIOS_2D, ids=lambda s: s.name)
all_scenarios = pytest.mark.parametrize(
    "scenario", SCENARIOS_1D + SCENARIOS_2D, ids=lambda s: s.name
)
CLASSES = {"float32": "Float32", "float64": "Float64", "int32": "Int32"}


def run_of(scenario: Scenario, folder: Path) -> api.Run:
    return api.get_run(scenario.write(folder), scenario.run)


@scenarios_1d
def test_data_over_one_axis(scenario: Scenario, tmp_path: Path) -> None:
    run = run_of(scenario, tmp_path)
    for name, values in scenario.values.items():
        variable = run.get_variable_1d(name)
        assert type(variable) is getattr(api, f"Variable1D_{CLASSES[scenario.dtype]}")
        data = variable.get_data()
        assert data.dtype == scenario.dtype
        np.testing.assert_array_equal(data, values)
        assert variable.get_data_as_tuple() == tuple(values.tolist())


@scenarios_2d
def test_data_over_two_axes(scenario: Scenario, tmp_path: Path) -> None:
    run = run_of(scenario, tmp_path)
    for name, values in scenario.values.items():
        variable = run.get_variable_2d(name)
        assert type(variable) is getattr(api, f"Variable2D_{CLASSES[scenario.dtype]}")
        for index, row in enumerate(values):
            data = variable.get_data_at_index(index)
            assert data.dtype == scenario.dtype
            np.testing.assert_array_equal(data, row)
            assert variable.get_data_at_index_as_tuple(index) == tuple(row.tolist())


@scenarios_2d
def test_whole_table_over_two_axes(scenario: Scenario, tmp_path: Path) -> None:
    variable = run_of(scenario, tmp_path).get_variable_2d("Blade moment")
    values = scenario.values["Blade moment"]
    table = variable.get_data_for_all_independent_variable_values()
    assert table.dtype == scenario.dtype
    assert table.shape == values.shape
    np.testing.assert_array_equal(table, values)
    rows = variable.get_data_for_all_independent_variable_values_as_tuple()
    assert rows == tuple(map(tuple, values.tolist()))


@scenarios_2d
def test_data_at_secondary_value(scenario: Scenario, tmp_path: Path) -> None:
    variable = run_of(scenario, tmp_path).get_variable_2d("Blade moment")
    assert scenario.group.secondary is not None
    axis = scenario.group.secondary
    labels = axis.labels if isinstance(axis, TextAxis) else axis.numbers()
    for label, row in zip(labels, scenario.values["Blade moment"], strict=True):
        for value in (label, str(label)):
            np.testing.assert_array_equal(variable.get_data_at_value(value), row)
            assert variable.get_data_at_value_as_tuple(value) == tuple(row.tolist())


@all_scenarios
def test_independent_variables(scenario: Scenario, tmp_path: Path) -> None:
    group = run_of(scenario, tmp_path).get_group(scenario.group.name)
    axes = [scenario.group.primary]
    axes += [scenario.group.secondary] if scenario.group.secondary else []
    found = group.get_independent_variables()
    assert len(found) == len(axes)
    kinds = api.AxisTypeId
    for variable, axis in zip(found, axes, strict=True):
        assert variable.get_name() == axis.name
        assert variable.get_number_of_values() == axis.size
        if isinstance(axis, TextAxis):
            assert variable.get_axis_type() is kinds.LabelledStringAxis
            assert variable.get_values_as_string() == axis.labels
            with pytest.raises(RuntimeError, match="cannot be requested as numeric labels"):
                variable.get_values_as_number()
            continue
        interval = isinstance(axis, IntervalAxis)
        assert variable.get_axis_type() is (
            kinds.IntervalAxis if interval else kinds.LabelledValueAxis
        )
        values = variable.get_values_as_number()
        assert values.dtype == np.float64
        np.testing.assert_array_equal(values, axis.numbers())
        assert variable.get_values_as_number_as_tuple() == tuple(axis.numbers())
        digits = 15 if scenario.dtype == "float64" else 7
        texts = tuple(f"{number:.{digits}E}" for number in axis.numbers())
        assert variable.get_values_as_string() == texts


@all_scenarios
def test_group_and_variables_tell_what_the_header_holds(scenario: Scenario, tmp_path: Path) -> None:
    files = scenario.group
    (group,) = run_of(scenario, tmp_path).get_all_groups()
    data_type = api.VariableDataType[CLASSES[scenario.dtype]]
    data_format = api.VariableDataFormat["ASCII" if files.text else "Binary"]
    assert isinstance(group, api.Group)
    assert group.get_name() == files.name
    assert group.get_number() == 1
    assert group.get_variable_names() == tuple(scenario.values)
    assert group.get_data_point_count() == files.primary.size
    assert group.get_variable_data_type() is data_type
    assert group.get_variable_data_format() is data_format
    assert group.get_calculation_type() is api.CalculationType.PowerProductionSimulation
    for name in scenario.values:
        variable = group.get_variable(name.upper())
        assert type(variable) is api.Variable
        assert variable.get_name() == name
        assert variable.get_data_type() is data_type
        assert variable.get_data_format() is data_format
        assert len(variable.get_independent_variables()) == len(files.axes)


@scenarios_1d
def test_all_variables_of_a_group_over_one_axis(scenario: Scenario, tmp_path: Path) -> None:
    group = run_of(scenario, tmp_path).get_group("summary")
    found = group.get_all_variables_1d()
    assert [variable.get_name() for variable in found] == list(scenario.values)
    for variable in found:
        np.testing.assert_array_equal(variable.get_data(), scenario.values[variable.get_name()])
        same = group.get_variable_1d(variable.get_name())
        assert type(same) is type(variable)
        np.testing.assert_array_equal(same.get_data(), variable.get_data())
    with pytest.raises(RuntimeError, match="is not 2D"):
        group.get_all_variables_2d()


@scenarios_2d
def test_all_variables_of_a_group_over_two_axes(scenario: Scenario, tmp_path: Path) -> None:
    group = run_of(scenario, tmp_path).get_group("blade loads")
    found = group.get_all_variables_2d()
    assert [variable.get_name() for variable in found] == list(scenario.values)
    for variable in found:
        row = scenario.values[variable.get_name()][1]
        np.testing.assert_array_equal(variable.get_data_at_index(1), row)
        np.testing.assert_array_equal(
            group.get_variable_2d(variable.get_name()).get_data_at_index(1), row
        )
    with pytest.raises(RuntimeError, match="is not 1D"):
        group.get_all_variables_1d()


def test_group_is_named_where_a_name_stands_in_two(tmp_path: Path) -> None:
    other = replace(group_1d("I*4"), name="Other", number=2)
    run = api.get_run(RunFiles([group_1d(), other]).write(tmp_path), "run")
    with pytest.raises(RuntimeError, match="found in more than one output group"):
        run.get_variable_1d("Rotor speed")
    found = run.get_variable_1d_from_specific_output_group("Rotor speed", "OTHER")
    assert isinstance(found, api.Variable1D_Int32)
    metadata = run.get_variable_from_specific_output_group("Rotor speed", "Summary")
    assert metadata.get_data_type() is api.VariableDataType.Float32
    for name in ("Summary", "Other"):
        variable = run.get_group(name).get_variable_1d("Rotor speed")
        assert variable.get_parent_group_name() == name


def test_two_axis_variable_of_a_named_group(tmp_path: Path) -> None:
    other = replace(group_2d("R*8"), name="Other", number=2)
    run = api.get_run(RunFiles([group_2d(), other]).write(tmp_path), "run")
    found = run.get_variable_2d_from_specific_output_group("Blade moment", "Other")
    assert isinstance(found, api.Variable2D_Float64)


def test_wrong_number_of_axes_is_told(tmp_path: Path) -> None:
    run = api.get_run(RunFiles([group_1d(), group_2d(number=2)]).write(tmp_path), "run")
    with pytest.raises(RuntimeError, match="call equivalent 2D function"):
        run.get_variable_1d("Blade moment")
    with pytest.raises(RuntimeError, match="call equivalent 1D function"):
        run.get_variable_2d("Rotor speed")


def test_missing_variable_is_told(tmp_path: Path) -> None:
    run = api.get_run(RunFiles([group_1d()]).write(tmp_path), "run")
    for find in (run.get_variable, run.get_variable_1d, run.get_variable_2d):
        with pytest.raises(RuntimeError, match="The variable was not found"):
            find("Torque")


def test_directory_may_be_a_path_or_a_str(tmp_path: Path) -> None:
    class Directory(os.PathLike[str]):
        def __fspath__(self) -> str:
            return str(tmp_path)

    RunFiles().write(tmp_path)
    for directory in (tmp_path, str(tmp_path), Directory()):
        run = api.get_run(directory, "run")
        assert type(run) is api.Run
        assert run.get_directory() == f"{tmp_path}{os.sep}"


@pytest.mark.parametrize("directory", [5, None, b"runs"])
def test_directory_of_another_type_raises_type_error(directory: object) -> None:
    with pytest.raises(TypeError):
        api.get_run(directory, "run")  # type: ignore[arg-type]


def test_run_tells_how_it_ended(tmp_path: Path) -> None:
    run = api.get_run(RunFiles([group_1d()]).write(tmp_path), "run")
    assert run.get_completion_state() is api.CompletionState.CompletedNormally
    assert run.get_calculation_type() is api.CalculationType.PowerProductionSimulation
    assert api.Run.termination_file_extension == ".$TE"


def test_units_can_be_printed(tmp_path: Path) -> None:
    group = group_1d()
    accelerations = replace(group.variables[0], quantity="L/TT")
    axis = replace(group.primary, quantity="LLL")
    files = replace(group, variables=[accelerations], primary=axis)
    run = api.get_run(RunFiles([files]).write(tmp_path), "run")
    variable = run.get_variable("Electrical power")
    assert variable.get_siunit() == "m/s²"
    assert variable.get_independent_variables()[0].get_siunit() == "m³"


def test_objects_say_what_they_are(tmp_path: Path) -> None:
    run = api.get_run(RunFiles([group_1d()]).write(tmp_path), "run")
    group = run.get_group("Summary")
    assert repr(run) == "<Run 'run'>"
    assert repr(group) == "<Group 'Summary'>"
    assert repr(group.get_variable("rotor speed")) == "<Variable 'Rotor speed' of 'Summary'>"
    assert (
        repr(group.get_variable_1d("rotor speed"))
        == "<Variable1D_Float32 'Rotor speed' of 'Summary'>"
    )
    assert repr(group.get_independent_variables()[0]) == "<IndependentVariable 'Time'>"


@pytest.mark.parametrize("specifier", ["ReadAsFloat32", "ReadAsFloat64"])
def test_class_follows_the_type_for_reading(specifier: str, tmp_path: Path) -> None:
    RunFiles([group_1d("I*4"), group_2d("R*8", number=2)]).write(tmp_path)
    api.set_data_type_for_reading(api.DataTypeSpecifier[specifier])
    run = api.get_run(tmp_path, "run")
    element = specifier.removeprefix("ReadAs")
    power = run.get_variable_1d("Electrical power")
    assert type(power) is getattr(api, f"Variable1D_{element}")
    assert power.get_data().dtype == element.lower()
    assert power.get_data().tolist() == [2.0, -3.0, 7.0, 5.0, 1.0]
    moment = run.get_variable_2d("Blade moment")
    assert type(moment) is getattr(api, f"Variable2D_{element}")
    assert moment.get_data_for_all_independent_variable_values().dtype == element.lower()
