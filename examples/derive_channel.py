"""Derives a channel from a run, writes it as a run of its own, reads that back, plots both.

The channel is the power in the shaft, generator torque times generator speed, of the bundled run::

    python derive_channel.py
    python derive_channel.py --directory build/derived --output build/derived.png
"""

from __future__ import annotations

import argparse
import sys
from pathlib import Path
from typing import TYPE_CHECKING

import numpy as np
from show_run import COLOURS, ExampleError, hide_frame
from tabulon import api

if TYPE_CHECKING:
    from numpy.typing import NDArray

HERE = Path(__file__).resolve().parent
RUN = "powprod_12ms"
SHAFT_POWER = "Shaft power"
LOSS = "Generator loss"


def write_derived(source: api.Run, directory: Path) -> None:
    """Write shaft power and generator loss of a run as a run named after it."""
    torque = source.get_variable_1d("Generator torque").get_data()
    speed = source.get_variable_1d("Generator speed").get_data()
    electrical = source.get_variable_1d("Electrical power")
    shaft_power = torque * speed

    time = electrical.get_independent_variable().get_values_as_number()
    axis = api.IndependentVariable("Time", "s", float(time[0]), float(time[1] - time[0]))
    path = directory / f"{source.get_name()}_derived.%01"
    group = api.output_group_1d(path, "Shaft", axis, group_config="TRANSIENT")
    group.add_variable_with_data(SHAFT_POWER, "W", shaft_power)
    group.add_variable_with_data(LOSS, "W", shaft_power - electrical.get_data())
    api.write_output(group)


def read_derived(directory: Path, name: str) -> api.Run:
    """Return the run that was written, as any tool that reads the format finds it."""
    run = api.get_run(directory, f"{name}_derived")
    print(f"{run.get_name()}: {run.get_calculation_descriptive_name()}")
    for channel in (SHAFT_POWER, LOSS):
        variable = run.get_variable_1d(channel)
        mean = variable.get_data().mean(dtype=np.float64)
        print(f"  {channel:<16} {mean / 1e6:8.3f} MW mean, {len(variable.get_data())} points")
    return run


def plot(source: api.Run, derived: api.Run, output: Path) -> None:
    """Save both powers over time, and the loss between them."""
    import matplotlib

    matplotlib.use("Agg")
    from matplotlib import pyplot

    def megawatts(run: api.Run, channel: str) -> NDArray[np.float64]:
        return np.asarray(run.get_variable_1d(channel).get_data(), dtype=np.float64) / 1e6

    axis = derived.get_variable_1d(SHAFT_POWER).get_independent_variable()
    time = axis.get_values_as_number()
    figure, (above, below) = pyplot.subplots(
        2, 1, figsize=(10.0, 5.5), sharex=True, height_ratios=(2, 1), layout="constrained"
    )
    above.plot(time, megawatts(derived, SHAFT_POWER), color=COLOURS[1], linewidth=1.1)
    above.plot(time, megawatts(source, "Electrical power"), color=COLOURS[0], linewidth=1.1)
    above.legend([f"{SHAFT_POWER} (derived)", "Electrical power (read)"], frameon=False, ncols=2)
    above.set_ylabel("[MW]")
    below.plot(time, megawatts(derived, LOSS), color=COLOURS[1], linewidth=1.1)
    below.set_ylabel(f"{LOSS}\n[MW]")
    below.set_xlabel(f"{axis.get_name()} [{axis.get_siunit()}]")
    for axes in (above, below):
        axes.grid(color="0.9", linewidth=0.8)
        axes.tick_params(length=0)
        axes.margins(x=0.0, y=0.12)
        hide_frame(axes)
    figure.suptitle(f"{source.get_name()} and {derived.get_name()}", x=0.01, ha="left")
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
        source = api.get_run(HERE / "runs", RUN)
        write_derived(source, arguments.directory)
        plot(source, read_derived(arguments.directory, RUN), arguments.output)
    except (ExampleError, RuntimeError, OSError) as error:
        print(f"derive_channel: {error}", file=sys.stderr)
        return 1
    print(f"\nPlot: {arguments.output.resolve()}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
