"""Units: spelled so that pint reads them, and converted by it."""

from __future__ import annotations

import os
import re
import threading
from functools import lru_cache
from itertools import groupby
from typing import Any, NamedTuple

import numpy as np
from numpy.typing import NDArray

from tabulon._errors import DataError
from tabulon._optional import require

__all__ = ["CODES", "Conversion", "conversion", "quantity_of", "readable", "spelled"]

# A quantity code is a product of letters, over another one: "FLT/A" is N m s/rad.
_LETTERS = {
    "L": "m",
    "T": "s",
    "A": "rad",
    "M": "kg",
    "F": "N",
    "P": "W",
    "Q": "VA",
    "I": "A",
    "V": "V",
}
_CODE = re.compile(r"(1|[LTAMFPQIV]+)(?:/([LTAMFPQIV]+))?")
_ENERGY, _APPARENT_POWER = "J", "VA"
_SPELLED = {"PT": _ENERGY, "VI": _APPARENT_POWER}
_WITHOUT_UNIT = frozenset({"", "N", ".", "SPARE", "Unitless", "Unquantifiable", "1"})

# What can be written: the codes that the library knows, in the order in which they are tried.
CODES = (
    *("L", "L/T", "A", "A/T", "M", "M/L", "MLL", "F", "FL", "F/L", "FL/A", "FLT/A", "FLL"),
    *("FLTT/AA", "T", "1/T", "P", "PT", "A/P", "A/PT", "A/PTT", "M/LLL", "M/LT", "L/TT", "N"),
    *("FL/L", "LLL", "F/LL", "LLL/A", "Q", "I", "V", "VI", "A/TT"),
)
_RUN_TOGETHER = re.compile(r"\b([kMG]?N)m(?=\W|$)")
_IN_USE = {
    "PT": frozenset({"joule", "watt", "watt_hour", "electron_volt", "calorie"}),
    "VI": frozenset({"volt_ampere", "volt", "ampere"}),
}


@lru_cache(maxsize=1024)
def spelled(quantity: str) -> str:
    """Return the unit of a quantity code as pint reads it; a code of no known letters as it is.

    >>> spelled("FL"), spelled("M/LT"), spelled("L/TT"), spelled("Q"), spelled("N")
    ('N m', 'kg/(m s)', 'm/s^2', 'VA', '1')
    """
    if quantity in _WITHOUT_UNIT:
        return "1"
    parts = _CODE.fullmatch(quantity)
    if quantity in _SPELLED or parts is None:
        return _SPELLED.get(quantity, quantity)
    above, below = parts[1], parts[2]
    numerator = "1" if above == "1" else _product(above)
    if below is None:
        return numerator
    denominator = _product(below)
    return f"{numerator}/({denominator})" if " " in denominator else f"{numerator}/{denominator}"


def _product(letters: str) -> str:
    counted = [(_LETTERS[letter], len(list(run))) for letter, run in groupby(letters)]
    return " ".join(unit if count == 1 else f"{unit}^{count}" for unit, count in counted)


class Conversion(NamedTuple):
    """From one unit to another: ``value * factor + offset``."""

    factor: float
    offset: float

    def of(self, values: NDArray[Any], dtype: np.dtype[Any]) -> NDArray[Any]:
        """Return converted values as an array of a type."""
        return (values * np.float64(self.factor) + self.offset).astype(dtype, copy=False)


def readable(unit: str) -> str:
    """Return a unit as pint reads it: `kNm`, as many write it, is no unit to it."""
    return _RUN_TOGETHER.sub(r"\1 m", unit)


@lru_cache(maxsize=256)
def conversion(source: str, target: str) -> Conversion:
    """Return how values of one unit become values of another.

    Raises
    ------
    DataError
        If a unit is not known, or the one cannot be converted to the other.
    """
    if source == target:
        return Conversion(1.0, 0.0)
    problem = _problem_of_units()
    try:
        with _one_at_a_time():
            registry = _registry()
            zero, one = (registry.Quantity(x, source).to(target).magnitude for x in (0.0, 1.0))
    except problem as error:
        raise DataError(f"no way from unit {source!r} to {target!r}: {error}") from None
    return Conversion(float(one - zero), float(zero))


@lru_cache(maxsize=1024)
def quantity_of(unit: str) -> str:
    """Return the quantity code under which the files hold values of a unit.

    Raises
    ------
    DataError
        If the unit is not known, or the files have no quantity of its dimension.
    """
    codes = {spelled(code): code for code in reversed(CODES)}
    if unit in codes:
        return codes[unit]
    base, names = _in_base_units(unit)
    found = [code for code in CODES if _in_base_units(spelled(code))[0] == base]
    if not found:
        raise DataError(f"the files have no quantity for unit {unit!r}")
    return max(found, key=lambda code: len(names & (_IN_USE.get(code) or _names_in(code))))


def _names_in(code: str) -> frozenset[str]:
    return _in_base_units(spelled(code))[1]


@lru_cache(maxsize=1024)
def _in_base_units(unit: str) -> tuple[Any, frozenset[str]]:
    """Return a unit in base units, where an angle stays an angle, and the names in it."""
    try:
        with _one_at_a_time():
            registry = _registry()
            parsed = registry.Unit(unit)
            base = registry.get_base_units(parsed)[1]
            names = {registry.parse_unit_name(name)[0][1] for name in dict(parsed._units)}
    except _problem_of_units() as error:
        raise DataError(f"unit {unit!r} is not known: {error}") from None
    return base, frozenset(names)


# A registry of pint fills itself when it is first used, and is not safe for threads meanwhile.
_locks = [threading.RLock()]


def _new_lock() -> None:
    """Forget a lock that a thread of the parent process held."""
    _locks[0] = threading.RLock()


os.register_at_fork(after_in_child=_new_lock)


def _one_at_a_time() -> threading.RLock:
    return _locks[0]


def _registry() -> Any:  # noqa: ANN401 - pint makes the classes of a registry for it
    return require("pint", "units").get_application_registry()


def _problem_of_units() -> tuple[type[Exception], ...]:
    # Text that is no expression fails in pint's parser, in several ways.
    pint: Any = require("pint", "units")
    parsers = (ValueError, TypeError, AttributeError, AssertionError, SyntaxError)
    return (pint.errors.PintError, *parsers)
