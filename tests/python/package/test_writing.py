"""Groups that are written: what comes back, and what is refused with nothing written."""

from __future__ import annotations

from dataclasses import replace
from pathlib import Path
from typing import Any

import numpy as np
import pytest
import tabulon as tb
from support.run_files import RunFiles
from support.scenarios import SECTIONS, group_1d, group_2d

pd = pytest.importorskip("pandas")


@pytest.fixture
def run(tmp_path: Path) -> tb.Run:
    """A run of two groups."""
    RunFiles([group_1d(), replace(group_2d(secondary=SECTIONS), number=2)]).write(tmp_path / "runs")
    return tb.open_run(tmp_path / "runs", "run")


def frame_of(points: int = 4, **columns: Any) -> Any:  # noqa: ANN401
    index = pd.Index(np.arange(points) / 10, name="time")
    frame = pd.DataFrame(columns or {"x": np.arange(points) + 0.5}, index)
    frame.attrs["units"] = dict.fromkeys(frame.columns, "m")
    return frame


def files_of(run: tb.Run) -> dict[str, tuple[bytes, int]]:
    """Return the content and the last write of all files beside a run, by name."""
    return {
        str(file.relative_to(run.directory)): (file.read_bytes(), file.stat().st_mtime_ns)
        for file in Path(run.directory).rglob("*")
        if file.is_file()
    }


@pytest.mark.parametrize("text", [False, True])
@pytest.mark.parametrize("dtype", ["float32", "float64", "int32"])
def test_a_frame_reads_back(run: tb.Run, dtype: str, text: bool) -> None:
    frame = frame_of(x=np.array([1.0, -2.0, 3.0, 4.0]), y=np.array([5, 6, 7, 8]))
    group = run.write_group("Derived", frame, dtype=dtype, text=text)
    assert (group.number, group.name, group.run) == (3, "Derived", run)
    assert group["x"].values.tolist() == [1.0, -2.0, 3.0, 4.0]
    assert group["x"].dtype == dtype
    assert group["x"].unit == "m"
    assert group.coords["time"].tolist() == [0.0, 0.1, 0.2, 0.3]
    assert group.axes[0].unit == "s"
    assert run["y"].values.tolist() == [5, 6, 7, 8]
    assert tb.open_run(run.path).check() == []
    old = tb.api.get_run(run.directory, "run").get_variable_1d("x")
    assert old.get_data_as_tuple() == (1, -2, 3, 4)
    assert old.get_siunit() == "m"


@pytest.mark.parametrize("text", [False, True])
@pytest.mark.parametrize("form", ["pandas", "xarray"])
def test_a_group_of_two_axes_goes_round(run: tb.Run, form: str, text: bool) -> None:
    pytest.importorskip(form)
    source = run.groups["Blade loads"]
    data = source.to_pandas() if form == "pandas" else source.to_xarray()
    copy = run.write_group("Copy", data, text=text)
    assert list(copy) == list(source)
    for name, variable in source.items():
        assert np.array_equal(copy[name].values, variable.values)
        assert copy[name].unit == variable.unit
    assert copy.dims == source.dims
    assert copy.coords["section"].tolist() == ["root", "mid span", "tip"]
    if form == "xarray":
        assert [axis.name for axis in copy.axes] == ["Time", "Section"]


def test_a_new_run_gets_a_termination_file(tmp_path: Path) -> None:
    group = tb.Run(tmp_path / "deep" / "new" / "derived").write_group("First", frame_of())
    assert group.number == 1
    assert sorted(file.name for file in (tmp_path / "deep" / "new").iterdir()) == [
        "derived.$01",
        "derived.$TE",
        "derived.%01",
    ]
    assert group.run.write_group("Second", frame_of(), text=True).number == 2
    assert [path.name for path in tmp_path.iterdir()] == ["deep"]


def test_no_other_file_is_touched(run: tb.Run) -> None:
    before = files_of(run)
    run.write_group("Derived", frame_of())
    after = files_of(run)
    assert after.keys() - before.keys() == {"run.%03", "run.$03"}
    assert {name: after[name] for name in before} == before


def test_a_group_of_the_name_is_there(run: tb.Run) -> None:
    first = run.write_group("Derived", frame_of())
    before = files_of(run)
    with pytest.raises(tb.DataError, match="has a group 'derived' already, number 3"):
        run.write_group("derived", frame_of())
    assert files_of(run) == before
    again = run.write_group("Derived", frame_of(y=np.zeros(4)), overwrite=True)
    assert again == first
    assert list(again) == ["y"]
    assert len(run.groups) == 3


@pytest.mark.parametrize(
    ("given", "unit", "factor"),
    [
        ("rpm", "rad/s", np.pi / 30),
        ("deg", "rad", np.pi / 180),
        ("kNm", "N m", 1000.0),
        ("kN m", "N m", 1000.0),
        ("Nm", "N m", 1.0),
        ("MW", "W", 1e6),
        ("kWh", "J", 3.6e6),
        ("Hz", "1/s", 1.0),
        ("percent", "1", 0.01),
        ("1", "1", 1.0),
        ("kgm²", "kg m^2", 1.0),
        ("km/h", "m/s", 1 / 3.6),
        ("kVA", "VA", 1000.0),
    ],
)
def test_units_become_si(run: tb.Run, given: str, unit: str, factor: float) -> None:
    pytest.importorskip("pint")
    group = run.write_group("Derived", frame_of(x=np.arange(4.0)), units={"x": given})
    assert group["x"].unit == unit
    assert np.allclose(group["x"].values, np.arange(4.0) * factor)


def test_an_axis_has_a_unit_too(run: tb.Run) -> None:
    pytest.importorskip("pint")
    frame = frame_of(3)
    frame.index = pd.Index([3.6, 7.2, 36.0], name="wind")
    frame.attrs["units"]["wind"] = "km/h"
    group = run.write_group("Derived", frame)
    assert (group.axes[0].name, group.axes[0].unit) == ("wind", "m/s")
    assert group.coords["wind"].tolist() == pytest.approx([1.0, 2.0, 10.0])


def test_durations_are_seconds(run: tb.Run) -> None:
    frame = frame_of()
    frame.index = pd.to_timedelta([0, 500, 1000, 1500], unit="ms").rename("time")
    assert run.write_group("D", frame).coords["time"].tolist() == [0.0, 0.5, 1.0, 1.5]


def test_values_that_are_not_finite_stand_in_binary_form(run: tb.Run) -> None:
    values = np.array([np.nan, np.inf, -np.inf, 1.0])
    group = run.write_group("Derived", frame_of(x=values))
    assert np.array_equal(group["x"].values, values.astype(np.float32), equal_nan=True)


def refusals() -> dict[str, tuple[str, dict[str, Any]]]:
    """Return what is refused: the words, and the arguments."""
    no_unit = frame_of()
    no_unit.attrs.clear()
    no_name = frame_of()
    no_name.index.name = None
    different = frame_of()
    different.columns = pd.MultiIndex.from_tuples([("x", 1.0)])
    different["y", 2.0] = 1.0
    tiny = frame_of()
    tiny.index = pd.Index([0.0, 1e-12, 5e-12, 6e-12], name="time")
    return {
        "no unit": ("'x' has no unit", {"data": no_unit}),
        "no name of the index": ("frame.index.name", {"data": no_name}),
        "a unit of another kind": ("no quantity for unit 'K'", {"units": {"x": "K"}}),
        "an unknown unit": ("'blah' is not known", {"units": {"x": "blah"}}),
        "a unit for nothing": ("a unit for 'z'", {"units": {"z": "m"}}),
        "text that is not finite": (
            "'x' has values that are not finite",
            {"data": frame_of(2, x=np.array([1, np.nan])), "text": True},
        ),
        "halves as whole numbers": ("int32 does not hold", {"dtype": "int32"}),
        "too large": ("beyond float32", {"data": frame_of(1, x=np.array([1e300]))}),
        "another type": ("dtype must be", {"dtype": "float16"}),
        "no type": ("blah", {"dtype": "blah"}),
        "no rows": ("no rows", {"data": frame_of(0)}),
        "no columns": ("no variables", {"data": frame_of()[[]]}),
        "a list": ("not a list", {"data": [1, 2]}),
        "texts": ("not numbers", {"data": frame_of(2, x=np.array(["a", "b"], dtype=object))}),
        "different secondary values": ("different secondary values", {"data": different}),
        "an empty name": ("name", {"name": ""}),
        "a name of two lines": ("Derived", {"name": "Derived\ngroup"}),
        "names that differ in case only": (
            "cannot be written",
            {"data": frame_of(x=np.zeros(4), X=np.zeros(4))},
        ),
        "an axis that is too fine": ("cannot hold the axis 'time'", {"data": tiny}),
        "an axis that is not finite": (
            "not finite",
            {"data": frame_of().set_axis(pd.Index([0, np.nan, 1, 2], name="time"))},
        ),
    }


@pytest.mark.parametrize("case", refusals())
def test_a_refusal_writes_nothing(case: str, run: tb.Run) -> None:
    pytest.importorskip("pint")
    words, arguments = refusals()[case]
    before = files_of(run)
    with pytest.raises(tb.TabulonError, match=words):
        run.write_group(**{"name": "Derived", "data": frame_of(), **arguments})
    assert files_of(run) == before
    assert sorted(path.name for path in Path(run.directory).iterdir()) == sorted(before)


def test_a_directory_that_cannot_be_written_is_told(tmp_path: Path) -> None:
    (tmp_path / "file").write_text("no directory")
    with pytest.raises(tb.TabulonError, match="cannot be written"):
        tb.Run(tmp_path / "file" / "run").write_group("G", frame_of())


def test_settings_of_the_api_have_no_influence(run: tb.Run) -> None:
    with tb.api.settings(data_type_for_reading=tb.api.DataTypeSpecifier.ReadAsFloat64):
        assert run.write_group("Derived", frame_of())["x"].dtype == np.float32
