"""What was found through a run keeps the run alive."""

from __future__ import annotations

from typing import Any, Protocol, TypeVar

FoundT = TypeVar("FoundT", bound="FoundInRun")


class KeptRun(Protocol):
    """What is asked of a run that is kept: another variable of a group."""

    def get_variable_1d_from_specific_output_group(
        self, variable_name: str, group_name: str
    ) -> Any:  # noqa: ANN401 - the class depends on the type of the values
        """Return a variable of one group over one independent variable."""

    def get_variable_2d_from_specific_output_group(
        self, variable_name: str, group_name: str
    ) -> Any:  # noqa: ANN401 - the class depends on the type of the values
        """Return a variable of one group over two independent variables."""


class FoundInRun:
    """What was found through a run, and keeps it alive."""

    _run: KeptRun | None = None

    def _found_in(self: FoundT, run: KeptRun | None) -> FoundT:
        self._run = run
        return self
