"""Texts, numbers and objects on their way through the boundary of the extension module."""

from __future__ import annotations

import os
from pathlib import Path

import _TabulonAPI_Python as native
import numpy as np
import pytest
from support.flat import message, tables_error
from support.small_runs import WORDS, variable_1d, variable_2d, write_run
from surface_table import FAMILY


@pytest.fixture
def run(tmp_path: Path) -> object:
    write_run(tmp_path)
    return native.TabulonApi_get_run(str(tmp_path), "run")


# Exceptions of the library


def no_run(path: Path) -> str:
    return tables_error(
        "Run was not found - run termination file (.$TE) missing or invalid", f"File path: {path}"
    )


def test_library_failures_are_runtime_errors_with_their_text(tmp_path: Path) -> None:
    text = message(lambda: native.TabulonApi_get_run(str(tmp_path), "none"), RuntimeError)
    assert text == no_run(tmp_path / "none.$TE")


def test_a_text_with_undecodable_bytes_is_still_told(tmp_path: Path) -> None:
    folder = os.fsdecode(os.fsencode(tmp_path) + b"/r\xff\xc3")
    text = message(lambda: native.TabulonApi_get_run(folder, "none"), RuntimeError)
    assert text == tables_error("Run directory was not found", f"Directory: {folder}")
    Path(folder).mkdir()
    text = message(lambda: native.TabulonApi_get_run(folder, "none"), RuntimeError)
    assert text == no_run(Path(folder, "none.$TE"))


def test_names_with_undecodable_bytes_survive_the_round_trip(tmp_path: Path) -> None:
    name = b"run\xff".decode("utf-8", "surrogateescape")
    tmp_path.joinpath(f"{name}.$TE").write_bytes(b"Run completed.\n")
    run = native.TabulonApi_get_run(str(tmp_path), name)
    assert native.Run_get_name(run) == name
    again = native.TabulonApi_get_run(native.Run_get_directory(run), native.Run_get_name(run))
    assert native.Run_get_termination_file_path(again) == str(tmp_path / f"{name}.$TE")


# Data in and out


@pytest.mark.parametrize(("suffix", "kind", "element"), FAMILY)
def test_results_are_tuples_of_python_numbers(
    run: object, suffix: str, kind: str, element: str
) -> None:
    number = int if element == "int" else float
    data = getattr(native, f"Variable1D_{suffix}__get_data_native_array")(variable_1d(run, kind))
    assert data == (1, 3, 2)
    assert {type(value) for value in data} == {number}
    table = getattr(
        native, f"Variable2D_{suffix}__get_data_for_all_independent_variable_values_native_array"
    )(variable_2d(run, kind))
    assert table == ((1, 2, 3), (4, 6, 5))
    assert {type(value) for row in table for value in row} == {number}
    for key in (2.5, "2.5"):
        row = getattr(native, f"Variable2D_{suffix}__get_data_at_value_native_array")
        assert row(variable_2d(run, kind), key) == (4, 6, 5)
    row = getattr(native, f"Variable2D_{suffix}__get_data_at_index_native_array")
    assert row(variable_2d(run, kind), 1) == (4, 6, 5)


def test_statistics_have_the_type_of_the_data_and_means_are_floats(run: object) -> None:
    variable = variable_1d(run, "int32")
    for axis in "xy":
        native.Variable1D_Int32__get_data_native_array(variable_1d(run, "int32", axis))
    largest = native.Variable1D_Int32_get_maximum(variable)
    mean = native.Variable1D_Int32_get_mean(variable)
    assert (largest, type(largest)) == (3, int)
    assert (mean, type(mean)) == (2.0, float)


def test_results_of_objects_are_tuples(run: object) -> None:
    groups = native.Run__get_all_groups_native_array(run)
    assert type(groups) is tuple
    assert {native.Group_get_name(group) for group in groups} == {
        f"{axes}d {kind}" for axes in (1, 2) for kind in WORDS
    }
    group = native.Run_get_group(run, "2d float32")
    assert native.Group__get_variable_names_native_array(group) == ("x 2d float32", "y 2d float32")
    axes = native.Group__get_independent_variables_native_array(group)
    assert [native.IndependentVariable_get_name(axis) for axis in axes] == ["Time", "Radius"]
    variables = native.Group__GROUPPREFIX_get_all_variables_2d_float32_native_array(group)
    assert [native.Variable_get_name(variable) for variable in variables] == [
        "x 2d float32",
        "y 2d float32",
    ]


@pytest.mark.parametrize(("suffix", "kind", "element"), FAMILY)
def test_any_iterable_is_written(tmp_path: Path, suffix: str, kind: str, element: str) -> None:
    array_of = f"ArrayOf{element.title()}"
    inputs: dict[str, object] = {
        "list": [1, 2, 3],
        "tuple": (1, 2, 3),
        "generator": (n for n in (1, 2, 3)),
        "dict": {1: "a", 2: "b", 3: "c"},
        "range": range(1, 4),
        "numpy": np.array([1, 2, 3], kind),
        "strided": np.array([1, 0, 2, 0, 3], kind)[::2],
        "array": getattr(native, f"new_{array_of}")([1, 2, 3]),
    }
    axis = native.new_IndependentVariable("Time", "s", 0.0, 1.0)
    path = str(tmp_path / "out.%01")
    group = getattr(native, f"new_OutputGroup1D_{suffix}")(
        path, "Out", "UserDefined", "TABLE", axis
    )
    add = getattr(native, f"OutputGroup1D_{suffix}__add_variable_with_data_native_array")
    for name, data in inputs.items():
        assert add(group, name, "m", data) is None
    assert native.TabulonApi_write_output(group) is True
    keep = native.OverwriteBehaviour_DoNotOverwriteExistingOutput
    assert native.TabulonApi_write_output(group, keep) is False
    run = native.TabulonApi_get_run(str(tmp_path), "out")
    for name in inputs:
        variable = getattr(native, f"Run__RUNPREFIX_get_variable_1d_{kind}")(run, name)
        data = getattr(native, f"Variable1D_{suffix}__get_data_native_array")(variable)
        assert data == (1, 2, 3), name


@pytest.mark.parametrize(("suffix", "kind", "element"), FAMILY)
def test_any_iterable_of_iterables_is_written(
    tmp_path: Path, suffix: str, kind: str, element: str
) -> None:
    inputs: dict[str, object] = {
        "lists": [[1, 2, 3], [4, 5, 6]],
        "generators": ((3 * m + n for n in (1, 2, 3)) for m in (0, 1)),
        "numpy": np.array([[1, 2, 3], [4, 5, 6]], kind),
        "columns": np.array([[1, 4], [2, 5], [3, 6]], kind).T,
        "array": getattr(native, f"new_ArrayOfArrayOf{element.title()}")([[1, 2, 3], [4, 5, 6]]),
    }
    primary = native.new_IndependentVariable("Time", "s", 0.0, 1.0)
    secondary = native.new_IndependentVariable("Radius", "m", [1.5, 2.5])
    group = getattr(native, f"new_OutputGroup2D_{suffix}")(
        str(tmp_path / "out.%01"), "Out", "UserDefined", "TABLE", primary, secondary
    )
    add = getattr(native, f"OutputGroup2D_{suffix}__add_variable_with_data_native_array")
    for name, data in inputs.items():
        add(group, name, "m", data)
    assert native.TabulonApi_write_output(group) is True
    run = native.TabulonApi_get_run(str(tmp_path), "out")
    whole = getattr(
        native, f"Variable2D_{suffix}__get_data_for_all_independent_variable_values_native_array"
    )
    for name in inputs:
        variable = getattr(native, f"Run__RUNPREFIX_get_variable_2d_{kind}")(run, name)
        assert whole(variable) == ((1, 2, 3), (4, 5, 6)), name
