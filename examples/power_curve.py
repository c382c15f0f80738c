"""Draws the power curve of a campaign beside the steady one.

usage: python power_curve.py [DIRECTORY] [--output power_curve.png]
"""

from __future__ import annotations

import sys
from pathlib import Path

import tabulon as tb
from campaign_table import wind_speed
from small_campaign import campaign_directory


def draw(runs: tb.Campaign, output: Path) -> None:
    """Save the picture: mean and spread of each run, over the steady curve."""
    import matplotlib

    matplotlib.use("Agg")
    import matplotlib.pyplot as plt

    table = runs.stats("Electrical power")
    speeds = {run.path: speed for run, speed in runs.map(wind_speed).items()}
    megawatt = 1e-6
    steady = tb.open_run(tb.sample("power_curve"))["Electrical power"].to("MW")
    figure, ax = plt.subplots(figsize=(7, 4), layout="constrained")
    ax.plot(steady.coords["wind_speed"], steady.values, color="0.55", label="steady")
    ax.errorbar(
        table.path.map(speeds),
        table["mean"] * megawatt,
        yerr=table["std"] * megawatt,
        fmt="o",
        color="#0b6e6e",
        capsize=3,
        label="runs: mean and standard deviation",
    )
    ax.set(xlabel="Wind speed, m/s", ylabel="Electrical power, MW", xlim=(3, 25), ylim=(0, None))
    ax.spines[["top", "right"]].set_visible(False)
    ax.legend(frameon=False, loc="lower right")
    figure.savefig(output, dpi=150)
    plt.close(figure)


def main() -> int:
    """Draw, and tell the binned figures."""
    directory, arguments = campaign_directory(__doc__)
    runs = tb.open_campaign(directory).filter(ok=True)
    output = arguments.output or directory / "power_curve.png"
    draw(runs, output)
    table = runs.stats("Electrical power", ["mean"])
    speeds = {run.path: speed for run, speed in runs.map(wind_speed).items()}
    for speed, mean in table.groupby(table.path.map(speeds))["mean"].mean().items():
        print(f"{speed:5.1f} m/s  {mean / 1e6:6.3f} MW")
    print(output)
    return 0


if __name__ == "__main__":
    sys.exit(main())
