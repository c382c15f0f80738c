"""Runs, groups, variables and axes as the functions of the extension module read them."""

from __future__ import annotations

from collections.abc import Callable
from dataclasses import replace
from pathlib import Path
from typing import Any

import _TabulonAPI_Python as native
import numpy as np
import pytest
from support.flat import (
    DATA_TYPES,
    SUFFIXES,
    Flat,
    error_of,
    get_axis,
    get_group,
    get_run,
    get_variable,
    tables_error,
)
from support.run_files import Axis, GroupFiles, IntervalAxis, RunFiles, TextAxis, Word
from support.scenarios import (
    HEIGHTS,
    SCENARIOS_1D,
    SCENARIOS_2D,
    SECTIONS,
    STATIONS,
    TIME,
    WIND,
    Scenario,
    group_1d,
    group_2d,
)

scenarios_1d = pytest.mark.parametrize("scenario", SCENARIOS_1D, ids=lambda s: s.name)
scenarios_2d = pytest.mark.parametrize("scenario", SCENARIOS_2D, ids=lambda s: s.name)
all_scenarios = pytest.mark.parametrize(
    "scenario", SCENARIOS_1D + SCENARIOS_2D, ids=lambda s: s.name
)
UNITS = {"P": "W", "A/T": "rad/s", "FL": "Nm", "F": "N", "L": "m", "T": "s", "L/T": "m/s"}
WHOLE = "_get_data_for_all_independent_variable_values_native_array"


def unit_of(quantity: str) -> str:
    return "Unitless" if quantity == "N" else UNITS[quantity]


def variables_of(
    scenario: Scenario, folder: Path, axes: int
) -> list[tuple[Flat, np.ndarray[Any, Any]]]:
    """Return each variable with its values."""
    run = get_run(scenario.write(folder))
    return [
        (get_variable(run, name, scenario.dtype, axes), values)
        for name, values in scenario.values.items()
    ]


# Data


@scenarios_1d
def test_data_over_one_axis(scenario: Scenario, tmp_path: Path) -> None:
    for variable, values in variables_of(scenario, tmp_path, 1):
        assert variable._get_data_native_array() == tuple(values.tolist())
        array = variable._get_data_numpy_from_vector()
        assert array.dtype == scenario.dtype
        assert array.tolist() == values.tolist()


@scenarios_2d
def test_data_over_two_axes(scenario: Scenario, tmp_path: Path) -> None:
    axis = scenario.group.secondary
    assert axis is not None
    labels = axis.labels if isinstance(axis, TextAxis) else axis.numbers()
    for variable, values in variables_of(scenario, tmp_path, 2):
        for index, label in reversed(list(enumerate(labels))):
            row = tuple(values[index].tolist())
            assert variable._get_data_at_index_native_array(index) == row
            assert tuple(variable._get_data_at_index_numpy_from_vector(index)) == row
            # Only labels can be asked for by value.
            if not isinstance(axis, IntervalAxis):
                for key in (label, str(label)):
                    assert variable._get_data_at_value_native_array(key) == row
                    array = variable._get_data_at_value_numpy_from_vector(key)
                    assert array.dtype == scenario.dtype
                    assert tuple(array) == row
        assert getattr(variable, WHOLE)() == tuple(map(tuple, values.tolist()))


@pytest.mark.parametrize("word", ["I*2", "I*4", "I*8"])
@pytest.mark.parametrize("text", [False, True], ids=["binary", "text"])
@pytest.mark.parametrize(("setting", "dtype"), [(1, "float32"), (2, "float64")])
def test_whole_numbers_read_as_floats(
    word: Word, text: bool, setting: int, dtype: str, tmp_path: Path
) -> None:
    values = np.array([3, -32768, 32767, 0, 1])
    flat = group_1d("I*4", text=text)
    flat = replace(flat, word=word, variables=[replace(flat.variables[0], values=values)])
    deep = group_2d("I*4", text=text)
    deep = replace(
        deep,
        word=word,
        number=2,
        variables=[replace(deep.variables[0], values=np.stack([values, -values - 1, values // 2]))],
    )
    RunFiles([flat, deep]).write(tmp_path)
    native.TabulonApi_CacheSettings_set_data_type_for_reading(setting)
    run = get_run(tmp_path)
    one = get_variable(run, "Electrical power", dtype)
    assert one._get_data_native_array() == tuple(values.tolist())
    assert one._get_data_numpy_from_vector().dtype == dtype
    two = get_variable(run, "Blade moment", dtype, 2)
    assert getattr(two, WHOLE)() == tuple(map(tuple, deep.variables[0].values.tolist()))
    assert Flat("Variable", two.pointer).get_data_type() == DATA_TYPES[dtype]


@pytest.mark.parametrize("word", ["I*2", "I*8"])
def test_other_whole_numbers_need_a_type_for_reading(word: Word, tmp_path: Path) -> None:
    RunFiles([replace(group_1d("I*4"), word=word)]).write(tmp_path)
    assert error_of(lambda: get_run(tmp_path)._get_variable("Rotor speed")) == tables_error(
        "Data type is not supported by the Tabulon API",
        f"Series name: 'Rotor speed'; File path: {tmp_path}/Summary",
        "Data type not supported",
    )


@pytest.mark.parametrize(("setting", "kind"), [(1, "float32"), (2, "float64"), (7, "int32")])
def test_type_for_reading(setting: int, kind: str, tmp_path: Path) -> None:
    word: Word = "I*4" if kind == "int32" else "R*8"
    RunFiles([group_1d(word)]).write(tmp_path)
    native.TabulonApi_CacheSettings_set_data_type_for_reading(setting)
    variable = get_variable(get_run(tmp_path), "Rotor speed", kind)
    offset = 0 if kind == "int32" else 0.25
    assert variable._get_data_native_array() == tuple(
        value + offset for value in (40, 10, -20, 30, 60)
    )
    assert Flat("Variable", variable.pointer).get_data_type() == DATA_TYPES[kind]


# What is told about groups and variables


@all_scenarios
def test_group_facts(scenario: Scenario, tmp_path: Path) -> None:
    files = scenario.group
    group = get_group(get_run(scenario.write(tmp_path)), files.name.upper())
    axes = len(files.axes)
    names = tuple(variable.name for variable in files.variables)
    expected = {
        "get_name": files.name,
        "get_number": 1,
        "get_header_file_path": f"{tmp_path}/run.%01",
        "get_number_of_variables": len(names),
        "get_number_of_independent_variables": axes,
        "_get_variable_names_native_array": names,
        "get_calculation_short_name": "POWPROD",
        "get_calculation_descriptive_name": "Power production simulation",
        "get_calculation_type": native.CalculationType_PowerProductionSimulation,
        "get_data_point_count": 5,
        "get_variable_data_type": DATA_TYPES[scenario.dtype],
        "get_variable_data_format": 0 if files.text else 1,
    }
    assert {name: getattr(group, name)() for name in expected} == expected
    assert [group.contains_variable_1d(name.lower()) for name in names] == [axes == 1] * len(names)
    assert [group.contains_variable_2d(name.upper()) for name in names] == [axes == 2] * len(names)
    assert not group.contains_variable_1d("none")
    assert not group.contains_variable_2d("none")


@all_scenarios
def test_variable_facts(scenario: Scenario, tmp_path: Path) -> None:
    files = scenario.group
    run = get_run(scenario.write(tmp_path))
    axes = len(files.axes)
    for described in files.variables:
        expected = {
            "get_name": described.name,
            "get_siunit": unit_of(described.quantity),
            "get_quantity_code": described.quantity,
            "get_number_of_independent_variables": axes,
            "get_parent_group_name": files.name,
            "get_parent_group_number": 1,
            "get_parent_group_header_file_full_path": f"{tmp_path}/run.%01",
            "get_data_point_count": 5,
            "get_data_type": DATA_TYPES[scenario.dtype],
            "get_data_format": 0 if files.text else 1,
        }
        for variable in (
            Flat("Variable", run._get_variable(described.name.lower())),
            Flat(
                "Variable",
                run._get_variable_from_specific_output_group(described.name, files.name.lower()),
            ),
            Flat("Variable", get_group(run, files.name).get_variable(described.name.upper())),
        ):
            assert {name: getattr(variable, name)() for name in expected} == expected
        assert run.contains_variable_1d(described.name.upper()) is (axes == 1)
        assert run.contains_variable_2d(described.name.lower()) is (axes == 2)


@all_scenarios
def test_length_of_a_time_series(scenario: Scenario, tmp_path: Path) -> None:
    files = scenario.group
    group = get_group(get_run(scenario.write(tmp_path)), files.name)
    variable = Flat("Variable", group.get_variable(files.variables[0].name))
    for owner in (group, variable):
        if files.primary is TIME:
            assert owner.get_time_domain_simulation_length() == 2.5
        else:
            assert error_of(owner.get_time_domain_simulation_length) == tables_error(
                "Unable to get the simulation length in seconds because the group does not contain "
                "time series data",
                f"File path: {tmp_path}/{files.name}",
                "Did not find primary interval axis",
            )


def axis_texts(axis: Axis, digits: int) -> tuple[str, ...]:
    if isinstance(axis, TextAxis):
        return axis.labels
    return tuple(f"{value:.{digits}E}" for value in axis.numbers())


@all_scenarios
def test_axes(scenario: Scenario, tmp_path: Path) -> None:
    files = scenario.group
    run = get_run(scenario.write(tmp_path))
    group = get_group(run, files.name)
    variable = Flat("Variable", run._get_variable(files.variables[0].name))
    expected = [files.primary, *([files.secondary] if files.secondary else [])]
    for owner in (group, variable):
        axes = owner._get_independent_variables_native_array()
        assert len(axes) == len(expected)
        for pointer, described in zip(axes, expected, strict=True):
            axis = Flat("IndependentVariable", pointer)
            assert axis.get_name() == described.name
            assert axis.get_siunit() == unit_of(described.quantity)
            # A header counts 1 to 3: texts, interval, numbers.
            assert axis.get_axis_type() == {1: 2, 2: 0, 3: 1}[described.method]
            assert axis.get_number_of_values() == described.size
            texts = axis_texts(described, 15 if files.word == "R*8" else 7)
            assert axis._get_values_as_string_native_array() == texts
            if isinstance(described, TextAxis):
                text = tables_error(
                    "Labelled string axis labels cannot be requested as numeric labels",
                    f"Axis name: '{described.name}'",
                )
                assert error_of(axis._get_values_as_number_native_array) == text
                assert error_of(axis._get_values_as_number_numpy_from_vector) == text
            else:
                numbers = described.numbers()
                assert axis._get_values_as_number_native_array() == tuple(numbers)
                array = axis._get_values_as_number_numpy_from_vector()
                assert array.dtype == np.float64
                assert array.tolist() == numbers


@pytest.mark.parametrize("secondary", [STATIONS, HEIGHTS, SECTIONS], ids=lambda a: a.name)
def test_axes_by_name_and_number(secondary: Axis, tmp_path: Path) -> None:
    RunFiles([group_2d(secondary=secondary)]).write(tmp_path)
    run = get_run(tmp_path)
    variable = get_variable(run, "Blade moment", "float32", 2)
    for owner in (variable, get_group(run, "Blade loads")):
        for key in (0, "Time", "tIME"):
            assert get_axis(owner, key).get_name() == "Time"
        for key in (1, secondary.name.upper()):
            assert get_axis(owner, key).get_name() == secondary.name


@all_scenarios
def test_all_roads_give_the_variables(scenario: Scenario, tmp_path: Path) -> None:
    files, kind = scenario.group, scenario.dtype
    axes = len(files.axes)
    run = get_run(scenario.write(tmp_path))
    group = get_group(run, files.name)
    family = f"Variable{axes}D_{SUFFIXES[kind]}"
    read: Callable[[Flat], object] = lambda v: (  # noqa: E731
        v._get_data_native_array() if axes == 1 else v._get_data_at_index_native_array(1)
    )
    every = getattr(group, f"_GROUPPREFIX_get_all_variables_{axes}d_{kind}_native_array")()
    assert len(every) == len(files.variables)
    for pointer, (name, values) in zip(every, scenario.values.items(), strict=True):
        row = tuple((values if axes == 1 else values[1]).tolist())
        by_name = getattr(group, f"_GROUPPREFIX_get_variable_{axes}d_{kind}")(name.lower())
        assert read(Flat(family, pointer)) == row
        assert read(Flat(family, by_name)) == row
        assert read(get_variable(run, name, kind, axes, files.name)) == row


# Side files of the run


@pytest.mark.parametrize("newline", ["\n", "\r\n"], ids=["LF", "CRLF"])
def test_run_facts(newline: str, tmp_path: Path) -> None:
    files = RunFiles(
        [group_1d(newline=newline, text=True)],
        "a.b",
        termination=f"Run completed.{newline}\t {newline}",
        message=f"one{newline}two",
        verification="",
    )
    run = get_run(files.write(tmp_path), "a.b")
    assert run.get_name() == "a.b"
    assert run.get_directory() == f"{tmp_path}/"
    assert run.get_termination_file_path() == f"{tmp_path}/a.b.$TE"
    assert run.get_termination_file_content() == "Run completed."
    assert run.get_message_file_content() == f"one{newline}two"
    assert run.get_verification_file_content() == ""
    assert run.get_completion_state() == native.CompletionState_CompletedNormally
    assert (run.has_finished(), run.was_successful(), run.was_unsuccessful()) == (True, True, False)
    assert run.get_execution_duration_seconds() == 0.0
    assert run.is_turbine_simulation() is True
    assert run.is_supporting_calculation() is False
    assert run.is_post_processing_calculation() is False
    assert run.is_calculation_type_supported() is True


def test_groups_of_a_run(tmp_path: Path) -> None:
    groups: list[GroupFiles] = [
        group_1d(),
        group_1d("I*4", primary=WIND, name="Counts", number=12),
        group_2d("R*8", number=123),
    ]
    RunFiles(groups).write(tmp_path)
    # These are no headers of this run.
    for name in ("run.%", "run.%1a", "run.x1", "other.%02", "run.%01.txt"):
        tmp_path.joinpath(name).write_bytes(b"no header")
    tmp_path.joinpath("run.%07").mkdir()
    run = get_run(tmp_path)
    found = [Flat("Group", pointer) for pointer in run._get_all_groups_native_array()]
    assert {(group.get_name(), group.get_number()) for group in found} == {
        ("Summary", 1),
        ("Counts", 12),
        ("Blade loads", 123),
    }
    assert len(run._get_all_groups_native_array()) == 3
