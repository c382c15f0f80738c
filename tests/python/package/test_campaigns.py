"""Campaigns: which runs they are, and what is told of all of them."""

from __future__ import annotations

import copy
import os
import pickle
import re
import subprocess
import sys
import threading
import warnings
from pathlib import Path

import numpy as np
import pytest
import tabulon as tb
from support.campaign_files import (
    MOMENT,
    POINTS,
    POWER,
    SPEED,
    break_runs,
    largest_speed,
    series,
    write_campaign,
    write_run,
)
from support.own_process import answer_of
from support.run_files import RunFiles

pd = pytest.importorskip("pandas")


@pytest.fixture
def root(tmp_path: Path) -> Path:
    write_campaign(tmp_path / "results")
    return tmp_path / "results"


def names(campaign: tb.Campaign) -> list[str]:
    return [run.name for run in campaign]


def test_runs_stand_in_the_natural_order_of_their_paths(tmp_path: Path) -> None:
    for path in ("b/run10", "b/run2", "b/Run1", "b/sub2/x", "b/sub10/x", "a9/run1", "a10/run1"):
        write_run((tmp_path / path).parent, Path(path).name, 1)
    found = [str(Path(run.path).relative_to(tmp_path)) for run in tb.open_campaign(tmp_path)]
    assert found == ["a9/run1", "a10/run1", "b/Run1", "b/run2", "b/run10", "b/sub2/x", "b/sub10/x"]


def test_names_are_chosen_by_pattern_and_by_expression(root: Path) -> None:
    assert sorted(names(tb.open_campaign(root, name="RUN1*"))) == ["run1", "run10", "run11"]
    assert sorted(names(tb.open_campaign(root, regex=r"run\d"))) == [f"run{i}" for i in range(10)]
    assert names(tb.open_campaign(root, name="*1", regex=r"run1.")) == ["run11"]
    assert len(tb.open_campaign(root, recursive=False)) == 0
    with pytest.raises(tb.DataError, match=re.escape("'(' is no regular expression")):
        tb.open_campaign(root, regex="(")


def test_a_missing_root_is_told(root: Path) -> None:
    with pytest.raises(tb.RunNotFoundError, match="no directory"):
        tb.open_campaign(root / "nowhere")
    with pytest.raises(TypeError, match="needs a directory"):
        tb.open_campaign()


def test_a_run_that_two_roots_reach_counts_once(root: Path, tmp_path: Path) -> None:
    link = tmp_path / "link"
    link.symlink_to(root / "seed1")
    both = tb.open_campaign(root, root / "seed1", link)
    assert len(both) == 12
    assert both == tb.open_campaign(root)


def test_directories_that_cannot_be_read_are_told(root: Path) -> None:
    if os.geteuid() == 0:
        broken = root / "seed4"
        broken.mkdir()
        broken.chmod(0)
        told = tb.open_campaign(root).unreadable
        assert [one.path.rstrip("/") for one in told] in ([], [str(broken)])  # root reads all
        return
    (root / "seed2").chmod(0)
    campaign = tb.open_campaign(root)
    (root / "seed2").chmod(0o755)
    assert [one.path.rstrip("/") for one in campaign.unreadable] == [str(root / "seed2")]
    assert campaign.unreadable[0].text
    assert len(campaign) == 8


def test_a_campaign_is_a_sequence_of_runs(root: Path) -> None:
    campaign = tb.open_campaign(root)
    assert len(campaign) == 12
    assert campaign[0] == tb.open_run(root / "seed1" / "run0")
    assert campaign[-1] == campaign[11]
    assert isinstance(campaign[2:5], tb.Campaign)
    assert names(campaign[2:5]) == names(campaign)[2:5]
    assert names(campaign[::-1]) == names(campaign)[::-1]
    assert campaign[3] in campaign
    assert tb.Run(str(root / "run99")) not in campaign
    assert "run1" not in campaign
    assert campaign.index(campaign[4]) == 4
    with pytest.raises(IndexError):
        campaign[12]
    assert [(a.name, b.name) for a in campaign[:2] for b in campaign[:2]] == [
        ("run0", "run0"), ("run0", "run3"), ("run3", "run0"), ("run3", "run3"),
    ]  # fmt: skip


def test_a_campaign_can_be_pickled_and_copied(root: Path) -> None:
    campaign = tb.open_campaign(root)
    for twin in (pickle.loads(pickle.dumps(campaign)), copy.deepcopy(campaign)):
        assert twin == campaign
        assert hash(twin) == hash(campaign)
        assert twin.stats(SPEED, progress=False).equals(campaign.stats(SPEED, progress=False))


def test_filters_take_runs_that_pass_all_of_them(root: Path) -> None:
    write_run(root, "failed", 3, text="*** ERROR\n")
    RunFiles([], "going", "Run in progress\n").write(root)
    campaign = tb.open_campaign(root)
    assert len(campaign.filter(ok=True)) == 12
    assert sorted(names(campaign.filter(ok=False))) == ["failed", "going"]
    assert names(campaign.filter(state=tb.CompletionState.Errored)) == ["failed"]
    states = [tb.CompletionState.Errored, tb.CompletionState.InProgress]
    assert sorted(names(campaign.filter(state=states))) == ["failed", "going"]
    kind = tb.CalculationType.PowerProductionSimulation
    assert len(campaign.filter(calculation=kind)) == 13
    assert sorted(names(campaign.filter("run1*", where=largest_speed))) == [
        "run1",
        "run10",
        "run11",
    ]
    with pytest.raises(ZeroDivisionError):
        campaign.filter(where=lambda run: 1 / 0)


def test_map_gives_values_in_the_order_of_the_campaign(root: Path) -> None:
    campaign = tb.open_campaign(root)
    results = campaign.map(largest_speed)
    assert list(results) == list(campaign)
    assert len(results) == 12
    for run, value in results.items():
        assert value == float(series(int(run.name[3:])).max())
    assert results.failures.empty
    assert list(results.failures.columns) == ["run", "error", "text", "path"]
    assert repr(results) == "<tabulon.Results of 12 runs>"


def test_map_collects_what_failed_or_raises_the_first(root: Path) -> None:
    write_run(root / "seed1", "run99", 99).with_name("run99.$01").unlink()
    campaign = tb.open_campaign(root)
    results = campaign.map(largest_speed)
    assert len(results) == 12
    told = results.failures.to_dict("records")
    assert [(one["run"], one["error"]) for one in told] == [("run99", "DataError")]
    assert told[0]["path"] == str(root / "seed1" / "run99.$01")
    assert repr(results) == "<tabulon.Results of 12 runs, 1 failed>"
    with pytest.raises(tb.NameNotFoundError, match="run 'run99' failed: DataError: "):
        results[tb.open_run(root / "seed1" / "run99")]
    with pytest.raises(tb.DataError):
        campaign.map(largest_speed, errors="raise")
    with pytest.raises(ValueError, match="'collect' or 'raise'"):
        campaign.map(largest_speed, errors="ignore")  # type: ignore[arg-type]


def test_maps_may_be_nested_and_shared_by_threads(root: Path) -> None:
    campaign = tb.open_campaign(root)
    nested = campaign[:3].map(lambda run: len(campaign.map(lambda other: other.name)))
    assert list(nested.values()) == [12, 12, 12]
    found: list[list[float]] = []
    threads = [
        threading.Thread(target=lambda: found.append(list(campaign.map(largest_speed).values())))
        for _ in range(4)
    ]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert len(found) == 4
    assert found == [found[0]] * 4


def test_stats_have_a_row_for_each_run_variable_and_secondary_value(root: Path) -> None:
    table = tb.open_campaign(root).stats([SPEED, ("Tower loads", MOMENT)], progress=False)
    assert list(table.columns) == [
        "run", "path", "group", "variable", "secondary", "unit", "min", "max", "mean", "std",
    ]  # fmt: skip
    assert len(table) == 12 * 3
    assert table.attrs["failures"] == []
    first = table[table.run == "run5"].to_dict("records")
    assert [one["variable"] for one in first] == [SPEED, MOMENT, MOMENT]
    assert pd.isna(first[0]["secondary"])
    assert [one["secondary"] for one in first[1:]] == ["Base", "Top"]
    assert [one["unit"] for one in first] == ["rad/s", "N m", "N m"]
    assert {one["path"] for one in first} == {str(root / "seed3" / "run5")}
    for row, seed in zip(first, (5, 2005, 3005), strict=True):
        values = series(seed).astype(np.float64)
        assert row["max"] == pytest.approx(values.max(), rel=1e-7)
        assert row["min"] == pytest.approx(values.min(), rel=1e-7)
        assert row["mean"] == pytest.approx(values.mean(), rel=1e-6, abs=1e-6)
        assert row["std"] == pytest.approx(values.std(), rel=1e-12)


def test_figures_of_the_header_come_from_it_and_functions_see_the_data(tmp_path: Path) -> None:
    from dataclasses import replace

    from support.campaign_files import groups_of

    shifted = [replace(group, statistics_offset=100.0) for group in groups_of(1)]
    RunFiles(shifted, "run").write(tmp_path)

    def span(values: np.ndarray) -> float:
        assert not values.flags.writeable
        return float(values.max() - values.min())

    table = tb.open_campaign(tmp_path).stats(SPEED, ["max", "std", span], progress=False)
    values = series(1)
    row = table.iloc[0]
    assert row["max"] == pytest.approx(values.max() + 100, rel=1e-7)
    assert row["std"] == pytest.approx(values.astype(np.float64).std(), rel=1e-12)
    assert row["span"] == pytest.approx(values.max() - values.min())
    with pytest.raises(tb.DataError, match="no figure 'median'; there are 'min', 'max', "):
        tb.open_campaign(tmp_path).stats(SPEED, ["median"])


def test_broken_runs_are_told_beside_the_table(root: Path) -> None:
    told = break_runs(root)
    campaign = tb.open_campaign(root)
    with pytest.warns(UserWarning, match="5 failures in 16 runs, the first in 'empty'"):
        table = campaign.stats([SPEED, MOMENT], ["min", "max", "mean"])
    assert sorted(table[table.variable == SPEED].run) == sorted(f"run{i}" for i in range(12))
    # What is whole of a broken run is there.
    assert set(table[table.variable == MOMENT].run) >= {"half", "missing", "header"}
    failures = table.attrs["failures"]
    speed = {one["run"]: one["text"] for one in failures if "'Tower moment'" not in one["text"]}
    for name, text in told.items():
        assert text in speed[name]
    assert all(set(one) == {"run", "error", "text", "path"} for one in failures)


def test_without_verifying_good_figures_of_a_header_are_enough(root: Path) -> None:
    break_runs(root)
    campaign = tb.open_campaign(root, name="half")
    table = campaign.stats(SPEED, ["max"], verify=False)
    assert len(table) == 1
    with pytest.warns(UserWarning, match="1 failure in 1 run, "):
        assert campaign.stats(SPEED, ["max"]).empty


def test_extremes_tell_what_the_other_variables_did_then(root: Path) -> None:
    campaign = tb.open_campaign(root)
    table = campaign.extremes([SPEED, MOMENT], also=[POWER], progress=False)
    assert list(table.columns) == [
        "variable", "secondary", "kind", "value", "unit", "run", "path", "time", POWER,
    ]  # fmt: skip
    assert list(table.kind) == ["max", "min"] * 3
    for row, base in zip(table.to_dict("records"), (0, 0, 2000, 2000, 3000, 3000), strict=True):
        values = np.stack([series(base + seed) for seed in range(12)])
        flat = values.argmax() if row["kind"] == "max" else values.argmin()
        seed, point = divmod(int(flat), POINTS)
        assert row["run"] == f"run{seed}"
        assert row["value"] == float(values[seed, point])
        assert row["time"] == point * 0.5
        assert row[POWER] == float(series(1000 + seed)[point])
    assert table.attrs["units"] == {POWER: "W"}
    assert table.attrs["failures"] == []


def test_of_equal_extremes_the_first_run_counts(tmp_path: Path) -> None:
    for number in (10, 2, 1):
        write_run(tmp_path, f"run{number}", 5)
    table = tb.open_campaign(tmp_path).extremes(SPEED, progress=False)
    assert list(table.run) == ["run1", "run1"]


def test_extremes_that_a_header_rounds_alike_are_told_apart(tmp_path: Path) -> None:
    from support.campaign_files import TIME
    from support.run_files import GroupFiles, Variable

    # Both are written as 1.0000001E+06 by a header of floats; the data knows better.
    close = [np.float32(1000000.06), np.float32(1000000.12)]
    assert close[0] < close[1]
    for number, top in enumerate(close):
        values = np.zeros(TIME.size, np.float32)
        values[7] = top
        group = GroupFiles("G", [Variable(SPEED, "A/T", values)], TIME)
        RunFiles([group], f"run{number}").write(tmp_path)
    row = tb.open_campaign(tmp_path).extremes(SPEED, progress=False).iloc[0]
    assert (row["run"], row["value"]) == ("run1", float(close[1]))


def test_extremes_pass_over_runs_whose_data_is_broken(root: Path) -> None:
    break_runs(root)
    with pytest.warns(UserWarning, match="failures"):
        table = tb.open_campaign(root).extremes(SPEED)
    assert set(table.run) <= {f"run{i}" for i in range(12)}
    assert {one["run"] for one in table.attrs["failures"]} == {"half", "header", "missing", "empty"}


def test_a_misspelled_variable_is_a_failure_of_each_run_with_a_suggestion(root: Path) -> None:
    with pytest.warns(UserWarning, match="did you mean 'Rotor speed'"):
        table = tb.open_campaign(root).stats("Rotor sped")
    assert table.empty
    assert len(table.attrs["failures"]) == 12
    assert {one["error"] for one in table.attrs["failures"]} == {"NameNotFoundError"}


def test_a_dataset_of_all_runs_is_lazy_and_padded(root: Path) -> None:
    pytest.importorskip("dask.array")
    write_run(root / "seed9", "short", 77, points=25)
    campaign = tb.open_campaign(root)
    dataset = campaign.to_xarray([SPEED, POWER])
    assert dict(dataset.sizes) == {"run": 13, "time": POINTS}
    assert dataset[SPEED].dims == ("run", "time")
    assert dataset[SPEED].data.chunksize == (1, POINTS)
    assert dataset.rows.values.tolist() == [POINTS] * 12 + [25]
    assert dataset[SPEED].dtype == np.float32
    computed = dataset[SPEED].sel(run="short").values
    assert np.array_equal(computed[:25], series(77, 25))
    assert np.isnan(computed[25:]).all()
    assert np.array_equal(dataset[SPEED].sel(run="run7").values, series(7))
    assert dataset[SPEED].attrs == {"units": "rad/s", "long_name": SPEED}
    both = campaign.to_xarray(MOMENT)
    assert both[MOMENT].dims == ("run", "time", "tower_station")
    top = both[MOMENT].sel(run="run4", tower_station="Top").values
    assert np.array_equal(top, series(3004))


def test_a_dataset_needs_the_same_axes(root: Path) -> None:
    pytest.importorskip("dask.array")
    with pytest.raises(tb.DataError, match="are on different axes in"):
        tb.open_campaign(root).to_xarray([SPEED, MOMENT])
    break_runs(root)
    with pytest.raises(tb.NameNotFoundError):
        tb.open_campaign(root).to_xarray(SPEED)


def test_settings_of_the_library_word_for_word_have_no_influence(root: Path) -> None:
    tb.api.set_completion_state_filter(tb.api.CompletionState.Errored)
    tb.api.set_data_type_for_reading(tb.api.DataTypeSpecifier.ReadAsFloat64)
    campaign = tb.open_campaign(root)
    assert len(campaign) == 12
    assert campaign[0][SPEED].dtype == np.float32


def test_what_is_shown_tells_numbers_endings_and_both_ends(root: Path) -> None:
    for seed in range(20, 40):
        write_run(root / "seed5", f"<b>{seed}", seed, text="*** ERROR\n")
    campaign = tb.open_campaign(root)
    assert repr(campaign) == f"<tabulon.Campaign of 32 runs in {str(root)!r}>"
    text = str(campaign)
    assert "20 Errored, 12 CompletedNormally" in text
    assert "32 PowerProductionSimulation" in text
    page = campaign._repr_html_()
    assert "&lt;b&gt;39" in page
    assert "<b>39" not in page
    assert page.count("<tr><td>") == 20
    assert len(page) < 20_000
    assert "0 runs" in str(campaign[:0])


def test_no_warning_where_nothing_failed(root: Path) -> None:
    with warnings.catch_warnings():
        warnings.simplefilter("error")
        tb.open_campaign(root).stats(SPEED)


def test_threads_may_be_the_first_to_convert_units(root: Path) -> None:
    script = (
        "import sys, threading, tabulon as tb\n"
        "sys.setswitchinterval(1e-6)\n"
        "runs = tb.open_campaign(sys.argv[1])\n"
        "def largest(run): return run['Tower moment'].to('kN m').max().max()\n"
        "results = runs.map(largest, progress=False)\n"
        "assert len(results) == 12, results.failures.text.tolist()\n"
    )
    command = [sys.executable, "-c", script, str(root)]
    done = subprocess.run(command, capture_output=True, text=True, check=False)
    assert done.returncode == 0, done.stderr


def test_what_a_figure_is_called_is_clear_before_any_run_is_read(root: Path) -> None:
    campaign = tb.open_campaign(root)
    assert campaign.stats(SPEED, "max").columns[-1] == "max"
    assert campaign.stats(SPEED, np.ptp).columns[-1] == "ptp"
    for twice in (["max", "max"], [lambda v: v[0], lambda v: v[1]]):
        with pytest.raises(tb.DataError, match="two columns would be named"):
            campaign.stats(SPEED, twice)

    def path(values: object) -> float:
        return 0.0

    with pytest.raises(tb.DataError, match="two columns would be named 'path'"):
        campaign.stats(SPEED, path)
    with pytest.raises(tb.DataError, match="no figure 3; there are 'min', 'max', 'mean', 'std'"):
        campaign.stats(SPEED, [3])  # type: ignore[list-item]
    with pytest.raises(TypeError, match="map takes a function of a run, not 'name'"):
        campaign.map("name")  # type: ignore[arg-type]


def test_a_filter_takes_words_that_runs_have(root: Path) -> None:
    campaign = tb.open_campaign(root)
    ended = tb.CompletionState.CompletedNormally
    assert len(campaign.filter(state=(one for one in [ended]))) == 12
    with pytest.raises(tb.DataError, match="no run is of 'Errored': CompletionState has the words"):
        campaign.filter(state="Errored")  # type: ignore[arg-type]
    with pytest.raises(tb.DataError, match=r"no run is of CompletionState\.UnsuccessfulRunsOnly"):
        campaign.filter(state=tb.CompletionState.UnsuccessfulRunsOnly)
    with pytest.raises(tb.DataError, match=r"no run is of CalculationType\.AllTurbineSimulations"):
        campaign.filter(calculation=[tb.CalculationType.AllTurbineSimulations])


def test_an_extreme_stands_where_it_is_though_another_variable_is_missing_there(
    root: Path,
) -> None:
    expected = tb.open_campaign(root).extremes(SPEED)
    with pytest.warns(UserWarning, match="2 failures in 12 runs"):
        table = tb.open_campaign(root).extremes(SPEED, also=[POWER, "Wind sped"])
    assert table[list(expected.columns)].equals(expected)
    assert table[POWER].notna().all()
    assert table["Wind sped"].isna().all()
    assert table.attrs["units"] == {POWER: "W"}
    assert [one["path"] for one in table.attrs["failures"]] == table.path.tolist()


def test_a_file_among_directories_is_told(root: Path, tmp_path: Path) -> None:
    file = tmp_path / "c.parquet"
    file.write_bytes(b"")
    with pytest.raises(tb.RunNotFoundError, match="is a file: a catalogue is opened alone"):
        tb.open_campaign(root, file)


@pytest.mark.parametrize("job", ["stats('x')", "extremes('x')", "map(len).failures"])
def test_tables_say_at_once_what_to_install(root: Path, job: str) -> None:
    code = f"""
import json, sys
sys.modules["pandas"] = None
import tabulon
runs = tabulon.open_campaign({str(root)!r})
try:
    runs.{job}
except ModuleNotFoundError as error:
    print(json.dumps(str(error)))
"""
    assert answer_of(code) == 'pandas is missing: pip install "tabulon[pandas]"'


@pytest.mark.parametrize(("dtype", "digits"), [("float32", 7), ("float64", 15)])
def test_no_value_lies_beyond_what_a_header_says_of_it(dtype: str, digits: int) -> None:
    from tabulon._figures import furthest

    random = np.random.default_rng(5)
    size = 10.0 ** random.integers(-30, 30, 20_000)
    values = (random.normal(size=20_000) * size).astype(dtype)
    values[:8] = 0, 1, -1, 1000, 9.9999999, 5_000_000, np.inf, -0.1
    written = np.array([float(f"{value:.{digits}E}") for value in values])
    high, low = furthest(written, dtype, np.inf), furthest(written, dtype, -np.inf)
    assert (low <= values).all()
    assert (values <= high).all()
    assert (low <= written).all()
    assert (written <= high).all()
    finite = np.isfinite(written)
    high, low, written = high[finite], low[finite], written[finite]
    assert (high - low <= np.abs(written) * 10.0**-digits * 1.5).all()
    if dtype == "float32":  # most of which eight digits tell apart
        assert high[:4].tolist() == low[:4].tolist() == [0, 1, -1, 1000]


def test_whole_numbers_of_a_header_are_exact_up_to_its_digits() -> None:
    from tabulon._figures import furthest

    written = np.array([0.0, 7.0, -12_345_678.0, 2_147_483_600.0])
    assert furthest(written, "int32", np.inf).tolist() == [0, 7, -12_345_678, 2_147_483_650]
    assert furthest(written, "int32", -np.inf).tolist() == [0, 7, -12_345_678, 2_147_483_550]
