"""The flat functions of the extension module, and the texts of its errors, for tests."""

from __future__ import annotations

import subprocess
import sys
from collections.abc import Callable
from functools import partial
from pathlib import Path
from typing import Any

import _TabulonAPI_Python as native

from support.own_process import answer_of

#: dtype -> how the names of functions spell it.
SUFFIXES = {"float32": "Float32", "float64": "Float64", "int32": "Int32"}
DATA_TYPES = {"float32": 0, "float64": 1, "int32": 2}


class Flat:
    """An object of the module with the functions of its family: `Flat("Run", run).get_name()`."""

    def __init__(self, family: str, pointer: object) -> None:
        self.family = family
        self.pointer = pointer

    def __getattr__(self, name: str) -> Callable[..., Any]:
        return partial(getattr(native, f"{self.family}_{name}"), self.pointer)


def get_run(folder: Path | str, name: str = "run") -> Flat:
    return Flat("Run", native.TabulonApi_get_run(str(folder), name))


def get_group(run: Flat, name: str) -> Flat:
    return Flat("Group", run.get_group(name))


def get_variable(run: Flat, name: str, kind: str, axes: int = 1, group: str | None = None) -> Flat:
    """Return a typed variable, looked for in all groups or in one."""
    way = f"_RUNPREFIX_get_variable_{axes}d"
    if group is None:
        pointer = getattr(run, f"{way}_{kind}")(name)
    else:
        pointer = getattr(run, f"{way}_from_specific_output_group_{kind}")(name, group)
    return Flat(f"Variable{axes}D_{SUFFIXES[kind]}", pointer)


def get_axis(variable: Flat, *which: int | str) -> Flat:
    return Flat("IndependentVariable", variable.get_independent_variable(*which))


def message(call: Callable[[], object], kind: type[BaseException]) -> str:
    """Return the whole text of the exception of just this type that a call raises."""
    try:
        result = call()
    except BaseException as error:
        if type(error) is not kind:
            raise
        return str(error)
    raise AssertionError(f"no error, but {result!r}")


def error_of(call: Callable[[], object]) -> str:
    """Return the whole text of the failure of the library that a call raises."""
    return message(call, RuntimeError)


def _composed(text: str, further: str, inner: str) -> str:
    text += "" if text.endswith(".") else "."
    text += f"\nFurther information: {further}" if further else ""
    return text + (f"\nInner exception: {inner}" if inner else "")


def tables_error(message: str, further: str = "", inner: str = "") -> str:
    return _composed(f"Sumara Tables error: {message}", further, inner)


def io_error(code: int, message: str, further: str = "", inner: str = "") -> str:
    return _composed(f"IO error {code}: {message}", further, inner)


def run_python(code: str, *arguments: object) -> subprocess.CompletedProcess[str]:
    """Run code in an interpreter of its own, where no class was registered yet.

    Nothing but the extension module is imported there.
    """
    start = (
        f"import gc, sys; sys.path.insert(0, {str(Path(native.__file__).parent)!r})\n"
        "import _TabulonAPI_Python as native\n"
    )
    return subprocess.run(
        [sys.executable, "-c", start + code, *map(str, arguments)],
        capture_output=True,
        text=True,
        check=False,
    )


def run_script(code: str, *arguments: object, **environment: str) -> Any:  # noqa: ANN401
    """Run code in an interpreter of its own, and return what it gives to `answer`."""
    start = (
        "import gc, json\nfrom pathlib import Path\n"
        "import _TabulonAPI_Python as native\nfrom support.flat import *\n"
        "def answer(value): print(json.dumps(value))\n"
    )
    return answer_of(start + code, *arguments, environment=environment)
