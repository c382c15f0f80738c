"""A campaign on disk, with broken runs among good ones; and what workers do with a run."""

from __future__ import annotations

import os
import time
from dataclasses import replace
from pathlib import Path

import numpy as np
import tabulon as tb
from numpy.typing import NDArray

from support.run_files import GroupFiles, IntervalAxis, RunFiles, TextAxis, Variable

POINTS = 40
SPEED, POWER, MOMENT = "Rotor speed", "Electrical power", "Tower moment"
TIME = IntervalAxis("Time", "T", start=0.0, step=0.5, size=POINTS)
STATIONS = TextAxis("Tower station", "N", ("Base", "Top"))


def series(seed: int, points: int = POINTS) -> NDArray[np.float32]:
    """Return values that differ from run to run."""
    random = np.random.default_rng(seed)
    return (random.standard_normal(points) * (seed % 7 + 1)).astype(np.float32)


def groups_of(seed: int, points: int = POINTS) -> list[GroupFiles]:
    """Return a summary over time, and loads over time and a station."""
    time_axis = replace(TIME, size=points)
    summary = [
        Variable(SPEED, "A/T", series(seed, points)),
        Variable(POWER, "P", series(seed + 1000, points)),
    ]
    both = np.stack([series(seed + 2000, points), series(seed + 3000, points)])
    loads = [Variable(MOMENT, "FL", both)]
    return [
        GroupFiles("Summary", summary, time_axis, number=1),
        GroupFiles("Tower loads", loads, time_axis, STATIONS, number=2),
    ]


def write_run(
    folder: Path, name: str, seed: int, points: int = POINTS, *, text: str = "Run completed.\n"
) -> Path:
    """Write a run and return its path."""
    RunFiles(groups_of(seed, points), name, text).write(folder)
    return folder / name


def write_campaign(root: Path, count: int = 12) -> list[Path]:
    """Write good runs in three directories and return their paths in natural order."""
    return [
        write_run(root / f"seed{seed % 3 + 1}", f"run{seed}", seed)
        for seed in sorted(range(count), key=lambda seed: (seed % 3, seed))
    ]


def break_runs(root: Path) -> dict[str, str]:
    """Add runs that are broken, each in its way; return name and what is told of each."""
    half = write_run(root / "broken", "half", 50)
    data = half.with_name("half.$01").read_bytes()
    half.with_name("half.$01").write_bytes(data[: len(data) // 2])
    header = write_run(root / "broken", "header", 51)
    header.with_name("header.%01").write_bytes(b"\x00\xff garbage\n" * 20)
    missing = write_run(root / "broken", "missing", 52)
    missing.with_name("missing.$01").unlink()
    RunFiles([], "empty").write(root / "broken")
    return {
        "half": "group 'Summary' has 20 rows of 40",
        "header": "no variable 'Rotor speed'",
        "missing": "group 'Summary' has no data file",
        "empty": "no variable 'Rotor speed'",
    }


def largest_speed(run: tb.Run) -> float:
    """Return a figure of a run; stands in a module, for processes."""
    return float(run[SPEED].values.max())


def worker_of(run: tb.Run) -> int:
    """Return the process that looked at a run."""
    time.sleep(0.02)
    return os.getpid()


def die_at_run7(run: tb.Run) -> str:
    """End the process at one run."""
    if run.name == "run7":
        os._exit(3)
    time.sleep(0.01)
    return run.name


def fail_at_run4(run: tb.Run) -> str:
    """Raise what cannot be pickled, at one run."""
    if run.name == "run4":

        class LocalError(Exception):
            pass

        raise LocalError("four")
    return run.name
