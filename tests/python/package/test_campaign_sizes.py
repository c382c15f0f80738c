"""What large campaigns cost: memory, and what is shown while one waits."""

from __future__ import annotations

import os
import subprocess
import sys
from pathlib import Path

import numpy as np
import pytest
import tabulon as tb
from support.campaign_files import SPEED, TIME, write_run
from support.memory import SANITIZED
from support.run_files import GroupFiles, RunFiles, Variable

pytest.importorskip("pandas")
pa = pytest.importorskip("pyarrow")
pq = pytest.importorskip("pyarrow.parquet")

GROWTH = """
import sys
import numpy as np, pandas as pd, tabulon as tb
def kib(key):
    return next(int(l.split()[1]) for l in open('/proc/self/status') if l.startswith(key))
warm, name = tb.open_campaign(sys.argv[1])[:2], sys.argv[2]
warm.stats(name, progress=False)
warm.map(lambda run: run[name].values.sum(), progress=False)
before = kib('VmHWM')
"""


def grown(script: str, root: Path, warm: str = SPEED) -> float:
    """Return what a script prints, in an interpreter of its own: MiB."""
    command = [sys.executable, "-c", GROWTH + script, str(root), warm]
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


@pytest.mark.skipif(SANITIZED, reason="the sanitizer keeps what is freed")
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


def write_large_catalogue(saved: Path, path: Path, copies: int) -> None:
    """Write the runs of a catalogue many times, under other paths."""
    from tabulon._catalogue_file import writer_of

    whole = pq.read_table(saved)
    parts = [
        whole.filter(whole["level"].to_numpy() < 2),
        whole.filter(whole["level"].to_numpy() == 2),
    ]
    runs = 1 + max(whole["run"].to_pylist())
    made = parts[0].schema
    with path.open("w+b") as stream, writer_of(stream, made) as writer:
        for copy in range(copies):
            for part in parts:
                numbers = pa.array(part["run"].to_numpy() + np.int32(copy * runs))
                paths = [one and f"{one}_{copy}" for one in part["path"].to_pylist()]
                columns = {"run": numbers, "path": pa.array(paths, pa.string())}
                writer.write_table(
                    pa.table([columns.get(name, part[name]) for name in made.names], made)
                )


def test_a_catalogue_is_read_by_columns_and_block_by_block(tmp_path: Path) -> None:
    """400,000 rows of variables would take 40 MiB as columns, and ten times that as objects."""
    names = [f"Variable {i}" for i in range(100)]
    values = np.arange(40, dtype=np.float32)
    group = GroupFiles("G", [Variable(name, "A/T", values) for name in names], TIME)
    for i in range(80):
        RunFiles([group], f"run{i}").write(tmp_path / "runs")
    small, large = tmp_path / "small.parquet", tmp_path / "large.parquet"
    tb.open_campaign(tmp_path / "runs").save(small, progress=False)
    write_large_catalogue(small, large, 50)
    script = (
        "import pyarrow.parquet, pyarrow.compute\n"
        "def jobs(runs):\n"
        "    table = runs.stats(['Variable 7', 'variable 77'], ['max'], progress=False)\n"
        "    assert len(table) == 2 * len(runs), len(table)\n"
        "    assert (table['max'] == 39).all()\n"
        "    assert len(runs.filter(ok=True)) == len(runs)\n"
        "    assert f'{len(runs):,} runs' in runs._repr_html_()\n"
        "    return len(runs)\n"
        "folder = sys.argv[1].rpartition('/')[0]\n"
        "assert jobs(tb.open_campaign(f'{folder}/small.parquet')) == 80\n"
        "before = kib('VmHWM')\n"
        "assert jobs(tb.open_campaign(f'{folder}/large.parquet')) == 4_000\n"
        "print((kib('VmHWM') - before) / 1024)\n"
    )
    assert grown(script, tmp_path / "runs", warm="Variable 7") < 25


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
