"""Which runs of a campaign are meant: by how they ended, what they calculate, or any question."""

from __future__ import annotations

from collections.abc import Callable, Iterable
from typing import NamedTuple, TypeVar

from tabulon._errors import DataError, TabulonError
from tabulon._run import Run
from tabulon._vocabulary import CalculationType, CompletionState

__all__ = ["Choice", "Kind", "kind_of", "several"]

Kind = tuple[CompletionState, CalculationType]
Word = TypeVar("Word", CompletionState, CalculationType)


def kind_of(run: Run) -> Kind:
    """Return how a run ended, and what it calculated."""
    return run.state, run.calculation


def several(wanted: Word | Iterable[Word] | None, word: type[Word]) -> frozenset[Word] | None:
    """Return words, of which one may be given alone.

    Raises
    ------
    DataError
        If one is none of a run: a text, or a filter of searches.
    """
    if wanted is None:
        return None
    given: list[object] = [wanted] if isinstance(wanted, int | str) else list(wanted)
    known = [one for one in word if one >= -1]
    for one in given:
        if one not in known:
            raise DataError(f"no run is of {one!r}: {word.__name__} has the words for runs")
    return frozenset(one for one in known if one in given)


class Choice(NamedTuple):
    """What is asked of a run; None asks nothing."""

    ok: bool | None = None
    states: frozenset[CompletionState] | None = None
    calculations: frozenset[CalculationType] | None = None
    where: Callable[[Run], object] | None = None

    def of_kind(self, kind: Kind) -> bool:
        """Return whether a run of this kind may pass."""
        state, calculation = kind
        return (
            (self.ok is None or (state == CompletionState.CompletedNormally) == self.ok)
            and (self.states is None or state in self.states)
            and (self.calculations is None or calculation in self.calculations)
        )

    def passes(self, run: Run) -> bool:
        """Return whether a run passes. One that cannot be read is of no kind."""
        try:
            if self.ok is not None and run.ok != self.ok:
                return False
            if self.states is not None and run.state not in self.states:
                return False
            if self.calculations is not None and run.calculation not in self.calculations:
                return False
        except TabulonError:
            return False
        return self.where is None or bool(self.where(run))
