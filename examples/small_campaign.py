"""Simulates a small campaign of power production: five wind speeds, two seeds each, a minute long.

The other scripts of a campaign ask for it when no directory is named::

    python small_campaign.py                  # writes build/campaign, about 10 s
    python small_campaign.py some/directory
"""

from __future__ import annotations

import argparse
import sys
from pathlib import Path

from make_sample_runs import blade_group, summary, tower_group
from run_files import Run
from turbine_model import (
    Controller,
    ControllerState,
    Rotor,
    Scenario,
    Turbine,
    WindClimate,
    operating_point,
    simulate,
)

DEFAULT = Path(__file__).resolve().parent.parent / "build" / "campaign"
WIND_SPEEDS = (6.0, 9.0, 12.0, 16.0, 20.0)
SEEDS = (1, 2)
DURATION = 60.0


def production(rotor: Rotor, wind_speed: float, seed: int) -> Run:
    """Return a minute of power production in turbulent wind."""
    turbine = rotor.turbine
    steady = operating_point(rotor, Controller(turbine, rotor), wind_speed)
    full_load = wind_speed > 11.5
    scenario = Scenario(
        climate=WindClimate(mean_speed=wind_speed, intensity=0.12, seed=100 * seed + 7),
        duration=DURATION,
        output_step=0.1,
        rotor_speed=steady.rotor_speed,
        pitch=steady.pitch,
        state=ControllerState.FULL_LOAD if full_load else ControllerState.PARTIAL_LOAD,
        lead_in=10.0,
    )
    history = simulate(rotor, scenario)
    parameters = (f"Mean wind speed, m/s: {wind_speed:g}", f"Random seed: {seed}")
    return Run(
        name=f"dlc12_{wind_speed:g}ms_seed{seed}",
        content="POWPROD",
        configuration="TRANSIENT",
        termination="Run completed.\n",
        message="No errors, no warnings.\n",
        verification="Input verified: no errors, no warnings.\n",
        groups=(
            summary(turbine, scenario, history, parameters, statistics=True),
            blade_group(2, turbine, scenario, history, stations=(0.0, 24.6), statistics=True),
            tower_group(3, turbine, scenario, history),
        ),
    )


def write_campaign(directory: Path) -> Path:
    """Simulate the runs that are missing and return the directory."""
    rotor: Rotor | None = None
    for wind_speed in WIND_SPEEDS:
        folder = directory / f"{wind_speed:g}ms"
        folder.mkdir(parents=True, exist_ok=True)
        for seed in SEEDS:
            if not (folder / f"dlc12_{wind_speed:g}ms_seed{seed}.$TE").exists():
                rotor = rotor or Rotor(Turbine())
                for name, content in production(rotor, wind_speed, seed).files():
                    (folder / name).write_bytes(content)
    return directory


def campaign_directory(description: str | None) -> tuple[Path, argparse.Namespace]:
    """Return the directory of runs that the command line names, and its other arguments."""
    parser = argparse.ArgumentParser(description=description)
    parser.add_argument("directory", nargs="?", type=Path, help="runs; default: build/campaign")
    parser.add_argument("--output", type=Path, help="where the picture goes")
    arguments = parser.parse_args()
    return arguments.directory or write_campaign(DEFAULT), arguments


def main() -> int:
    """Write the campaign."""
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("directory", nargs="?", type=Path, default=DEFAULT)
    print(write_campaign(parser.parse_args().directory))
    return 0


if __name__ == "__main__":
    sys.exit(main())
