"""Arrays over the memory of the library: their type, their memory, their owner."""

from __future__ import annotations

import re
from collections.abc import Callable
from pathlib import Path
from typing import Any

import _TabulonAPI_Python as native
import numpy as np
import pytest
from support.flat import SUFFIXES, Flat, error_of, get_axis, get_run, get_variable, run_script
from support.run_files import RunFiles, Word
from support.scenarios import CASES, DTYPES, HEIGHTS, STATIONS, WIND, group_1d, group_2d

WORDS: list[Word] = ["R*4", "R*8", "I*4"]
words = pytest.mark.parametrize("word", WORDS)
both_forms = pytest.mark.parametrize("text", [False, True], ids=["binary", "text"])
Array = np.ndarray


def address(array: Array) -> int:
    return array.__array_interface__["data"][0]


def one_axis(folder: Path, word: Word = "R*4", **changes: Any) -> Flat:  # noqa: ANN401
    RunFiles([group_1d(word, **changes)]).write(folder)
    return get_variable(get_run(folder), "Rotor speed", DTYPES[word])


def two_axes(folder: Path, word: Word = "R*4", **changes: Any) -> Flat:  # noqa: ANN401
    RunFiles([group_2d(word, **changes)]).write(folder)
    return get_variable(get_run(folder), "Blade moment", DTYPES[word], 2)


def assert_plain(array: Array, dtype: str, size: int) -> None:
    assert type(array) is np.ndarray
    assert array.dtype == np.dtype(dtype)
    assert array.dtype.isnative
    assert array.shape == (size,)
    assert array.strides == (array.dtype.itemsize,)
    assert array.flags.c_contiguous
    assert array.flags.aligned
    assert array.flags.writeable
    assert not array.flags.owndata


@words
@both_forms
def test_array_of_a_variable(word: Word, text: bool, tmp_path: Path) -> None:
    variable = one_axis(tmp_path, word, text=text)
    array = variable._get_data_numpy_from_vector()
    assert_plain(array, DTYPES[word], 5)
    again = variable._get_data_numpy_from_vector()
    assert again is not array
    assert address(again) == address(array)
    array[2] = 77
    assert again[2] == 77
    assert variable._get_data_native_array()[2] == 77
    assert np.shares_memory(array, again)


@words
@both_forms
def test_array_of_a_row(word: Word, text: bool, tmp_path: Path) -> None:
    variable = two_axes(tmp_path, word, text=text)
    rows = [variable._get_data_at_index_numpy_from_vector(index) for index in range(3)]
    for index, row in enumerate(rows):
        assert_plain(row, DTYPES[word], 5)
        value = STATIONS.labels[index]
        for key in (value, str(value), f"{value:.3e}"):
            by_value = variable._get_data_at_value_numpy_from_vector(key)
            assert address(by_value) == address(row)
    rows[1][0] = 55
    assert variable._get_data_at_value_native_array(20.5)[0] == 55
    whole = variable._get_data_for_all_independent_variable_values_native_array()
    assert whole[1][0] == 55
    assert len({address(row) for row in rows}) == 3


@words
def test_a_whole_table_after_a_row_keeps_its_memory(word: Word, tmp_path: Path) -> None:
    variable = two_axes(tmp_path, word)
    row = variable._get_data_at_index_numpy_from_vector(2)
    before = row.tolist()
    row[:] = 9
    whole = variable._get_data_for_all_independent_variable_values_native_array()
    assert whole[2] == (9,) * 5
    assert list(whole[0]) != before
    assert address(variable._get_data_at_index_numpy_from_vector(2)) == address(row)


def test_another_variable_has_other_memory(tmp_path: Path) -> None:
    first = one_axis(tmp_path)
    values = first._get_data_numpy_from_vector()
    other = get_variable(get_run(tmp_path), "Tower moment", "float32")
    before = other._get_data_native_array()
    values[:] = 0
    assert other._get_data_native_array() == before
    assert not np.shares_memory(values, other._get_data_numpy_from_vector())


@pytest.mark.parametrize("axis", [WIND, HEIGHTS], ids=["labels", "interval"])
def test_array_of_an_axis(axis: Any, tmp_path: Path) -> None:  # noqa: ANN401
    variable = two_axes(tmp_path, "R*4", secondary=axis) if axis is HEIGHTS else None
    variable = variable or one_axis(tmp_path, "R*4", primary=axis)
    owner = get_axis(variable, *([1] if axis is HEIGHTS else []))
    array = owner._get_values_as_number_numpy_from_vector()
    assert_plain(array, "float64", axis.size)
    assert array.tolist() == axis.numbers()
    assert address(owner._get_values_as_number_numpy_from_vector()) == address(array)


def test_axis_of_texts_has_no_array(tmp_path: Path) -> None:
    owner = get_axis(one_axis(tmp_path, "R*4", primary=CASES))
    text = error_of(owner._get_values_as_number_native_array)
    assert error_of(owner._get_values_as_number_numpy_from_vector) == text


def test_axis_of_a_script_without_group() -> None:
    interval = Flat("IndependentVariable", native.new_IndependentVariable("Time", "s", 0.5, -0.25))
    labels = Flat("IndependentVariable", native.new_IndependentVariable("R", "m", [1.5, 2.5]))
    array = interval._get_values_as_number_numpy_from_vector()
    assert array.shape == (0,)
    assert array.dtype == np.float64
    assert labels._get_values_as_number_numpy_from_vector().tolist() == [1.5, 2.5]


# Owner


def owners() -> list[Callable[[Path], tuple[object, Array]]]:
    def one(folder: Path) -> tuple[object, Array]:
        variable = one_axis(folder)
        return variable.pointer, variable._get_data_numpy_from_vector()

    def row(folder: Path) -> tuple[object, Array]:
        variable = two_axes(folder)
        return variable.pointer, variable._get_data_at_index_numpy_from_vector(1)

    def by_value(folder: Path) -> tuple[object, Array]:
        variable = two_axes(folder)
        return variable.pointer, variable._get_data_at_value_numpy_from_vector("41")

    def axis(folder: Path) -> tuple[object, Array]:
        owner = get_axis(one_axis(folder))
        return owner.pointer, owner._get_values_as_number_numpy_from_vector()

    return [one, row, by_value, axis]


@pytest.mark.parametrize("make", owners(), ids=lambda f: f.__name__)
def test_base_holds_the_owner(make: Callable[[Path], tuple[object, Array]], tmp_path: Path) -> None:
    owner, array = make(tmp_path)
    assert array.base is not None
    assert any(item is owner for item in array.base)
    # Views of the array reach the owner through the array.
    view = array[1:3]
    assert view.base is array


# Failures


@pytest.mark.parametrize("suffix", SUFFIXES.values())
def test_index_that_is_no_size(suffix: str, tmp_path: Path) -> None:
    word: Word = next(word for word in WORDS if SUFFIXES[DTYPES[word]] == suffix)
    variable = two_axes(tmp_path, word)
    name = f"Variable2D_{suffix}__get_data_at_index_numpy_from_vector"
    text = f"in method '{name}', argument 2 of type 'size_t'"
    with pytest.raises(OverflowError) as overflow:
        variable._get_data_at_index_numpy_from_vector(-1)
    with pytest.raises(TypeError) as wrong:
        variable._get_data_at_index_numpy_from_vector(1.0)
    assert (str(overflow.value), str(wrong.value)) == (text, text)


@words
def test_failures_are_those_of_the_tuple(word: Word, tmp_path: Path) -> None:
    one, two = one_axis(tmp_path / "1", word), two_axes(tmp_path / "2", word)
    for index in (3, 2**40, 2**64 - 1):
        text = error_of(lambda index=index: two._get_data_at_index_native_array(index))
        assert f"axis index: {index}; " in text
        assert error_of(lambda index=index: two._get_data_at_index_numpy_from_vector(index)) == text
    for value in (7.0, "7.0", "root", "", float("nan")):
        text = error_of(lambda value=value: two._get_data_at_value_native_array(value))
        assert error_of(lambda value=value: two._get_data_at_value_numpy_from_vector(value)) == text
    tmp_path.joinpath("1", "run.$01").unlink()
    text = error_of(one._get_data_native_array)
    assert "IO error 5000: The file does not exist." in text
    assert error_of(one._get_data_numpy_from_vector) == text


@pytest.mark.parametrize("word", WORDS)
@both_forms
def test_variable_without_points(word: Word, text: bool, tmp_path: Path) -> None:
    group = group_1d(word, text=text, statistics_blocks=0)
    RunFiles([group]).write(tmp_path)
    header = tmp_path / "run.%01"
    header.write_bytes(header.read_bytes().replace(b"DIMENS\t3\t5", b"DIMENS\t3\t0"))
    tmp_path.joinpath("run.$01").write_bytes(b"")
    variable = get_variable(get_run(tmp_path), "Rotor speed", DTYPES[word])
    array = variable._get_data_numpy_from_vector()
    assert array.shape == (0,)
    assert array.dtype == DTYPES[word]
    assert variable._get_data_native_array() == ()


def test_numpy_that_does_not_fit_is_an_import_error() -> None:
    """The reason goes to standard error, whatever it is."""
    outcome = run_script(
        """
import contextlib, io, types
variable = native.new_IndependentVariable("R", "m", [1.5])
ask = native.IndependentVariable__get_values_as_number_numpy_from_vector
outcome = []
for fake in ({}, {"_ARRAY_API": 7}):
    for name in ("numpy", "numpy.core", "numpy._core"):
        sys.modules[name] = types.ModuleType(name)
        sys.modules[name].__path__ = []
        module = types.ModuleType(name + "._multiarray_umath")
        module.__dict__.update(fake)
        sys.modules[name + "._multiarray_umath"] = module
    told = io.StringIO()
    with contextlib.redirect_stderr(told):
        try:
            ask(variable)
        except ImportError as error:
            outcome.append([str(error), told.getvalue().splitlines()[-1]])
answer(outcome)
"""
    )
    refusal = "numpy.core.multiarray failed to import"
    (without, missing), (other, wrong) = outcome
    assert (without, other) == (refusal, refusal)
    # Which of its modules NumPy is looked for in depends on the release that was built against.
    assert re.fullmatch(
        r"AttributeError: module 'numpy\._?core\._multiarray_umath' has no attribute '_ARRAY_API'",
        missing,
    )
    assert wrong == "RuntimeError: _ARRAY_API is not PyCapsule object"
