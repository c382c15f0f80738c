"""The way in: getting runs, searching for them, and writing output."""

from __future__ import annotations

import os
from typing import Final

from tabulon.api import _proxy
from tabulon.api._enumerations import OverwriteBehaviour, SearchScope
from tabulon.api._registration import registered
from tabulon.api._run import Run
from tabulon.api._search import StrPath

__all__ = [
    "TabulonApi",
    "clear_runs",
    "get_run",
    "get_runs",
    "get_runs_matching_name",
    "get_runs_matching_name_regex",
    "write_output",
]


@registered
class TabulonApi(_proxy.TabulonApi):
    """The operations of the library that need no object; each is a function of the package too."""

    @staticmethod
    def get_run(directory: StrPath, run_name: str) -> Run:
        """Return one run of one directory, which is not searched further down.

        The run is cached: another call gives the same one, unless its termination file was written
        since. The settings of searches do not apply.

        Parameters
        ----------
        directory
            The directory of the run.
        run_name
            The name of its files, without extension.

        Raises
        ------
        RuntimeError
            If there is no such directory, or no termination file of the run in it.
        """
        return _proxy.TabulonApi.get_run(os.fspath(directory), run_name)

    @staticmethod
    def get_runs(
        root_directory: StrPath, search_scope: int = SearchScope.RecursiveSearch
    ) -> tuple[Run, ...]:
        """Return all runs below a directory that pass the settings of searches.

        Parameters
        ----------
        root_directory
            Where to search.
        search_scope
            A ``SearchScope``: whether subdirectories are searched too.

        Raises
        ------
        RuntimeError
            If there is no such directory, or one below it cannot be read.
        """
        return _proxy.TabulonApi._get_runs_native_array(os.fspath(root_directory), search_scope)

    @staticmethod
    def get_runs_matching_name(
        root_directory: StrPath, run_name: str, search_scope: int = SearchScope.RecursiveSearch
    ) -> tuple[Run, ...]:
        """Return the runs of one name below a directory that pass the settings of searches.

        Parameters
        ----------
        root_directory
            Where to search.
        run_name
            The name, in any case unless a setting says otherwise; it has no wildcards.
        search_scope
            A ``SearchScope``: whether subdirectories are searched too.

        Raises
        ------
        RuntimeError
            If there is no such directory, or one below it cannot be read.
        """
        return _proxy.TabulonApi._get_runs_matching_name_native_array(
            os.fspath(root_directory), run_name, search_scope
        )

    @staticmethod
    def get_runs_matching_name_regex(
        root_directory: StrPath,
        run_name_regex_pattern: str,
        search_scope: int = SearchScope.RecursiveSearch,
    ) -> tuple[Run, ...]:
        """Return the runs whose whole name matches an expression, and that pass the settings.

        Parameters
        ----------
        root_directory
            Where to search.
        run_name_regex_pattern
            A regular expression in ECMAScript's grammar.
        search_scope
            A ``SearchScope``: whether subdirectories are searched too.

        Raises
        ------
        RuntimeError
            If the expression is empty or invalid, there is no such directory, or one below it
            cannot be read.
        """
        return _proxy.TabulonApi._get_runs_matching_name_regex_native_array(
            os.fspath(root_directory), run_name_regex_pattern, search_scope
        )

    @staticmethod
    def clear_runs() -> None:
        """Remove all runs from the cache. A run that is still held goes on working."""
        _proxy.TabulonApi.clear_runs()

    @staticmethod
    def write_output(
        output: _proxy.IOutputSpecification,
        overwrite_behaviour: int = OverwriteBehaviour.OverwriteExistingOutput,
    ) -> bool:
        """Write an output group: its header, its data file, and the termination file of its run.

        Parameters
        ----------
        output
            The output group. It may be changed and written again.
        overwrite_behaviour
            An ``OverwriteBehaviour``: whether a header that exists is written over.

        Returns
        -------
        bool
            False if nothing was written, for a header that exists.

        Raises
        ------
        RuntimeError
            If the group has no variables, or a file cannot be written.
        """
        return _proxy.TabulonApi.write_output(output, overwrite_behaviour)


get_run: Final = TabulonApi.get_run
get_runs: Final = TabulonApi.get_runs
get_runs_matching_name: Final = TabulonApi.get_runs_matching_name
get_runs_matching_name_regex: Final = TabulonApi.get_runs_matching_name_regex
clear_runs: Final = TabulonApi.clear_runs
write_output: Final = TabulonApi.write_output
