"""Random groups are read through tables as their bytes say, and as the flat module reads them."""

from __future__ import annotations

import os
from pathlib import Path

import pytest
from support.random_runs import random_run
from support.seeds import files_of_seed

tables = pytest.importorskip("tabulon._tables")

RUNS = int(os.environ.get("TABULON_TABLE_RUNS", "500"))
FIRST_SEED = int(os.environ.get("TABULON_DIFFERENTIAL_SEED", "1"))
BATCHES = 20


def check_seed(seed: int, folder: Path) -> None:
    from support.table_checks import TableCheck

    run = random_run(seed)
    run.write(folder)
    with files_of_seed(
        "run", seed, folder, "TABULON_TABLE_RUNS", "tests/python/test_tables_differential.py"
    ):
        for group in run.groups:
            TableCheck(run, group, folder).check()


@pytest.mark.parametrize("batch", range(min(BATCHES, RUNS)))
def test_random_groups_are_read_as_their_bytes_say(batch: int, tmp_path: Path) -> None:
    for seed in range(FIRST_SEED + batch, FIRST_SEED + RUNS, BATCHES):
        check_seed(seed, tmp_path / f"seed {seed}")
