"""A run with a group of each type over one axis and over two, and an object of every class."""

from __future__ import annotations

from collections.abc import Callable
from pathlib import Path

import _TabulonAPI_Python as native
import numpy as np
from surface_table import ARRAYS, FAMILY

from support.run_files import GroupFiles, IntervalAxis, RunFiles, ValueAxis, Variable, Word

#: The suffix of member templates -> FORMAT of the group.
WORDS: dict[str, Word] = {"float32": "R*4", "float64": "R*8", "int32": "I*4"}
RADIUS = ValueAxis("Radius", "L", (1.5, 2.5))
#: The values of the first variable; those of the second are ten times as large.
ROW = [1, 3, 2]
TABLE = [[1, 2, 3], [4, 6, 5]]


def small_group(number: int, kind: str, values: list[int] | list[list[int]]) -> GroupFiles:
    """Return a group of two variables, without statistics."""
    x = np.array(values, kind)
    name = f"{x.ndim}d {kind}"
    return GroupFiles(
        name,
        [Variable(f"x {name}", "L", x), Variable(f"y {name}", "L/T", 10 * x)],
        IntervalAxis(size=x.shape[-1]),
        RADIUS if x.ndim == 2 else None,
        number,
        WORDS[kind],
        statistics_blocks=0,
    )


def write_run(folder: Path, name: str = "run") -> None:
    groups = [small_group(1 + n, kind, ROW) for n, kind in enumerate(WORDS)]
    groups += [small_group(4 + n, kind, TABLE) for n, kind in enumerate(WORDS)]
    RunFiles(groups, name).write(folder)


def variable_1d(run: object, kind: str, axis: str = "x") -> object:
    return getattr(native, f"Run__RUNPREFIX_get_variable_1d_{kind}")(run, f"{axis} 1d {kind}")


def variable_2d(run: object, kind: str, axis: str = "x") -> object:
    return getattr(native, f"Run__RUNPREFIX_get_variable_2d_{kind}")(run, f"{axis} 2d {kind}")


def maker(folder: Path) -> Callable[[str], object]:
    """Return what makes a fresh object of a class, from a folder with such a run."""
    run = native.TabulonApi_get_run(str(folder), "run")

    def axis() -> object:
        return native.new_IndependentVariable("Time", "s", 0.0, 0.5)

    def output(axes: int, suffix: str) -> object:
        constructor = getattr(native, f"new_OutputGroup{axes}D_{suffix}")
        path = str(folder / "out.%01")
        return constructor(path, "Out", "UserDefined", "TABLE", *(axis() for _ in range(axes)))

    makers: dict[str, Callable[[], object]] = {
        "Run": lambda: native.TabulonApi_get_run(str(folder), "run"),
        "Group": lambda: native.Run_get_group(run, "1d float32"),
        "IndependentVariable": axis,
        "Variable": lambda: native.Run__get_variable(run, "x 1d float32"),
        "RunsIterator": lambda: native.new_RunsIterator(str(folder)),
        "RunsIteratorRegex": lambda: native.new_RunsIteratorRegex(str(folder), ".*"),
        "IOutputSpecification": lambda: output(1, "Float32"),
        "OutputGroup": lambda: output(1, "Float32"),
        "TabulonApi_CacheSettings": native.new_TabulonApi_CacheSettings,
        "TabulonApi_SearchSettings": native.new_TabulonApi_SearchSettings,
        "SwigPyIterator": lambda: native.ArrayOfInt_iterator(native.new_ArrayOfInt(3)),
    }
    for suffix, small, _ in FAMILY:
        makers[f"Variable1D_{suffix}"] = lambda small=small: variable_1d(run, small)
        makers[f"Variable2D_{suffix}"] = lambda small=small: variable_2d(run, small)
        for axes in (1, 2):
            makers[f"OutputGroup{axes}D_{suffix}"] = lambda a=axes, s=suffix: output(a, s)
    for name in ARRAYS:
        makers[name] = lambda name=name: getattr(native, f"new_{name}")(3)
    return lambda name: makers[name]()
