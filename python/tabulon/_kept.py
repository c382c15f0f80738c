"""What is kept of each of many runs: its path, and its files where a listing has told them."""

from __future__ import annotations

from collections.abc import Callable, Iterable, Sequence
from concurrent.futures import Executor
from typing import Any, TypeAlias

from tabulon._native import RunFiles, RunRecord
from tabulon._parallel import Outcome, Progress, outcomes
from tabulon._run import Run, run_of_files

__all__ = ["Kept", "outcomes_of", "plain"]

Kept: TypeAlias = "tuple[str, RunFiles | RunRecord | None]"


def plain(kept: Iterable[Kept]) -> list[Kept]:
    """Return what is kept in a form that goes to other processes."""
    return [(path, _plain_files(files)) for path, files in kept]


def _plain_files(files: RunFiles | RunRecord | None) -> RunFiles | None:
    return files if files is None or isinstance(files, RunFiles) else RunFiles.of(files)


def outcomes_of(
    function: Callable[[Run], Any],
    kept: Sequence[Kept],
    executor: Executor | None = None,
    progress: bool | Progress | None = None,
    raising: bool = False,
) -> list[Outcome]:
    """Return what a function makes of each run, as of `outcomes`.

    Each is a new handle, so that nothing that was read is kept.
    """
    items = kept if executor is None else plain(kept)
    return outcomes(_OnRun(function), items, executor, progress, raising)


class _OnRun:
    """A function of a run, called with what is kept of one."""

    def __init__(self, function: Callable[[Run], Any]) -> None:
        self._function = function

    def __call__(self, kept: Kept) -> Any:  # noqa: ANN401 - whatever the function gives
        return self._function(run_of_files(*kept))
