"""Rows of memory, each in a process of its own."""

from __future__ import annotations

import subprocess
import sys

import fixtures
from harness import MIB, Place, limit

from rows.directories import tree_of
from rows.reading import WIDE, wide

PRELUDE = """
import sys
import _TabulonAPI_Python as api
import numpy as np
def kib(key):
    return next(int(l.split()[1]) for l in open('/proc/self/status') if l.startswith(key))
np.zeros(1)
"""

SOME_VARIABLES = """
directory, buffered, names = sys.argv[1], sys.argv[2] == '1', sys.argv[3:]
api.TabulonApi_CacheSettings_set_buffered_read_enabled(buffered)
run = api.TabulonApi_get_run(directory, 'bench')
api.Run__RUNPREFIX_get_variable_1d_float32(run, names[0])
before = kib('VmRSS')
kept = []
for name in names:
    v = api.Run__RUNPREFIX_get_variable_1d_float32(run, name)
    kept.append(api.Variable1D_Float32__get_data_numpy_from_vector(v))
print((kib('VmHWM') - before) / 1024)
"""

ALL_RUNS = """
before = kib('VmRSS')
runs = api.TabulonApi__get_runs_native_array(sys.argv[1])
total = 0.0
for run in runs:
    for group in api.Run__get_all_groups_native_array(run):
        for name in api.Group__get_variable_names_native_array(group)[:2]:
            v = api.Run__RUNPREFIX_get_variable_1d_float32(run, name)
            total += float(api.Variable1D_Float32__get_data_numpy_from_vector(v)[0])
print((kib('VmHWM') - before) / 1024)
"""

CACHED_RUNS = """
before = kib('VmRSS')
n = len(api.TabulonApi__get_runs_native_array(sys.argv[1]))
print((kib('VmRSS') - before) / n)
"""


def told_by(script: str, *arguments: str) -> float:
    """Return the figure that a script prints in an interpreter of its own."""
    command = [sys.executable, "-c", PRELUDE + script, *arguments]
    done = subprocess.run(command, check=True, capture_output=True, text=True)
    return float(done.stdout)


def peak_beyond(place: Place, *, buffered: bool, wanted: int) -> float:
    """Return the peak of memory in MiB beyond the variables that are asked for."""
    directory, _, points = wide(place, 240)
    names = fixtures.variable_names(WIDE)[:wanted]
    peak = told_by(SOME_VARIABLES, str(directory), "01"[buffered], *names)
    return peak - wanted * 4.0 * points / MIB


@limit("memory", "three variables of 240 MB, buffered, beyond them", target=270.0, unit="MiB")
def three_buffered(place: Place) -> float:
    """Read three variables, the raw data kept."""
    return peak_beyond(place, buffered=True, wanted=3)


@limit("memory", "one variable of 240 MB, not buffered, beyond it", target=16.0, unit="MiB")
def one_unbuffered(place: Place) -> float:
    """Read one variable, nothing kept."""
    return peak_beyond(place, buffered=False, wanted=1)


@limit(
    "memory",
    "two variables of each group of 1,000 runs, beyond them",
    target=256.0 + 16.0,
    unit="MiB",
)
def campaign(place: Place) -> float:
    """Read two variables of each run: what is kept of their files has a bound for all.

    Beside the 256 MiB of the bound each run, with its group, has 16 KiB. The variables stay with
    their runs, and are what was asked for.
    """
    count, points = place.size(1_000, 10), place.size(8_000, 50)
    root = place.fixture(
        f"kept_{count}", lambda path: fixtures.write_linked_campaign(path, count, points, 30)
    )
    return told_by(ALL_RUNS, str(root)) - count * 2 * 4.0 * points / MIB


@limit("memory", "each cached run of 50,000", target=1.5, unit="KiB")
def cached_run(place: Place) -> float:
    """Find many runs and keep them."""
    return told_by(CACHED_RUNS, str(tree_of(place)))
