"""Prints damage-equivalent loads of each run: rainflow cycles, weighted by the slope of a material.

The load of constant range that does the same damage at one cycle a second::

    python damage_equivalent_loads.py [DIRECTORY]
"""

from __future__ import annotations

import sys

import rainflow
import tabulon as tb
from small_campaign import campaign_directory

#: Variable, secondary value, slope of the fatigue curve: welded steel and glass fibre.
LOADS = (
    ("Tower fore-aft bending moment", "Tower base", 4.0),
    ("Blade 1 out-of-plane bending moment", 0.0, 10.0),
)


def equivalent_load(values: object, slope: float, cycles: float) -> float:
    """Return the range that does the damage of a series in so many cycles."""
    damage = sum(count * size**slope for size, count in rainflow.count_cycles(values))
    return float((damage / cycles) ** (1.0 / slope))


def loads_of(run: tb.Run) -> dict[str, float]:
    """Return the equivalent loads of a run in kN m; it stands here so that processes find it."""
    found = {}
    for name, secondary, slope in LOADS:
        variable = run[name].to("kN m")
        time, place = variable.coords["time"], variable.dims[1]
        series = variable.sel(**{place: secondary})
        found[f"{name}, m = {slope:g}"] = equivalent_load(series, slope, time[-1] - time[0])
    return found


def main() -> int:
    """Print a line for each run."""
    directory, _ = campaign_directory(__doc__)
    runs = tb.open_campaign(directory).filter(ok=True)
    results = runs.map(loads_of)
    for run, loads in results.items():
        told = "  ".join(f"{name}: {load:10.1f} kN m" for name, load in loads.items())
        print(f"{run.name:<20}  {told}")
    for failure in results.failures.itertuples():
        print(f"left out: {failure.run}: {failure.text}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
