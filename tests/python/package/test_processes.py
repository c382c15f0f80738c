"""Handles in other processes and threads, and a package outside the source tree."""

from __future__ import annotations

import multiprocessing
import os
import subprocess
import sys
import threading
from collections.abc import Callable, Iterator
from concurrent.futures import ProcessPoolExecutor, ThreadPoolExecutor
from dataclasses import replace
from pathlib import Path

import numpy as np
import pytest
import tabulon as tb
from support.memory import SANITIZED
from support.run_files import GroupFiles, IntervalAxis, RunFiles, Variable
from support.scenarios import group_1d, group_2d


@pytest.fixture
def run(tmp_path: Path) -> tb.Run:
    RunFiles([group_1d(statistics_blocks=0), replace(group_2d(), number=2)]).write(tmp_path)
    return tb.open_run(tmp_path, "run")


def mean_of(variable: tb.Variable) -> float:
    return float(variable.values.mean())


def failure_of(run: tb.Run) -> str:
    run["nothing"]
    return "found"


@pytest.fixture(params=["spawn", "fork", "threads"])
def workers(request: pytest.FixtureRequest, monkeypatch: pytest.MonkeyPatch) -> Iterator[object]:
    """Two workers of a kind. What a test module defines is found by them."""
    paths = [str(Path(tb.__file__).parents[1]), os.environ.get("PYTHONPATH", "")]
    monkeypatch.setenv("PYTHONPATH", os.pathsep.join(filter(None, paths)))
    if request.param == "threads":
        with ThreadPoolExecutor(2) as pool:
            yield pool
    else:
        context = multiprocessing.get_context(request.param)
        with ProcessPoolExecutor(2, mp_context=context) as pool:
            yield pool


def test_handles_go_to_workers(run: tb.Run, workers: ThreadPoolExecutor) -> None:
    speed = run["Rotor speed"]
    means = workers.map(np.mean, [speed, speed[1:3], run["Blade moment"]], timeout=120)
    expected = [speed.values.mean(), speed.values[1:3].mean(), run["Blade moment"].values.mean()]
    assert [float(mean) for mean in means] == [float(mean) for mean in expected]


def test_errors_come_back_from_workers(run: tb.Run, workers: ThreadPoolExecutor) -> None:
    with pytest.raises(tb.NameNotFoundError, match="no variable 'nothing'") as caught:
        workers.submit(run.__getitem__, "nothing").result(120)
    assert caught.value.path == run.path


def test_runs_and_groups_go_to_workers(run: tb.Run, workers: ThreadPoolExecutor) -> None:
    assert workers.submit(len, run.groups["Blade loads"]).result(120) == 3
    assert workers.submit(os.fspath, run).result(120) == f"{run.path}.$TE"


def hammered(work: Callable[[], None], threads: int = 4) -> None:
    """Run something in several threads at once, and raise what one raises."""
    failures: list[BaseException] = []
    begin = threading.Barrier(threads)

    def one() -> None:
        begin.wait()
        try:
            for _ in range(30):
                work()
        except BaseException as error:
            failures.append(error)

    together = [threading.Thread(target=one) for _ in range(threads)]
    for thread in together:
        thread.start()
    for thread in together:
        thread.join()
    assert failures == []


def test_threads_share_a_run(tmp_path: Path) -> None:
    values = np.arange(20_000, dtype=np.float32)
    variables = [Variable(f"x{n}", "L", values + n) for n in range(4)]
    axis = IntervalAxis(size=len(values))
    RunFiles([GroupFiles("G", variables, axis, statistics_blocks=0)]).write(tmp_path)
    run = tb.open_run(tmp_path, "run")
    fresh = tb.Run(run.path)

    def work() -> None:
        for n in range(4):
            variable = fresh[f"x{n}"]
            assert variable.max() == values[-1] + n
            assert np.array_equal(variable.values, values + n)
            assert variable[17] == 17 + n
            assert variable.coords["time"][-1] == (len(values) - 1) * 0.5

    hammered(work)


@pytest.mark.skipif(SANITIZED, reason="the sanitizer keeps what is freed")
def test_memory_is_given_back(tmp_path: Path) -> None:
    axis = IntervalAxis(size=1_000_000)
    values = np.zeros(1_000_000, np.float32)
    group = GroupFiles("G", [Variable("x", "L", values)], axis, statistics_blocks=0)
    (tmp_path / "run.%01").write_bytes(group.header("run"))
    values.tofile(tmp_path / "run.$01")
    (tmp_path / "run.$TE").write_text("Run completed.\n")
    run = tb.open_run(tmp_path, "run")
    code = """
import json, sys, resource, tabulon
run = tabulon.open_run(sys.argv[1])
for _ in range(3): run["x"].values.sum()
before = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss
for _ in range(100): run["x"].values.sum()
print(resource.getrusage(resource.RUSAGE_SELF).ru_maxrss - before)
"""
    folder = str(Path(tb.__file__).parents[1])
    done = subprocess.run(
        [sys.executable, "-c", code, run.path],
        check=True,
        capture_output=True,
        text=True,
        cwd=tmp_path,
        env={**os.environ, "PYTHONPATH": folder},
    )
    assert int(done.stdout) < 20_000


def test_outside_the_source_tree(tmp_path: Path) -> None:
    code = """
import pickle
import tabulon as tb
run = tb.open_run(tb.sample("power_curve"))
assert pickle.loads(pickle.dumps(run["Electrical power"])).values[0] == run["Electrical power"][0]
print(run["Electrical power"].max(), tb.__file__)
"""
    environment = {key: value for key, value in os.environ.items() if key != "PYTHONPATH"}
    installed = "site-packages" in str(tb.__file__)
    if not installed:
        environment["PYTHONPATH"] = str(Path(tb.__file__).parents[1])
    done = subprocess.run(
        [sys.executable, "-c", code],
        check=True,
        capture_output=True,
        text=True,
        cwd=tmp_path,
        env=environment,
    )
    assert done.stdout.split() == ["5000000.0", tb.__file__]
