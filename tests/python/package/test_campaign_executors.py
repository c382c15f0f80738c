"""Campaigns on processes and clusters: workers that die are told, and nothing hangs."""

from __future__ import annotations

import multiprocessing
import os
import signal
import subprocess
import sys
import time
from collections.abc import Iterator
from concurrent.futures import Executor, Future, ProcessPoolExecutor, ThreadPoolExecutor
from pathlib import Path

import pytest
import tabulon as tb
from support.campaign_files import (
    POWER,
    SPEED,
    die_at_run7,
    fail_at_run4,
    largest_speed,
    series,
    worker_of,
    write_campaign,
)

pytest.importorskip("pandas")


@pytest.fixture(scope="module")
def root(tmp_path_factory: pytest.TempPathFactory) -> Path:
    root = tmp_path_factory.mktemp("campaign")
    write_campaign(root, 24)
    return root


@pytest.fixture(params=["spawn", "fork"])
def processes(request: pytest.FixtureRequest) -> Iterator[ProcessPoolExecutor]:
    context = multiprocessing.get_context(request.param)
    with ProcessPoolExecutor(2, context) as pool:
        yield pool


def test_processes_give_what_threads_give(root: Path, processes: ProcessPoolExecutor) -> None:
    campaign = tb.open_campaign(root)
    expected = campaign.map(largest_speed)
    assert dict(campaign.map(largest_speed, executor=processes)) == dict(expected)
    table = campaign.stats([SPEED, POWER], executor=processes)
    assert table.equals(campaign.stats([SPEED, POWER]))
    found = campaign.extremes(SPEED, also=POWER, executor=processes)
    assert found.equals(campaign.extremes(SPEED, also=POWER))
    assert processes.submit(os.getpid).result() != os.getpid()  # it is left open


def test_an_error_that_cannot_travel_is_told_by_its_text(
    root: Path, processes: ProcessPoolExecutor
) -> None:
    results = tb.open_campaign(root).map(fail_at_run4, executor=processes)
    assert len(results) == 23
    assert results.failures[["run", "error", "text"]].to_numpy().tolist() == [
        ["run4", "LocalError", "four"]
    ]
    with pytest.raises(tb.TabulonError, match="LocalError: four"):
        tb.open_campaign(root).map(fail_at_run4, executor=processes, errors="raise")


def test_the_death_of_a_worker_is_a_failure_of_its_runs(root: Path) -> None:
    with ProcessPoolExecutor(2, multiprocessing.get_context("spawn")) as pool:
        results = tb.open_campaign(root).map(die_at_run7, executor=pool)
        assert set(results.failures.error) == {"BrokenProcessPool"}
        assert "run7" in set(results.failures.run)
        assert len(results) + len(results.failures) == 24
        # The pool takes nothing any more: that is told too, run by run.
        after = tb.open_campaign(root).map(largest_speed, executor=pool)
    assert len(after.failures) == 24


class Refusing(Executor):
    """An executor that takes three tasks and no more."""

    def __init__(self) -> None:
        self.taken = 0

    def submit(self, function: object, /, *arguments: object, **named: object) -> Future[object]:
        """Do a task at once."""
        self.taken += 1
        if self.taken > 3:
            raise RuntimeError("no more")
        future: Future[object] = Future()
        future.set_result(function(*arguments))  # type: ignore[operator]
        return future


def test_what_an_executor_does_not_take_is_a_failure(root: Path) -> None:
    results = tb.open_campaign(root).map(largest_speed, executor=Refusing())
    assert len(results) == 3
    assert set(results.failures.text) == {"no more"}


def test_an_executor_of_threads_that_is_passed_in_is_left_open(root: Path) -> None:
    with ThreadPoolExecutor(2) as pool:
        assert len(tb.open_campaign(root).map(largest_speed, executor=pool)) == 24
        assert pool.submit(lambda: 1).result() == 1


def test_an_interrupt_ends_a_job_soon(root: Path) -> None:
    script = (
        "import sys, time, threading, _thread, tabulon as tb\n"
        "runs = tb.open_campaign(sys.argv[1])\n"
        "threading.Timer(0.5, _thread.interrupt_main).start()\n"
        "begin = time.monotonic()\n"
        "try:\n"
        "    runs.map(lambda run: time.sleep(0.2), executor=None)\n"
        "except KeyboardInterrupt:\n"
        "    print('ended', time.monotonic() - begin < 3.0)\n"
    )
    many = [str(root)]
    done = subprocess.run(
        [sys.executable, "-c", script, *many], capture_output=True, text=True, check=False
    )
    assert done.stdout.strip() == "ended True", done.stderr


@pytest.mark.filterwarnings("ignore::DeprecationWarning", "ignore::ResourceWarning")
def test_a_cluster_of_which_a_worker_is_killed_loses_nothing(root: Path) -> None:
    distributed = pytest.importorskip("distributed")
    with (
        distributed.LocalCluster(
            n_workers=2, threads_per_worker=1, processes=True, dashboard_address=None
        ) as cluster,
        distributed.Client(cluster) as client,
    ):
        campaign = tb.open_campaign(root)
        executor = client.get_executor()
        workers = set(campaign.map(worker_of, executor=executor).values())
        assert os.getpid() not in workers
        with ThreadPoolExecutor(1) as aside:
            killer = aside.submit(lambda: (time.sleep(0.1), os.kill(min(workers), signal.SIGKILL)))
            results = campaign.map(worker_of, executor=executor)
            killer.result()
        assert len(results) + len(results.failures) == 24
        table = campaign.stats(SPEED, ["max"], executor=executor)
        expected = {f"run{seed}": float(series(seed).max()) for seed in range(24)}
        assert dict(zip(table.run, table["max"], strict=True)) == pytest.approx(expected)


class Emptied(Executor):
    """An executor that cancels what waits in it, as a pool that is shut down does."""

    def submit(self, _function: object, /, *_arguments: object, **_named: object) -> Future[object]:
        """Cancel a task, which nobody will take from the queue any more."""
        future: Future[object] = Future()
        assert future.cancel()
        return future


def test_no_task_that_was_cancelled_is_waited_for(root: Path) -> None:
    results = tb.open_campaign(root).map(largest_speed, executor=Emptied(), progress=False)
    assert len(results) == 0
    assert set(results.failures.text) == {"the executor cancelled the task"}


def test_tasks_that_an_executor_cancels_are_failures(root: Path) -> None:
    with ThreadPoolExecutor(1) as pool:

        def emptied(run: tb.Run) -> str:
            pool.shutdown(wait=False, cancel_futures=True)
            return run.name

        results = tb.open_campaign(root).map(emptied, executor=pool, progress=False)
    assert len(results) >= 1
    assert len(results) + len(results.failures) == len(tb.open_campaign(root))
    told = set(zip(results.failures.error, results.failures.text, strict=True))
    assert told <= {
        ("CancelledError", "the executor cancelled the task"),
        ("RuntimeError", "cannot schedule new futures after shutdown"),
    }
    assert told
