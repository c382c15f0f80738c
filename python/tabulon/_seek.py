"""How the runs of a campaign are sought, so that they can be sought again."""

from __future__ import annotations

import os
import re
from collections.abc import Callable
from fnmatch import translate
from typing import NamedTuple

from tabulon import _native
from tabulon._errors import DataError
from tabulon._kept import Kept
from tabulon._natural import in_natural_order
from tabulon._public import public

__all__ = ["Listing", "Unreadable", "name_test"]


@public
class Unreadable(NamedTuple):
    """A directory that could not be read."""

    path: str
    """The directory."""
    text: str
    """Why not."""


class Listing(NamedTuple):
    """What directories are searched, and which names count."""

    roots: tuple[str, ...]
    name: str
    regex: str | None
    recursive: bool

    def found(self) -> tuple[list[Kept], tuple[Unreadable, ...]]:
        """Return the runs that are there now in natural order, and what could not be read."""
        listed = [_native.list_runs(root, self.recursive) for root in self.roots]
        passes = name_test(self.name, self.regex)
        once = _Once()
        records = [
            record
            for runs, _ in listed
            for record in runs
            if passes(record.name) and (len(listed) == 1 or once.first(record))
        ]
        unreadable = dict.fromkeys(
            Unreadable(one.path, one.text) for _, failed in listed for one in failed
        )
        return [(one.path, one) for one in in_natural_order(records)], tuple(unreadable)


class _Once:
    """Whether a run was met before, also by another path."""

    def __init__(self) -> None:
        self._met: set[tuple[str, str]] = set()
        self._canonical: dict[str, str] = {}

    def first(self, record: _native.RunRecord) -> bool:
        """Return whether a run is met for the first time."""
        folder = self._canonical.get(record.directory)
        if folder is None:
            folder = self._canonical[record.directory] = os.path.realpath(record.directory)
        before = len(self._met)
        self._met.add((folder, record.name))
        return len(self._met) > before


def name_test(name: str, regex: str | None) -> Callable[[str], object]:
    """Return what tells whether a name passes."""
    if regex is not None:
        try:
            expression = re.compile(regex)
        except re.error as error:
            raise DataError(f"{regex!r} is no regular expression: {error}") from None
        wanted = None if name == "*" else re.compile(translate(name), re.IGNORECASE)
        return lambda text: expression.fullmatch(text) and (wanted is None or wanted.match(text))
    return (lambda _: True) if name == "*" else re.compile(translate(name), re.IGNORECASE).match
