"""Measures how the time to read a file grows with its size."""

from __future__ import annotations

import ctypes
import time
from collections.abc import Callable
from pathlib import Path

import _TabulonAPI_Python as native

from support.every_way import WHOLE
from support.flat import Flat, get_run
from support.hostile_shapes import SHAPES, Shape

SMALLEST, LARGEST = 16 * 1024, 1024 * 1024
#: Shorter times are not told from chance.
SECONDS = 0.02
ATTEMPTS = 4
#: Parameters of mallopt: from which size on memory comes from the system and goes back to it.
TRIM_THRESHOLD, MMAP_THRESHOLD = -1, -3


def read(folder: Path) -> None:
    """Read a run once: its ending, its groups, a variable with its figures and its data."""
    native.TabulonApi_clear_runs()
    run = get_run(folder)
    run.get_completion_state()
    try:
        run._get_all_groups_native_array()
        variable = Flat("Variable", run._get_variable("a"))
        one_axis = variable.get_number_of_independent_variables() == 1
        way = getattr(run, f"_RUNPREFIX_get_variable_{1 if one_axis else 2}d_float32")
        typed = Flat(f"Variable{1 if one_axis else 2}D_Float32", way("a"))
        typed.get_mean() if one_axis else typed.get_mean_at_index(0)
        for axis in variable._get_independent_variables_native_array():
            Flat("IndependentVariable", axis)._get_values_as_string_native_array()
        typed._get_data_native_array() if one_axis else getattr(typed, WHOLE)()
    except RuntimeError:
        return


class Clock:
    """Times the reading of one shape of files."""

    def __init__(self, shape: Shape, folder: Path, work: Callable[[Path], object] = read) -> None:
        self._shape, self._folder, self._work = shape, folder, work

    def seconds(self, size: int, times: int) -> float:
        self._shape(size).write(self._folder)
        start = time.process_time()
        for _ in range(times):
            self._work(self._folder)
        return time.process_time() - start

    def growth(self) -> float:
        """Return by which factor the time grows if the file has four times the size."""
        size, times = SMALLEST, 1
        self.seconds(size, 1)
        while (taken := self.seconds(size, 1)) < SECONDS and size < LARGEST:
            size *= 4
        times = min(int(SECONDS / max(taken, 1e-6)) + 1, 50)
        short = min(self.seconds(size, times) for _ in range(2))
        return self.seconds(4 * size, times) / short


def growths(folder: str, limit: float) -> dict[str, list[float]]:
    """Return by which factors the time to read each shape grows, until one is within the limit."""
    system = ctypes.CDLL(None)
    if hasattr(system, "mallopt"):  # what the system takes to give pages is not to be measured
        for threshold in (TRIM_THRESHOLD, MMAP_THRESHOLD):
            system.mallopt(threshold, 1 << 29)
    found: dict[str, list[float]] = {}
    for name, shape in SHAPES.items():
        found[name] = [Clock(shape, Path(folder)).growth()]
        while found[name][-1] > limit and len(found[name]) < ATTEMPTS:
            found[name].append(Clock(shape, Path(folder)).growth())
    return found
