"""What large campaigns cost: memory, and what is shown while one waits."""

from __future__ import annotations

import os
import subprocess
import sys
from pathlib import Path

import numpy as np
import pytest
from support.campaign_files import SPEED, TIME, write_run
from support.run_files import GroupFiles, RunFiles, Variable

pytest.importorskip("pandas")

GROWTH = """
import sys
import numpy as np, pandas as pd, tabulon as tb
def kib(key):
    return next(int(l.split()[1]) for l in open('/proc/self/status') if l.startswith(key))
warm = tb.open_campaign(sys.argv[1])[:2]
warm.stats('Rotor speed', progress=False)
warm.map(lambda run: run['Rotor speed'].values.sum(), progress=False)
before = kib('VmHWM')
"""


def grown(script: str, root: Path) -> float:
    """Return what a script prints, in an interpreter of its own: MiB."""
    command = [sys.executable, "-c", GROWTH + script, str(root)]
    done = subprocess.run(command, capture_output=True, text=True, check=True)
    return float(done.stdout.split()[-1])


def copies(run: Path, count: int) -> None:
    """Give a run more names. All share its data file, which their headers name."""
    for number in range(count):
        for extension in (".$TE", ".%01"):
            os.link(run.with_name(run.name + extension), f"{run}_{number}{extension}")


def test_ten_thousand_runs_hold_under_200_mb(tmp_path: Path) -> None:
    copies(write_run(tmp_path, "run", 1), 10_000)
    script = (
        "runs = tb.open_campaign(sys.argv[1])\n"
        "assert len(runs) == 10_001\n"
        "assert len(runs.filter(ok=True)) == 10_001\n"
        "table = runs.stats('Rotor speed', ['min', 'max', 'mean'], progress=False)\n"
        "assert len(table) == 10_001\n"
        "print((kib('VmHWM') - before) / 1024)\n"
    )
    assert grown(script, tmp_path) < 200


def test_reading_all_data_of_500_runs_keeps_none_of_it(tmp_path: Path) -> None:
    points = 400_000
    values = np.zeros(points, np.float32)
    axis = TIME.__class__("Time", "T", 0.0, 0.5, points)
    RunFiles([GroupFiles("G", [Variable(SPEED, "A/T", values)], axis)], "run").write(tmp_path)
    copies(tmp_path / "run", 500)
    script = (
        "runs = tb.open_campaign(sys.argv[1])\n"
        "found = runs.map(lambda run: float(run['Rotor speed'].values.sum()), progress=False)\n"
        "assert len(found) == 501, found.failures\n"
        "print((kib('VmHWM') - before) / 1024)\n"
    )
    assert grown(script, tmp_path) < 100


@pytest.mark.parametrize(
    ("seconds", "progress", "shown"),
    [(0.3, "None", True), (0.0, "None", False), (0.0, "True", True), (0.3, "False", False)],
)
def test_progress_is_shown_where_a_job_takes_long(
    tmp_path: Path, seconds: float, progress: str, shown: bool
) -> None:
    pytest.importorskip("tqdm")
    copies(write_run(tmp_path, "run", 1), 40)
    script = (
        "import sys, time, tabulon as tb\n"
        "from concurrent.futures import ThreadPoolExecutor\n"
        "runs = tb.open_campaign(sys.argv[1])\n"
        f"with ThreadPoolExecutor(4) as pool:\n"
        f"    runs.map(lambda run: time.sleep({seconds}), executor=pool, progress={progress})\n"
    )
    command = [sys.executable, "-c", script, str(tmp_path)]
    done = subprocess.run(command, capture_output=True, text=True, check=True)
    assert done.stdout == ""
    assert ("41/41 [" in done.stderr) == shown
    assert (done.stderr == "") != shown
