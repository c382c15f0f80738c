"""Random runs are read as their bytes say: every fact, figure and value, bit for bit."""

from __future__ import annotations

import os
from pathlib import Path

import pytest
from support.random_runs import random_run
from support.run_checks import RunCheck
from support.seeds import files_of_seed

RUNS = int(os.environ.get("TABULON_DIFFERENTIAL_RUNS", "1000"))
FIRST_SEED = int(os.environ.get("TABULON_DIFFERENTIAL_SEED", "1"))
BATCHES = 20


def check_seed(seed: int, folder: Path) -> None:
    run = random_run(seed)
    run.write(folder)
    with files_of_seed(
        "run", seed, folder, "TABULON_DIFFERENTIAL_RUNS", "tests/python/test_differential.py"
    ):
        RunCheck(run, folder).check()


@pytest.mark.parametrize("batch", range(min(BATCHES, RUNS)))
def test_random_runs_are_read_as_their_bytes_say(batch: int, tmp_path: Path) -> None:
    for seed in range(FIRST_SEED + batch, FIRST_SEED + RUNS, BATCHES):
        check_seed(seed, tmp_path / f"seed {seed}")


def test_a_seed_gives_the_same_run_each_time() -> None:
    for seed in range(20):
        first, second = random_run(seed), random_run(seed)
        files = [[(group.header, group.data) for group in run.groups] for run in (first, second)]
        assert files[0] == files[1]
        assert files[0] != [(group.header, group.data) for group in random_run(seed + 1).groups]
