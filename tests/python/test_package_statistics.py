"""Figures of variables: right whatever has been loaded, and without the data where that can be."""

from __future__ import annotations

from collections.abc import Callable
from dataclasses import replace
from pathlib import Path
from typing import Any, TypeAlias

import numpy as np
import pytest
from hypothesis import given
from hypothesis import strategies as st
from numpy.typing import NDArray
from support.run_files import GroupFiles, RunFiles, TextAxis, Word
from support.scenarios import (
    SCENARIOS_1D,
    SCENARIOS_2D,
    Scenario,
    group_1d,
    group_2d,
)
from tabulon import api
from tabulon._native import has_all_figures

Preparation: TypeAlias = Callable[[api.Run, Scenario], None]

scenarios_1d = pytest.mark.parametrize("scenario", SCENARIOS_1D, ids=lambda s: s.name)
scenarios_2d = pytest.mark.parametrize("scenario", SCENARIOS_2D, ids=lambda s: s.name)


def load(run: api.Run, name: str, *indices: int) -> None:
    variable = run.get_variable(name)
    if variable.get_number_of_independent_variables() == 1:
        run.get_variable_1d(name).get_data()
        return
    for index in indices:
        run.get_variable_2d(name).get_data_at_index(index)


def nothing(run: api.Run, scenario: Scenario) -> None:
    """Leave the group as it is."""


def first_variable(run: api.Run, scenario: Scenario) -> None:
    load(run, next(iter(scenario.values)), 0)


def last_variable(run: api.Run, scenario: Scenario) -> None:
    load(run, list(scenario.values)[-1], 1)


def all_variables(run: api.Run, scenario: Scenario) -> None:
    for name in scenario.values:
        load(run, name, 0, 1, 2)


def all_but_the_first(run: api.Run, scenario: Scenario) -> None:
    all_variables(run, scenario)
    run.unload_variable(next(iter(scenario.values)))


def none_any_more(run: api.Run, scenario: Scenario) -> None:
    all_variables(run, scenario)
    for name in scenario.values:
        run.unload_variable(name)


preparations = pytest.mark.parametrize(
    "prepare",
    [
        nothing,
        first_variable,
        last_variable,
        all_variables,
        all_but_the_first,
        none_any_more,
    ],
    ids=lambda f: f.__name__,
)


def at(values: NDArray[Any], index: np.intp) -> float:
    return values[index].item()  # type: ignore[no-any-return]


@preparations
@scenarios_1d
def test_figures_over_one_axis(scenario: Scenario, prepare: Preparation, tmp_path: Path) -> None:
    run = api.get_run(scenario.write(tmp_path), scenario.run)
    prepare(run, scenario)
    for name, values in scenario.values.items():
        variable = run.get_variable_1d(name)
        assert variable.get_mean() == pytest.approx(values.mean(), rel=1e-6)
        assert variable.get_maximum() == values.max()
        assert variable.get_minimum() == values.min()
        for other, of_other in scenario.values.items():
            maximum = variable.get_maximum_contemporaneous(other.upper())
            assert maximum == at(of_other, values.argmax())
            minimum = variable.get_minimum_contemporaneous(other.upper())
            assert minimum == at(of_other, values.argmin())


@preparations
@scenarios_2d
def test_figures_over_two_axes(scenario: Scenario, prepare: Preparation, tmp_path: Path) -> None:
    run = api.get_run(scenario.write(tmp_path), scenario.run)
    prepare(run, scenario)
    for name, table in scenario.values.items():
        variable = run.get_variable_2d(name)
        for index, values in enumerate(table):
            assert variable.get_mean_at_index(index) == pytest.approx(values.mean(), rel=1e-6)
            assert variable.get_maximum_at_index(index) == values.max()
            assert variable.get_minimum_at_index(index) == values.min()
            for other, of_other in scenario.values.items():
                maximum = variable.get_maximum_contemporaneous_at_index(other, index)
                assert maximum == at(of_other[index], values.argmax())
                minimum = variable.get_minimum_contemporaneous_at_index(other, index)
                assert minimum == at(of_other[index], values.argmin())


@preparations
@scenarios_2d
def test_figures_at_secondary_value(
    scenario: Scenario, prepare: Preparation, tmp_path: Path
) -> None:
    run = api.get_run(scenario.write(tmp_path), scenario.run)
    prepare(run, scenario)
    axis = scenario.group.secondary
    assert axis is not None
    labels = axis.labels if isinstance(axis, TextAxis) else axis.numbers()
    names = list(scenario.values)
    name, other = names[0], names[-1]
    variable = run.get_variable_2d(name)
    for index, label in enumerate(labels):
        values, of_other = scenario.values[name][index], scenario.values[other][index]
        for value in (label, str(label)):
            assert variable.get_mean_at_value(value) == pytest.approx(values.mean(), rel=1e-6)
            assert variable.get_maximum_at_value(value) == values.max()
            assert variable.get_minimum_at_value(value) == values.min()
            maximum = variable.get_maximum_contemporaneous_at_value(other, value)
            assert maximum == at(of_other, values.argmax())
            minimum = variable.get_minimum_contemporaneous_at_value(other, value)
            assert minimum == at(of_other, values.argmin())


@pytest.fixture(scope="module")
def partly_described(tmp_path_factory: pytest.TempPathFactory) -> Path:
    """A run whose header has the figures of the first secondary value only."""
    return RunFiles([group_2d(statistics_blocks=1)]).write(tmp_path_factory.mktemp("partly"))


NAMES = [variable.name for variable in group_2d().variables]
#: Loads a variable at a secondary index, or unloads it (-1).
steps = st.lists(st.tuples(st.sampled_from(NAMES), st.integers(-1, 2)), max_size=8)


@given(steps=steps, name=st.sampled_from(NAMES), index=st.integers(0, 2))
def test_figures_hold_whatever_was_read_before(
    partly_described: Path, steps: list[tuple[str, int]], name: str, index: int
) -> None:
    api.clear_runs()
    run = api.get_run(partly_described, "run")
    for step, at_index in steps:
        if at_index < 0:
            run.unload_variable(step)
        else:
            load(run, step, at_index)
    tables = {variable.name: variable.values for variable in group_2d().variables}
    values, variable = tables[name][index], run.get_variable_2d(name)
    assert variable.get_mean_at_index(index) == pytest.approx(values.mean(), rel=1e-6)
    assert variable.get_maximum_at_index(index) == values.max()
    for other, table in tables.items():
        found = variable.get_minimum_contemporaneous_at_index(other, index)
        assert found == at(table[index], values.argmin())


@pytest.mark.parametrize("statistics", [None, 0], ids=["header", "data"])
@pytest.mark.parametrize(("word", "kind"), [("R*4", float), ("R*8", float), ("I*4", int)])
def test_figures_have_the_type_of_the_data(
    word: Word, kind: type, statistics: int | None, tmp_path: Path
) -> None:
    RunFiles([group_1d(word, statistics_blocks=statistics)]).write(tmp_path)
    variable = api.get_run(tmp_path, "run").get_variable_1d("Rotor speed")
    assert type(variable.get_maximum()) is kind
    assert type(variable.get_minimum()) is kind
    assert type(variable.get_maximum_contemporaneous("Tower moment")) is kind
    assert type(variable.get_mean()) is float


def test_header_answers_without_the_data_file(tmp_path: Path) -> None:
    groups = [group_1d(), group_2d(number=2)]
    RunFiles(groups).write(tmp_path)
    for number in (1, 2):
        tmp_path.joinpath(f"run.$0{number}").unlink()
    run = api.get_run(tmp_path, "run")
    assert run.get_variable_1d("Rotor speed").get_maximum() == 60.25
    assert run.get_variable_1d("Rotor speed").get_mean() == pytest.approx(24.25)
    assert run.get_variable_1d("Rotor speed").get_minimum_contemporaneous("Tower moment") == 400.25
    moment = run.get_variable_2d("Blade moment")
    assert moment.get_maximum_at_value(41.0) == 13.25
    assert moment.get_mean_at_index(2) == pytest.approx(8.65)
    with pytest.raises(RuntimeError):
        moment.get_data_at_index(2)


@pytest.mark.parametrize("prepare", [nothing, first_variable, last_variable, none_any_more])
@pytest.mark.parametrize("text", [False, True], ids=["binary", "text"])
def test_header_answers_unless_all_is_loaded(
    prepare: Preparation, text: bool, tmp_path: Path
) -> None:
    scenario = Scenario("", group_1d(text=text, statistics_offset=1000.0))
    run = api.get_run(scenario.write(tmp_path), "run")
    prepare(run, scenario)
    variable = run.get_variable_1d("Rotor speed")
    assert variable.get_maximum() == 1060.25
    assert variable.get_mean() == pytest.approx(1024.25)
    assert variable.get_maximum_contemporaneous("Tower moment") == 1300.25


def test_only_what_a_figure_needs_is_read(tmp_path: Path) -> None:
    scenario = Scenario("", group_2d(text=True, statistics_blocks=0))
    run = api.get_run(scenario.write(tmp_path), "run")
    moment = run.get_variable_2d("Blade moment")
    assert moment.get_maximum_at_index(1) == 6 - 3 + 2.75
    tmp_path.joinpath("run.$01").unlink()
    assert moment.get_minimum_at_index(1) == -7.25 + 3
    for unread in (
        lambda: moment.get_maximum_at_index(0),
        lambda: moment.get_maximum_contemporaneous_at_index("Blade deflection", 1),
    ):
        with pytest.raises(RuntimeError):
            unread()


@pytest.mark.parametrize("blocks", [None, 0], ids=["header", "data"])
def test_missing_sibling_is_told(blocks: int | None, tmp_path: Path) -> None:
    groups = [
        group_1d(statistics_blocks=blocks),
        group_2d(number=2, statistics_blocks=blocks),
    ]
    run = api.get_run(RunFiles(groups).write(tmp_path), "run")
    with pytest.raises(RuntimeError):
        run.get_variable_1d("Rotor speed").get_maximum_contemporaneous("Torque")
    with pytest.raises(RuntimeError):
        run.get_variable_1d("Rotor speed").get_maximum_contemporaneous("Blade moment")
    with pytest.raises(RuntimeError):
        run.get_variable_2d("Blade moment").get_minimum_contemporaneous_at_index("Torque", 0)


def test_sibling_is_found_in_the_own_group(tmp_path: Path) -> None:
    first = group_1d(statistics_blocks=0)
    doubled = [replace(v, values=2 * v.values) for v in first.variables]
    second = replace(first, name="Doubled", number=2, variables=doubled)
    run = api.get_run(RunFiles([first, second]).write(tmp_path), "run")
    for name, factor in (("Summary", 1), ("Doubled", 2)):
        variable = run.get_group(name).get_variable_1d("Rotor speed")
        assert variable.get_maximum_contemporaneous("Tower moment") == factor * 300.25


def test_variable_without_its_run_says_how_to_get_the_figure(tmp_path: Path) -> None:
    run = api.get_run(RunFiles([group_1d(statistics_blocks=0)]).write(tmp_path), "run")
    (variable,) = api.ArrayOfVariable1D_Float32([run.get_variable_1d("Rotor speed")])
    assert variable.get_mean() == pytest.approx(24.25)
    with pytest.raises(RuntimeError) as raised:
        variable.get_maximum_contemporaneous("Tower moment")
    assert str(raised.value) == (
        "The header has no statistics, and a second variable cannot be found without the run:"
        " get 'Rotor speed' from a Run or a Group"
    )


def test_unsupported_calculation_has_figures_too(tmp_path: Path) -> None:
    group = group_1d(statistics_blocks=0, content="something else")
    run = api.get_run(RunFiles([group]).write(tmp_path), "run")
    assert run.get_calculation_type() is api.CalculationType.Unknown
    run.get_variable_1d("Electrical power").get_data()
    variable = run.get_variable_1d("Tower moment")
    assert variable.get_mean() == pytest.approx(180.25)
    assert variable.get_minimum_contemporaneous("Rotor speed") == 30.25


def test_header_that_gains_statistics_answers_from_then_on(tmp_path: Path) -> None:
    group = group_1d(statistics_blocks=0)
    run = api.get_run(RunFiles([group]).write(tmp_path), "run")
    run.get_variable_1d("Tower moment").get_data()
    assert run.get_variable_1d("Rotor speed").get_mean() == pytest.approx(24.25)
    replace(group, statistics_blocks=None, statistics_offset=1000.0).write(tmp_path, "run")
    assert run.get_variable_1d("Rotor speed").get_mean() == pytest.approx(1024.25)


def test_empty_group_has_no_figures(tmp_path: Path) -> None:
    empty = [replace(v, values=v.values[:0]) for v in group_1d().variables]
    axis = replace(group_1d().primary, size=0)
    group = group_1d(primary=axis, variables=empty, statistics_blocks=0)
    run = api.get_run(RunFiles([group]).write(tmp_path), "run")
    variable = run.get_variable_1d("Rotor speed")
    assert variable.get_data().shape == (0,)
    for figure in (variable.get_mean, variable.get_maximum, variable.get_minimum):
        with pytest.raises(RuntimeError):
            figure()


@pytest.mark.parametrize(
    ("group", "all_there"),
    [
        (group_1d(), True),
        (group_1d(statistics_blocks=0), False),
        (group_1d(newline="\r\n"), True),
        (group_1d(named_parameters=("a\n",)), True),  # an empty line counts for none
        (group_1d(named_parameters=()), True),
        (group_1d(named_parameters=("a", " b", "NVARS 7")), True),
        (group_1d(named_parameters=("ULOADS 1", "MAXTIME 1"), statistics_blocks=0), False),
        (group_2d(), True),
        (group_2d(statistics_blocks=2), False),
        (group_2d(statistics_blocks=0), False),
    ],
)
def test_whether_a_header_has_all_figures(
    group: GroupFiles, all_there: bool, tmp_path: Path
) -> None:
    group.write(tmp_path, "run")
    assert has_all_figures(str(tmp_path / "run.%01")) is all_there


@pytest.mark.parametrize(
    ("find", "put"),
    [
        ("ULOADS", "UNKNOWN\t1\nULOADS"),
        ("ULOADS", "\n\nULOADS"),
        ("ULOADS", " 1 2\nULOADS"),
        ("MAXTIME", "MAXTIMES"),
        ("MEAN", "SUM"),
    ],
)
def test_figures_out_of_place_do_not_count(find: str, put: str, tmp_path: Path) -> None:
    header = group_1d().header("run").decode()
    tmp_path.joinpath("run.%01").write_text(header.replace(find, put, 1))
    assert not has_all_figures(str(tmp_path / "run.%01"))


def test_header_that_cannot_be_read_has_no_figures(tmp_path: Path) -> None:
    assert not has_all_figures(str(tmp_path / "run.%01"))
    tmp_path.joinpath("run.%01").write_bytes(b"")
    assert not has_all_figures(str(tmp_path / "run.%01"))
