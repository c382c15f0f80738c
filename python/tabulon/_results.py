"""What became of the runs of a campaign."""

from __future__ import annotations

from collections.abc import Iterator, Mapping, Sequence
from typing import TYPE_CHECKING, Any

from tabulon._errors import NameNotFoundError
from tabulon._optional import require
from tabulon._parallel import Failure, Outcome
from tabulon._public import public
from tabulon._run import Run

if TYPE_CHECKING:
    import pandas as pd

__all__ = ["Results", "failure_record"]


def failure_record(run: Run, failure: Failure) -> dict[str, str]:
    """Return a failure as plain text: run, error, text and path."""
    return {
        "run": run.name,
        "error": failure.error,
        "text": failure.text,
        "path": failure.path or run.path,
    }


@public
class Results(Mapping[Run, Any]):
    """The values that a function gave of the runs of a campaign, by run, in the campaign's order.

    Runs that failed have no value; `failures` tells of them.

    Examples
    --------
    >>> import tabulon as tb
    >>> def count_groups(run):
    ...     return len(run.groups)
    >>> results = tb.open_campaign(tb.sample("power_curve").parent).map(count_groups)
    >>> {run.name: count for run, count in results.items()}
    {'idling_live': 2, 'power_curve': 2}
    >>> results.failures.empty
    True
    """

    __slots__ = ("_failures", "_values")

    def __init__(self, runs: Sequence[Run], found: Sequence[Outcome]) -> None:
        self._values: dict[Run, Any] = {}
        self._failures: dict[Run, Failure] = {}
        for run, outcome in zip(runs, found, strict=True):
            if outcome.failure is None:
                self._values[run] = outcome.value
            else:
                self._failures[run] = outcome.failure

    @property
    def failures(self) -> pd.DataFrame:
        """The runs that failed.

        Returns
        -------
        pandas.DataFrame
            Columns `run` (name), `error` (class), `text` and `path`.
        """
        pandas = require("pandas", "pandas")
        records = [failure_record(run, failure) for run, failure in self._failures.items()]
        return pandas.DataFrame(records, columns=["run", "error", "text", "path"])  # type: ignore[no-any-return]

    def __getitem__(self, run: Run) -> Any:  # noqa: ANN401 - whatever the function gave
        if run in self._values:
            return self._values[run]
        failure = self._failures.get(run)
        told = f" failed: {failure.error}: {failure.text}" if failure else " is not among these"
        raise NameNotFoundError(f"run {getattr(run, 'name', run)!r}{told}")

    def __iter__(self) -> Iterator[Run]:
        return iter(self._values)

    def __len__(self) -> int:
        return len(self._values)

    def __repr__(self) -> str:
        failed = f", {len(self._failures):,} failed" if self._failures else ""
        return f"<tabulon.Results of {len(self._values):,} runs{failed}>"
