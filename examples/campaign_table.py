"""Prints a table of figures over all runs of a campaign, by wind speed.

usage: python campaign_table.py [DIRECTORY]
"""

from __future__ import annotations

import sys

import tabulon as tb
from small_campaign import campaign_directory

VARIABLES: list[str | tuple[str | int, str]] = [
    "Electrical power",
    "Rotor speed",
    ("Blade 1 loads", "Blade 1 in-plane bending moment"),
]


def wind_speed(run: tb.Run) -> float:
    """Return what the simulation was asked for."""
    return float(run.parameters["Mean wind speed, m/s"])


def main() -> int:
    """Print the table."""
    directory, _ = campaign_directory(__doc__)
    runs = tb.open_campaign(directory, name="dlc12*").filter(ok=True)
    table = runs.stats(VARIABLES)
    speeds = {run.path: speed for run, speed in runs.map(wind_speed).items()}
    table["wind speed"] = table.path.map(speeds)
    where = ["variable", "secondary", "unit", "wind speed"]
    figures = {"min": "min", "mean": "mean", "max": "max", "std": "mean"}
    by_speed = table.groupby(where, dropna=False, sort=False).agg(figures)
    print(f"{len(runs)} runs")
    print(by_speed.to_string(float_format="{:.4g}".format))
    for failure in table.attrs["failures"]:
        print(f"left out: {failure['run']}: {failure['text']}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
