"""The process-wide settings."""

# Classes have the names of the extension module.
# ruff: noqa: N801

from __future__ import annotations

from collections.abc import Iterator
from contextlib import contextmanager
from typing import Any, Final

from tabulon.api import _proxy
from tabulon.api._enumerations import (
    CalculationType,
    CaseSensitivity,
    CompletionState,
    DataTypeSpecifier,
)
from tabulon.api._registration import registered

__all__ = [
    "TabulonApi_CacheSettings",
    "TabulonApi_SearchSettings",
    "set_buffered_read_enabled",
    "set_calculation_type_filter",
    "set_completion_state_filter",
    "set_data_type_for_reading",
    "set_include_unsupported_calculations",
    "set_run_caching_enabled",
    "set_run_name_case_sensitivity",
    "settings",
]

# The library takes its settings and does not tell them: what was set is remembered here.
_current: dict[str, Any] = {
    "buffered_read_enabled": True,
    "run_caching_enabled": True,
    "data_type_for_reading": DataTypeSpecifier.ReadAsSerialisedType,
    "calculation_type_filter": CalculationType.AllCalculationTypes,
    "include_unsupported_calculations": True,
    "completion_state_filter": CompletionState.AllCompletionStates,
    "run_name_case_sensitivity": CaseSensitivity.IgnoreCase,
}


@registered
class TabulonApi_CacheSettings(_proxy.TabulonApi_CacheSettings):
    """How much the library keeps in memory, and in which type it reads."""

    @staticmethod
    def set_buffered_read_enabled(enabled: bool) -> None:
        """Set whether the raw data of a binary group is kept between requests; default True.

        Runs are made with the setting, and keep it. Each call, whatever its value, drops the
        buffers of the cached runs.
        """
        _proxy.TabulonApi_CacheSettings.set_buffered_read_enabled(enabled)
        _current["buffered_read_enabled"] = enabled

    @staticmethod
    def set_run_caching_enabled(enabled: bool) -> None:
        """Set whether runs that were asked for are cached; default True.

        Turning it off empties the cache. Runs that are still held go on working.
        """
        _proxy.TabulonApi_CacheSettings.set_run_caching_enabled(enabled)
        _current["run_caching_enabled"] = enabled

    @staticmethod
    def set_data_type_for_reading(data_type: int) -> None:
        """Set the type in which groups are read, a ``DataTypeSpecifier``; default as written.

        A group that a run has met keeps its type: ``clear_runs`` and ``get_run`` make it new.
        """
        _proxy.TabulonApi_CacheSettings.set_data_type_for_reading(data_type)
        _current["data_type_for_reading"] = data_type


@registered
class TabulonApi_SearchSettings(_proxy.TabulonApi_SearchSettings):
    """Which runs the searches find. ``get_run`` does not look at them."""

    @staticmethod
    def set_calculation_type_filter(calculation_type: int) -> None:
        """Set which calculations are found, a ``CalculationType``; default all."""
        _proxy.TabulonApi_SearchSettings.set_calculation_type_filter(calculation_type)
        _current["calculation_type_filter"] = calculation_type

    @staticmethod
    def set_include_unsupported_calculations(included: bool) -> None:
        """Set whether runs of unsupported calculations are found; default True.

        Leaving them out costs time: the directory of each run is read.
        """
        _proxy.TabulonApi_SearchSettings.set_include_unsupported_calculations(included)
        _current["include_unsupported_calculations"] = included

    @staticmethod
    def set_completion_state_filter(completion_state: int) -> None:
        """Set which runs are found by how they ended, a ``CompletionState``; default all."""
        _proxy.TabulonApi_SearchSettings.set_completion_state_filter(completion_state)
        _current["completion_state_filter"] = completion_state

    @staticmethod
    def set_run_name_case_sensitivity(case_sensitivity: int) -> None:
        """Set how run names are compared, a ``CaseSensitivity``; default without case."""
        _proxy.TabulonApi_SearchSettings.set_run_name_case_sensitivity(case_sensitivity)
        _current["run_name_case_sensitivity"] = case_sensitivity


set_buffered_read_enabled: Final = TabulonApi_CacheSettings.set_buffered_read_enabled
set_run_caching_enabled: Final = TabulonApi_CacheSettings.set_run_caching_enabled
set_data_type_for_reading: Final = TabulonApi_CacheSettings.set_data_type_for_reading
set_calculation_type_filter: Final = TabulonApi_SearchSettings.set_calculation_type_filter
set_include_unsupported_calculations: Final = (
    TabulonApi_SearchSettings.set_include_unsupported_calculations
)
set_completion_state_filter: Final = TabulonApi_SearchSettings.set_completion_state_filter
set_run_name_case_sensitivity: Final = TabulonApi_SearchSettings.set_run_name_case_sensitivity

_SETTERS = {
    "buffered_read_enabled": set_buffered_read_enabled,
    "run_caching_enabled": set_run_caching_enabled,
    "data_type_for_reading": set_data_type_for_reading,
    "calculation_type_filter": set_calculation_type_filter,
    "include_unsupported_calculations": set_include_unsupported_calculations,
    "completion_state_filter": set_completion_state_filter,
    "run_name_case_sensitivity": set_run_name_case_sensitivity,
}


@contextmanager
def settings(
    *,
    buffered_read_enabled: bool | None = None,
    run_caching_enabled: bool | None = None,
    data_type_for_reading: int | None = None,
    calculation_type_filter: int | None = None,
    include_unsupported_calculations: bool | None = None,
    completion_state_filter: int | None = None,
    run_name_case_sensitivity: int | None = None,
) -> Iterator[None]:
    """Change settings for the time of a ``with`` block, and put back what was set before.

    Each parameter is the argument of the function ``set_...`` of its name; what is left out is
    left alone. What the functions do besides is not undone: turning off run caching empties the
    cache, and setting buffered reading drops the buffers of cached runs, also at the block's end.

    Raises
    ------
    TypeError
        If a value is of the wrong type; nothing is changed then.

    Examples
    --------
    >>> with api.settings(completion_state_filter=api.CompletionState.CompletedNormally):
    ...     runs = api.get_runs("results")
    """
    given = {name: value for name, value in locals().items() if value is not None}
    before = {name: _current[name] for name in given}
    try:
        for name, value in given.items():
            _SETTERS[name](value)
        yield
    finally:
        for name, value in before.items():
            _SETTERS[name](value)
