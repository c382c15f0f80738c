"""What is in use stays alive, whatever is dropped."""

from __future__ import annotations

import gc
import weakref
from pathlib import Path

import numpy as np
import pytest
from support.run_files import RunFiles
from support.scenarios import group_1d, group_2d
from tabulon import api

POWER = [2.25, -2.75, 7.25, 5.25, 1.25]


@pytest.fixture
def folder(tmp_path: Path) -> Path:
    groups = [group_1d(statistics_blocks=0), group_2d(number=2, statistics_blocks=0)]
    return RunFiles(groups).write(tmp_path)


def forget() -> None:
    """Drop all that can be dropped, and put something else in its place."""
    api.clear_runs()
    gc.collect()
    for size in (5, 15):
        np.full(size, 99, dtype=np.float32).tolist()


def test_array_outlives_variable_run_and_cache(folder: Path) -> None:
    data = api.get_run(folder, "run").get_variable_1d("Electrical power").get_data()
    forget()
    assert data.tolist() == POWER


def test_array_outlives_an_unload(folder: Path) -> None:
    run = api.get_run(folder, "run")
    data = run.get_variable_1d("Electrical power").get_data()
    assert run.unload_variable("Electrical power") is True
    forget()
    assert data.tolist() == POWER
    assert run.get_variable_1d("Electrical power").get_data().tolist() == POWER


def test_row_outlives_its_table(folder: Path) -> None:
    row = api.get_run(folder, "run").get_variable_2d("Blade moment").get_data_at_value(20.5)
    expected = group_2d().variables[0].values[1].tolist()
    forget()
    assert row.tolist() == expected


def test_axis_values_outlive_the_axis(folder: Path) -> None:
    group = api.get_run(folder, "run").get_group("Blade loads")
    time, stations = (axis.get_values_as_number() for axis in group.get_independent_variables())
    del group
    forget()
    assert time.tolist() == [10.0, 10.5, 11.0, 11.5, 12.0]
    assert stations.tolist() == [0.0, 20.5, 41.0]


def test_two_arrays_share_the_data(folder: Path) -> None:
    variable = api.get_run(folder, "run").get_variable_1d("Electrical power")
    first, second = variable.get_data(), variable.get_data()
    first[0] = 8.5
    assert second[0] == 8.5
    assert variable.get_maximum() == 8.5


def test_whole_table_is_a_copy(folder: Path) -> None:
    variable = api.get_run(folder, "run").get_variable_2d("Blade moment")
    before = variable.get_data_at_index(0)[0]
    variable.get_data_for_all_independent_variable_values()[0, 0] = 99.0
    assert variable.get_data_at_index(0)[0] == before


def test_group_keeps_its_run(folder: Path) -> None:
    with api.settings(run_caching_enabled=False):
        group = api.get_run(folder, "run").get_group("Summary")
        forget()
        variable = group.get_variable_1d("Electrical power")
        assert variable.get_data().tolist() == POWER
        assert group.get_variable("Tower moment").get_name() == "Tower moment"


def test_variable_keeps_its_run(folder: Path) -> None:
    with api.settings(run_caching_enabled=False):
        variable = api.get_run(folder, "run").get_variable_1d("Electrical power")
        forget()
        assert variable.get_maximum_contemporaneous("Tower moment") == 400.25
        assert variable.get_parent_group_header_file_full_path() == str(folder / "run.%01")


def test_what_is_dropped_goes(folder: Path) -> None:
    run = api.get_run(folder, "run")
    variable = run.get_group("Summary").get_variable_1d("Electrical power")
    gone = [weakref.ref(run), weakref.ref(variable)]
    del run, variable
    assert [reference() for reference in gone] == [None, None]


def test_output_group_keeps_its_axes(tmp_path: Path) -> None:
    def make() -> api.OutputGroup2D[float]:
        time = api.IndependentVariable("Time", "s", 0.0, 0.5)
        stations = api.IndependentVariable("Distance", "m", [1.0, 2.0])
        return api.output_group_2d(tmp_path / "out.%01", "Mine", time, stations)

    group = make()
    forget()
    group.add_variable_with_data("Moment", "Nm", np.ones((2, 3)))
    api.write_output(group)
    found = api.get_run(tmp_path, "out").get_variable_2d("Moment")
    assert found.get_data_at_value(2.0).tolist() == [1.0, 1.0, 1.0]
