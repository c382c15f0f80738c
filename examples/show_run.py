"""Shows what a run holds: its groups and variables, one variable's statistics, a plot.

Without arguments it shows the bundled run ``powprod_12ms``::

    python show_run.py
    python show_run.py runs power_curve --output power_curve.png
    python show_run.py runs powprod_12ms --variable "Tower fore-aft bending moment"
"""

from __future__ import annotations

import argparse
import sys
from collections.abc import Iterable, Sequence
from pathlib import Path
from typing import TYPE_CHECKING

import numpy as np
from numpy.typing import NDArray

try:
    from tabulon import api
except ImportError as error:
    sys.exit(
        f"show_run: the package 'tabulon' cannot be imported ({error});"
        " install it with 'pip install .' in the root of the project"
    )

if TYPE_CHECKING:
    from matplotlib.axes import Axes
    from matplotlib.figure import Figure

HERE = Path(__file__).resolve().parent

#: Panels of the overview from top to bottom; those that a run lacks are left out.
PANELS: tuple[tuple[str, ...], ...] = (
    ("Hub wind speed",),
    ("Rotor speed", "Pitch angle"),
    ("Electrical power",),
    ("Thrust coefficient",),
)

#: SI unit -> the unit that an engineer likes to read on a plot, and the factor to it.
PLOT_UNITS = {
    "rad/s": ("rpm", 30.0 / np.pi),
    "rad": ("deg", 180.0 / np.pi),
    "W": ("MW", 1e-6),
    "J": ("MWh", 1.0 / 3.6e9),
    "N": ("kN", 1e-3),
    "N/m": ("kN/m", 1e-3),
    "Nm": ("MNm", 1e-6),
}

COLOURS = ("#1f4e79", "#c8553d")
Array = NDArray[np.float64]


class ExampleError(Exception):
    """A failure that is told to the user in one line."""


def readable(unit: str) -> str:
    """Return a unit that can be printed: a stray Latin-1 byte, such as of m/s², is decoded."""
    try:
        unit.encode("utf-8")
    except UnicodeEncodeError:
        return unit.encode("utf-8", "surrogateescape").decode("latin-1")
    return unit


def with_unit(name: str, unit: str) -> str:
    """Return a name with its unit in brackets, if it has one."""
    return f"{name} [{readable(unit)}]" if unit and unit != "Unitless" else name


def describe_axis(axis: api.IndependentVariable) -> str:
    """Return name, unit and size of an independent variable."""
    return f"{with_unit(axis.get_name(), axis.get_siunit())} x {axis.get_number_of_values()}"


def type_names() -> dict[int, str]:
    """Return the data type names by enumerator."""
    names = ("Float32", "Float64", "Int32")
    return {int(getattr(api, f"VariableDataType_{name}")): name for name in names}


def print_groups(run: api.Run) -> None:
    """Print a table of the groups of a run and of their variables."""
    types = type_names()
    print(f"Run {run.get_name()}")
    for group in run.get_all_groups():
        variables = [group.get_variable(name) for name in group.get_variable_names()]
        axes = ", ".join(describe_axis(axis) for axis in group.get_independent_variables())
        word = types.get(variables[0].get_data_type(), "?") if variables else "empty"
        print(f"\n{group.get_number():>3}  {group.get_name()}  ({word}; {axes})")
        for variable in variables:
            unit, points = readable(variable.get_siunit()), variable.get_data_point_count()
            print(f"     {variable.get_name():<42} {unit:<10} {points:>6} points")


def find_group(run: api.Run, variable: str) -> api.Group:
    """Return the first group that holds a variable, whatever the case of its name."""
    wanted = variable.casefold()
    for group in run.get_all_groups():
        if wanted in (name.casefold() for name in group.get_variable_names()):
            return group
    raise ExampleError(f"run '{run.get_name()}' has no variable '{variable}'")


def is_two_axis(group: api.Group) -> bool:
    """Return whether a group has a secondary axis."""
    return len(group.get_independent_variables()) == 2


def labels_of(axis: api.IndependentVariable) -> list[str]:
    """Return the labels of a secondary axis, numbers in short form."""
    return [_short(text) for text in axis.get_values_as_string()]


def _short(text: str) -> str:
    try:
        return f"{float(text):g}"
    except ValueError:
        return text


def print_statistics(group: api.Group, name: str) -> None:
    """Print mean and extremes of a variable, for each secondary value if it has two axes."""
    unit = group.get_variable(name).get_siunit()
    print(f"\n{with_unit(name, unit)}\n{'':<24}{'mean':>14}{'minimum':>14}{'maximum':>14}")
    if not is_two_axis(group):
        variable = group.get_variable_1d(name)
        figures = (variable.get_mean(), variable.get_minimum(), variable.get_maximum())
        print(f"{'':<24}" + "".join(f"{figure:>14.6g}" for figure in figures))
        return
    secondary = group.get_independent_variables()[1]
    table = group.get_variable_2d(name)
    for index, label in enumerate(labels_of(secondary)):
        values = np.asarray(table.get_data_at_index(index), dtype=np.float64)
        figures = (values.mean(), values.min(), values.max())
        print(f"{label:>24}" + "".join(f"{figure:>14.6g}" for figure in figures))


def in_plot_unit(values: Iterable[float], unit: str) -> tuple[Array, str]:
    """Return values in the unit that they are plotted in, and that unit."""
    shown, factor = PLOT_UNITS.get(unit, (unit, 1.0))
    return np.asarray(values, dtype=np.float64) * factor, shown


def choose_panels(run: api.Run, chosen: str | None) -> list[tuple[api.Group, tuple[str, ...]]]:
    """Return group and variables of each panel: the overview, and what was asked for."""
    holders: dict[str, api.Group] = {}
    for group in run.get_all_groups():
        if not is_two_axis(group):
            for name in group.get_variable_names():
                holders.setdefault(name, group)
    panels = []
    for names in PANELS:
        present = tuple(name for name in names if name in holders)
        if present:
            panels.append((holders[present[0]], present))
    shown = {name for _, names in panels for name in names}
    if chosen in holders and chosen not in shown:
        panels.append((holders[chosen], (chosen,)))
    if not panels and holders:
        name, group = next(iter(holders.items()))
        panels.append((group, (name,)))
    return panels


def choose_map(run: api.Run, chosen: str | None) -> tuple[api.Group, str] | None:
    """Return group and variable of the heat map: a two-axis one, what was asked for if it can."""
    groups = [group for group in run.get_all_groups() if is_two_axis(group)]
    for group in groups:
        if chosen is not None and chosen in group.get_variable_names():
            return group, chosen
    if not groups:
        return None
    return groups[0], groups[0].get_variable_names()[0]


def hide_frame(axes: Axes) -> None:
    """Leave only the grid and the numbers of a panel."""
    for spine in axes.spines.values():
        spine.set_visible(False)


def draw_panel(axes: Axes, group: api.Group, names: Sequence[str]) -> None:
    """Draw one variable, or two with an axis on either side."""
    x = np.asarray(group.get_independent_variables()[0].get_values_as_number())
    for index, name in enumerate(names[:2]):
        side = axes if index == 0 else axes.twinx()
        variable = group.get_variable_1d(name)
        values, unit = in_plot_unit(variable.get_data(), variable.get_siunit())
        colour = COLOURS[index]
        side.plot(x, values, color=colour, linewidth=1.1)
        side.set_ylabel(with_unit(name, unit).replace(" [", "\n["), color=colour)
        side.tick_params(axis="y", colors=colour, length=0)
        side.margins(x=0.0, y=0.12)
        hide_frame(side)
    axes.grid(color="0.9", linewidth=0.8)
    axes.set_axisbelow(True)


def refined(y: Array, values: Array, count: int = 120) -> tuple[Array, Array]:
    """Return values interpolated linearly between their rows, so that no bands show."""
    fine = np.linspace(y[0], y[-1], count)
    below = np.clip(np.searchsorted(y, fine, side="right") - 1, 0, max(len(y) - 2, 0))
    above = np.minimum(below + 1, len(y) - 1)
    width = np.where(above > below, y[above] - y[below], 1.0)
    weight = ((fine - y[below]) / width)[:, None]
    return fine, (1.0 - weight) * values[below] + weight * values[above]


def draw_map(figure: Figure, axes: Axes, bar: Axes, group: api.Group, name: str) -> None:
    """Draw a two-axis variable in colour: primary axis across, secondary axis up."""
    primary, secondary = group.get_independent_variables()
    variable = group.get_variable_2d(name)
    rows = [variable.get_data_at_index(i) for i in range(secondary.get_number_of_values())]
    stacked, unit = in_plot_unit(np.stack(rows).ravel(), variable.get_siunit())
    values: Array = stacked.reshape(len(rows), -1)
    labels = labels_of(secondary)
    numeric = all(label.replace(".", "", 1).isdigit() for label in labels)
    y: Array = np.arange(len(labels), dtype=np.float64)
    if numeric:
        y, values = refined(np.array([float(label) for label in labels]), values)
    x = np.asarray(primary.get_values_as_number())
    reach = float(np.abs(values).max())
    signed = float(values.min()) < -0.25 * reach
    mesh = axes.pcolormesh(
        x,
        y,
        values,
        shading="nearest",
        cmap="RdBu_r" if signed else "viridis",
        vmin=-reach if signed else None,
        vmax=reach if signed else None,
        rasterized=True,
    )
    if not numeric:
        axes.set_yticks(y, labels)
    axes.set_ylabel(with_unit(secondary.get_name(), secondary.get_siunit()).replace(" [", "\n["))
    axes.set_title(name, loc="left", fontsize="medium")
    axes.tick_params(length=0)
    hide_frame(axes)
    axes.set_ylim(*((y[0], y[-1]) if numeric else (-0.5, len(labels) - 0.5)))
    figure.colorbar(mesh, cax=bar, label=unit)
    hide_frame(bar)


def plot(run: api.Run, chosen: str | None, output: Path) -> None:
    """Save the overview of a run as a picture."""
    try:
        import matplotlib
    except ImportError as error:
        raise ExampleError("the plot needs matplotlib: 'pip install matplotlib'") from error
    matplotlib.use("Agg")
    from matplotlib import pyplot

    panels, mapped = choose_panels(run, chosen), choose_map(run, chosen)
    heights = [1.0] * len(panels) + ([1.35] if mapped else [])
    figure = pyplot.figure(figsize=(10.0, 1.2 + 2.0 * sum(heights)))
    figure.set_layout_engine("constrained", w_pad=0.12, h_pad=0.08)
    grid = figure.add_gridspec(len(heights), 2, height_ratios=heights, width_ratios=(60, 1))
    first: Axes | None = None
    for row, (group, names) in enumerate(panels):
        axes = figure.add_subplot(grid[row, 0], sharex=first)
        first = first or axes
        draw_panel(axes, group, names)
        axes.tick_params(axis="x", labelbottom=False, length=0)
    if mapped:
        axes = figure.add_subplot(grid[-1, 0], sharex=first)
        draw_map(figure, axes, figure.add_subplot(grid[-1, 1]), *mapped)
    primary = (mapped or panels[0])[0].get_independent_variables()[0]
    axes.tick_params(axis="x", labelbottom=True)
    axes.set_xlabel(with_unit(primary.get_name(), primary.get_siunit()))
    figure.align_ylabels()
    figure.suptitle(run.get_name(), x=0.01, ha="left", fontweight="bold")
    output.parent.mkdir(parents=True, exist_ok=True)
    figure.savefig(output, dpi=120)
    pyplot.close(figure)


def show(arguments: argparse.Namespace) -> None:
    """Print the tables and save the plot."""
    run = api.get_run(str(arguments.directory), arguments.run)
    print_groups(run)
    wanted = arguments.variable or "Electrical power"
    group = find_group(run, wanted)
    name = next(n for n in group.get_variable_names() if n.casefold() == wanted.casefold())
    print_statistics(group, name)
    output = arguments.output or Path("build") / f"{run.get_name()}.png"
    plot(run, name if arguments.variable else None, output)
    print(f"\nPlot: {output.resolve()}")


def main() -> int:
    """Run the example; 1 if it failed."""
    parser = argparse.ArgumentParser(description="Show the groups, statistics and plot of a run.")
    parser.add_argument("directory", nargs="?", type=Path, default=HERE / "runs")
    parser.add_argument("run", nargs="?", default="powprod_12ms", help="name of the run")
    parser.add_argument("--variable", help="variable to tell the statistics of, and to plot")
    parser.add_argument("--output", type=Path, help="picture to write, else build/<run>.png")
    try:
        show(parser.parse_args())
    except (ExampleError, RuntimeError, OSError) as error:
        print(f"show_run: {error}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
