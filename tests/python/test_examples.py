"""The example scripts do what they say."""

from __future__ import annotations

import subprocess
import sys
from pathlib import Path

import numpy as np
import pytest
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


def test_derived_channel_reads_back_as_it_was_derived(tmp_path: Path) -> None:
    pytest.importorskip("matplotlib")
    picture = tmp_path / "derived.png"
    printed = run_example("derive_channel.py", "--directory", tmp_path, "--output", picture)
    assert "powprod_12ms_derived: User-defined output\n" in printed
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
