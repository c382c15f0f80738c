"""Prints the ultimate loads of a campaign, and what the turbine did at that moment.

usage: python ultimate_loads.py [DIRECTORY]
"""

from __future__ import annotations

import sys

import tabulon as tb
from small_campaign import campaign_directory

LOADS = ["Tower fore-aft bending moment", "Blade 1 out-of-plane bending moment", "Rotor thrust"]
BESIDE = ["Hub wind speed", "Pitch angle", "Rotor speed"]


def main() -> int:
    """Print the table."""
    directory, _ = campaign_directory(__doc__)
    runs = tb.open_campaign(directory).filter(ok=True)
    table = runs.extremes(LOADS, also=BESIDE)
    units = table.attrs["units"]
    shown = table.drop(columns="path").rename(columns={k: f"{k}, {units[k]}" for k in BESIDE})
    print(shown.to_string(index=False, float_format="{:.4g}".format))
    return 0


if __name__ == "__main__":
    sys.exit(main())
