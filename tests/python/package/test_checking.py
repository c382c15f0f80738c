"""What `check` finds wrong with the files of a run."""

from __future__ import annotations

from dataclasses import replace
from pathlib import Path

import numpy as np
import pytest
import tabulon as tb
from support.run_files import RunFiles
from support.scenarios import SCENARIOS_1D, SCENARIOS_2D, Scenario, group_1d, group_2d

ALL = [*SCENARIOS_1D, *SCENARIOS_2D]


def kinds(run: tb.Run) -> list[tuple[str, str]]:
    return [(problem.kind, Path(problem.path).name) for problem in run.check()]


@pytest.fixture
def run(tmp_path: Path) -> tb.Run:
    RunFiles([group_1d(), replace(group_2d(), number=2)]).write(tmp_path)
    return tb.open_run(tmp_path, "run")


@pytest.mark.parametrize("scenario", ALL, ids=lambda scenario: scenario.name)
def test_nothing_is_wrong(scenario: Scenario, tmp_path: Path) -> None:
    scenario.write(tmp_path)
    assert tb.open_run(tmp_path, "run").check() == []


@pytest.mark.parametrize("text", [False, True])
def test_figures_of_many_digits_are_close_enough(tmp_path: Path, text: bool) -> None:
    values = np.random.default_rng(3).normal(1e6, 1e5, 500).astype(np.float32)
    group = group_1d(text=text)
    variables = [replace(variable, values=values) for variable in group.variables]
    axis = replace(group.primary, size=500)
    RunFiles([replace(group, variables=variables, primary=axis)]).write(tmp_path)
    assert tb.open_run(tmp_path, "run").check() == []


def test_each_problem_is_told(run: tb.Run) -> None:
    data = Path(f"{run.path}.$01")
    whole = data.read_bytes()
    data.write_bytes(whole[:-12])
    assert kinds(run) == [("data short", "run.$01")]
    (problem,) = run.check()
    assert problem.text == f"group 'Summary' has 4 rows of 5 in {data}"
    data.write_bytes(whole[:-5])
    assert kinds(run) == [("data short", "run.$01"), ("data torn", "run.$01")]
    data.write_bytes(whole + b"123")
    assert kinds(run) == [("data torn", "run.$01")]
    data.write_bytes(whole + whole[:12])
    assert kinds(run)[0] == ("data long", "run.$01")
    data.unlink()
    assert kinds(run) == [("data missing", "run.$01")]
    data.write_bytes(whole)
    assert kinds(run) == []


def test_a_damaged_header_is_told_beside_the_others(run: tb.Run) -> None:
    Path(f"{run.path}.%01").write_bytes(b"FILE\tx\nFORM\0")
    Path(f"{run.path}.$02").unlink()
    assert kinds(run) == [("header damaged", "run.%01"), ("data missing", "run.$02")]


def test_figures_that_the_data_contradict(tmp_path: Path) -> None:
    RunFiles([group_1d(statistics_offset=0.1)]).write(tmp_path)
    problems = tb.open_run(tmp_path, "run").check()
    assert {problem.kind for problem in problems} == {"figures"}
    assert len(problems) == 9
    assert problems[0].text == (
        "group 'Summary': the header has -2.65 as the minimum of 'Electrical power', the data -2.75"
    )
    RunFiles([group_2d(statistics_offset=100.0)]).write(tmp_path)
    texts = [problem.text for problem in tb.open_run(tmp_path, "run").check()]
    assert any("'Blade moment' at place 2 of the secondary axis" in text for text in texts)


def test_data_that_is_no_numbers(tmp_path: Path) -> None:
    RunFiles([group_1d(text=True)]).write(tmp_path)
    data = tmp_path / "run.$01"
    data.write_bytes(data.read_bytes().replace(b"40.25", b"4o.25"))
    assert kinds(tb.open_run(tmp_path, "run")) == [("data damaged", "run.$01")]


def test_a_run_is_checked_as_it_stands_now(run: tb.Run) -> None:
    assert run.check() == []
    Path(f"{run.path}.%02").write_bytes(b"")
    assert kinds(run) == [("header damaged", "run.%02")]
