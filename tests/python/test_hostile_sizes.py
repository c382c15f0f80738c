"""Files that are made to cost memory or time: they cost no more than their size."""

from __future__ import annotations

import os
from pathlib import Path

import pytest
from support.hostile_measures import cost_of_damaged_runs, cost_of_small_headers
from support.hostile_shapes import SHAPES
from support.hostile_times import Clock, growths
from support.memory import MEGABYTE, SANITIZED
from support.own_process import run_alone

HEADERS = int(os.environ.get("TABULON_HOSTILE_HEADERS", "400" if SANITIZED else "4000"))
DAMAGED = int(os.environ.get("TABULON_DAMAGED_RUNS", "1000" if SANITIZED else "10000"))


def test_a_small_header_costs_little_memory_however_it_is_opened(tmp_path: Path) -> None:
    read, given, refused, greedy = run_alone(
        cost_of_small_headers, tmp_path, HEADERS, (192 if SANITIZED else 64) * MEGABYTE
    )
    assert greedy == []
    assert read > HEADERS / 2
    assert given > 2 * read
    assert refused > 2 * read


def test_thousands_of_damaged_runs_leave_nothing_behind(tmp_path: Path) -> None:
    grown, given, refused = run_alone(cost_of_damaged_runs, tmp_path / "runs", DAMAGED)
    assert grown < (16 if SANITIZED else 2) * MEGABYTE
    assert given > DAMAGED
    assert refused > DAMAGED


@pytest.mark.skipif(SANITIZED, reason="the sanitizer takes time of its own")
def test_the_time_to_read_a_file_grows_with_its_size_alone(tmp_path: Path) -> None:
    # Four times the bytes take four times as long; sixteen times, if each is looked at for each.
    limit = 8
    found = run_alone(growths, tmp_path, limit)
    assert len(found) == len(SHAPES)
    assert {shape: each for shape, each in found.items() if each[-1] > limit} == {}


def test_time_that_grows_with_the_square_is_seen(tmp_path: Path) -> None:
    def look_at_each_for_each(folder: Path) -> None:
        kilobytes = (folder / "run.%01").stat().st_size // 1024
        for _ in range(150 * kilobytes**2):
            pass

    assert Clock(SHAPES["blanks"], tmp_path, look_at_each_for_each).growth() > 10
