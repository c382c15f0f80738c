"""Derives a channel from a run, writes it as a run of its own, reads that back, plots both.

The channel is the power in the shaft, generator torque times generator speed, of the bundled run::

    python derive_channel.py
    python derive_channel.py --directory build/derived --output build/derived.png
"""

from __future__ import annotations

import argparse
import sys
from pathlib import Path

import tabulon as tb
from show_run import COLOURS, hide_frame

HERE = Path(__file__).resolve().parent
SHAFT_POWER = "Shaft power"
LOSS = "Generator loss"


def write_derived(source: tb.Run, directory: Path) -> tb.Group:
    """Write shaft power and generator loss of a run as a run named after it."""
    frame = source.to_pandas(["Generator torque", "Generator speed", "Electrical power"])
    frame[SHAFT_POWER] = frame["Generator torque"] * frame["Generator speed"]
    frame[LOSS] = frame[SHAFT_POWER] - frame["Electrical power"]
    derived = tb.Run(directory / f"{source.name}_derived")
    return derived.write_group(
        "Shaft", frame[[SHAFT_POWER, LOSS]], units={SHAFT_POWER: "W", LOSS: "W"}, overwrite=True
    )


def tell(group: tb.Group) -> None:
    """Print what was written, as any tool that reads the format finds it."""
    print(f"{group.run.name}: {group.name}")
    for name, variable in group.items():
        print(f"  {name:<16} {variable.to('MW').mean():8.3f} MW mean, {len(variable)} points")


def plot(source: tb.Run, derived: tb.Group, output: Path) -> None:
    """Save both powers over time, and the loss between them."""
    import matplotlib

    matplotlib.use("Agg")
    from matplotlib import pyplot

    figure, (above, below) = pyplot.subplots(
        2, 1, figsize=(10.0, 5.5), sharex=True, height_ratios=(2, 1), layout="constrained"
    )
    derived[SHAFT_POWER].plot(above, unit="MW")
    source["Electrical power"].plot(above, unit="MW")
    derived[LOSS].plot(below, unit="MW")
    above.legend([f"{SHAFT_POWER} (derived)", "Electrical power (read)"], frameon=False, ncols=2)
    above.set(xlabel="", ylabel="[MW]")
    for line, colour in zip([*above.lines, *below.lines], (1, 0, 1), strict=True):
        line.set(color=COLOURS[colour], linewidth=1.1)
    for axes in (above, below):
        axes.grid(color="0.9", linewidth=0.8)
        axes.tick_params(length=0)
        axes.margins(x=0.0, y=0.12)
        hide_frame(axes)
    figure.suptitle(f"{source.name} and {derived.run.name}", x=0.01, ha="left")
    output.parent.mkdir(parents=True, exist_ok=True)
    figure.savefig(output, dpi=120)
    pyplot.close(figure)


def main() -> int:
    """Run the example; 1 if it failed."""
    parser = argparse.ArgumentParser(description="Derive a channel, write it, read it, plot it.")
    parser.add_argument("--directory", type=Path, default=Path("build/derived"))
    parser.add_argument("--output", type=Path, default=Path("build/derived.png"))
    arguments = parser.parse_args()
    try:
        source = tb.open_run(HERE / "runs" / "powprod_12ms")
        derived = write_derived(source, arguments.directory)
        tell(derived)
        plot(source, derived, arguments.output)
    except (tb.TabulonError, OSError) as error:
        print(f"derive_channel: {error}", file=sys.stderr)
        return 1
    print(f"\nPlot: {arguments.output.resolve()}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
