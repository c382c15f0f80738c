"""Statistics, ambiguous names, unloads and what is not there, through the extension module."""

from __future__ import annotations

from dataclasses import replace
from pathlib import Path

import _TabulonAPI_Python as native
import numpy as np
import pytest
from support.flat import Flat, error_of, get_axis, get_group, get_run, get_variable, tables_error
from support.run_files import RunFiles, ValueAxis, Word
from support.scenarios import DTYPES, SCENARIOS_1D, SCENARIOS_2D, Scenario, group_1d, group_2d

NAMES_1D = ("Electrical power", "Rotor speed", "Tower moment")
LOADED = pytest.mark.parametrize("loaded", [False, True], ids=["header", "data"])


def with_statistics(scenarios: list[Scenario]) -> list[Scenario]:
    return [scenario for scenario in scenarios if scenario.has_statistics]


# Statistics: all answers of the header, before a data file is opened, and of the data


@LOADED
@pytest.mark.parametrize("scenario", with_statistics(SCENARIOS_1D), ids=lambda s: s.name)
def test_statistics_over_one_axis(scenario: Scenario, loaded: bool, tmp_path: Path) -> None:
    run = get_run(scenario.write(tmp_path))
    variables = {name: get_variable(run, name, scenario.dtype) for name in scenario.values}
    if loaded:
        for variable in variables.values():
            variable._get_data_native_array()
    else:
        tmp_path.joinpath("run.$01").unlink()
    number = int if scenario.dtype == "int32" else float
    for name, values in scenario.values.items():
        variable = variables[name]
        assert variable.get_mean() == pytest.approx(np.mean(values, dtype=float), rel=1e-7)
        assert type(variable.get_mean()) is float
        assert variable.get_maximum() == values.max()
        assert variable.get_minimum() == values.min()
        assert type(variable.get_maximum()) is type(variable.get_minimum()) is number
        for other, there in scenario.values.items():
            highest = variable.get_maximum_contemporaneous(other.upper())
            lowest = variable.get_minimum_contemporaneous(other)
            assert (highest, lowest) == (there[values.argmax()], there[values.argmin()])


@LOADED
@pytest.mark.parametrize("scenario", with_statistics(SCENARIOS_2D), ids=lambda s: s.name)
def test_statistics_over_two_axes(scenario: Scenario, loaded: bool, tmp_path: Path) -> None:
    run = get_run(scenario.write(tmp_path))
    variables = {name: get_variable(run, name, scenario.dtype, 2) for name in scenario.values}
    if loaded:
        for variable in variables.values():
            variable._get_data_for_all_independent_variable_values_native_array()
    else:
        tmp_path.joinpath("run.$01").unlink()
    axis = scenario.group.secondary
    labels = getattr(axis, "labels", None)
    for name, table in scenario.values.items():
        variable = variables[name]
        for index, row in enumerate(table):
            keys: list[tuple[str, object]] = [("index", index)]
            if labels is not None:
                keys += [("value", labels[index]), ("value", str(labels[index]))]
            for way, key in keys:
                ask = {
                    kind: getattr(variable, f"get_{kind}_at_{way}")
                    for kind in ("mean", "maximum", "minimum")
                }
                assert ask["mean"](key) == pytest.approx(np.mean(row, dtype=float), rel=1e-7)
                assert ask["maximum"](key) == row.max()
                assert ask["minimum"](key) == row.min()
                for other, tables in scenario.values.items():
                    highest = getattr(variable, f"get_maximum_contemporaneous_at_{way}")
                    lowest = getattr(variable, f"get_minimum_contemporaneous_at_{way}")
                    assert highest(other, key) == tables[index][row.argmax()]
                    assert lowest(other.lower(), key) == tables[index][row.argmin()]


@pytest.mark.parametrize("word", ["R*4", "R*8", "I*4"])
def test_where_figures_come_from(word: Word, tmp_path: Path) -> None:
    """The header answers as long as data are missing; all data in memory answer for themselves."""
    RunFiles([group_1d(word, statistics_offset=1000.0)]).write(tmp_path)
    run = get_run(tmp_path)
    kind = DTYPES[word]
    one, two, three = (get_variable(run, name, kind) for name in NAMES_1D)
    offset = 0 if word == "I*4" else 0.25
    assert (one.get_maximum(), one.get_mean()) == (1007 + offset, pytest.approx(1002.4 + offset))
    one._get_data_native_array()
    two._get_data_native_array()
    assert one.get_maximum() == 1007 + offset
    three._get_data_native_array()
    assert (one.get_maximum(), one.get_mean()) == (7 + offset, pytest.approx(2.4 + offset))
    assert one.get_minimum_contemporaneous(NAMES_1D[0]) == -3 + offset
    assert run.unload_variable(NAMES_1D[2]) is True
    assert one.get_maximum() == 1007 + offset


@pytest.mark.parametrize("figure", ["mean", "maximum", "minimum"])
def test_header_without_statistics(figure: str, tmp_path: Path) -> None:
    RunFiles([group_1d(statistics_blocks=0)]).write(tmp_path)
    variable = get_variable(get_run(tmp_path), "Rotor speed", "float32")
    where = f"File path: {tmp_path}/Summary"
    assert error_of(getattr(variable, f"get_{figure}")) == tables_error(
        f"Getting variable {figure} value failed",
        f"Series name: 'Rotor speed'; {where}",
        tables_error("Header does not contain stats", where),
    )


@pytest.mark.parametrize("extremum", ["maximum", "minimum"])
def test_contemporaneous_of_another_group(extremum: str, tmp_path: Path) -> None:
    RunFiles([group_1d(), group_2d(number=2)]).write(tmp_path)
    variable = get_variable(get_run(tmp_path), "Rotor speed", "float32")
    where = f"File path: {tmp_path}/Summary"
    ask = getattr(variable, f"get_{extremum}_contemporaneous")
    assert error_of(lambda: ask("Blade moment")) == tables_error(
        f"Getting variable contemporaneous {extremum} value failed",
        f"Series name: 'Rotor speed'; {where}",
        tables_error("Requested series not found in current group", where),
    )


# Secondary values


def test_equal_and_noisy_labels(tmp_path: Path) -> None:
    axis = ValueAxis("Height", "L", (5.0, 5.0, 5.0000001))
    RunFiles([group_2d("R*8", secondary=axis)]).write(tmp_path)
    variable = get_variable(get_run(tmp_path), "Blade moment", "float64", 2)
    rows = [variable._get_data_at_index_native_array(index) for index in range(3)]
    assert len(set(rows)) == 3
    for key in (5, 5.0, "5", "5.0", " 5.0"):
        assert variable._get_data_at_value_native_array(key) == rows[0]
        assert variable.get_mean_at_value(key) == variable.get_mean_at_index(0)
    assert variable._get_data_at_value_native_array("5.0000001") == rows[2]


def test_secondary_values_that_are_not_there(tmp_path: Path) -> None:
    RunFiles([group_2d()]).write(tmp_path)
    variable = get_variable(get_run(tmp_path), "Blade moment", "float32", 2)
    where = f"File path: {tmp_path}/Blade loads"
    series = f"Series name: 'Blade moment'; {where}"
    assert error_of(lambda: variable._get_data_at_index_native_array(3)) == tables_error(
        "Getting data for 2D variable (specified independent variable) failed",
        f"Secondary independent variable value index: 3\n{series}",
        tables_error(
            "Axis index not found - unable to return corresponding axis value",
            f"Axis name: 'Distance along blade'; axis index: 3; {where}",
        ),
    )
    message = "Axis value not found - unable to return corresponding axis index"
    numeric = tables_error(message, "Axis name: 'Distance along blade'; axis value: 7")
    assert error_of(lambda: variable._get_data_at_value_native_array(7)) == numeric
    for text, inner in (("7", numeric), ("tip", "stod")):
        expected = tables_error(
            message,
            f"Secondary independent variable value: {text}\n{series}",
            f"Labelled secondary axis value not found; {inner}",
        )
        assert error_of(lambda text=text: variable._get_data_at_value_native_array(text)) == (
            expected
        )


# Names


@pytest.fixture
def run(tmp_path: Path) -> Flat:
    """Give a run with a name in two groups, of one axis and of two."""
    deep = group_2d(number=2)
    shared = [type(deep.variables[0])("ROTOR speed", "L", deep.variables[0].values)]
    deep = type(deep)(deep.name, shared, deep.primary, deep.secondary, 2)
    RunFiles([group_1d(), deep]).write(tmp_path)
    return get_run(tmp_path)


def test_a_name_in_two_groups(run: Flat) -> None:
    place = run.get_directory()
    assert run.contains_variable_1d("rotor SPEED") is True
    assert run.contains_variable_2d("rotor SPEED") is True
    lines = error_of(lambda: run._get_variable("Rotor speed")).split("\n")
    message = (
        "The variable was found in more than one output group. Specify a disambiguating group name"
    )
    assert "\n".join(lines[:5]) == tables_error(
        message,
        f"\n Variable name: 'Rotor speed'\n Run: {place}run\n"
        " Output groups in run containing this variable:",
    )
    # Groups come as the folder delivers their headers.
    assert sorted(lines[5:]) == ["", " 'Blade loads'", " 'Summary'"]
    one = get_variable(run, "rotor speed", "float32", 1, "summary")
    two = get_variable(run, "rotor speed", "float32", 2, "BLADE LOADS")
    assert Flat("Variable", one.pointer).get_name() == "Rotor speed"
    assert Flat("Variable", two.pointer).get_name() == "ROTOR speed"
    assert error_of(lambda: run.unload_variable("Rotor speed")) == tables_error(
        "The variable to remove from the cache was not found",
        f"Variable name: 'Rotor speed'\nRun: {place}run",
        "\n".join(lines),
    )
    assert run.unload_variable_from_specific_group("ROTOR SPEED", "SUMMARY") is True


def test_a_name_in_two_groups_of_one_name(tmp_path: Path) -> None:
    first, second = group_1d(), group_1d(number=2)
    second = replace(second, variables=[replace(v, values=-v.values) for v in second.variables])
    RunFiles([first, second]).write(tmp_path)
    run = get_run(tmp_path)
    expected = tables_error(
        "The variable was found in more than one output group. Specify a disambiguating group name",
        f"\n Variable name: 'Rotor speed'\n Run: {tmp_path}/run\n"
        " Output groups in run containing this variable:\n 'Summary'\n 'Summary'\n",
    )
    assert error_of(lambda: run._get_variable("Rotor speed")) == expected
    assert error_of(lambda: get_variable(run, "Rotor speed", "float32")) == expected
    assert run.contains_variable_1d("Rotor speed") is True
    assert run.contains_variable_2d("Rotor speed") is True
    # The name of the group is that of the first that the folder delivers.
    variable = get_variable(run, "Rotor speed", "float32", 1, "Summary")
    number = Flat("Variable", variable.pointer).get_parent_group_number()
    data = variable._get_data_native_array()
    assert (number, data[0]) in ((1, 40.25), (2, -40.25))
    assert run.unload_variable_from_specific_group("Rotor speed", "Summary") is True
    again = get_variable(run, "Rotor speed", "float32", 1, "Summary")
    assert again._get_data_native_array() == data
    assert error_of(lambda: run._get_variable("Rotor speed")) == expected
    # Groups are built by name.
    assert len(run._get_all_groups_native_array()) == 1


def test_names_that_are_not_there(run: Flat) -> None:
    context = f"Run: {run.get_directory()}run"
    get_group(run, "Summary")
    expected = {
        "The variable was not found": (
            lambda: run._get_variable("none"),
            f"Variable name: 'none'\n{context}",
        ),
        "Variable name was not specified": (lambda: run._get_variable(""), ""),
        "Specific group name was not specified": (
            lambda: run._get_variable_from_specific_output_group("none", ""),
            f"Variable name: 'none'\n{context}",
        ),
        "The variable was found but not in the specified output group": (
            lambda: run._get_variable_from_specific_output_group("Tower moment", "Blade loads"),
            f"\n Variable name: 'Tower moment'\n {context}\n"
            " Output groups in run containing this variable:\n 'Summary'\n",
        ),
        "Specific group was not found": (lambda: run.get_group("none"), "Group name: 'none'"),
        "The variable requested is not 2D - call equivalent 1D function to get variable": (
            lambda: get_variable(run, "Tower moment", "float32", 2),
            f"Variable name: 'Tower moment'\nSpecified group name: 'Summary'\n{context}",
        ),
        "The variable requested is not 1D - call equivalent 2D function to get variable": (
            lambda: get_variable(run, "Rotor speed", "float32", 1, "Blade loads"),
            f"Variable name: 'ROTOR speed'\nSpecified group name: 'Blade loads'\n{context}",
        ),
        "The variable was requested using a data type that does not match the data type used when "
        "the variable was read. Call the function appropriate to the data type of the variable to "
        "get variable": (
            lambda: get_variable(run, "Tower moment", "int32"),
            f"Variable name: 'Tower moment'\nSpecified group name: 'Summary'\n{context}",
        ),
    }
    assert {message: error_of(ask) for message, (ask, _) in expected.items()} == {
        message: tables_error(message, further) for message, (_, further) in expected.items()
    }
    assert run.contains_variable_1d("none") is False
    assert run.contains_variable_1d("") is False
    assert run.unload_variable("none") is False


def test_names_that_a_group_has_not(run: Flat) -> None:
    group = get_group(run, "Summary")
    name = "Group name: 'Summary'"
    assert error_of(lambda: group.get_variable("none")) == tables_error(
        "The variable was not found", f"{name}; Variable name requested: 'none'"
    )
    for key in ("none", "0"):
        assert error_of(lambda key=key: group.get_independent_variable(key)) == tables_error(
            "Independent variable was not found",
            f"{name}; Independent variable name requested: '{key}'",
        )
    for key in (1, 2, -1, 2**31 - 1):
        assert error_of(lambda key=key: group.get_independent_variable(key)) == tables_error(
            "Independent variable was not found", name
        )
    assert get_axis(group, 0).get_name() == "Time"
    context = f"Run: {run.get_directory()}run"
    ask = group._GROUPPREFIX_get_all_variables_2d_float32_native_array
    assert error_of(ask) == tables_error(
        "The variable requested is not 2D - call equivalent 1D function to get variable",
        f"Variable name: 'Electrical power'\nSpecified group name: 'Summary'\n{context}",
    )


# Unloading


def test_unload_and_read_again(run: Flat, tmp_path: Path) -> None:
    variable = get_variable(run, "Tower moment", "float32")
    before = variable._get_data_native_array()
    assert run.unload_variable("TOWER moment") is True
    again = get_variable(run, "Tower moment", "float32")
    assert again._get_data_native_array() == before
    assert run.unload_variable_from_specific_group("Tower moment", "Summary") is True
    # The figures of the header are there without data.
    tmp_path.joinpath("run.$01").unlink()
    last = get_variable(run, "Tower moment", "float32")
    assert last.get_mean() == pytest.approx(180.25)
    assert last.get_maximum() == 500.25


def test_groups_of_an_unsupported_calculation(tmp_path: Path) -> None:
    RunFiles([group_1d(content="WIND")]).write(tmp_path)
    run = get_run(tmp_path)
    expected = tables_error(
        "The request cannot be fulfilled for an unsupported calculation type",
        f"Run: {tmp_path}/run",
    )
    assert error_of(lambda: run.get_group("Summary")) == expected
    assert error_of(run._get_all_groups_native_array) == expected
    # The road by the name of a variable starts at the headers.
    variable = get_variable(run, "Rotor speed", "float32")
    assert variable._get_data_native_array()[0] == 40.25
    assert run.get_calculation_type() == native.CalculationType_WindTurbulence
