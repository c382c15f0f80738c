"""Work on many things: batches of them, on any executor, each told how it ended.

A task is a batch, its function stands in a module, and its arguments are plain values or handles:
so threads, spawned processes and clusters are one case. Whoever passes an executor in closes it.
"""

from __future__ import annotations

import os
import pickle
import sys
import threading
import time
from collections.abc import Callable, Iterator, Sequence
from concurrent.futures import CancelledError, Executor, Future, ThreadPoolExecutor
from contextlib import AbstractContextManager, nullcontext
from importlib.util import find_spec
from queue import SimpleQueue
from types import TracebackType
from typing import Any, NamedTuple

from tabulon._errors import TabulonError
from tabulon._optional import require

__all__ = ["Failure", "Outcome", "Progress", "failure_of", "outcomes"]

# A batch is small enough that progress is seen and no worker is left alone with the last of them,
# and large enough that handing it over does not count.
_LARGEST_BATCH = 32
_BATCHES_A_WORKER = 8
# Reading waits for drives: more threads than cores are of use.
_MORE_THREADS = 4
_SHOWN_AFTER = 1.0  # seconds


class Failure(NamedTuple):
    """What became of something that failed."""

    error: str
    """The class of the error."""
    text: str
    """What it says."""
    path: str | None
    """The file that it is about, if it tells one."""
    exception: BaseException
    """The error itself."""


class Outcome(NamedTuple):
    """What became of one thing: a value, or a failure."""

    value: Any
    failure: Failure | None


def failure_of(error: BaseException) -> Failure:
    """Return an error as a record that can go to another process."""
    path = getattr(error, "path", None) or getattr(error, "filename", None)
    return Failure(
        type(error).__name__,
        str(error),
        path if isinstance(path, str) else None,
        error if _travels(error) else TabulonError(f"{type(error).__name__}: {error}"),
    )


def _travels(error: BaseException) -> bool:
    """Return whether an error can go to another process and be raised there."""
    try:
        return isinstance(pickle.loads(pickle.dumps(error)), BaseException)
    except Exception:
        return False


class Progress(AbstractContextManager["Progress"]):
    """A bar on standard error.

    Parameters
    ----------
    total
        How many things there are.
    wanted
        True shows it at once, False never; None where tqdm is installed and the job takes more
        than a second.
    """

    def __init__(self, total: int, wanted: bool | None) -> None:
        self._total = total
        self._done = 0
        self._bar: Any = None
        self._due = float("inf")
        if wanted:
            self._show()
        elif wanted is None and find_spec("tqdm") is not None:
            self._due = time.monotonic() + _SHOWN_AFTER

    def add(self, count: int) -> None:
        """Tell that so many more are done."""
        self._done += count
        if self._bar is not None:
            self._bar.update(count)
        elif time.monotonic() >= self._due and self._done < self._total:
            self._show()

    def __exit__(
        self,
        kind: type[BaseException] | None,
        error: BaseException | None,
        traceback: TracebackType | None,
    ) -> None:
        if self._bar is not None:
            self._bar.close()

    def _show(self) -> None:
        tqdm = require("tqdm.auto", "cli").tqdm
        self._bar = tqdm(total=self._total, initial=self._done, unit=" runs", file=sys.stderr)


def outcomes(
    function: Callable[[Any], Any],
    items: Sequence[Any],
    executor: Executor | None = None,
    progress: bool | Progress | None = None,
    raising: bool = False,
) -> list[Outcome]:
    """Return what a function makes of each item, in the order of the items.

    Parameters
    ----------
    function
        Called with an item. What it raises is the outcome of that item.
    items
        What can be pickled, if the executor has processes.
    executor
        A ``concurrent.futures`` executor, which is left open; threads if None.
    progress
        As of `Progress`; or one that goes on over several calls.
    raising
        Whether the first failure that is met is raised, and what has not begun is left.
    """
    found: list[Outcome | None] = [None] * len(items)
    stop = threading.Event()
    pending: dict[Future[list[Outcome]], range] = {}
    # Not `as_completed`, which waits for ever for a task that a pool has cancelled while it ended.
    done: SimpleQueue[Future[list[Outcome]]] = SimpleQueue()
    with _executor(executor, len(items)) as pool, _bar(progress, len(items)) as bar:
        work = _Work(function, stop if executor is None else None)
        try:
            for places in _batches(len(items), _workers_of(pool)):
                batch = [items[place] for place in places]
                task = _submitted(pool, work, batch)
                pending[task] = places
                task.add_done_callback(done.put)
            for _ in range(len(pending)):
                task = done.get()
                places = pending[task]
                for place, outcome in zip(places, _ended(task, len(places)), strict=True):
                    if raising and outcome.failure is not None:
                        raise outcome.failure.exception
                    found[place] = outcome
                bar.add(len(places))
        except BaseException:
            stop.set()
            for task in pending:
                task.cancel()
            raise
    return [outcome for outcome in found if outcome is not None]


class _Work:
    """A function over a batch."""

    def __init__(self, function: Callable[[Any], Any], stop: threading.Event | None) -> None:
        self._function = function
        self._stop = stop

    def __call__(self, batch: Sequence[Any]) -> list[Outcome]:
        return [self._outcome(item) for item in batch]

    def _outcome(self, item: Any) -> Outcome:  # noqa: ANN401 - whatever the function takes
        if self._stop is not None and self._stop.is_set():
            return Outcome(None, failure_of(TabulonError("the job was ended")))
        try:
            return Outcome(self._function(item), None)
        except Exception as error:
            return Outcome(None, failure_of(error))


def _bar(progress: bool | Progress | None, total: int) -> AbstractContextManager[Progress]:
    return nullcontext(progress) if isinstance(progress, Progress) else Progress(total, progress)


def _executor(given: Executor | None, count: int) -> AbstractContextManager[Executor]:
    if given is not None:
        return nullcontext(given)
    threads = min((os.cpu_count() or 1) + _MORE_THREADS, max(count, 1))
    return ThreadPoolExecutor(threads, thread_name_prefix="tabulon")


def _workers_of(pool: Executor) -> int:
    return int(getattr(pool, "_max_workers", None) or 8)


def _batches(count: int, workers: int) -> Iterator[range]:
    size = max(1, min(_LARGEST_BATCH, count // (workers * _BATCHES_A_WORKER)))
    return (range(start, min(start + size, count)) for start in range(0, count, size))


def _submitted(pool: Executor, work: _Work, batch: Sequence[Any]) -> Future[list[Outcome]]:
    """Return the task; a failed one where the pool takes none any more."""
    try:
        return pool.submit(work, batch)
    except Exception as error:  # a pool of which a worker has died
        failed: Future[list[Outcome]] = Future()
        failed.set_exception(error)
        return failed


def _ended(task: Future[list[Outcome]], count: int) -> list[Outcome]:
    """Return the outcomes of a batch; a worker that died, or a pool that was emptied, fails it."""
    try:
        error = task.exception()
    except CancelledError:
        error = CancelledError("the executor cancelled the task")
    if error is None:
        return task.result()
    if not isinstance(error, Exception):
        raise error
    return [Outcome(None, failure_of(error))] * count
