"""Axes as people write them: dimensions, values, and where a value or a label stands."""

from __future__ import annotations

import re
from collections.abc import Iterable, Sequence
from typing import TYPE_CHECKING, Any

import numpy as np
from numpy.typing import NDArray

from tabulon._errors import NameNotFoundError
from tabulon._names import Names, did_you_mean

if TYPE_CHECKING:
    from decimal import Decimal

__all__ = [
    "dimension_names",
    "frozen",
    "interval_values",
    "label_values",
    "place_on_axis",
    "places_between",
]

# Whole numbers up to here are exact in a float64, and so are powers of ten.
_EXACT_INTEGER = 2**53
_EXACT_POWER = 22
_SMALLEST = 1e-22

# How far a value that is sought may lie from one of the axis, as a share of it.
_CLOSE = 1e-9


def frozen(values: NDArray[Any]) -> NDArray[Any]:
    """Return an array that nobody can write into."""
    values.flags.writeable = False
    return values


def dimension_names(names: Iterable[str]) -> tuple[str, ...]:
    """Return the names of axes in lower case with underscores, each another."""
    found: list[str] = []
    for place, name in enumerate(names):
        plain = re.sub(r"\W+", "_", name.lower()).strip("_") or f"axis_{place}"
        found.append(plain if plain not in found else f"{plain}_{place}")
    return tuple(found)


def interval_values(minimum: float, step: float, count: int) -> NDArray[np.float64]:
    """Return the values of an interval axis.

    0.1 has no exact binary form, and its multiples drift: the fourth would be 0.30000000000000004.
    So values are counted in whole decimal units, and divided once.
    """
    start, width = _decimal(minimum), _decimal(step)
    if start is not None and width is not None:
        places = max(0, -_exponent(start), -_exponent(width))
        first, stride = int(start.scaleb(places)), int(width.scaleb(places))
        last = first + stride * max(count - 1, 0)
        if places <= _EXACT_POWER and max(abs(first), abs(last), abs(stride)) <= _EXACT_INTEGER:
            ticks = np.arange(count, dtype=np.int64) * stride + first
            return frozen(ticks / 10.0**places)
    with np.errstate(all="ignore"):
        return frozen(minimum + step * np.arange(count, dtype=np.float64))


def label_values(labels: Sequence[str]) -> NDArray[np.str_]:
    """Return the labels of an axis as an array."""
    return frozen(np.array(labels, dtype=np.str_).reshape(len(labels)))


def place_on_axis(name: str, values: NDArray[Any], wanted: object) -> int:
    """Return where a value or a label stands on an axis, the first of equal ones.

    Raises
    ------
    NameNotFoundError
        If it is not there.
    """
    if values.dtype.kind == "U":
        labels = values.tolist()
        places = Names(labels).places(wanted) if isinstance(wanted, str) else ()
        if not places:
            hint = did_you_mean(str(wanted), labels)
            raise NameNotFoundError(f"no label {wanted!r} on axis {name!r}{hint}")
        return places[0]
    try:
        number = float(wanted)  # type: ignore[arg-type]
    except (TypeError, ValueError):
        raise NameNotFoundError(f"axis {name!r} has numbers, not {wanted!r}") from None
    distances = np.abs(values - number)
    if not distances.size or np.isnan(distances).all():
        raise NameNotFoundError(f"no value {number:g} on axis {name!r}, which has no values")
    place = int(np.nanargmin(distances))
    if distances[place] > _CLOSE * abs(number):
        nearest = values[place].item()
        raise NameNotFoundError(f"no value {number!r} on axis {name!r}; the nearest is {nearest!r}")
    return place


def places_between(name: str, values: NDArray[Any], ends: slice) -> slice:
    """Return the places between two values or labels, both of which count; numbers need not stand.

    Raises
    ------
    NameNotFoundError
        If a label is not there.
    """
    if values.dtype.kind == "U":
        first = None if ends.start is None else place_on_axis(name, values, ends.start)
        last = None if ends.stop is None else place_on_axis(name, values, ends.stop)
        return slice(first, None if last is None else last + 1, ends.step)
    low, high = (
        edge if end is None else float(end)
        for end, edge in ((ends.start, -np.inf), (ends.stop, np.inf))
    )
    slack = _CLOSE * np.abs(values)
    inside = np.flatnonzero((values >= low - slack) & (values <= high + slack))
    if not inside.size:
        return slice(0, 0)
    return slice(int(inside[0]), int(inside[-1]) + 1, ends.step)


def _decimal(value: float) -> Decimal | None:
    """Return a number as it was written: a header may hold what was a float32 at first.

    None for one that is too large or too small to be counted in whole units.
    """
    from decimal import Decimal

    if value == 0.0:
        return Decimal(0)
    if not _SMALLEST < abs(value) < _EXACT_INTEGER:
        return None
    narrow = np.float32(value)
    short = str(narrow)
    return Decimal(short if float(narrow) == value and float(short) != value else repr(value))


def _exponent(value: Decimal) -> int:
    exponent = value.normalize().as_tuple().exponent
    return exponent if isinstance(exponent, int) else 0
