"""What type checkers make of a user's script, by the stubs of the installed wheel."""

from __future__ import annotations

import subprocess
import sys
from importlib.util import find_spec
from pathlib import Path

import _TabulonAPI_Python as native
import pytest

STUBS = Path(native.__file__).with_name("_TabulonAPI_Python-stubs")
# Type checkers look for such stubs in `site-packages` only.
pytestmark = pytest.mark.skipif(not STUBS.exists(), reason="this is no installed wheel")

RIGHT = """
from typing import Any

import _TabulonAPI_Python as native
import numpy as np
from numpy.typing import NDArray
from tabulon import api

run = api.get_run("results", "powprod")
name: str = run.get_name()
group: api.Group = run.get_group("Summary")
variable = group.get_variable_1d("Rotor speed")
values: NDArray[Any] = variable.get_data()
array = api.ArrayOfDouble([1.0, 2.0])
first: float = array[0]
part: api.ArrayOfDouble = array[0:1]

count: int = native.ArrayOfDouble___len__(array)
axis = native.new_IndependentVariable("Time", "s", (v for v in (0.0, 0.5)))
numbers: tuple[float, ...] = native.IndependentVariable__get_values_as_number_native_array(axis)
raw: NDArray[np.float64] = native.IndependentVariable__get_values_as_number_numpy_from_vector(axis)
kind: int = native.CalculationType_WindTurbulence
extension: str = native.cvar.Run_termination_file_extension
"""
#: Line -> what is wrong there.
WRONG = {
    "import _TabulonAPI_Python as native": "",
    "from tabulon import api": "",
    "count: str = native.ArrayOfDouble___len__(api.ArrayOfDouble([1.0]))": "result",
    'native.TabulonApi_get_run("results")': "count of arguments",
    'native.new_IndependentVariable("Time", 5, [1.0])': "argument",
    "native.no_such_function()": "name",
    'native.cvar.Run_termination_file_extension = ".x"': "read-only",
    'found: int = api.ArrayOfString(["a"])[0]': "element",
}


def checked(tool: list[str], script: Path) -> str:
    done = subprocess.run(
        [sys.executable, "-m", *tool, str(script)],
        capture_output=True,
        text=True,
        cwd=script.parent,
        check=False,
    )
    return done.stdout + done.stderr


@pytest.mark.parametrize(
    "tool",
    [
        ["mypy", "--strict", "--cache-dir", "cache", "--hide-error-context"],
        ["pyright", "--pythonpath", sys.executable],
    ],
    ids=["mypy", "pyright"],
)
def test_a_script_is_checked(tool: list[str], tmp_path: Path) -> None:
    if find_spec(tool[0]) is None:
        pytest.skip(f"{tool[0]} is not installed")
    right = tmp_path / "right.py"
    right.write_text(RIGHT)
    found = checked(tool, right)
    assert "no issues found" in found or "0 errors, 0 warnings" in found, found
    wrong = tmp_path / "wrong.py"
    wrong.write_text("\n".join(WRONG) + "\n")
    found = checked(tool, wrong)
    for number, what in enumerate(WRONG.values(), 1):
        assert bool(what) == (f"wrong.py:{number}:" in found), (number, what, found)
