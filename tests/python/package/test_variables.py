"""Variables: values, slices, figures, units."""

from __future__ import annotations

import pickle
from collections.abc import Callable
from dataclasses import replace
from pathlib import Path
from typing import Any

import numpy as np
import pytest
import tabulon as tb
from hypothesis import given
from hypothesis import strategies as st
from support.run_files import GroupFiles, IntervalAxis, RunFiles, TextAxis, ValueAxis, Variable
from support.scenarios import SCENARIOS_1D, SCENARIOS_2D, Scenario, group_1d, group_2d

ALL = [*SCENARIOS_1D, *SCENARIOS_2D]
every_scenario = pytest.mark.parametrize("scenario", ALL, ids=lambda scenario: scenario.name)


def opened(folder: Path, *groups: GroupFiles, partial: bool = False) -> tb.Run:
    RunFiles(groups).write(folder)
    return tb.open_run(folder, "run", partial=partial)


@every_scenario
def test_values_are_those_of_the_file(scenario: Scenario, tmp_path: Path) -> None:
    scenario.write(tmp_path)
    run = tb.open_run(tmp_path, "run")
    for name, expected in scenario.values.items():
        variable = run[name]
        assert np.array_equal(variable.values, expected.T)
        assert variable.values.dtype == variable.dtype == scenario.dtype
        assert variable.shape == variable.values.shape
        assert not variable.values.flags.writeable
        assert np.array_equal(np.asarray(variable), expected.T)


@every_scenario
def test_figures_are_those_of_the_data(scenario: Scenario, tmp_path: Path) -> None:
    scenario.write(tmp_path)
    run = tb.open_run(tmp_path, "run")
    for name, expected in scenario.values.items():
        variable = run[name]
        for figure in ("min", "max", "mean", "std"):
            found = getattr(variable, figure)()
            wanted = getattr(expected.astype(np.float64), figure)(axis=-1)
            assert np.allclose(found, wanted, rtol=1e-6), figure
            assert np.shape(found) == np.shape(wanted)


def test_figures_come_from_the_header_where_it_has_them(tmp_path: Path) -> None:
    run = opened(tmp_path, group_1d(statistics_offset=1000.0))
    power = run["Electrical power"]
    expected = np.array([2.25, -2.75, 7.25, 5.25, 1.25])
    assert power.std() == pytest.approx(expected.std())
    assert (power.min(), power.max()) == (-2.75 + 1000, 7.25 + 1000)
    assert power.mean() == pytest.approx(expected.mean() + 1000)
    (tmp_path / "run.$01").unlink()
    assert tb.open_run(tmp_path, "run")["Electrical power"].max() == 1007.25
    with pytest.raises(tb.DataError):
        tb.open_run(tmp_path, "run")["Electrical power"].std()


def test_figures_of_whole_numbers_are_whole(tmp_path: Path) -> None:
    power = opened(tmp_path, group_1d("I*4"))["Electrical power"]
    assert (power.min(), power.max()) == (-3, 7)
    assert type(power.max()) is int


def test_values_that_are_not_finite_take_no_part_in_figures(tmp_path: Path) -> None:
    values = np.array([1, np.nan, 5, np.inf, 3], np.float32)
    group = GroupFiles("G", [Variable("x", "L", values)], IntervalAxis(size=5), statistics_blocks=0)
    x = opened(tmp_path, group)["x"]
    assert (x.min(), x.max(), x.mean()) == (1.0, 5.0, 3.0)


def test_nothing_that_is_done_to_an_answer_changes_another(tmp_path: Path) -> None:
    run = opened(tmp_path, group_1d())
    values = run["Rotor speed"].values
    with pytest.raises(ValueError, match="read-only"):
        values /= 2
    frame = run.to_pandas(["Rotor speed"])
    frame["Rotor speed"] = frame["Rotor speed"] / 2
    series = run["Rotor speed"].to_pandas()
    series.iloc[0] = 99.0
    run["Rotor speed"].coords["time"].flags.writeable = False
    with pytest.raises(ValueError, match="read-only"):
        run["Rotor speed"].coords["time"][0] = 5.0
    assert np.array_equal(run["Rotor speed"].values, values)


@st.composite
def keys(draw: st.DrawFn, shape: tuple[int, ...]) -> Any:  # noqa: ANN401
    def one(length: int) -> Any:  # noqa: ANN401
        return draw(
            st.one_of(st.integers(-length, length - 1), st.slices(length), st.just(slice(None)))
        )

    parts: list[Any] = [one(length) for length in shape[: draw(st.integers(0, len(shape)))]]
    if draw(st.booleans()):
        parts.insert(draw(st.integers(0, len(parts))), None)
    if draw(st.booleans()):
        parts.insert(draw(st.integers(0, len(parts))), Ellipsis)
    return tuple(parts) if len(parts) != 1 or draw(st.booleans()) else parts[0]


@pytest.fixture(scope="module")
def two_axes(tmp_path_factory: pytest.TempPathFactory) -> tb.Run:
    return opened(tmp_path_factory.mktemp("run"), group_2d())


@given(st.data())
def test_slices_are_those_of_numpy(two_axes: tb.Run, data: st.DataObject) -> None:
    whole = two_axes["Blade moment"].values
    key = data.draw(keys(whole.shape))
    try:
        expected = whole[key]
    except IndexError:
        with pytest.raises(IndexError):
            two_axes["Blade moment"][key]
        return
    found = two_axes["Blade moment"][key]
    assert np.array_equal(found, expected)
    assert np.shape(found) == np.shape(expected)


@pytest.mark.parametrize("key", [5, -6, (0, 3), (0, 0, 0), (..., ...)])
def test_places_that_are_not_there_are_told(two_axes: tb.Run, key: Any) -> None:  # noqa: ANN401
    with pytest.raises(IndexError):
        two_axes["Blade moment"][key]


def test_other_keys_of_numpy_work_too(two_axes: tb.Run) -> None:
    variable = two_axes["Blade moment"]
    mask = np.array([True, False, True, False, True])
    assert np.array_equal(variable[mask], variable.values[mask])
    assert np.array_equal(variable[[0, 2]], variable.values[[0, 2]])


def test_a_slice_reads_only_its_rows(tmp_path: Path) -> None:
    run = opened(tmp_path, group_1d(statistics_blocks=0))
    data = tmp_path / "run.$01"
    data.write_bytes(data.read_bytes()[:36])
    power = run["Electrical power"]
    assert power[:3].tolist() == [2.25, -2.75, 7.25]
    assert power[2] == 7.25
    with pytest.raises(tb.DataError, match="3 rows of 5"):
        power[3]


def test_selection_by_value_and_label(tmp_path: Path) -> None:
    step = IntervalAxis("Time", "T", 0.0, 0.1, 5)
    group = group_2d(primary=step, secondary=TextAxis("Tower station", "N", ("Base", "Mid", "Top")))
    moment = opened(tmp_path, group)["Blade moment"]
    whole = moment.values
    assert moment.dims == ("time", "tower_station")
    assert moment.coords["time"].tolist() == [0.0, 0.1, 0.2, 0.3, 0.4]
    assert moment.sel(time=0.3, tower_station="Mid") == whole[3, 1]
    assert np.array_equal(moment.sel(tower_station="mid"), whole[:, 1])
    assert np.array_equal(moment.sel(time=slice(0.1, 0.3)), whole[1:4])
    assert np.array_equal(moment.sel(time=slice(0.15, None)), whole[2:])
    assert np.array_equal(moment.sel(tower_station=["Top", "Base"], time=0.1), whole[1, [2, 0]])
    assert moment.sel(time=slice(7, 9)).shape == (0, 3)
    with pytest.raises(tb.NameNotFoundError, match="did you mean 'Base'"):
        moment.sel(tower_station="Bse")
    with pytest.raises(tb.NameNotFoundError, match=r"no value 0.35 on axis 'Time'; the nearest is"):
        moment.sel(time=0.35)
    with pytest.raises(tb.NameNotFoundError, match="no dimension 'tim'"):
        moment.sel(tim=0.3)


@pytest.mark.parametrize(
    ("start", "step"), [(0.0, 0.1), (-1.5, 0.05), (10.0, 0.01), (0.0, 0.0125), (3.0, 0.25)]
)
def test_values_of_an_interval_axis_are_what_a_person_writes(
    tmp_path: Path, start: float, step: float
) -> None:
    points = 1001
    axis = IntervalAxis("Time", "T", start, step, points)
    values = np.zeros(points, np.float32)
    run = opened(tmp_path, GroupFiles("G", [Variable("x", "L", values)], axis, statistics_blocks=0))
    digits = 4
    written = [float(f"{start + i * step:.{digits}f}") for i in range(points)]
    assert run["x"].coords["time"].tolist() == written


@pytest.mark.parametrize(
    ("code", "unit"),
    {
        "FL": "N m",
        "MLL": "kg m^2",
        "Q": "VA",
        "VI": "VA",
        "N": "1",
        "SPARE": "1",
        "L/TT": "m/s^2",
        "M/LT": "kg/(m s)",
        "FLTT/AA": "N m s^2/rad^2",
        "1/T": "1/s",
        "PT": "J",
    }.items(),
)
def test_units_are_spelled_for_pint(tmp_path: Path, code: str, unit: str) -> None:
    group = GroupFiles("G", [Variable("x", code, np.zeros(2, np.float32))], IntervalAxis(size=2))
    assert opened(tmp_path, group)["x"].unit == unit


def test_a_variable_in_another_unit(tmp_path: Path) -> None:
    pytest.importorskip("pint")
    run = opened(tmp_path, group_1d(), replace(group_2d(), number=2))
    speed = run["Rotor speed"]
    rpm = speed.to("rpm")
    assert (rpm.unit, rpm.dtype, rpm.name) == ("rpm", np.float32, "Rotor speed")
    factor = 30 / np.pi
    assert np.allclose(rpm.values, speed.values * factor)
    assert np.allclose(rpm[1:3], speed.values[1:3] * factor)
    for figure in ("min", "max", "mean", "std"):
        assert getattr(rpm, figure)() == pytest.approx(getattr(speed, figure)() * factor)
    assert rpm.to("rad/s") == speed
    assert rpm != speed
    assert pickle.loads(pickle.dumps(rpm)) == rpm
    assert np.allclose(run["Blade moment"].to("kNm").mean(), run["Blade moment"].mean() / 1000)
    assert run["Blade moment"].to("kNm").unit == "kN m"
    with pytest.raises(tb.DataError, match="no way from unit 'rad/s' to 'm'"):
        speed.to("m")
    with pytest.raises(tb.DataError, match="'blah'"):
        speed.to("blah")


def test_whole_numbers_in_another_unit_are_no_longer_whole(tmp_path: Path) -> None:
    pytest.importorskip("pint")
    power = opened(tmp_path, group_1d("I*4"))["Electrical power"].to("kW")
    assert power.dtype == np.float64
    assert power.values.tolist() == pytest.approx([0.002, -0.003, 0.007, 0.005, 0.001])
    assert power.max() == pytest.approx(0.007)


def test_a_variable_is_a_handle(two_axes: tb.Run) -> None:
    variable = two_axes["Blade moment"]
    _ = variable.values
    again = pickle.loads(pickle.dumps(variable))
    assert again == variable
    assert hash(again) == hash(variable)
    assert len(pickle.dumps(variable)) < 1000
    assert np.array_equal(again.values, variable.values)
    assert variable != two_axes["Blade shear force"]


def test_arrays_for_numpy(two_axes: tb.Run) -> None:
    variable = two_axes["Blade moment"]
    assert np.array(variable, dtype=np.float64).dtype == np.float64
    assert np.shares_memory(np.asarray(variable), variable.values)
    assert np.array(variable).flags.writeable
    assert np.sum(variable) == variable.values.sum()
    assert np.array_equal(np.mean(variable, axis=0), variable.values.mean(axis=0))
    assert np.max(variable) == variable.values.max()
    assert np.concatenate([variable, variable], axis=1).shape == (5, 6)
    assert np.array_equal(np.add(variable, 1), variable.values + 1)
    assert len(variable) == 5
    assert len(list(variable)) == 5


def test_one_line_says_what_it_is(two_axes: tb.Run) -> None:
    variable = two_axes["Blade moment"]
    assert repr(variable) == "<tabulon.Variable 'Blade moment' [N m] of 'Blade loads'>"
    assert repr(variable.group) == "<tabulon.Group 1 'Blade loads' of 'run'>"
    assert repr(two_axes) == f"<tabulon.Run 'run' in {two_axes.directory!r}>"


Shortened = Callable[[int], tb.Run]


@pytest.mark.parametrize("text", [False, True])
def test_a_run_that_was_cut_off(tmp_path: Path, text: bool) -> None:
    group = group_1d(statistics_blocks=0, text=text)
    RunFiles([group]).write(tmp_path)
    data = tmp_path / "run.$01"
    lines = data.read_bytes().splitlines(keepends=True)
    data.write_bytes(b"".join(lines[:3]) if text else data.read_bytes()[: 3 * 12 + 5])
    whole = tb.open_run(tmp_path, "run")["Rotor speed"]
    with pytest.raises(tb.DataError, match="3 rows of 5") as caught:
        _ = whole.values
    assert (caught.value.code, caught.value.path) == (25, str(data))
    assert whole.group.rows == tb.Rows(expected=5, found=3)
    part = tb.open_run(tmp_path, "run", partial=True)["Rotor speed"]
    assert part.shape == (3,)
    assert part.values.tolist() == [40.25, 10.25, -19.75]
    assert part.coords["time"].tolist() == [10.0, 10.5, 11.0]
    assert part.max() == 40.25


def test_a_run_in_progress_grows(tmp_path: Path) -> None:
    group = group_1d(statistics_blocks=0)
    RunFiles([group], termination="Run in progress\n").write(tmp_path)
    data = tmp_path / "run.$01"
    whole = data.read_bytes()
    data.write_bytes(whole[:12])
    speed = tb.open_run(tmp_path, "run", partial=True)["Rotor speed"]
    assert speed.values.tolist() == [40.25]
    data.write_bytes(whole[:36])
    assert speed.values.tolist() == [40.25, 10.25, -19.75]
    assert speed.group.rows.found == 3


def test_a_data_file_that_is_missing(tmp_path: Path) -> None:
    run = opened(tmp_path, group_1d(statistics_blocks=0))
    (tmp_path / "run.$01").unlink()
    with pytest.raises(tb.DataError) as caught:
        _ = run["Rotor speed"].values
    assert caught.value.path == str(tmp_path / "run.$01")
    assert run.groups["Summary"].rows == (5, 0)


def test_axes_tell_their_names_and_units(tmp_path: Path) -> None:
    group = group_2d(primary=ValueAxis("Wind speed", "L/T", (4.0, 8.5, 12.0, 16.0, 25.0)))
    axes = opened(tmp_path, group).groups[1].axes
    assert [(axis.name, axis.dim, axis.unit) for axis in axes] == [
        ("Wind speed", "wind_speed", "m/s"),
        ("Distance along blade", "distance_along_blade", "m"),
    ]
    assert axes[0].values.tolist() == [4.0, 8.5, 12.0, 16.0, 25.0]
