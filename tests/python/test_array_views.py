"""NumPy arrays over the memory of the library, for each class that gives them."""

from __future__ import annotations

import gc
from collections.abc import Callable
from pathlib import Path

import _TabulonAPI_Python as native
import numpy as np
import pytest
from support.flat import message
from support.run_files import RunFiles
from support.small_runs import WORDS, small_group, variable_1d, variable_2d, write_run
from surface_table import FAMILY


@pytest.fixture
def run(tmp_path: Path) -> object:
    write_run(tmp_path)
    return native.TabulonApi_get_run(str(tmp_path), "run")


def numpy_array(run: object, suffix: str, kind: str) -> np.ndarray:
    return getattr(native, f"Variable1D_{suffix}__get_data_numpy_from_vector")(
        variable_1d(run, kind)
    )


@pytest.mark.parametrize(("suffix", "kind", "element"), FAMILY)
def test_an_array_is_a_plain_view(run: object, suffix: str, kind: str, element: str) -> None:
    rows = [
        getattr(native, f"Variable2D_{suffix}__get_data_at_{way}_numpy_from_vector")(
            variable_2d(run, kind), key
        )
        for way, key in (("value", 2.5), ("value", "2.5"), ("index", 1))
    ]
    for values, expected in (
        (numpy_array(run, suffix, kind), [1, 3, 2]),
        *((r, [4, 6, 5]) for r in rows),
    ):
        assert type(values) is np.ndarray
        assert values.dtype == np.dtype(kind)
        assert values.tolist() == expected
        flags = values.flags
        assert (flags.c_contiguous, flags.aligned, flags.writeable) == (True, True, True)
        assert not flags.owndata


def test_axis_values_are_float64(run: object) -> None:
    variable = variable_2d(run, "float32")
    for key, expected in ((0, [0.0, 0.5, 1.0]), (1, [1.5, 2.5])):
        axis = native.Variable2D_Float32_get_independent_variable(variable, key)
        values = native.IndependentVariable__get_values_as_number_numpy_from_vector(axis)
        assert values.dtype == np.float64
        assert values.tolist() == expected
        assert native.IndependentVariable__get_values_as_number_native_array(axis) == tuple(
            expected
        )
    names = native.new_IndependentVariable("Name", "N", ["a"])
    as_tuple = native.IndependentVariable__get_values_as_number_native_array
    as_array = native.IndependentVariable__get_values_as_number_numpy_from_vector
    text = message(lambda: as_tuple(names), RuntimeError)
    assert message(lambda: as_array(names), RuntimeError) == text


def test_arrays_show_the_same_memory(run: object) -> None:
    first, second = (numpy_array(run, "Float32", "float32") for _ in range(2))
    assert first is not second
    first[1] = 7
    assert second[1] == 7
    read = native.Variable1D_Float32__get_data_native_array(variable_1d(run, "float32"))
    assert read == (1.0, 7.0, 2.0)


def test_an_array_holds_the_variable_and_the_data(run: object) -> None:
    variable = variable_1d(run, "float32")
    values = native.Variable1D_Float32__get_data_numpy_from_vector(variable)
    assert values.base[0] is variable


@pytest.mark.parametrize(
    "unload",
    [
        lambda run: native.Run_unload_variable(run, "x 1d float64"),
        lambda run: native.Run_unload_variable_from_specific_group(
            run, "x 1d float64", "1d float64"
        ),
    ],
)
def test_an_array_outlives_an_unload(run: object, unload: Callable[[object], bool]) -> None:
    values = numpy_array(run, "Float64", "float64")
    assert unload(run) is True
    again = numpy_array(run, "Float64", "float64")
    again[:] = 0
    assert values.tolist() == [1.0, 3.0, 2.0]


def test_an_array_outlives_everything(tmp_path: Path) -> None:
    write_run(tmp_path)
    run = native.TabulonApi_get_run(str(tmp_path), "run")
    variable = variable_1d(run, "float64")
    axis = native.Variable1D_Float64_get_independent_variable(variable)
    values = native.Variable1D_Float64__get_data_numpy_from_vector(variable)
    times = native.IndependentVariable__get_values_as_number_numpy_from_vector(axis)
    native.delete_Variable1D_Float64(variable)
    native.delete_IndependentVariable(axis)
    native.delete_Run(run)
    native.TabulonApi_clear_runs()
    del run, variable, axis
    gc.collect()
    assert values.tolist() == [1.0, 3.0, 2.0]
    assert times.tolist() == [0.0, 0.5, 1.0]


def test_a_variable_without_points_gives_an_empty_array(tmp_path: Path) -> None:
    RunFiles([small_group(1 + n, kind, []) for n, kind in enumerate(WORDS)]).write(tmp_path)
    run = native.TabulonApi_get_run(str(tmp_path), "run")
    for suffix, kind, _ in FAMILY:
        values = numpy_array(run, suffix, kind)
        assert values.shape == (0,)
        assert values.dtype == np.dtype(kind)


def test_the_class_follows_the_type_for_reading(run: object) -> None:
    native.TabulonApi_CacheSettings_set_data_type_for_reading(
        native.DataTypeSpecifier_ReadAsFloat64
    )
    try:
        variable = native.Run__RUNPREFIX_get_variable_1d_float64(run, "x 1d float32")
        values = native.Variable1D_Float64__get_data_numpy_from_vector(variable)
    finally:
        native.TabulonApi_CacheSettings_set_data_type_for_reading(
            native.DataTypeSpecifier_ReadAsSerialisedType
        )
    assert values.dtype == np.float64
    assert values.tolist() == [1.0, 3.0, 2.0]
