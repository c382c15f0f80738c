"""Searches for runs and the process-wide settings, through the extension module."""

from __future__ import annotations

import time
from collections.abc import Callable, Sequence
from pathlib import Path

import _TabulonAPI_Python as native
import pytest
from support.flat import Flat, error_of, get_group, get_run, get_variable, tables_error
from support.run_files import RunFiles
from support.scenarios import group_1d

ALL = native.TabulonApi__get_runs_native_array
NAMED = native.TabulonApi__get_runs_matching_name_native_array
MATCHING = native.TabulonApi__get_runs_matching_name_regex_native_array
SETTINGS = "TabulonApi_SearchSettings_set_"


def cache_setting(name: str, value: object) -> None:
    assert getattr(native, f"TabulonApi_CacheSettings_set_{name}")(value) is None


def search_setting(name: str, value: object) -> None:
    assert getattr(native, SETTINGS + name)(value) is None


def names(runs: Sequence[object]) -> list[str]:
    return sorted(native.Run_get_name(run) for run in runs)


def walk(iterator: object) -> list[object]:
    """Return the runs of an iterator, and see that it stays at its end."""
    runs = []
    while (run := native.RunsIterator_get_next_run(iterator)) is not None:
        runs.append(run)
    assert native.RunsIterator_get_next_run(iterator) is None
    return runs


def found(root: Path, *arguments: object) -> list[str]:
    """Return what the search and the iterator of any name both find."""
    runs = names(ALL(str(root), *arguments))
    assert names(walk(native.new_RunsIterator(str(root), *arguments))) == runs
    return runs


def found_named(root: Path, name: str, *arguments: object) -> list[str]:
    runs = names(NAMED(str(root), name, *arguments))
    assert names(walk(native.new_RunsIterator(str(root), name, *arguments))) == runs
    return runs


def found_matching(root: Path, pattern: str, *arguments: object) -> list[str]:
    runs = names(MATCHING(str(root), pattern, *arguments))
    assert names(walk(native.new_RunsIteratorRegex(str(root), pattern, *arguments))) == runs
    return runs


@pytest.fixture
def tree(tmp_path: Path) -> Path:
    """Give a tree of runs."""
    for place in ("run1.$TE", "a/Run1.$te", "a/b/myrun1.$TE", "a/b/run12.$TE", "c/a.b.$TE"):
        path = tmp_path / place
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(b"Run completed.\n")
        group_1d().write(path.parent, path.stem)
    for place in ("a/none.$ME", "c/run1.$TE.bak", "c/$TE", "c/x$TE"):
        tmp_path.joinpath(place).write_bytes(b"")
    return tmp_path


EVERY = ["Run1", "a.b", "myrun1", "run1", "run12"]


def test_scope(tree: Path) -> None:
    assert found(tree) == EVERY
    assert found(tree, native.SearchScope_RecursiveSearch) == EVERY
    assert found(tree, native.SearchScope_RootDirectoryOnly) == ["run1"]
    assert found_named(tree, "run1", native.SearchScope_RootDirectoryOnly) == ["run1"]
    assert found_matching(tree / "a", ".*", native.SearchScope_RootDirectoryOnly) == ["Run1"]
    assert found(tree / "a" / "b") == ["myrun1", "run12"]


@pytest.mark.parametrize(
    ("name", "ignoring", "matching"),
    [
        ("RUN1", ["Run1", "run1"], []),
        ("run1", ["Run1", "run1"], ["run1"]),
        ("run", [], []),
        ("run*", [], []),
        ("run?", [], []),
        ("a.b", ["a.b"], ["a.b"]),
        ("a", [], []),
        ("", EVERY, EVERY),
    ],
)
def test_names(name: str, ignoring: list[str], matching: list[str], tree: Path) -> None:
    assert found_named(tree, name) == ignoring
    search_setting("run_name_case_sensitivity", native.CaseSensitivity_MatchCase)
    assert found_named(tree, name) == matching


@pytest.mark.parametrize(
    ("pattern", "ignoring", "matching"),
    [
        (r"run\d", ["Run1", "run1"], ["run1"]),
        (r"RUN\d+", ["Run1", "run1", "run12"], []),
        ("run", [], []),
        (".*", EVERY, EVERY),
        (r"a\.b|my.*", ["a.b", "myrun1"], ["a.b", "myrun1"]),
        ("[[:alpha:]]+1", ["Run1", "myrun1", "run1"], ["Run1", "myrun1", "run1"]),
    ],
)
def test_expressions(pattern: str, ignoring: list[str], matching: list[str], tree: Path) -> None:
    assert found_matching(tree, pattern) == ignoring
    search_setting("run_name_case_sensitivity", native.CaseSensitivity_MatchCase)
    assert found_matching(tree, pattern) == matching


def test_expressions_that_are_none(tree: Path) -> None:
    message = "Run name regular expression invalid"
    for pattern in ("(", "[a", "*", "a{2"):
        # The last line is the standard library's.
        start = tables_error(message, f"Expression: {pattern}") + "\nInner exception: "
        text = error_of(lambda pattern=pattern: MATCHING(str(tree), pattern))
        assert text.startswith(start)
        iterator = native.new_RunsIteratorRegex(str(tree), pattern)
        for _ in range(2):
            assert error_of(lambda it=iterator: native.RunsIterator_get_next_run(it)) == text
    for ask in (MATCHING, native.new_RunsIteratorRegex):
        text = error_of(lambda ask=ask: ask(str(tree), ""))
        assert text == tables_error(message, f"Directory: {tree}")
    # Nobody looks at the expression where there is no run.
    empty = tree / "empty"
    empty.mkdir()
    assert MATCHING(str(empty), "(") == ()


@pytest.mark.parametrize(
    ("pattern", "reason"),
    [
        ("a" * 87_000, "More than 16384 terms in one alternative"),
        ("(" * 15_000 + ")" * 15_000, "More than 1000 groups in one another"),
        ("(a*)*b", "Matching a name takes too many steps"),
    ],
)
def test_expressions_that_would_hurt(pattern: str, reason: str, tmp_path: Path) -> None:
    """They are refused as bad ones are, and soon."""
    tmp_path.joinpath("a" * 40 + ".$TE").write_bytes(b"")
    began = time.monotonic()
    text = error_of(lambda: MATCHING(str(tmp_path), pattern))
    assert time.monotonic() - began < 10
    assert text == (
        "Sumara Tables error: Run name regular expression invalid.\nFurther information: "
        f"Expression: {pattern}\nInner exception: {reason}"
    )


def test_an_expression_of_thousands_of_names(tree: Path) -> None:
    names = "|".join(f"simulation_of_load_case_{i}" for i in range(20_000))
    assert found_matching(tree, f"{names}|RUN1|my(run)1") == ["Run1", "myrun1", "run1"]


def test_roots_that_are_none(tree: Path) -> None:
    for root in (tree / "none", tree / "run1.$TE", Path()):
        path = str(root) if root != Path() else ""
        for search in (
            lambda path=path: ALL(path),
            lambda path=path: NAMED(path, "x"),
            lambda path=path: MATCHING(path, "x"),
        ):
            assert error_of(search) == tables_error(
                "Run directory was not found", f"Directory: {path}"
            )
        for make in (
            lambda path=path: native.new_RunsIterator(path),
            lambda path=path: native.new_RunsIterator(path, "x"),
            lambda path=path: native.new_RunsIteratorRegex(path, "x"),
        ):
            word = "recursive_directory_iterator::recursive_directory_iterator"
            reason = "Not a directory" if root.is_file() else "No such file or directory"
            assert error_of(make) == f"filesystem error: {word}: {reason} [{path}]"


def test_a_folder_with_the_name_of_a_termination_file(tmp_path: Path) -> None:
    tmp_path.joinpath("odd.$TE").mkdir()
    tmp_path.joinpath("odd.$TE", "run.$TE").write_bytes(b"")
    # The searches of several runs take it for a run, the iterators do not.
    assert names(ALL(str(tmp_path))) == ["odd", "run"]
    assert names(walk(native.new_RunsIterator(str(tmp_path)))) == ["run"]


def test_links_to_folders_are_not_followed(tree: Path) -> None:
    other = tree / "other"
    other.mkdir()
    other.joinpath("link").symlink_to(tree / "a", target_is_directory=True)
    assert found(other) == []


def test_runs_with_names_that_are_not_utf8(tmp_path: Path) -> None:
    name = b"l\xf6sch \xff".decode("utf-8", "surrogateescape")
    folder = tmp_path / name
    RunFiles([group_1d()], name).write(folder)
    assert found(tmp_path) == [name]
    assert found_named(tmp_path, name) == [name]
    (run,) = ALL(str(folder))
    assert native.Run_get_directory(run) == f"{folder}/"
    assert get_variable(get_run(folder, name), "Rotor speed", "float32")


# One shared walk


def test_a_second_iterator_takes_over_the_walk(tmp_path: Path) -> None:
    for folder, count in (("one", 3), ("two", 4)):
        tmp_path.joinpath(folder).mkdir()
        for number in range(count):
            tmp_path.joinpath(folder, f"{folder}{number}.$TE").write_bytes(b"")
    first = native.new_RunsIterator(str(tmp_path / "one"))
    assert native.Run_get_name(native.RunsIterator_get_next_run(first)).startswith("one")
    second = native.new_RunsIterator(str(tmp_path / "two"))
    assert names(walk(first)) == ["two0", "two1", "two2", "two3"]
    assert native.RunsIterator_get_next_run(second) is None
    # The pattern stays that of each iterator.
    named = native.new_RunsIterator(str(tmp_path / "one"), "two2")
    native.new_RunsIterator(str(tmp_path / "two"))
    assert names(walk(named)) == ["two2"]


def test_a_vector_search_leaves_the_walk_alone(tree: Path) -> None:
    iterator = native.new_RunsIterator(str(tree))
    native.RunsIterator_get_next_run(iterator)
    ALL(str(tree / "c"))
    assert len(walk(iterator)) == 4


# Filters


STATES = {
    "done": "Run completed. *** ERROR",
    "going": "Run in progress",
    "killed": "Run terminated unexpectedly",
    "failed": "*** ERROR",
    "stopped": "*** ERROR Aborted by user",
    "odd": "run completed",
    "empty": "",
}


@pytest.mark.parametrize(
    ("state", "expected"),
    [
        (native.CompletionState_AllCompletionStates, sorted(STATES)),
        (native.CompletionState_UnsuccessfulRunsOnly, ["failed", "killed", "stopped"]),
        (native.CompletionState_Unknown, ["empty", "odd"]),
        (native.CompletionState_InProgress, ["going"]),
        (native.CompletionState_CompletedNormally, ["done"]),
        (native.CompletionState_Terminated, ["killed"]),
        (native.CompletionState_Errored, ["failed"]),
        (native.CompletionState_Aborted, ["stopped"]),
        (99, []),
    ],
)
def test_completion_filter(state: int, expected: list[str], tmp_path: Path) -> None:
    for name, text in STATES.items():
        tmp_path.joinpath(f"{name}.$TE").write_text(text)
    search_setting("completion_state_filter", state)
    assert found(tmp_path) == expected
    # A run that is asked for by name passes no filter.
    assert len([get_run(tmp_path, name) for name in STATES]) == len(STATES)


CONTENTS = {
    "power": "POWPROD",
    "steady": "SLOAD",
    "curve": "PCURVE1",
    "stats": "STATS",
    "wind": "WIND",
    "mine": "UserDefined",
    "what": "powprod",
}
OTHERS = {"sea": ".sea", "loads": ".$mx", "extreme": ".$fp", "bare": ".txt"}


@pytest.fixture
def calculations(tmp_path: Path) -> Path:
    for name, content in CONTENTS.items():
        RunFiles([group_1d(content=content)], name).write(tmp_path)
    for name, extension in OTHERS.items():
        RunFiles([], name, others={extension: b""}).write(tmp_path)
    return tmp_path


UNSUPPORTED = {"wind", "what", *OTHERS}


@pytest.mark.parametrize(
    ("kind", "expected"),
    [
        (native.CalculationType_AllCalculationTypes, {*CONTENTS, *OTHERS}),
        (native.CalculationType_AllTurbineSimulations, {"power", "steady"}),
        (native.CalculationType_AllSupportingCalculations, {"curve", "wind", "sea"}),
        (native.CalculationType_AllPostProcessingCalculations, {"stats", "loads", "extreme"}),
        (native.CalculationType_Unknown, {"what", "bare"}),
        (native.CalculationType_PowerProductionSimulation, {"power"}),
        (native.CalculationType_UserDefined, {"mine"}),
        (native.CalculationType_SeaState, {"sea"}),
        (-77, set()),
    ],
)
def test_calculation_filter(kind: int, expected: set[str], calculations: Path) -> None:
    search_setting("calculation_type_filter", kind)
    assert found(calculations) == sorted(expected)
    search_setting("include_unsupported_calculations", False)
    native.TabulonApi_clear_runs()
    supported = found(calculations)
    assert supported == sorted(expected - UNSUPPORTED)


def test_type_found_while_unsupported_runs_are_left_out_stays(calculations: Path) -> None:
    for run in ALL(str(calculations)):
        native.Run_get_name(run)
    (sea,) = NAMED(str(calculations), "sea")
    search_setting("include_unsupported_calculations", False)
    assert NAMED(str(calculations), "sea") == ()
    # The cached run learnt its type without a look at the other extensions.
    assert native.Run_get_calculation_type(sea) == native.CalculationType_Unknown
    native.TabulonApi_clear_runs()
    assert get_run(calculations, "sea").get_calculation_type() == native.CalculationType_SeaState


# Run caching


def same(first: Flat | object, second: Flat | object) -> bool:
    """Tell whether two handles are of one run: what the one has found, the other can unload."""
    one, two = (getattr(each, "pointer", each) for each in (first, second))
    native.Run_unload_variable(one, "Rotor speed")
    native.Run__get_variable(one, "Tower moment")
    found_by_two = native.Run_unload_variable(two, "Tower moment")
    native.Run__get_variable(two, "Rotor speed")
    assert native.Run_unload_variable(two, "Rotor speed") is True
    return found_by_two


def test_searches_and_lookups_share_the_cache(tree: Path) -> None:
    run = get_run(tree, "run1")
    searched = next(r for r in ALL(str(tree)) if native.Run_get_name(r) == "run1")
    assert same(run, searched)
    # By name in another case: the cached run, with the spelling of the first.
    (again,) = NAMED(f"{tree}/c/..", "RUN1", native.SearchScope_RootDirectoryOnly)
    assert same(run, again)
    assert same(run, get_run(f"{tree}/a/../", "run1"))
    native.TabulonApi_clear_runs()
    assert not same(run, get_run(tree, "run1"))
    assert run.get_name() == "run1"


def test_iterators_leave_the_cache_alone(tree: Path) -> None:
    first, second = (walk(native.new_RunsIterator(str(tree), "a.b"))[0] for _ in range(2))
    assert not same(first, second)
    assert not same(first, get_run(tree / "c", "a.b"))


def test_searches_do_not_look_for_changes(tree: Path) -> None:
    (run,) = NAMED(str(tree), "a.b")
    native.Run_get_timestamp(run)
    path = tree / "c" / "a.b.$TE"
    path.write_bytes(b"Run in progress\n")
    assert same(run, NAMED(str(tree), "a.b")[0])


def test_run_caching_off(tree: Path) -> None:
    run = get_run(tree, "run1")
    for _ in range(2):
        cache_setting("run_caching_enabled", False)
    first, second = get_run(tree, "run1"), get_run(tree, "run1")
    assert not same(run, first)
    assert not same(first, second)
    assert not same(ALL(str(tree / "c"))[0], ALL(str(tree / "c"))[0])
    cache_setting("run_caching_enabled", True)
    kept = get_run(tree, "run1")
    assert same(kept, get_run(tree, "run1"))


def test_runs_that_a_filter_refused_are_not_cached(calculations: Path) -> None:
    search_setting("calculation_type_filter", native.CalculationType_BasicStatistics)
    assert names(ALL(str(calculations))) == ["stats"]
    search_setting("calculation_type_filter", native.CalculationType_AllCalculationTypes)
    cached = {native.Run_get_name(r): r for r in ALL(str(calculations))}
    assert same(cached["power"], get_run(calculations, "power"))


# Reading settings


def speeds(run: Flat, name: str = "Rotor speed", kind: str = "float32") -> tuple[float, ...]:
    return get_variable(run, name, kind)._get_data_native_array()


@pytest.mark.parametrize(
    ("prepare", "buffered"),
    [
        (lambda folder: get_run(folder), True),
        (lambda folder: (cache_setting("buffered_read_enabled", False), get_run(folder))[1], False),
        (
            lambda folder: (
                run := get_run(folder),
                speeds(run),
                cache_setting("buffered_read_enabled", False),
            )[0],
            False,
        ),
        (
            lambda folder: (
                run := get_run(folder),
                speeds(run),
                # Cached runs lose their buffers for either value, and do not get them back.
                cache_setting("buffered_read_enabled", True),
            )[0],
            False,
        ),
    ],
    ids=["on", "off", "off later", "on later"],
)
def test_buffered_read(prepare: Callable[[Path], Flat], buffered: bool, tmp_path: Path) -> None:
    RunFiles([group_1d()]).write(tmp_path)
    run = prepare(tmp_path)
    assert speeds(run)[0] == 40.25
    path = tmp_path / "run.$01"
    path.write_bytes(bytes(path.stat().st_size))
    assert speeds(run, "Tower moment")[0] == (-99.75 if buffered else 0.0)
    # What was read stays as it was.
    assert speeds(run)[0] == 40.25


def test_type_for_reading_is_that_of_the_first_look(tmp_path: Path) -> None:
    RunFiles([group_1d()]).write(tmp_path)
    run = get_run(tmp_path)
    variable = get_variable(run, "Rotor speed", "float32", 1, "Summary")
    cache_setting("data_type_for_reading", native.DataTypeSpecifier_ReadAsFloat64)
    # What is known stays; a variable that is looked for anew says that it is too late.
    assert variable._get_data_native_array()[0] == 40.25
    text = error_of(lambda: run._get_variable_from_specific_output_group("Tower moment", "Summary"))
    assert text == tables_error(
        "Target type for group cannot be changed when group has already been cached",
        f"File path: {tmp_path}/run.%01",
    )
    native.TabulonApi_clear_runs()
    fresh = get_run(tmp_path)
    variable = get_variable(fresh, "Rotor speed", "float64")
    assert variable._get_data_native_array() == (40.25, 10.25, -19.75, 30.25, 60.25)
    cache_setting("data_type_for_reading", native.DataTypeSpecifier_ReadAsSerialisedType)
    # A type of zero passes, and the group keeps what it has.
    assert get_group(fresh, "Summary").get_variable_data_type() == native.VariableDataType_Float64
