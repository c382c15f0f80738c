"""Variables, groups and runs as pandas and xarray objects, and as pictures."""

from __future__ import annotations

import os
import pickle
from dataclasses import replace
from pathlib import Path
from typing import Any

import numpy as np
import pytest
import tabulon as tb
from support.run_files import GroupFiles, RunFiles, Variable
from support.scenarios import SECTIONS, WIND, group_1d, group_2d

pd = pytest.importorskip("pandas")


@pytest.fixture
def run(tmp_path: Path) -> tb.Run:
    loads = replace(group_2d(secondary=SECTIONS), number=2)
    curve = replace(group_1d(primary=WIND), name="Power curve", number=3)
    other = [replace(v, name=f"{v.name} of curve") for v in curve.variables]
    RunFiles([group_1d(), loads, replace(curve, variables=other)]).write(tmp_path)
    return tb.open_run(tmp_path, "run")


def test_a_series(run: tb.Run) -> None:
    series: Any = run["Rotor speed"].to_pandas()
    assert series.name == "Rotor speed"
    assert series.index.name == "time"
    assert series.loc[10.5] == 10.25
    assert series.attrs == {"units": "rad/s", "long_name": "Rotor speed"}
    assert series.dtype == np.float32
    series *= 2
    assert run["Rotor speed"].values[0] == 40.25


def test_a_table_over_the_secondary_axis(run: tb.Run) -> None:
    frame: Any = run["Blade moment"].to_pandas("kN m")
    assert frame.columns.tolist() == ["root", "mid span", "tip"]
    assert frame.columns.name == "section"
    assert np.allclose(frame.to_numpy(), run["Blade moment"].values / 1000)
    assert frame.attrs["units"] == "kN m"


def test_a_group(run: tb.Run) -> None:
    frame = run.groups["Summary"].to_pandas()
    assert frame.columns.tolist() == ["Electrical power", "Rotor speed", "Tower moment"]
    assert frame.attrs["units"]["Tower moment"] == "N m"
    assert frame.attrs["units"]["time"] == "s"
    loads = run.groups["Blade loads"].to_pandas()
    assert loads.columns.names == ["variable", "section"]
    assert np.array_equal(loads["Blade moment", "tip"], run["Blade moment"].values[:, 2])


def test_variables_of_several_groups(run: tb.Run) -> None:
    names = ["Rotor speed", ("Summary", "Tower moment"), ("Blade loads", "Blade moment")]
    frame = run.to_pandas(names, units={"Rotor speed": "rpm"})
    assert frame.columns.tolist()[:3] == [
        ("Rotor speed", ""),
        (("Summary", "Tower moment"), ""),
        (("Blade loads", "Blade moment"), "root"),
    ]
    assert np.allclose(frame.iloc[:, 0], run["Rotor speed"].values * 30 / np.pi)


def test_columns_in_their_units(run: tb.Run) -> None:
    frame = run.to_pandas(["Rotor speed", "Electrical power"], units={"Rotor speed": "rpm"})
    assert frame.columns.tolist() == ["Rotor speed", "Electrical power"]
    assert frame.attrs["units"] == {"time": "s", "Rotor speed": "rpm", "Electrical power": "W"}
    assert frame.loc[10.5, "Rotor speed"] == pytest.approx(10.25 * 30 / np.pi)
    assert frame.loc[10.5, "Electrical power"] == -2.75
    assert (frame.dtypes == np.float32).all()
    assert run.to_pandas("Rotor speed").columns.tolist() == ["Rotor speed"]


def test_a_unit_for_nothing_is_told(run: tb.Run) -> None:
    with pytest.raises(tb.NameNotFoundError, match="did you mean 'Rotor speed'"):
        run.to_pandas(["Rotor speed"], units={"Rotor sped": "rpm"})


def test_variables_on_different_axes_are_told_both(run: tb.Run) -> None:
    with pytest.raises(tb.DataError) as caught:
        run.to_pandas(["Rotor speed", "Rotor speed of curve"])
    assert str(caught.value) == (
        "'Rotor speed' and 'Rotor speed of curve' are on different axes:"
        " 'Time' (5 values, 10.0 to 12.0 s) and 'Wind speed' (5 values, 4.0 to 25.0 m/s)"
    )


def test_the_same_name_twice_has_its_group(tmp_path: Path) -> None:
    RunFiles([group_1d(), replace(group_1d(), name="Again", number=2)]).write(tmp_path)
    run = tb.open_run(tmp_path, "run")
    frame = run.to_pandas(run.variables("Rotor speed"))
    assert frame.columns.tolist() == [("Summary", "Rotor speed"), ("Again", "Rotor speed")]
    assert frame.attrs["units"]["Again", "Rotor speed"] == "rad/s"


class TestXarray:
    """Objects of xarray: lazy, with units and full names."""

    xr = pytest.importorskip("xarray")

    def test_a_variable(self, run: tb.Run) -> None:
        array = run["Blade moment"].to_xarray()
        assert array.dims == ("time", "section")
        assert array.attrs == {"units": "N m", "long_name": "Blade moment"}
        assert array.coords["section"].attrs == {"units": "1", "long_name": "Section"}
        assert array.sel(section="mid span", time=10.5) == run["Blade moment"].values[1, 1]
        assert np.array_equal(array.values, run["Blade moment"].values)
        assert array.dtype == np.float32

    def test_any_selection_is_that_of_numpy(self, run: tb.Run) -> None:
        whole = run["Blade moment"].values
        array = run["Blade moment"].to_xarray()
        for rows, columns in (
            (slice(1, 4), 2),
            (3, slice(None)),
            (np.array([0, 4, 2]), np.array([2, 0])),
            (slice(None, None, -2), np.array([1])),
            (np.array([], dtype=int), slice(None)),
            (np.array([True, False, True, False, True]), 0),
        ):
            found = array.isel(time=rows, section=columns)
            expected = whole[:, columns][rows] if whole[:, columns].ndim == 1 else whole[rows]
            if whole[:, columns].ndim > 1:
                expected = expected[..., columns]
            assert np.array_equal(found.values, expected)

    def test_only_what_is_asked_for_is_read(self, tmp_path: Path) -> None:
        RunFiles([group_1d(statistics_blocks=0)]).write(tmp_path)
        dataset = tb.open_run(tmp_path, "run").groups[1].to_xarray()
        data = tmp_path / "run.$01"
        data.write_bytes(data.read_bytes()[:24])
        assert dataset["Rotor speed"][1] == 10.25
        with pytest.raises(tb.DataError, match="2 rows of 5"):
            dataset["Rotor speed"].load()

    def test_a_group(self, run: tb.Run) -> None:
        dataset = run.groups["Blade loads"].to_xarray()
        assert set(dataset.data_vars) == {"Blade moment", "Blade shear force", "Blade deflection"}
        assert dataset.attrs["long_name"] == "Blade loads"
        assert dict(dataset.sizes) == {"time": 5, "section": 3}

    def test_a_run(self, tmp_path: Path) -> None:
        RunFiles([replace(group_1d(), name="Loads a/b")]).write(tmp_path)
        tree = tb.open_run(tmp_path, "run").to_xarray()
        assert list(tree.children) == ["Loads a_b"]
        assert tree["Loads a_b"].attrs["long_name"] == "Loads a/b"

    def test_lazy_objects_are_pickled(self, run: tb.Run) -> None:
        dataset = run.groups["Blade loads"].to_xarray()
        again = pickle.loads(pickle.dumps(dataset))
        assert again.identical(dataset)

    def test_through_netcdf_and_back(self, run: tb.Run, tmp_path: Path) -> None:
        pytest.importorskip("h5netcdf")
        dataset = run.groups["Blade loads"].to_xarray()
        dataset.to_netcdf(tmp_path / "loads.nc", engine="h5netcdf")
        with self.xr.open_dataset(tmp_path / "loads.nc", engine="h5netcdf") as again:
            assert again.load().identical(dataset.load())

    def test_through_zarr_and_back(self, run: tb.Run, tmp_path: Path) -> None:
        pytest.importorskip("zarr")
        dataset = run.groups["Summary"].to_xarray()
        dataset.to_zarr(tmp_path / "loads.zarr", consolidated=False)
        again = self.xr.open_zarr(tmp_path / "loads.zarr", consolidated=False, chunks=None)
        assert again.load().identical(dataset.load())


class TestEngine:
    """The engine of xarray."""

    xr = pytest.importorskip("xarray")
    pytestmark = pytest.mark.skipif(
        "tabulon" not in xr.backends.list_engines(), reason="the package is not installed"
    )

    def test_a_termination_file_with_a_group(self, run: tb.Run) -> None:
        dataset = self.xr.open_dataset(run, engine="tabulon", group="Blade loads")
        assert np.array_equal(dataset["Blade moment"], run["Blade moment"].values)
        assert dataset["run"].values.tolist() == [run.path]

    def test_a_header(self, run: tb.Run) -> None:
        dataset = self.xr.open_dataset(f"{run.path}.%02")
        assert "Blade moment" in dataset
        dropped = self.xr.open_dataset(f"{run.path}.%02", drop_variables=["Blade moment"])
        assert "Blade moment" not in dropped

    def test_several_groups_ask_which(self, run: tb.Run) -> None:
        with pytest.raises(tb.DataError, match="there are 'Summary', 'Blade loads', 'Power curve'"):
            self.xr.open_dataset(run, engine="tabulon")
        with pytest.raises(tb.NameNotFoundError, match="did you mean 'Summary'"):
            self.xr.open_dataset(run, engine="tabulon", group="Sumary")

    def test_a_tree(self, run: tb.Run) -> None:
        tree = self.xr.open_datatree(run, engine="tabulon")
        assert list(tree.children) == ["Summary", "Blade loads", "Power curve"]
        groups = self.xr.open_groups(os.fspath(run), engine="tabulon")
        assert "/Summary" in groups

    def test_chunks_along_the_primary_axis(self, tmp_path: Path) -> None:
        pytest.importorskip("dask")
        values = np.arange(3_000_000, dtype=np.float64)
        axis = replace(group_1d().primary, size=len(values))
        group = GroupFiles("G", [Variable("x", "L", values)], axis, word="R*8", statistics_blocks=0)
        (tmp_path / "run.$TE").write_text("Run completed.\n")
        (tmp_path / "run.%01").write_bytes(group.header("run"))
        values.tofile(tmp_path / "run.$01")
        dataset = self.xr.open_dataset(tmp_path / "run.$TE", engine="tabulon", chunks={})
        assert dataset["x"].chunks == ((2_097_152, 902_848),)
        assert float(dataset["x"].mean()) == values.mean()

    def test_many_runs(self, tmp_path: Path) -> None:
        pytest.importorskip("dask")
        runs = []
        for n in range(3):
            shifted = [replace(v, values=v.values + np.float32(n)) for v in group_1d().variables]
            RunFiles([replace(group_1d(), variables=shifted)], f"run{n}").write(tmp_path)
            runs.append(tb.open_run(tmp_path, f"run{n}"))
        many = self.xr.open_mfdataset(runs, engine="tabulon", group="Summary")
        assert many["Rotor speed"].dims == ("run", "time")
        assert many["run"].values.tolist() == [run.path for run in runs]
        assert many["Rotor speed"].sel(time=10.0).values.tolist() == [40.25, 41.25, 42.25]


def test_a_picture(run: tb.Run) -> None:
    matplotlib = pytest.importorskip("matplotlib")
    matplotlib.use("Agg")
    ax = run["Rotor speed"].plot(unit="rpm")
    assert (ax.get_xlabel(), ax.get_ylabel()) == ("Time [s]", "Rotor speed [rpm]")
    assert ax.lines[0].get_ydata()[0] == pytest.approx(40.25 * 30 / np.pi)
    assert run["Tower moment"].plot(ax=ax) is ax
    stations = run["Blade moment"].plot()
    assert [line.get_label() for line in stations.lines] == ["root", "mid span", "tip"]
    for axes in (ax, stations):
        matplotlib.pyplot.close(axes.figure)
