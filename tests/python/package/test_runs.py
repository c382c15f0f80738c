"""Runs and their groups: how they are found, what they tell, and how names are met."""

from __future__ import annotations

import os
import pickle
from collections.abc import Callable, Sequence
from dataclasses import replace
from datetime import datetime, timezone
from pathlib import Path

import pytest
import tabulon as tb
from support.run_files import GroupFiles, RunFiles
from support.scenarios import group_1d, group_2d

Written = Callable[..., Path]


@pytest.fixture
def written(tmp_path: Path) -> Written:
    """Write a run of groups that are numbered in their order, and return its path."""

    def write(*groups: GroupFiles, name: str = "run", **files: object) -> Path:
        numbered = [replace(group, number=n) for n, group in enumerate(groups, 1)]
        RunFiles(numbered, name, **files).write(tmp_path)  # type: ignore[arg-type]
        return tmp_path / name

    return write


def texts(errors: Sequence[object]) -> list[str]:
    return [str(error) for error in errors]


@pytest.mark.parametrize("extension", ["", ".$TE", ".%01", ".$01", ".$ME", ".$VE"])
def test_a_run_opens_by_any_of_its_files(written: Written, extension: str) -> None:
    path = written(group_1d())
    run = tb.open_run(f"{path}{extension}")
    assert run.path == str(path)
    assert run == tb.open_run(path.parent, "run") == tb.open_run(str(path))


def test_a_run_has_the_path_without_links_followed(
    written: Written, monkeypatch: pytest.MonkeyPatch
) -> None:
    path = written(group_1d())
    monkeypatch.chdir(path.parent)
    run = tb.open_run("run")
    assert (run.path, run.name, run.directory) == (str(path), "run", str(path.parent))
    assert os.fspath(run) == f"{path}.$TE"


def test_a_run_with_dots_in_its_name(written: Written) -> None:
    path = written(group_1d(), name="run v1.5")
    assert tb.open_run(path).name == "run v1.5"
    assert tb.open_run(f"{path}.$TE").name == "run v1.5"


def test_a_run_that_is_not_there_is_told(written: Written) -> None:
    path = written(group_1d(), name="powprod")
    with pytest.raises(tb.RunNotFoundError, match="did you mean 'powprod'") as caught:
        tb.open_run(path.parent / "powprd")
    assert caught.value.path == str(path.parent / "powprd")
    with pytest.raises(FileNotFoundError, match="is a directory; runs in it: 'powprod'"):
        tb.open_run(path.parent)
    with pytest.raises(tb.RunNotFoundError, match="there is no directory"):
        tb.open_run(path.parent / "nowhere" / "powprod")


def test_a_run_is_a_path(written: Written) -> None:
    path = written(group_1d())
    run = tb.open_run(path)
    _ = run["Rotor speed"].values
    again = pickle.loads(pickle.dumps(run))
    assert again == run
    assert hash(again) == hash(run)
    assert len(pickle.dumps(run)) < 500
    assert tb.open_run(written(group_1d(), name="other")) != run
    assert pickle.loads(pickle.dumps(tb.open_run(path, partial=True))).partial


def test_a_token_for_dask_follows_the_termination_file(written: Written) -> None:
    tokenize = pytest.importorskip("dask.base").tokenize
    path = written(group_1d())
    run = tb.open_run(path)
    before = tokenize(run), tokenize(run["Rotor speed"])
    assert before == (tokenize(tb.open_run(path)), tokenize(tb.open_run(path)["Rotor speed"]))
    os.utime(run, ns=(1, 1))
    after = tokenize(run), tokenize(run["Rotor speed"])
    assert after[0] != before[0]
    assert after[1] != before[1]


@pytest.mark.parametrize(
    ("termination", "state"),
    [
        ("Run completed.\n", tb.CompletionState.CompletedNormally),
        ("Run in progress\n", tb.CompletionState.InProgress),
        ("Run terminated unexpectedly\n", tb.CompletionState.Terminated),
        ("*** ERROR\nAborted by user", tb.CompletionState.Aborted),
        ("*** ERROR\n", tb.CompletionState.Errored),
        ("?\n", tb.CompletionState.Unknown),
    ],
)
def test_how_a_run_ended(written: Written, termination: str, state: tb.CompletionState) -> None:
    run = tb.open_run(written(group_1d(), termination=termination))
    assert run.state is state
    assert run.ok is (state == tb.CompletionState.CompletedNormally)
    assert (run.finished is None) == (state == tb.CompletionState.InProgress)


def test_when_a_run_began_and_ended(written: Written) -> None:
    path = written(group_1d())
    os.utime(f"{path}.$VE", (1_000, 1_000))
    os.utime(f"{path}.$TE", (4_600, 4_600))
    run = tb.open_run(path)
    assert run.started == datetime.fromtimestamp(1_000, tz=timezone.utc)
    assert run.finished == datetime.fromtimestamp(4_600, tz=timezone.utc)
    Path(f"{path}.$VE").unlink()
    assert run.started is None


def test_messages_are_text_whatever_their_bytes(written: Written) -> None:
    path = written(group_1d(), message="Größe\n")
    assert tb.open_run(path).messages == "Größe\n"
    Path(f"{path}.$ME").write_bytes("Größe\n".encode("latin-1"))
    assert tb.open_run(path).messages == "Größe\n"
    Path(f"{path}.$ME").unlink()
    assert tb.open_run(path).messages == ""


def test_what_a_run_calculated(written: Written) -> None:
    kinds = tb.CalculationType
    assert (
        tb.open_run(written(group_1d())).calculation == tb.CalculationType.PowerProductionSimulation
    )
    path = written(name="loads", others={".$MX": b""})
    assert tb.open_run(path).calculation == kinds.UltimateLoadsAnalysis
    assert tb.open_run(written(name="none")).calculation == kinds.Unknown


def test_parameters_are_split_at_the_last_colon(written: Written) -> None:
    first = group_1d(named_parameters=["Seed: 7", "Time: 10:30", "Flag", " Shear :0.2 "])
    second = group_2d(named_parameters=["Seed: 8", "Shear: 0.2", "Flag"])
    assert tb.open_run(written(first, second)).parameters == {
        "Seed": "7",
        "Time: 10": "30",
        "Flag": "",
        "Shear": "0.2",
        ("Blade loads", "Seed"): "8",
    }


def test_groups_by_name_and_number(written: Written) -> None:
    groups = tb.open_run(written(group_1d(), group_2d())).groups
    assert list(groups) == ["Summary", "Blade loads"]
    assert [group.number for group in groups.values()] == [1, 2]
    assert groups["Blade loads"] == groups[2] == groups["BLADE LOADS"]
    assert groups[1].run == tb.open_run(groups[1].run.path)
    assert pickle.loads(pickle.dumps(groups[2])) == groups[2]
    assert "Summary" in groups
    assert 3 not in groups
    with pytest.raises(tb.NameNotFoundError, match="no group 3; there are 1, 2"):
        groups[3]
    with pytest.raises(tb.NameNotFoundError, match="did you mean 'Summary'"):
        groups["Sumary"]


def test_groups_of_one_name_have_their_numbers(written: Written) -> None:
    run = tb.open_run(written(group_1d(), group_1d()))
    assert list(run.groups) == [1, 2]
    with pytest.raises(tb.AmbiguousNameError, match="groups 1 and 2; write the number"):
        run.groups["Summary"]
    with pytest.raises(tb.AmbiguousNameError, match=r"write run\[1, 'Rotor speed'\] or run\[2,"):
        run["Rotor speed"]
    assert run[2, "Rotor speed"].group.number == 2


def test_a_name_is_met_exactly_and_then_in_any_case(written: Written) -> None:
    group = group_1d()
    names = ("Speed", "SPEED", "Power")
    variables = [replace(v, name=n) for v, n in zip(group.variables, names, strict=True)]
    run = tb.open_run(written(replace(group, variables=variables)))
    assert run["Speed"].name == "Speed"
    assert run["SPEED"].name == "SPEED"
    assert run["power"].name == "Power"
    assert run["summary", "pOWER"].name == "Power"
    with pytest.raises(tb.AmbiguousNameError, match="'speed' is"):
        run["speed"]
    with pytest.raises(tb.AmbiguousNameError, match="write one of 'SPEED', 'Speed'"):
        run["Summary", "speed"]


def test_a_name_in_two_groups_shows_the_pairs_to_write(written: Written) -> None:
    second = replace(group_1d(), name="Again")
    run = tb.open_run(written(group_1d(), second))
    with pytest.raises(tb.AmbiguousNameError) as caught:
        run["rotor speed"]
    assert str(caught.value) == (
        "'rotor speed' is a variable of groups 'Summary' and 'Again';"
        " write run['Summary', 'Rotor speed'] or run['Again', 'Rotor speed']"
    )
    assert run["Again", "Rotor speed"].group.name == "Again"
    assert "Rotor speed" in run


def test_a_miss_suggests(written: Written) -> None:
    run = tb.open_run(written(group_1d()))
    with pytest.raises(tb.NameNotFoundError) as caught:
        run["Electrical pwer"]
    expected = "no variable 'Electrical pwer'; did you mean 'Electrical power'?"
    assert str(caught.value) == expected
    with pytest.raises(KeyError, match=r"no variable 'xyz'$"):
        run["xyz"]
    assert "xyz" not in run
    assert 5 not in run


@pytest.mark.parametrize(
    ("name", "hint"),
    [
        ("summary", "it is a group: run.groups['Summary']"),
        ("Time", "it is an axis: run.groups['Summary'].coords['time']"),
        (
            "distance_along_blade",
            "it is an axis: run.groups['Blade 1 loads'].coords['distance_along_blade']",
        ),
    ],
)
def test_a_name_that_is_no_variable_s_says_what_it_is(name: str, hint: str) -> None:
    with pytest.raises(tb.NameNotFoundError) as caught:
        tb.open_run(tb.sample("idling_live"))[name]
    assert str(caught.value) == f"no variable {name!r}; {hint}"


def test_variables_by_pattern(written: Written) -> None:
    run = tb.open_run(written(group_1d(), group_2d()))
    assert [v.name for v in run.variables("*moment")] == ["Tower moment", "Blade moment"]
    assert [v.name for v in run.variables("ROTOR?speed")] == ["Rotor speed"]
    assert len(run.variables()) == 6


def test_a_run_is_not_iterated(written: Written) -> None:
    with pytest.raises(TypeError, match="not iterable"):
        iter(tb.open_run(written(group_1d())))  # type: ignore[call-overload]


def test_a_damaged_header_hides_no_other_group(written: Written) -> None:
    path = written(group_1d(), group_2d())
    Path(f"{path}.%01").write_bytes(b"FILE\n\0\0garbage")
    run = tb.open_run(path)
    assert run["Blade moment"].shape == (5, 3)
    assert list(run.groups) == ["Blade loads"]
    with pytest.raises(tb.DataError) as caught:
        run.groups[1]
    assert caught.value.path == f"{path}.%01"
    with pytest.raises(tb.NameNotFoundError, match=r"could not be read: .*run\.%01"):
        run["Rotor speed"]
    assert "Damaged" in str(run)


def test_a_run_without_groups(written: Written) -> None:
    run = tb.open_run(written())
    assert len(run.groups) == 0
    assert run.variables() == []
    assert run.parameters == {}
    assert run.check() == []


def test_a_run_that_went_away_is_told(written: Written) -> None:
    path = written(group_1d())
    run = tb.open_run(path)
    Path(f"{path}.$TE").unlink()
    with pytest.raises(tb.RunNotFoundError):
        _ = run.groups["Summary"]


def test_what_is_read_does_not_depend_on_settings_of_the_api(written: Written) -> None:
    path = written(group_1d("I*4"))
    with tb.api.settings(
        data_type_for_reading=tb.api.DataTypeSpecifier.ReadAsFloat64,
        completion_state_filter=tb.CompletionState.UnsuccessfulRunsOnly,
    ):
        assert str(tb.open_run(path)["Rotor speed"].values.dtype) == "int32"


def test_samples() -> None:
    assert tb.open_run(tb.sample("power_curve")).ok
    assert tb.open_run(tb.sample("idling_live")).state == tb.CompletionState.InProgress
    with pytest.raises(tb.NameNotFoundError, match="did you mean 'power_curve'"):
        tb.sample("power_curv")
