"""Searches for runs, and the settings of the process."""

from __future__ import annotations

from collections.abc import Callable
from pathlib import Path

import pytest
import tabulon
from support.run_files import RunFiles
from support.scenarios import group_1d


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
    found = tabulon.get_runs(root)
    assert isinstance(found, tuple)
    assert {type(run) for run in found} == {tabulon.Run}
    assert names(found) == {"power", "idling", "stop_1"}
    assert names(tabulon.get_runs_matching_name(root, "IDLING")) == {"idling"}
    assert names(tabulon.get_runs_matching_name_regex(root, r"\w+_\d")) == {"stop_1"}
    assert tabulon.get_runs_matching_name(root, "none") == ()


def test_search_may_stay_in_the_root(tree: Path) -> None:
    here = tabulon.SearchScope.RootDirectoryOnly
    assert names(tabulon.get_runs(tree, here)) == {"power"}
    assert names(tabulon.get_runs_matching_name(tree, "idling", here)) == set()
    assert names(tabulon.get_runs_matching_name_regex(tree, ".*", search_scope=here)) == {"power"}
    assert names(tabulon.RunsIterator(tree, here)) == {"power"}
    assert names(tabulon.RunsIterator(tree, "idling", here)) == set()
    assert names(tabulon.RunsIteratorRegex(tree, ".*", here)) == {"power"}


@pytest.mark.parametrize("convert", [str, Path])
def test_iterators_serve_loops(convert: Callable[[Path], str | Path], tree: Path) -> None:
    root = convert(tree)
    assert names(tabulon.RunsIterator(root)) == {"power", "idling", "stop_1"}
    assert names(tabulon.RunsIterator(root, "POWER")) == {"power"}
    assert names(tabulon.RunsIteratorRegex(root, "(power|idling)")) == {"power", "idling"}
    runs = tabulon.RunsIterator(root, "power")
    assert iter(runs) is runs
    assert type(next(runs)) is tabulon.Run
    with pytest.raises(StopIteration):
        next(runs)
    assert runs.get_next_run() is None
    assert isinstance(tabulon.RunsIteratorRegex(root, "x"), tabulon.RunsIterator)


def test_missing_root_is_told(tmp_path: Path) -> None:
    missing = tmp_path / "missing"
    with pytest.raises(RuntimeError, match="Run directory was not found"):
        tabulon.get_runs(missing)
    with pytest.raises(RuntimeError, match="recursive_directory_iterator"):
        tabulon.RunsIterator(missing)


def test_invalid_expression_is_told(tree: Path) -> None:
    with pytest.raises(RuntimeError, match="Run name regular expression invalid"):
        tabulon.get_runs_matching_name_regex(tree, "(")


def test_settings_filter_searches(tree: Path) -> None:
    tabulon.set_completion_state_filter(tabulon.CompletionState.UnsuccessfulRunsOnly)
    assert names(tabulon.get_runs(tree)) == {"stop_1"}
    tabulon.set_completion_state_filter(tabulon.CompletionState_AllCompletionStates)
    tabulon.set_calculation_type_filter(tabulon.CalculationType.IdlingSimulation)
    assert names(tabulon.get_runs(tree)) == {"idling"}
    tabulon.set_calculation_type_filter(tabulon.CalculationType_AllCalculationTypes)
    tabulon.set_run_name_case_sensitivity(tabulon.CaseSensitivity.MatchCase)
    assert names(tabulon.get_runs_matching_name(tree, "POWER")) == set()


def test_unsupported_calculations_can_be_left_out(tree: Path) -> None:
    RunFiles([group_1d(content="unheard of")], "other").write(tree)
    assert "other" in names(tabulon.get_runs(tree))
    tabulon.set_include_unsupported_calculations(False)
    assert names(tabulon.get_runs(tree)) == {"power", "idling", "stop_1"}


def test_with_block_puts_settings_back(tree: Path) -> None:
    tabulon.set_completion_state_filter(tabulon.CompletionState.Errored)
    with tabulon.settings(
        completion_state_filter=tabulon.CompletionState.CompletedNormally,
        calculation_type_filter=tabulon.CalculationType.AllTurbineSimulations,
    ):
        assert names(tabulon.get_runs(tree)) == {"power", "idling"}
        with tabulon.settings(calculation_type_filter=tabulon.CalculationType_IdlingSimulation):
            assert names(tabulon.get_runs(tree)) == {"idling"}
        assert names(tabulon.get_runs(tree)) == {"power", "idling"}
    assert names(tabulon.get_runs(tree)) == {"stop_1"}


def test_with_block_puts_settings_back_after_an_error(tree: Path) -> None:
    def search() -> None:
        with tabulon.settings(completion_state_filter=tabulon.CompletionState.Errored):
            tabulon.get_runs(tree / "missing")

    with pytest.raises(RuntimeError, match="Run directory was not found"):
        search()
    assert names(tabulon.get_runs(tree)) == {"power", "idling", "stop_1"}


def test_wrong_type_changes_no_setting(tree: Path) -> None:
    block = tabulon.settings(
        completion_state_filter=tabulon.CompletionState.Errored,
        run_name_case_sensitivity="match",  # type: ignore[arg-type]
    )
    with pytest.raises(TypeError, match="set_run_name_case_sensitivity"), block:
        pass
    assert names(tabulon.get_runs(tree)) == {"power", "idling", "stop_1"}


def test_classes_of_settings_and_functions_are_one(tree: Path) -> None:
    tabulon.TabulonApi_SearchSettings.set_completion_state_filter(tabulon.CompletionState.Errored)
    with tabulon.settings(completion_state_filter=tabulon.CompletionState.InProgress):
        assert names(tabulon.get_runs(tree)) == set()
    assert names(tabulon.get_runs(tree)) == {"stop_1"}
    assert tabulon.get_run is tabulon.TabulonApi.get_run


def test_type_for_reading_holds_in_its_block(tree: Path) -> None:
    with tabulon.settings(data_type_for_reading=tabulon.DataTypeSpecifier.ReadAsFloat64):
        wide = tabulon.get_run(tree, "power").get_variable_1d("Rotor speed")
    tabulon.clear_runs()
    narrow = tabulon.get_run(tree, "power").get_variable_1d("Rotor speed")
    assert type(wide) is tabulon.Variable1D_Float64
    assert type(narrow) is tabulon.Variable1D_Float32
    assert wide.get_data().tolist() == narrow.get_data().tolist()


def test_run_caching_shares_what_a_run_has_loaded(tree: Path) -> None:
    def data() -> object:
        return tabulon.get_run(tree, "power").get_variable_1d("Rotor speed").get_data()

    def share() -> bool:
        first, second = data(), data()
        return first.ctypes.data == second.ctypes.data  # type: ignore[attr-defined,no-any-return]

    assert share()
    with tabulon.settings(run_caching_enabled=False, buffered_read_enabled=False):
        assert not share()
    assert share()


@pytest.mark.parametrize("value", [1, None, "yes"])
def test_switches_take_only_booleans(value: object) -> None:
    with pytest.raises(TypeError):
        tabulon.set_buffered_read_enabled(value)  # type: ignore[arg-type]
    with pytest.raises(TypeError):
        tabulon.set_run_caching_enabled(value)  # type: ignore[arg-type]
