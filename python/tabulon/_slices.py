"""NumPy's basic slicing as rows and columns to read."""

from __future__ import annotations

import operator
from collections.abc import Sequence
from types import EllipsisType
from typing import Any, NamedTuple

__all__ = ["Part", "parts_of"]


class Part(NamedTuple):
    """What to read along one axis, and what to take of that."""

    first: int
    length: int
    step: int
    rest: int | slice

    @property
    def places(self) -> range:
        """The places along the axis that are read."""
        return range(self.first, self.first + self.length * self.step, self.step)


def parts_of(key: Any, shape: Sequence[int]) -> tuple[list[Part], tuple[Any, ...]] | None:  # noqa: ANN401
    """Return what to read along each axis, and the key into what was read.

    Parameters
    ----------
    key
        As between brackets.
    shape
        The lengths of the axes.

    Returns
    -------
    tuple or None
        None for a key that is not one of basic slicing, such as an array.

    Raises
    ------
    IndexError
        If a place is not there, or there are too many.
    """
    keys = key if isinstance(key, tuple) else (key,)
    wanted = sum(1 for one in keys if one is not None and one is not Ellipsis)
    if wanted > len(shape):
        raise IndexError(f"too many indices: {wanted} for {len(shape)} axes")
    if sum(1 for one in keys if one is Ellipsis) > 1:
        raise IndexError("an index can only have a single ellipsis ('...')")
    if Ellipsis not in [one for one in keys if isinstance(one, EllipsisType)]:
        keys = (*keys, Ellipsis)
    parts: list[Part] = []
    rest: list[Any] = []
    for one in keys:
        if one is None:
            rest.append(None)
        elif one is Ellipsis:
            for length in shape[len(parts) : len(parts) + len(shape) - wanted]:
                parts.append(Part(0, length, 1, slice(None)))
                rest.append(slice(None))
        else:
            part = _part(one, shape[len(parts)])
            if part is None:
                return None
            parts.append(part)
            rest.append(part.rest)
    return parts, tuple(rest)


def _part(key: Any, length: int) -> Part | None:  # noqa: ANN401 - as between brackets
    if isinstance(key, slice):
        places = range(length)[key]
        if places.step > 0:
            return Part(places.start, len(places), places.step, slice(None))
        backwards = places[::-1]
        return Part(backwards.start, len(backwards), backwards.step, slice(None, None, -1))
    if isinstance(key, bool):
        return None
    try:
        place = operator.index(key)
    except TypeError:
        return None
    if not -length <= place < length:
        raise IndexError(f"index {place} is out of bounds for an axis of {length}")
    return Part(place % length, 1, 1, 0)
