"""The largest and smallest values over many runs, of which only a few are read."""

from __future__ import annotations

import math
from collections.abc import Callable, Sequence
from typing import Any, NamedTuple

from tabulon._errors import DataError
from tabulon._figures import Bounds
from tabulon._parallel import Outcome
from tabulon._run import VariableName

__all__ = ["Settled", "Ultimate", "ultimates"]


class Settled(NamedTuple):
    """An extreme over all runs, as the data of its run has it."""

    one: Ultimate
    run: int
    value: float
    axis_value: Any
    others: list[Any]


class Candidate(NamedTuple):
    """A run that may hold an extreme: no value of it is beyond the bound."""

    run: int
    bound: float


class Ultimate:
    """An extreme that is sought: of a variable, at a secondary value, over all runs."""

    def __init__(self, key: VariableName, first: Bounds, largest: bool) -> None:
        self.key = key
        self.place = first.place
        self.secondary = first.secondary
        self.unit = first.unit
        self.largest = largest
        self._candidates: list[Candidate] = []

    @property
    def kind(self) -> str:
        """Which extreme it is."""
        return "max" if self.largest else "min"

    def add(self, run: int, bounds: tuple[float, float]) -> None:
        """Take between what the extreme of a run lies. One without finite values has none."""
        bound = bounds[1] if self.largest else -bounds[0]
        if not math.isnan(bound):
            self._candidates.append(Candidate(run, bound))

    def settled(
        self, read: Callable[[int, Ultimate], tuple[float, Any, list[Any]]]
    ) -> tuple[Settled | None, list[tuple[int, Exception]]]:
        """Return the extreme, and the runs that could not be read.

        Runs are read in the order of their bounds, until no other can hold more. Of equal values
        that of the first run counts.

        Parameters
        ----------
        read
            Gives the extreme of a run: value, value of the axis, values of other variables.
        """
        best: Settled | None = None
        failed: list[tuple[int, Exception]] = []
        for run, bound in sorted(self._candidates, key=lambda one: (-one.bound, one.run)):
            if best is not None and not self._may_win(run, bound, best):
                if bound < self._signed(best.value):
                    break
                continue
            try:
                found = Settled(self, run, *read(run, self))
            except Exception as error:
                failed.append((run, error))
                continue
            if best is None or self._wins(found, best):
                best = found
        return best, failed

    def _signed(self, value: float) -> float:
        return value if self.largest else -value

    def _may_win(self, run: int, bound: float, best: Settled) -> bool:
        value = self._signed(best.value)
        return bound > value or (bound == value and run < best.run)

    def _wins(self, found: Settled, best: Settled) -> bool:
        mine, other = self._signed(found.value), self._signed(best.value)
        return mine > other or (mine == other and found.run < best.run)


def ultimates(keys: Sequence[VariableName], found: Sequence[Outcome]) -> list[Ultimate]:
    """Return the extremes that are sought, in the order of the variables and secondary values.

    Parameters
    ----------
    keys
        The variables.
    found
        For each run, what ``bounds_of_run`` gave.
    """
    sought: dict[tuple[int, int, Any], tuple[Ultimate, Ultimate]] = {}
    for run, outcome in enumerate(found):
        if outcome.failure is not None:
            continue
        bounds: list[Bounds] = outcome.value[0]
        for one in bounds:
            at = (one.wanted, one.place, one.secondary)
            if at not in sought:
                key = keys[one.wanted]
                sought[at] = Ultimate(key, one, largest=True), Ultimate(key, one, largest=False)
            highest, lowest = sought[at]
            if highest.unit != one.unit:
                raise DataError(
                    f"{keys[one.wanted]!r} is in {highest.unit!r} in one run, and in {one.unit!r}"
                    " in another"
                )
            highest.add(run, one.maximum)
            lowest.add(run, one.minimum)
    return [one for at in sorted(sought, key=lambda at: at[:2]) for one in sought[at]]
