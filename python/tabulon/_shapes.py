"""What exporters see of variables and axes."""

from __future__ import annotations

from typing import Any, NamedTuple, Protocol

import numpy as np
from numpy.typing import NDArray

from tabulon._public import public

__all__ = ["Axis", "Description", "Problem", "ReadVariable", "Section"]


@public
class Axis(NamedTuple):
    """What a variable is seen against.

    Examples
    --------
    >>> import tabulon as tb
    >>> axis = tb.open_run(tb.sample("power_curve"))["Electrical power"].axes[0]
    >>> axis.name, axis.dim, axis.unit
    ('Wind speed', 'wind_speed', 'm/s')
    """

    name: str
    """The name in the header."""
    dim: str
    """The name as a dimension: in lower case, with underscores."""
    unit: str
    """The unit of the values, as `pint` spells it."""
    values: NDArray[Any]
    """float64 or text, shape ``(values,)``, read-only."""


class ReadVariable(Protocol):
    """A variable that can be read."""

    @property
    def name(self) -> str:
        """The name in the header."""

    @property
    def unit(self) -> str:
        """The unit of its values."""

    @property
    def axes(self) -> tuple[Axis, ...]:
        """The axes of its values, the primary one first."""

    @property
    def dtype(self) -> np.dtype[Any]:
        """The type of its values."""

    @property
    def shape(self) -> tuple[int, ...]:
        """The lengths of its axes."""

    @property
    def values(self) -> NDArray[Any]:
        """All values."""

    def __dask_tokenize__(self) -> tuple[Any, ...]:
        """Return what tells it from others, also after its files changed."""

    def __getitem__(self, key: Any, /) -> Any:  # noqa: ANN401 - as of NumPy
        """Return some values."""


class Section(NamedTuple):
    """Rows of text under a title, which may be folded away."""

    title: str
    note: str
    heads: tuple[str, ...]
    lines: tuple[tuple[str, ...], ...]
    opened: bool


class Description(NamedTuple):
    """What is shown of a run, a group or a variable: plain text, not escaped."""

    kind: str
    title: str
    facts: tuple[tuple[str, str], ...]
    sections: tuple[Section, ...]


@public
class Problem(NamedTuple):
    """Something that is wrong with the files of a run, as ``Run.check`` tells it."""

    kind: str
    """In one or two words, such as "data short"; ``Run.check`` lists them."""
    path: str
    """The file."""
    text: str
    """What is wrong."""
