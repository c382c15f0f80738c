"""The arrays as sequences."""

from __future__ import annotations

import copy
from collections.abc import Sequence
from pathlib import Path
from typing import Any

import _TabulonAPI_Python as native
import pytest
from support.run_files import RunFiles
from support.scenarios import group_1d, group_2d
from tabulon import api

ELEMENTS: dict[str, list[Any]] = {
    "ArrayOfInt": [3, 1, 2],
    "ArrayOfFloat": [3.5, 1.5, 2.5],
    "ArrayOfDouble": [3.1, 1.1, 2.1],
    "ArrayOfString": ["c", "a", "b"],
    "ArrayOfArrayOfInt": [(3,), (1, 2), ()],
    "ArrayOfArrayOfFloat": [(3.5,), (1.5, 2.5), ()],
    "ArrayOfArrayOfDouble": [(3.1,), (1.1, 2.1), ()],
    "ArrayOfArrayOfString": [("c",), ("a", "b"), ()],
}
values = pytest.mark.parametrize(("name", "elements"), ELEMENTS.items())


@values
def test_array_is_a_sequence(name: str, elements: list[Any]) -> None:
    array = getattr(api, name)(elements)
    assert isinstance(array, Sequence)
    assert len(array) == 3
    assert list(array) == elements
    assert [array[i] for i in range(-3, 3)] == elements * 2
    assert list(reversed(array)) == elements[::-1]
    assert elements[1] in array
    assert array.index(elements[2]) == 2
    assert array.count(elements[0]) == 1
    with pytest.raises(IndexError):
        array[3]


@values
def test_slice_is_an_array_of_the_class(name: str, elements: list[Any]) -> None:
    array = getattr(api, name)(elements)
    for part in (slice(1, None), slice(None, None, -1), slice(0, 3, 2), slice(2, 1)):
        assert type(array[part]) is getattr(api, name)
        assert list(array[part]) == elements[part]


@values
def test_array_grows_by_slices(name: str, elements: list[Any]) -> None:
    array = getattr(api, name)()
    assert not array
    array[0:0] = elements
    array[3:3] = elements[:1]
    assert list(array) == [*elements, elements[0]]
    array[0] = elements[1]
    del array[1:3]
    assert list(array) == [elements[1], elements[0]]


@values
def test_copy_and_sizes(name: str, elements: list[Any]) -> None:
    cls = getattr(api, name)
    array = cls(elements)
    copy = cls(array)
    copy[0] = elements[1]
    assert list(array) == elements
    assert len(cls(4)) == 4
    assert list(cls(2, elements[1])) == [elements[1]] * 2


def test_slice_that_starts_past_the_end_starts_over() -> None:
    array = api.ArrayOfInt(range(5))
    assert list(array[20:25]) == [0, 1, 2, 3, 4]


def test_arrays_of_objects_share_them(tmp_path: Path) -> None:
    words = {"Float32": "R*4", "Float64": "R*8", "Int32": "I*4"}
    for element, word in words.items():
        groups = [group_1d(word), group_2d(word, number=2)]  # type: ignore[arg-type]
        RunFiles(groups, element).write(tmp_path)
    for element in words:
        run = api.get_run(tmp_path, element)
        line, area = run.get_variable_1d("Rotor speed"), run.get_variable_2d("Blade moment")
        line_array = getattr(api, f"ArrayOfVariable1D_{element}")([line])
        area_array = getattr(api, f"ArrayOfVariable2D_{element}")([area])
        assert type(line_array[0]) is type(line)
        assert line_array[0].get_data().ctypes.data == line.get_data().ctypes.data
        assert type(area_array[0]) is type(area)
        both = api.ArrayOfVariable([line, area])
        assert [type(variable) for variable in both] == [api.Variable] * 2
        assert [variable.get_name() for variable in both] == ["Rotor speed", "Blade moment"]
    runs = api.ArrayOfRun(api.get_runs(tmp_path))
    assert {run.get_name() for run in runs} == set(words)
    groups = api.ArrayOfGroup(runs[0].get_all_groups())
    assert {type(group) for group in groups} == {api.Group}
    axes = api.ArrayOfIndependentVariable(groups[0].get_independent_variables())
    assert axes[0].get_name() == "Time"


def test_array_serves_as_argument(tmp_path: Path) -> None:
    time = api.IndependentVariable("Time", "s", api.ArrayOfDouble([0.0, 0.5]))
    group = api.output_group_1d(tmp_path / "out.%01", "Mine", time)
    group.add_variable_with_data("Power", "W", api.ArrayOfFloat([1.5, 2.5]))
    api.write_output(group)
    found = api.get_run(tmp_path, "out").get_variable_1d("Power")
    assert found.get_data_as_tuple() == (1.5, 2.5)


def test_copies_have_elements_of_their_own() -> None:
    array = api.ArrayOfInt([1, 2, 3])
    for copied in (copy.copy(array), copy.deepcopy(array)):
        copied[0:1] = [7, 8]
        assert (list(copied), list(array)) == ([7, 8, 2, 3], [1, 2, 3])
        assert type(copied) is api.ArrayOfInt
    del array
    assert list(copied) == [7, 8, 2, 3]


def test_what_was_deleted_can_be_shown(tmp_path: Path) -> None:
    RunFiles([group_1d()]).write(tmp_path)
    run = api.get_run(tmp_path, "run")
    group, variable = run.get_group("Summary"), run.get_variable_1d("Rotor speed")
    axis, array = variable.get_independent_variable(), api.ArrayOfInt(2)
    for held in (run, group, variable, axis):
        native.delete_Run(held) if held is run else held.__swig_destroy__(held)
        assert repr(held) == f"<{type(held).__name__} that was deleted>"
    native.delete_ArrayOfInt(array)
    assert "ArrayOfInt" in repr(array)
