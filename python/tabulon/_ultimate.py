"""The largest and smallest values over many runs, of which only a few are read."""

from __future__ import annotations

from collections.abc import Callable, Iterator, Sequence
from typing import TYPE_CHECKING, Any, NamedTuple

import numpy as np
from numpy.typing import NDArray

from tabulon._errors import DataError
from tabulon._figures import AtExtreme, Bounds, furthest
from tabulon._parallel import Outcome
from tabulon._run import VariableName

if TYPE_CHECKING:
    from tabulon._catalogue_rows import Columns

__all__ = ["Settled", "Ultimate", "ultimates"]


class Settled(NamedTuple):
    """An extreme over all runs, as the data of its run has it."""

    one: Ultimate
    run: int
    found: AtExtreme


class Ultimate:
    """An extreme that is sought: of a variable, at a secondary value, over all runs."""

    def __init__(
        self, key: VariableName, place: int, secondary: object, unit: str, largest: bool
    ) -> None:
        self.key = key
        self.place = place
        self.secondary = secondary
        self.unit = unit
        self.largest = largest
        self._runs: list[NDArray[np.int64]] = []
        self._bounds: list[NDArray[np.float64]] = []

    @property
    def kind(self) -> str:
        """Which extreme it is."""
        return "max" if self.largest else "min"

    def add(
        self, runs: Sequence[int] | NDArray[np.int32], bounds: Sequence[float] | NDArray[np.float64]
    ) -> None:
        """Take runs, and beyond what none of their values lies. NaN: a run without a value."""
        signed = np.asarray(bounds, np.float64) * (1.0 if self.largest else -1.0)
        has = ~np.isnan(signed)
        self._runs.append(np.asarray(runs, np.int64)[has])
        self._bounds.append(signed[has])

    def settled(
        self, read: Callable[[int, Ultimate], AtExtreme]
    ) -> tuple[Settled | None, list[tuple[int, Exception]]]:
        """Return the extreme, and the runs that could not be read.

        Runs are read in the order of their bounds, until no other can hold more. Of equal values
        that of the first run counts.

        Parameters
        ----------
        read
            Gives the extreme of a run.
        """
        best: Settled | None = None
        failed: list[tuple[int, Exception]] = []
        for run, bound in self._in_order():
            if best is not None and not self._may_win(run, bound, best):
                if bound < self._signed(best.found.value):
                    break
                continue
            try:
                found = Settled(self, run, read(run, self))
            except Exception as error:
                failed.append((run, error))
                continue
            if best is None or self._wins(found, best):
                best = found
        return best, failed

    def _in_order(self) -> Iterator[tuple[int, float]]:
        """Give runs with their bounds, the furthest first, and of equal ones the first run."""
        runs, bounds = np.concatenate(self._runs), np.concatenate(self._bounds)
        for at in np.lexsort((runs, -bounds)):
            yield int(runs[at]), float(bounds[at])

    def _signed(self, value: float) -> float:
        return value if self.largest else -value

    def _may_win(self, run: int, bound: float, best: Settled) -> bool:
        value = self._signed(best.found.value)
        return bound > value or (bound == value and run < best.run)

    def _wins(self, found: Settled, best: Settled) -> bool:
        mine, other = self._signed(found.found.value), self._signed(best.found.value)
        return mine > other or (mine == other and found.run < best.run)


def ultimates(
    keys: Sequence[VariableName], found: Sequence[Outcome], columns: Columns | None = None
) -> list[Ultimate]:
    """Return the extremes that are sought, in the order of the variables and secondary values.

    Parameters
    ----------
    keys
        The variables.
    found
        For each run, what ``bounds_of_run`` gave.
    columns
        Rows of runs of which `found` tells nothing: smallest and largest values of headers.
    """
    sought = _Sought(keys)
    if columns is not None:
        _add_columns(sought, columns)
    for run, outcome in enumerate(found):
        bounds: list[Bounds] = [] if outcome.failure is not None else outcome.value[0]
        for one in bounds:
            at = one.wanted, one.place, one.secondary
            sought.add(at, one.unit, [run], [one.lowest], [one.highest])
    return sought.in_order()


class _Sought:
    """Both extremes of each variable and secondary value."""

    def __init__(self, keys: Sequence[VariableName]) -> None:
        self._keys = keys
        self._pairs: dict[tuple[int, int, Any], tuple[Ultimate, Ultimate]] = {}

    def add(
        self,
        at: tuple[int, int, Any],
        unit: str,
        runs: Sequence[int] | NDArray[np.int32],
        lowest: Sequence[float] | NDArray[np.float64],
        highest: Sequence[float] | NDArray[np.float64],
    ) -> None:
        """Take runs with beyond what no value lies."""
        wanted, place, secondary = at
        key = self._keys[wanted]
        if at not in self._pairs:
            self._pairs[at] = (
                Ultimate(key, place, secondary, unit, largest=True),
                Ultimate(key, place, secondary, unit, largest=False),
            )
        high, low = self._pairs[at]
        if high.unit != unit:
            raise DataError(f"{key!r} is in {high.unit!r} in one run, and in {unit!r} in another")
        high.add(runs, highest)
        low.add(runs, lowest)

    def in_order(self) -> list[Ultimate]:
        """Return them by variable and place of the secondary value."""
        return [one for at in sorted(self._pairs, key=lambda at: at[:2]) for one in self._pairs[at]]


def _add_columns(sought: _Sought, columns: Columns) -> None:
    low, high = (one.copy() for one in columns.figures)
    for dtype in set(columns.dtype):
        rows = np.flatnonzero(columns.dtype == dtype)
        low[rows] = furthest(low[rows], dtype, -np.inf)
        high[rows] = furthest(high[rows], dtype, np.inf)
    same: dict[tuple[Any, ...], list[int]] = {}
    heads = zip(
        columns.wanted.tolist(),
        columns.secondary_places.tolist(),
        columns.secondary,
        columns.unit,
        strict=True,
    )
    for row, head in enumerate(heads):
        same.setdefault(head, []).append(row)
    for (wanted, place, secondary, unit), at in same.items():
        where = wanted, place, secondary
        sought.add(where, unit, columns.places[at], low[at], high[at])
