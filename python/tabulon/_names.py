"""Names as people type them: exact first, then in any case, and what a miss may have meant."""

from __future__ import annotations

from collections.abc import Iterable, Sequence

__all__ = ["Names", "did_you_mean", "quoted"]

# Looking for what was meant costs about 20 us a name.
_LOOKED_THROUGH = 20_000


class Names:
    """Where names stand in a list."""

    __slots__ = ("_any_case", "_exact")

    def __init__(self, names: Sequence[str]) -> None:
        self._exact: dict[str, list[int]] = {}
        self._any_case: dict[str, list[int]] | None = None
        for place, name in enumerate(names):
            self._exact.setdefault(name, []).append(place)

    def exact(self, name: str) -> Sequence[int]:
        """Return the places of a name that is spelled so."""
        return self._exact.get(name, ())

    def any_case(self, name: str) -> Sequence[int]:
        """Return the places of a name in any case."""
        if self._any_case is None:
            folded: dict[str, list[int]] = {}
            for spelled, places in self._exact.items():
                folded.setdefault(spelled.casefold(), []).extend(places)
            self._any_case = folded
        return self._any_case.get(name.casefold(), ())

    def places(self, name: str) -> Sequence[int]:
        """Return the places of a name as it is spelled; if there is none, in any case."""
        return self.exact(name) or self.any_case(name)


def did_you_mean(name: str, known: Iterable[str]) -> str:
    """Return the end of a message on a name that is not known, empty if none is like it."""
    from difflib import get_close_matches

    folded: dict[str, str] = {}
    for spelled in known:
        folded.setdefault(spelled.casefold(), spelled)
        if len(folded) == _LOOKED_THROUGH:
            break
    wanted = name.casefold()
    close = get_close_matches(wanted, folded, n=1, cutoff=0.6)
    if not close and wanted:
        close = [other for other in folded if wanted in other][:1]
    return f"; did you mean {folded[close[0]]!r}?" if close else ""


def quoted(names: Sequence[object], last: str = "and") -> str:
    """Return names in quotes, in a row: 'a', 'b' and 'c'."""
    texts = [repr(name) for name in names]
    if len(texts) < 2:
        return "".join(texts)
    return f"{', '.join(texts[:-1])} {last} {texts[-1]}"
