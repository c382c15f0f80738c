"""Output groups whose axes, names and sizes meet again: in a second group, or on being read."""

from __future__ import annotations

from pathlib import Path

import _TabulonAPI_Python as native
import numpy as np
import pytest
from support.flat import Flat, get_axis, get_run, get_variable
from support.output import output, radius, time, write


def values_of(axis: object) -> list[float]:
    return list(native.IndependentVariable__get_values_as_number_native_array(axis))


def write_points(path: Path, count: int, axis: object) -> Flat:
    group = output(path, "float32", axis)
    group._add_variable_with_data_native_array("x", "m", np.arange(count, dtype=np.float32))
    write(group)
    return group


def test_an_axis_counts_the_points_of_the_group_that_it_serves_last(tmp_path: Path) -> None:
    axis = time()
    first = write_points(tmp_path / "first.%01", 4, axis)
    assert values_of(axis) == [1.0, 0.75, 0.5, 0.25]
    second = write_points(tmp_path / "second.%01", 2, axis)
    assert values_of(axis) == [1.0, 0.75]
    for name, count in (("first", 4), ("second", 2)):
        read = get_axis(get_variable(get_run(tmp_path, name), "x", "float32"))
        assert values_of(read.pointer) == [1.0 - 0.25 * i for i in range(count)]
    assert first.pointer is not second.pointer


def test_writing_into_the_values_of_one_axis_leaves_those_of_another(tmp_path: Path) -> None:
    write_points(tmp_path / "first.%01", 3, time())
    read = get_axis(get_variable(get_run(tmp_path, "first"), "x", "float32")).pointer
    handed_out = native.IndependentVariable__get_values_as_number_numpy_from_vector
    kept = handed_out(read)
    write_points(tmp_path / "second.%01", 3, read)
    handed_out(read)[0] = 99.0
    assert kept.tolist() == [1.0, 0.75, 0.5]


def test_a_table_without_secondary_values_reads_as_it_was_written(tmp_path: Path) -> None:
    secondary = native.new_IndependentVariable("Radius", "m", 0.0, 1.0)
    group = output(tmp_path / "empty.%01", "float32", time(), secondary)
    group.add_variable("x", "m")
    write(group)
    variable = get_variable(get_run(tmp_path, "empty"), "x", "float32", axes=2)
    read = variable._get_data_for_all_independent_variable_values_native_array
    assert read() == ()
    assert read() == ()
    assert values_of(get_axis(variable, "Radius").pointer) == []


@pytest.mark.parametrize(("name", "data"), [("SPEED", (3.0, 4.0)), ("speed", (1.0, 2.0))])
def test_a_name_is_found_by_its_spelling_first(
    tmp_path: Path, name: str, data: tuple[float, ...]
) -> None:
    group = output(tmp_path / "run.%01", "float32", time())
    for each, points in (("Speed", [1.0, 2.0]), ("other", [3.0, 4.0])):
        group._add_variable_with_data_native_array(each, "m", points)
    write(group)
    header = tmp_path / "run.%01"
    header.write_text(header.read_text().replace("'other'", "'SPEED'"))
    assert get_variable(get_run(tmp_path), name, "float32")._get_data_native_array() == data


def test_an_axis_of_labels_serves_groups_one_after_another(tmp_path: Path) -> None:
    axis = radius()
    for name in ("first", "second"):
        write_points(tmp_path / f"{name}.%01", 3, axis)
        read = get_axis(get_variable(get_run(tmp_path, name), "x", "float32"))
        assert values_of(read.pointer) == [1.5, 20.0, 41.25]
