"""The command line, run as a user does."""

from __future__ import annotations

import json
import os
import subprocess
import sys
from pathlib import Path

import pytest
from support.campaign_files import (
    MOMENT,
    POWER,
    SPEED,
    break_runs,
    series,
    write_campaign,
    write_run,
)
from support.run_files import RunFiles

pytest.importorskip("typer")


@pytest.fixture
def root(tmp_path: Path) -> Path:
    write_campaign(tmp_path / "results")
    return tmp_path / "results"


def tabulon(*arguments: object) -> subprocess.CompletedProcess[str]:
    """Run a command."""
    command = [sys.executable, "-m", "tabulon", *map(str, arguments)]
    return subprocess.run(command, capture_output=True, text=True, check=False)


def records(done: subprocess.CompletedProcess[str]) -> list[dict[str, object]]:
    return [json.loads(line) for line in done.stdout.splitlines()]


def test_ls_lists_runs(root: Path) -> None:
    write_run(root, "bad", 1, text="*** ERROR\n")
    done = tabulon("ls", root)
    assert done.returncode == 0
    assert done.stderr == ""
    assert len(done.stdout.splitlines()) == 14
    assert "CompletedNormally" in done.stdout
    found = records(tabulon("ls", root, "--json", "--state", "errored"))
    assert found == [
        {
            "run": "bad",
            "path": str(root / "bad"),
            "state": "Errored",
            "calculation": "PowerProductionSimulation",
        }
    ]
    done = tabulon("ls", root, "--state", "erored")
    assert done.returncode == 2
    assert "did you mean 'Errored'?" in " ".join(done.stderr.replace("│", " ").split())


def test_info_tells_groups_and_variables(root: Path) -> None:
    done = tabulon("info", root / "seed1" / "run0")
    assert done.returncode == 0
    assert "Tower loads" in done.stdout
    found = records(tabulon("info", root / "seed1" / "run0.%01", "--json"))
    assert [one["variable"] for one in found] == [SPEED, POWER, MOMENT]
    assert found[2]["dims"] == ["time", "tower_station"]


def test_stats_and_extremes_are_tables_or_records(root: Path, tmp_path: Path) -> None:
    done = tabulon("stats", root, SPEED, f"Tower loads::{MOMENT}", "--figures", "max", "--json")
    assert done.returncode == 0, done.stderr
    found = records(done)
    assert len(found) == 36
    assert found[0]["run"] == "run0"
    assert found[0]["max"] == pytest.approx(float(series(0).max()))
    assert found[0]["secondary"] is None
    catalogue = tmp_path / "c.parquet"
    assert tabulon("catalogue", root, catalogue).returncode == 0
    saved = tabulon("stats", catalogue, SPEED, "--figures", "max", "--no-verify", "--json")
    assert records(saved) == [one for one in found if one["variable"] == SPEED]
    assert tabulon("catalogue", root, catalogue, "--refresh").returncode == 0
    one = records(tabulon("stats", root / "seed1" / "run3", SPEED, "--figures", "min", "--json"))
    assert [record["run"] for record in one] == ["run3"]
    done = tabulon("extremes", root, SPEED, "--also", POWER)
    assert done.returncode == 0
    assert done.stdout.splitlines()[0].split() == [
        "variable", "secondary", "kind", "value", "unit", "run", "path", "time",
        "Electrical", "power",
    ]  # fmt: skip


def test_broken_runs_are_an_exit_status_of_one(root: Path) -> None:
    break_runs(root)
    done = tabulon("stats", root, SPEED, "--figures", "max", "--json")
    assert done.returncode == 1
    assert len(records(done)) == 12
    assert "half: group 'Summary' has 20 rows of 40" in done.stderr
    done = tabulon("check", root, "--json")
    assert done.returncode == 1
    told = {(one["run"], one["kind"]) for one in records(done)}
    assert told == {
        ("half", "data short"),
        ("header", "header damaged"),
        ("missing", "data missing"),
    }
    assert tabulon("check", root / "seed1").returncode == 0


def test_wrong_use_is_an_exit_status_of_two_with_suggestions(root: Path) -> None:
    done = tabulon("stats", root, "Rotor sped")
    assert done.returncode == 2
    assert "did you mean 'Rotor speed'?" in done.stderr
    done = tabulon("info", root / "seed1" / "run33")
    assert done.returncode == 2
    assert "did you mean 'run3'?" in done.stderr
    assert len(done.stderr.splitlines()) == 1
    assert tabulon("ls", root / "nowhere").returncode == 2
    assert tabulon("nonsense").returncode == 2
    assert tabulon("stats", root).returncode == 2


@pytest.mark.parametrize("suffix", ["png", "svg"])
def test_plot_draws_a_picture(root: Path, tmp_path: Path, suffix: str) -> None:
    pytest.importorskip("matplotlib")
    picture = tmp_path / f"plot.{suffix}"
    done = tabulon("plot", root / "seed1" / "run0", SPEED, MOMENT, "-o", picture)
    assert done.returncode == 0, done.stderr
    head = picture.read_bytes()[:100]
    assert head.startswith(b"\x89PNG") if suffix == "png" else b"<?xml" in head
    assert tabulon("plot", root / "seed1" / "run0", SPEED, "-o", "x.doc").returncode == 2


def test_export_writes_other_formats(root: Path, tmp_path: Path) -> None:
    pandas = pytest.importorskip("pandas")
    pytest.importorskip("pyarrow")
    xarray = pytest.importorskip("xarray")
    run = root / "seed2" / "run4"
    for suffix in ("csv", "parquet", "nc"):
        done = tabulon("export", run, tmp_path / f"x.{suffix}", SPEED, POWER)
        assert done.returncode == 0, done.stderr
    frames = [
        pandas.read_csv(tmp_path / "x.csv", index_col=0),
        pandas.read_parquet(tmp_path / "x.parquet"),
        xarray.open_dataset(tmp_path / "x.nc").to_dataframe(),
    ]
    for frame in frames:
        assert frame.index.name == "time"
        assert frame[SPEED].astype("float32").tolist() == series(4).tolist()
    assert tabulon("export", run, tmp_path / "x.doc").returncode == 2


def test_watch_tells_rows_and_ends_with_the_run(root: Path) -> None:
    path = write_run(root, "live", 5, text="Run in progress\n")
    data = path.with_name("live.$01")
    data.write_bytes(data.read_bytes()[:80])
    found = records(tabulon("watch", path, "--json", "--looks", 2, "--interval", 0.01))
    assert [(one["rows"], one["expected"]) for one in found] == [(10, 40)] * 2
    assert found[0]["state"] == "InProgress"
    done = tabulon("watch", root / "seed1" / "run0")
    assert done.returncode == 0
    assert done.stdout == "run0: 40 of 40 rows, 0.0 rows/s\n"
    RunFiles([], "none").write(root)
    assert tabulon("watch", root / "none").returncode == 1


COMMANDS = ("ls", "info", "stats", "extremes", "plot", "export", "check", "catalogue", "watch")


def loading_nothing(*arguments: str, **environment: str) -> str:
    """Return what a command writes that needs no package but typer."""
    heavy = {"numpy", "rich", "pandas", "xarray", "matplotlib", "pyarrow", "dask", "pint", "tqdm"}
    code = (
        "import sys\n"
        f"sys.argv = {['tabulon', *arguments]!r}\n"
        "from tabulon._cli import main\n"
        "try:\n    main()\n"
        "except SystemExit as error:\n    assert not error.code, error.code\n"
        f"loaded = {heavy!r} & sys.modules.keys()\n"
        "assert not loaded, loaded\n"
    )
    done = subprocess.run(
        [sys.executable, "-c", code],
        capture_output=True,
        text=True,
        check=False,
        env={**os.environ, **environment},
    )
    assert done.returncode == 0, done.stderr
    return done.stdout


def test_help_loads_neither_numpy_nor_rich() -> None:
    told = loading_nothing("--help")
    assert "..." not in told.partition("Commands:")[2]
    for command in COMMANDS:
        assert command in told
        assert f"tabulon {command}" in loading_nothing(command, "--help")


def test_the_shell_completes_commands_and_options_at_once() -> None:
    def completed(words: str) -> set[str]:
        place = str(len(words.split(" ")) - 1)
        told = loading_nothing(
            _TABULON_COMPLETE="complete_bash", COMP_WORDS=words, COMP_CWORD=place
        )
        return set(told.split())

    assert completed("tabulon ") == set(COMMANDS)
    assert completed("tabulon ex") == {"extremes", "export"}
    assert {"--figures", "--json", "--verify"} <= completed("tabulon stats --")


def test_without_typer_the_command_line_says_what_to_install() -> None:
    code = "import sys\nsys.modules['typer'] = None\nfrom tabulon._cli import main\nmain()\n"
    done = subprocess.run([sys.executable, "-c", code], capture_output=True, text=True, check=False)
    assert done.returncode == 2
    assert done.stderr == 'typer is missing: pip install "tabulon[cli]"\n'


def test_a_file_that_cannot_be_written_is_a_line(root: Path, tmp_path: Path) -> None:
    run, nowhere = root / "seed1" / "run0", tmp_path / "nowhere"
    pytest.importorskip("matplotlib")
    pytest.importorskip("h5netcdf")
    commands = [("plot", run, SPEED, "-o", nowhere / "x.png")]
    commands += [("export", run, nowhere / f"x.{kind}") for kind in ("csv", "parquet", "nc")]
    for command in commands:
        done = tabulon(*command)
        assert done.returncode == 2, command
        assert len(done.stderr.splitlines()) == 1, done.stderr


def test_a_figure_or_a_unit_that_is_not_there_is_wrong_use(root: Path, tmp_path: Path) -> None:
    done = tabulon("stats", root, SPEED, "--figures", "maxx")
    assert done.returncode == 2
    assert "no figure 'maxx'; did you mean 'max'?" in done.stderr
    run = root / "seed1" / "run0"
    assert tabulon("plot", run, SPEED, "-o", tmp_path / "x.svg", "--unit", "kg").returncode == 2


def test_a_variable_of_several_that_no_run_has_is_wrong_use(root: Path) -> None:
    done = tabulon("stats", root, SPEED, "Rotor sped", "--figures", "max", "--json")
    assert (done.returncode, len(records(done))) == (2, 12)
    done = tabulon("extremes", root, SPEED, "--also", "Rotor sped", "--json")
    assert (done.returncode, len(records(done))) == (2, 2)
    assert "did you mean 'Rotor speed'?" in done.stderr


def test_problems_are_a_line_each(root: Path) -> None:
    break_runs(root)
    done = tabulon("check", root)
    assert len(done.stdout.splitlines()) == 4


def test_all_variables_are_exported_under_their_names(root: Path, tmp_path: Path) -> None:
    pytest.importorskip("pandas")
    assert tabulon("export", root / "seed1" / "run0", tmp_path / "x.csv").returncode == 0
    head = (tmp_path / "x.csv").read_text().splitlines()[0]
    assert head == f"time,{SPEED},{POWER},{MOMENT} Base,{MOMENT} Top"
