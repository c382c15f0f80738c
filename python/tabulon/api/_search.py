"""Runs one at a time."""

from __future__ import annotations

import os
from typing import Any, TypeAlias, overload

from tabulon.api import _proxy
from tabulon.api._registration import registered
from tabulon.api._run import Run

__all__ = [
    "RunsIterator",
    "RunsIteratorRegex",
]

StrPath: TypeAlias = str | os.PathLike[str]


@registered
class RunsIterator(_proxy.RunsIterator):
    """Finds runs below a directory, one at a time: all, or those of one name.

    The filters of ``settings`` apply. Only one such search can be under way at a time: a new
    iterator takes over the walk of an earlier one.

    Parameters
    ----------
    root_directory
        Where to search.
    run_name
        The name of the runs, if not all are sought; the empty string stands for all.
    search_scope
        A ``SearchScope``: whether subdirectories are searched too, which is the default.

    Raises
    ------
    RuntimeError
        If the directory cannot be read.

    Examples
    --------
    >>> for run in api.RunsIterator("results", "powprod_12ms"):
    ...     print(run.get_directory())
    """

    @overload
    def __init__(self, root_directory: StrPath, /) -> None: ...
    @overload
    def __init__(self, root_directory: StrPath, search_scope: int, /) -> None: ...
    @overload
    def __init__(
        self, root_directory: StrPath, run_name: str, search_scope: int = ..., /
    ) -> None: ...
    def __init__(self, root_directory: StrPath, /, *arguments: Any) -> None:
        super().__init__(os.fspath(root_directory), *arguments)

    def __iter__(self) -> RunsIterator:
        return self

    def __next__(self) -> Run:
        run = self.get_next_run()
        if run is None:
            raise StopIteration
        return run


@registered
class RunsIteratorRegex(RunsIterator, _proxy.RunsIteratorRegex):
    """Finds runs below a directory by a regular expression, one at a time.

    Parameters
    ----------
    root_directory
        Where to search.
    run_name_regex_pattern
        The expression, in ECMAScript's grammar, for the whole name.
    search_scope
        A ``SearchScope``: whether subdirectories are searched too, which is the default.

    Raises
    ------
    RuntimeError
        If the expression is empty or invalid, or the directory cannot be read.
    """

    def __init__(
        self, root_directory: StrPath, run_name_regex_pattern: str, /, *search_scope: int
    ) -> None:
        super().__init__(root_directory, run_name_regex_pattern, *search_scope)
