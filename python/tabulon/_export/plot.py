"""Variables as pictures."""

from __future__ import annotations

from typing import TYPE_CHECKING, Any

from tabulon._optional import require
from tabulon._shapes import Axis, ReadVariable

if TYPE_CHECKING:
    from matplotlib.axes import Axes

__all__ = ["plot"]


def plot(variable: ReadVariable, ax: Axes | None) -> Axes:
    """Plot a variable against its primary axis, a line for each secondary value."""
    pyplot: Any = require("matplotlib.pyplot", "plot")
    on: Any = pyplot.subplots(layout="constrained")[1] if ax is None else ax
    primary = variable.axes[0]
    values = variable.values
    if len(variable.axes) == 1:
        on.plot(primary.values, values, label=variable.name)
    else:
        secondary = variable.axes[1]
        for place, value in enumerate(secondary.values.tolist()):
            on.plot(primary.values, values[:, place], label=_label(secondary, value))
        on.legend(title=_titled(secondary.name, secondary.unit))
    on.set_xlabel(_titled(primary.name, primary.unit))
    on.set_ylabel(_titled(variable.name, variable.unit))
    return on  # type: ignore[no-any-return]


def _label(axis: Axis, value: object) -> str:
    return value if isinstance(value, str) else f"{value:g}"


def _titled(name: str, unit: str) -> str:
    return name if unit == "1" else f"{name} [{unit}]"
