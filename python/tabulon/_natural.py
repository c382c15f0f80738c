"""Paths with numbers in them, in the order of people: ``run2`` before ``run10``."""

from __future__ import annotations

import re
from collections.abc import Iterable, Sequence
from itertools import groupby
from typing import Any, Protocol, TypeVar

__all__ = ["in_natural_order", "natural_key"]

_NUMBERS = re.compile(r"(\d+)")
_SEPARATORS = re.compile(r"[/\\]+")

Key = tuple[Any, ...]


class Placed(Protocol):
    """Something in a directory."""

    @property
    def directory(self) -> str:
        """The directory, with a separator behind it."""

    @property
    def name(self) -> str:
        """The name in the directory."""


PlacedT = TypeVar("PlacedT", bound=Placed)


def natural_key(text: str) -> Key:
    """Return a key to sort by: texts in any case, numbers by their value, spelling last."""
    parts = _NUMBERS.split(text)
    return tuple(int(p) if i % 2 else p.casefold() for i, p in enumerate(parts)), text


def path_key(path: str) -> Key:
    """Return a key to sort paths by: one name after the other."""
    return tuple(map(natural_key, filter(None, _SEPARATORS.split(path))))


def in_natural_order(listed: Iterable[PlacedT]) -> list[PlacedT]:
    """Return things in the natural order of their paths.

    Parameters
    ----------
    listed
        Those of a directory stand together, in natural order. So most need no key of their own:
        only where runs stand beside directories with runs.
    """
    blocks = [(directory, list(block)) for directory, block in groupby(listed, _directory_of)]
    keys = {directory: path_key(directory) for directory, _ in blocks}
    parents = {key[:depth] for key in keys.values() for depth in range(len(key))}
    placed: list[tuple[Key, Sequence[PlacedT]]] = []
    for directory, block in blocks:
        key = keys[directory]
        if key in parents:
            placed += [((*key, natural_key(one.name)), [one]) for one in block]
        else:
            placed.append((key, block))
    placed.sort(key=lambda item: item[0])
    return [one for _, block in placed for one in block]


def _directory_of(one: Placed) -> str:
    return one.directory
