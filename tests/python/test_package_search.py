"""Searches for runs, and the settings of the process."""

from __future__ import annotations

from collections.abc import Callable
from pathlib import Path

import pytest
from support.run_files import RunFiles
from support.scenarios import group_1d
from tabulon import api


@pytest.fixture
def tree(tmp_path: Path) -> Path:
    """Three runs: two that completed, in two directories, and one that failed."""
    RunFiles([group_1d()], "power").write(tmp_path)
    RunFiles([group_1d(content="IDLING")], "idling").write(tmp_path / "below")
    failed = "*** ERROR\n"
    RunFiles([group_1d(content="ESTOP")], "stop_1", termination=failed).write(tmp_path / "below")
    return tmp_path


def names(runs: object) -> set[str]:
    return {run.get_name() for run in runs}  # type: ignore[attr-defined]


@pytest.mark.parametrize("convert", [str, Path])
def test_searches_give_tuples(convert: Callable[[Path], str | Path], tree: Path) -> None:
    root = convert(tree)
    found = api.get_runs(root)
    assert isinstance(found, tuple)
    assert {type(run) for run in found} == {api.Run}
    assert names(found) == {"power", "idling", "stop_1"}
    assert names(api.get_runs_matching_name(root, "IDLING")) == {"idling"}
    assert names(api.get_runs_matching_name_regex(root, r"\w+_\d")) == {"stop_1"}
    assert api.get_runs_matching_name(root, "none") == ()


def test_search_may_stay_in_the_root(tree: Path) -> None:
    here = api.SearchScope.RootDirectoryOnly
    assert names(api.get_runs(tree, here)) == {"power"}
    assert names(api.get_runs_matching_name(tree, "idling", here)) == set()
    assert names(api.get_runs_matching_name_regex(tree, ".*", search_scope=here)) == {"power"}
    assert names(api.RunsIterator(tree, here)) == {"power"}
    assert names(api.RunsIterator(tree, "idling", here)) == set()
    assert names(api.RunsIteratorRegex(tree, ".*", here)) == {"power"}


@pytest.mark.parametrize("convert", [str, Path])
def test_iterators_serve_loops(convert: Callable[[Path], str | Path], tree: Path) -> None:
    root = convert(tree)
    assert names(api.RunsIterator(root)) == {"power", "idling", "stop_1"}
    assert names(api.RunsIterator(root, "POWER")) == {"power"}
    assert names(api.RunsIteratorRegex(root, "(power|idling)")) == {"power", "idling"}
    runs = api.RunsIterator(root, "power")
    assert iter(runs) is runs
    assert type(next(runs)) is api.Run
    with pytest.raises(StopIteration):
        next(runs)
    assert runs.get_next_run() is None
    assert isinstance(api.RunsIteratorRegex(root, "x"), api.RunsIterator)


def test_missing_root_is_told(tmp_path: Path) -> None:
    missing = tmp_path / "missing"
    with pytest.raises(RuntimeError, match="Run directory was not found"):
        api.get_runs(missing)
    with pytest.raises(RuntimeError, match="recursive_directory_iterator"):
        api.RunsIterator(missing)


def test_invalid_expression_is_told(tree: Path) -> None:
    with pytest.raises(RuntimeError, match="Run name regular expression invalid"):
        api.get_runs_matching_name_regex(tree, "(")


def test_settings_filter_searches(tree: Path) -> None:
    api.set_completion_state_filter(api.CompletionState.UnsuccessfulRunsOnly)
    assert names(api.get_runs(tree)) == {"stop_1"}
    api.set_completion_state_filter(api.CompletionState_AllCompletionStates)
    api.set_calculation_type_filter(api.CalculationType.IdlingSimulation)
    assert names(api.get_runs(tree)) == {"idling"}
    api.set_calculation_type_filter(api.CalculationType_AllCalculationTypes)
    api.set_run_name_case_sensitivity(api.CaseSensitivity.MatchCase)
    assert names(api.get_runs_matching_name(tree, "POWER")) == set()


def test_unsupported_calculations_can_be_left_out(tree: Path) -> None:
    RunFiles([group_1d(content="unheard of")], "other").write(tree)
    assert "other" in names(api.get_runs(tree))
    api.set_include_unsupported_calculations(False)
    assert names(api.get_runs(tree)) == {"power", "idling", "stop_1"}


def test_with_block_puts_settings_back(tree: Path) -> None:
    api.set_completion_state_filter(api.CompletionState.Errored)
    with api.settings(
        completion_state_filter=api.CompletionState.CompletedNormally,
        calculation_type_filter=api.CalculationType.AllTurbineSimulations,
    ):
        assert names(api.get_runs(tree)) == {"power", "idling"}
        with api.settings(calculation_type_filter=api.CalculationType_IdlingSimulation):
            assert names(api.get_runs(tree)) == {"idling"}
        assert names(api.get_runs(tree)) == {"power", "idling"}
    assert names(api.get_runs(tree)) == {"stop_1"}


def test_with_block_puts_settings_back_after_an_error(tree: Path) -> None:
    def search() -> None:
        with api.settings(completion_state_filter=api.CompletionState.Errored):
            api.get_runs(tree / "missing")

    with pytest.raises(RuntimeError, match="Run directory was not found"):
        search()
    assert names(api.get_runs(tree)) == {"power", "idling", "stop_1"}


def test_wrong_type_changes_no_setting(tree: Path) -> None:
    block = api.settings(
        completion_state_filter=api.CompletionState.Errored,
        run_name_case_sensitivity="match",  # type: ignore[arg-type]
    )
    with pytest.raises(TypeError, match="set_run_name_case_sensitivity"), block:
        pass
    assert names(api.get_runs(tree)) == {"power", "idling", "stop_1"}


def test_classes_of_settings_and_functions_are_one(tree: Path) -> None:
    api.TabulonApi_SearchSettings.set_completion_state_filter(api.CompletionState.Errored)
    with api.settings(completion_state_filter=api.CompletionState.InProgress):
        assert names(api.get_runs(tree)) == set()
    assert names(api.get_runs(tree)) == {"stop_1"}
    assert api.get_run is api.TabulonApi.get_run


def test_type_for_reading_holds_in_its_block(tree: Path) -> None:
    with api.settings(data_type_for_reading=api.DataTypeSpecifier.ReadAsFloat64):
        wide = api.get_run(tree, "power").get_variable_1d("Rotor speed")
    api.clear_runs()
    narrow = api.get_run(tree, "power").get_variable_1d("Rotor speed")
    assert type(wide) is api.Variable1D_Float64
    assert type(narrow) is api.Variable1D_Float32
    assert wide.get_data().tolist() == narrow.get_data().tolist()


def test_run_caching_shares_what_a_run_has_loaded(tree: Path) -> None:
    def data() -> object:
        return api.get_run(tree, "power").get_variable_1d("Rotor speed").get_data()

    def share() -> bool:
        first, second = data(), data()
        return first.ctypes.data == second.ctypes.data  # type: ignore[attr-defined,no-any-return]

    assert share()
    with api.settings(run_caching_enabled=False, buffered_read_enabled=False):
        assert not share()
    assert share()


@pytest.mark.parametrize("value", [1, None, "yes"])
def test_switches_take_only_booleans(value: object) -> None:
    with pytest.raises(TypeError):
        api.set_buffered_read_enabled(value)  # type: ignore[arg-type]
    with pytest.raises(TypeError):
        api.set_run_caching_enabled(value)  # type: ignore[arg-type]
