"""A first look at a run: what is in it, some figures, a table, and a picture.

::

    python first_look.py
    python first_look.py results/powprod_12ms --variable "Pitch angle" --unit deg
"""

from __future__ import annotations

import argparse
import sys
from pathlib import Path

import tabulon as tb

RUN = Path(__file__).resolve().parent / "runs" / "powprod_12ms"


def tell(run: tb.Run, variable: tb.Variable) -> None:
    """Print the run, and the figures of a variable."""
    print(run)
    print(f"\n{variable.name} of {variable.group.name} over {' and '.join(variable.dims)}")
    for figure in ("min", "mean", "max", "std"):
        print(f"  {figure:<5}{getattr(variable, figure)():10.4g} {variable.unit}")


def tabulate(run: tb.Run, variable: tb.Variable) -> None:
    """Print the first rows of a table of a variable and the electrical power."""
    frame = run.to_pandas([variable, "Electrical power"], units={"Electrical power": "MW"})
    print(f"\n{frame.head(4)}\n\nunits: {frame.attrs['units']}")


def plot(variable: tb.Variable, output: Path) -> None:
    """Save a picture of a variable."""
    import matplotlib

    matplotlib.use("Agg")
    from matplotlib import pyplot

    figure, ax = pyplot.subplots(layout="constrained")
    variable.plot(ax)
    ax.set_title(variable.group.run.name, loc="left")
    ax.grid(color="0.9")
    output.parent.mkdir(parents=True, exist_ok=True)
    figure.savefig(output, dpi=120)


def main() -> int:
    """Run the example; 1 if it failed."""
    parser = argparse.ArgumentParser(description="Look at a run.")
    parser.add_argument("run", nargs="?", type=Path, default=RUN)
    parser.add_argument("--variable", default="Rotor speed")
    parser.add_argument("--unit", default="rpm")
    parser.add_argument("--output", type=Path, default=Path("build/first_look.png"))
    arguments = parser.parse_args()
    try:
        run = tb.open_run(arguments.run)
        variable = run[arguments.variable].to(arguments.unit)
        tell(run, variable)
        tabulate(run, variable)
        plot(variable, arguments.output)
    except (tb.TabulonError, OSError) as error:
        print(f"first_look: {error}", file=sys.stderr)
        return 1
    print(f"\nPlot: {arguments.output.resolve()}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
