"""What is shown of a campaign: how many runs, how they ended, which kinds, the first and last."""

from __future__ import annotations

from collections import Counter
from collections.abc import Sequence

from tabulon._choice import Kind
from tabulon._run import Run
from tabulon._shapes import Description, Section

__all__ = ["described"]

_SHOWN = 10  # runs at either end


def described(runs: Sequence[Run], kinds: Sequence[Kind], unreadable: int) -> Description:
    """Return what is shown of runs of these kinds, and of directories that cannot be read."""
    facts = [
        ("Runs", f"{len(runs):,}"),
        ("Ended", _counted(Counter(state for state, _ in kinds))),
        ("Calculations", _counted(Counter(kind for _, kind in kinds))),
    ]
    if unreadable:
        facts.append(("Unreadable", f"{unreadable:,} directories"))
    heads = ("Run", "Ended", "Calculation", "Directory")
    sections = []
    for title, places in _ends(len(runs)):
        lines = tuple(
            (runs[p].name, str(kinds[p][0]), str(kinds[p][1]), runs[p].directory) for p in places
        )
        sections.append(Section(title, "", heads, lines, True))
    return Description("Campaign", f"{len(runs):,} runs", tuple(facts), tuple(sections))


def _counted(counts: Counter[object]) -> str:
    return ", ".join(f"{count:,} {name}" for name, count in counts.most_common()) or "none"


def _ends(count: int) -> list[tuple[str, range]]:
    if count <= 2 * _SHOWN:
        return [("Runs", range(count))] if count else []
    return [("First", range(_SHOWN)), ("Last", range(count - _SHOWN, count))]
