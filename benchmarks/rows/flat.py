"""The calls of the flat module that the rows make."""

from __future__ import annotations

from pathlib import Path

import _TabulonAPI_Python as api
import numpy as np


def fresh_run(directory: Path, name: str = "bench") -> object:
    """Return a run that the library does not know yet."""
    api.TabulonApi_clear_runs()
    return api.TabulonApi_get_run(str(directory), name)


def variable(run: object, name: str) -> object:
    """Return a float variable over one axis."""
    return api.Run__RUNPREFIX_get_variable_1d_float32(run, name)


def array_of(run: object, name: str) -> np.ndarray:
    """Return the values of a float variable, shape (points,)."""
    return api.Variable1D_Float32__get_data_numpy_from_vector(variable(run, name))


def fresh_array(directory: Path, name: str) -> np.ndarray:
    """Return the values of a variable of a run that the library does not know yet."""
    return array_of(fresh_run(directory), name)


def set_buffered(enabled: bool) -> None:
    """Say whether the raw data of a group stays for its next variable."""
    api.TabulonApi_CacheSettings_set_buffered_read_enabled(enabled)
    api.TabulonApi_clear_runs()
