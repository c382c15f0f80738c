"""The example scripts do what they say."""

from __future__ import annotations

import subprocess
import sys
from pathlib import Path

import numpy as np
import pytest
import tabulon as tb
from tabulon import api

EXAMPLES = Path(__file__).resolve().parents[2] / "examples"


def run_example(script: str, *arguments: str | Path) -> str:
    """Run an example in a process of its own and return what it printed."""
    command = [sys.executable, str(EXAMPLES / script), *map(str, arguments)]
    done = subprocess.run(command, check=False, capture_output=True, text=True)
    assert done.returncode == 0, done.stderr
    return done.stdout


def test_sample_runs_are_what_the_model_makes() -> None:
    pytest.importorskip("numpy", "1.22", "other random streams than those of the runs")
    run_example("make_sample_runs.py", "--check")


def test_first_look(tmp_path: Path) -> None:
    for package in ("matplotlib", "pandas", "pint"):
        pytest.importorskip(package)
    picture = tmp_path / "look.png"
    printed = run_example("first_look.py", "--output", picture)
    assert printed.startswith("Run powprod_12ms\n")
    assert "  max       12.47 rpm\n" in printed
    assert "units: {'time': 's', 'Rotor speed': 'rpm', 'Electrical power': 'MW'}" in printed
    assert picture.read_bytes().startswith(b"\x89PNG")


def test_derived_channel_reads_back_as_it_was_derived(tmp_path: Path) -> None:
    for package in ("matplotlib", "pandas", "pint"):
        pytest.importorskip(package)
    picture = tmp_path / "derived.png"
    printed = run_example("derive_channel.py", "--directory", tmp_path, "--output", picture)
    assert "powprod_12ms_derived: Shaft\n" in printed
    assert "  Shaft power         4.881 MW mean, 3001 points\n" in printed
    assert picture.read_bytes().startswith(b"\x89PNG")

    source = api.get_run(EXAMPLES / "runs", "powprod_12ms")
    torque = source.get_variable_1d("Generator torque").get_data()
    speed = source.get_variable_1d("Generator speed").get_data()
    derived = api.get_run(tmp_path, "powprod_12ms_derived")
    assert derived.get_calculation_type() == api.CalculationType.UserDefined
    power = derived.get_variable_1d("Shaft power")
    assert np.array_equal(power.get_data(), torque * speed)
    assert power.get_siunit() == "W"
    axis = power.get_independent_variable()
    times = source.get_variable_1d("Generator speed").get_independent_variable()
    assert np.allclose(axis.get_values_as_number(), times.get_values_as_number())


@pytest.fixture(scope="module")
def campaign(tmp_path_factory: pytest.TempPathFactory) -> Path:
    """Simulate a small campaign, in which a run is cut off."""
    pytest.importorskip("pandas")
    root = tmp_path_factory.mktemp("campaign")
    run_example("small_campaign.py", root)
    data = root / "9ms" / "dlc12_9ms_seed2.$01"
    data.write_bytes(data.read_bytes()[:1000])
    return root


def test_the_campaign_table_has_a_line_for_each_wind_speed(campaign: Path) -> None:
    printed = run_example("campaign_table.py", campaign)
    assert printed.startswith("10 runs\n")
    power = [line for line in printed.splitlines() if line.startswith("Electrical power")]
    assert [line.split()[4] for line in power] == ["6.0", "9.0", "12.0", "16.0", "20.0"]
    assert "left out: dlc12_9ms_seed2: group 'Summary' has " in printed


def test_the_ultimate_loads_are_those_of_the_data(campaign: Path) -> None:
    printed = run_example("ultimate_loads.py", campaign)
    lines = printed.splitlines()
    assert lines[0].split()[:6] == ["variable", "secondary", "kind", "value", "unit", "run"]
    thrust = next(line for line in lines if line.strip().startswith("Rotor thrust"))
    values = {
        run.stem: tb.open_run(run)["Rotor thrust"].values.max()
        for run in campaign.rglob("*.$TE")
        if run.stem != "dlc12_9ms_seed2"
    }
    assert max(values, key=lambda name: values[name]) in thrust
    assert f"{max(values.values()):.4g}" in thrust


def test_damage_equivalent_loads_come_from_each_whole_run(campaign: Path) -> None:
    pytest.importorskip("rainflow")
    pytest.importorskip("pint")
    printed = run_example("damage_equivalent_loads.py", campaign)
    lines = printed.splitlines()
    assert len(lines) == 10
    assert all("Tower fore-aft bending moment, m = 4:" in line for line in lines)
    by_run = {line.split()[0]: float(line.split("m = 4:")[1].split()[0]) for line in lines}
    assert by_run["dlc12_20ms_seed1"] > by_run["dlc12_6ms_seed1"] > 0


def test_the_power_curve_of_the_runs_is_near_the_steady_one(campaign: Path, tmp_path: Path) -> None:
    pytest.importorskip("matplotlib")
    pytest.importorskip("pint")
    picture = tmp_path / "curve.png"
    printed = run_example("power_curve.py", campaign, "--output", picture)
    assert picture.read_bytes().startswith(b"\x89PNG")
    power = {float(line.split()[0]): float(line.split()[2]) for line in printed.splitlines()[:5]}
    assert power[20.0] == pytest.approx(5.0, abs=0.05)
    assert power[6.0] == pytest.approx(0.72, abs=0.2)
