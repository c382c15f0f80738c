"""Round after round of the same work takes no more memory."""

from __future__ import annotations

from collections.abc import Callable
from pathlib import Path

import pytest
from support.memory import MEGABYTE, SANITIZED
from support.own_process import run_alone
from support.rounds import ROUNDS, growth_over_rounds, growth_with_held_arrays

LIMIT = 8 * MEGABYTE if SANITIZED else MEGABYTE // 2


@pytest.mark.parametrize("work", ROUNDS, ids=lambda work: work.__name__)
def test_memory_stays_the_same(work: Callable[[Path, int], None], tmp_path: Path) -> None:
    rounds = ROUNDS[work] // (10 if SANITIZED else 1)
    assert run_alone(growth_over_rounds, tmp_path, work.__name__, rounds) < LIMIT


def test_memory_that_is_held_is_seen(tmp_path: Path) -> None:
    assert run_alone(growth_with_held_arrays, tmp_path, 2000) > 3 * MEGABYTE
