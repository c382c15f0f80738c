"""Simulates the bundled runs and writes them below ``runs/``.

Seeds are fixed and values are rounded, so the files come out the same each
time::

    python make_sample_runs.py            # writes examples/runs
    python make_sample_runs.py --check    # compares with what is there
"""

from __future__ import annotations

import argparse
import sys
from collections.abc import Iterator
from pathlib import Path

import numpy as np
from run_files import Group, Interval, Labels, Run, Values, Variable
from turbine_model import (
    Controller,
    ControllerState,
    Fault,
    History,
    Rotor,
    Scenario,
    Turbine,
    WindClimate,
    blade_loads,
    operating_point,
    simulate,
    tower_loads,
)
from turbine_model.parameters import DEGREE, RPM, Array

RUNS = Path(__file__).resolve().parent / "runs"

BLADE_STATIONS = (0.0, 6.15, 12.3, 18.45, 24.6, 30.75, 36.9, 49.2, 61.5)
TOWER_STATIONS = {
    "Tower base": 0.0,
    "Lower flange": 26.4,
    "Mid height": 43.8,
    "Upper flange": 61.2,
    "Yaw bearing": 87.6,
}
POWER_CURVE_SPEEDS = tuple(3.0 + 0.5 * index for index in range(45))


def time_axis(scenario: Scenario) -> Interval:
    """Return the primary axis of the groups of a simulation."""
    return Interval("Time", "T", 0.0, scenario.output_step)


def summary(
    turbine: Turbine,
    scenario: Scenario,
    history: History,
    parameters: tuple[str, ...] | None = None,
    statistics: bool = False,
) -> Group:
    """Return the group that one looks at first."""
    of = history.channels
    tip_speed_ratio = of["rotor speed"] * turbine.radius / of["wind"]
    variables = (
        Variable("Hub wind speed", "L/T", of["wind"]),
        Variable("Rotor speed", "A/T", of["rotor speed"]),
        Variable("Generator speed", "A/T", of["generator speed"]),
        Variable("Pitch angle", "A", of["pitch"]),
        Variable("Pitch demand", "A", of["pitch demand"]),
        Variable("Generator torque", "FL", of["generator torque"]),
        Variable("Electrical power", "P", of["electrical power"]),
        Variable("Rotor thrust", "F", of["thrust"]),
        Variable("Nacelle fore-aft acceleration", "L/TT", of["tower fore-aft acceleration"]),
        Variable("Tip speed ratio", "N", tip_speed_ratio),
    )
    return Group(
        1,
        "Summary",
        variables,
        time_axis(scenario),
        parameters=parameters,
        statistics=statistics,
    )


def wind_at_hub(number: int, scenario: Scenario, history: History) -> Group:
    """Return the wind components as a text group."""
    of = history.channels
    variables = (
        Variable("Longitudinal wind speed", "L/T", of["wind"]),
        Variable("Lateral wind speed", "L/T", of["lateral wind"]),
        Variable("Vertical wind speed", "L/T", of["vertical wind"]),
        Variable("Wind direction", "A", np.arctan2(of["lateral wind"], of["wind"])),
    )
    return Group(number, "Wind at hub", variables, time_axis(scenario), text=True, statistics=True)


def drive_train(number: int, scenario: Scenario, history: History) -> Group:
    """Return the shaft in double precision: angles and energy keep growing."""
    of = history.channels
    variables = (
        Variable("Rotor azimuth", "A", of["azimuth"]),
        Variable("Shaft twist", "A", of["shaft twist"]),
        Variable("Low-speed shaft torque", "FL", of["shaft torque"]),
        Variable("Electrical energy", "PT", of["energy"]),
    )
    return Group(
        number,
        "Drive train",
        variables,
        time_axis(scenario),
        word="R*8",
        parameters=(),
        statistics=True,
    )


def controller_log(number: int, scenario: Scenario, history: History) -> Group:
    """Return the states and counters of the controller as integers."""
    of = history.states
    variables = (
        Variable("Controller state", "N", of["state"]),
        Variable("Status word", "N", of["status word"]),
        Variable("Control steps", "N", of["steps"]),
        Variable("Control steps at full load", "N", of["full load steps"]),
        Variable("State changes", "N", of["mode changes"]),
    )
    return Group(number, "Controller", variables, time_axis(scenario), word="I*4", parameters=())


def blade_group(
    number: int,
    turbine: Turbine,
    scenario: Scenario,
    history: History,
    *,
    stations: tuple[float, ...] = BLADE_STATIONS,
    statistics: bool = False,
) -> Group:
    """Return the loads of blade 1 against time and distance along the blade."""
    loads = blade_loads(turbine, history, np.array(stations))
    variables = (
        Variable("Blade 1 out-of-plane bending moment", "FL", loads.out_of_plane_moment),
        Variable("Blade 1 in-plane bending moment", "FL", loads.in_plane_moment),
        Variable("Blade 1 out-of-plane shear force", "F", loads.out_of_plane_shear),
        Variable("Blade 1 out-of-plane deflection", "L", loads.out_of_plane_deflection),
    )
    return Group(
        number,
        "Blade 1 loads",
        variables,
        time_axis(scenario),
        secondary=Values("Distance along blade", "L", stations),
        parameters=(),
        statistics=statistics,
    )


def tower_group(number: int, turbine: Turbine, scenario: Scenario, history: History) -> Group:
    """Return the loads of the tower against time and named stations."""
    loads = tower_loads(turbine, history, np.array(list(TOWER_STATIONS.values())))
    variables = (
        Variable("Tower fore-aft bending moment", "FL", loads.fore_aft_moment),
        Variable("Tower side-to-side bending moment", "FL", loads.side_to_side_moment),
        Variable("Tower fore-aft deflection", "L", loads.fore_aft_deflection),
    )
    return Group(
        number,
        "Tower loads",
        variables,
        time_axis(scenario),
        secondary=Labels("Tower station", tuple(TOWER_STATIONS)),
        parameters=(),
    )


def blade_root_log(number: int, turbine: Turbine, scenario: Scenario, history: History) -> Group:
    """Return the moments at the root of blade 1 as text under two lines of captions."""
    loads = blade_loads(turbine, history, np.zeros(1))
    variables = (
        Variable("Blade 1 root out-of-plane bending moment", "FL", loads.out_of_plane_moment[0]),
        Variable("Blade 1 root in-plane bending moment", "FL", loads.in_plane_moment[0]),
    )
    return Group(
        number,
        "Blade 1 root loads",
        variables,
        time_axis(scenario),
        text=True,
        head=("Moments at the root of blade 1, Nm", "  out of plane    in plane"),
    )


def power_production(rotor: Rotor) -> Run:
    """Return five minutes of power production about rated wind speed: completed."""
    turbine = rotor.turbine
    scenario = Scenario(
        climate=WindClimate(mean_speed=12.0, intensity=0.13, seed=20240),
        duration=300.0,
        output_step=0.1,
        rotor_speed=turbine.rated_rotor_speed,
        pitch=3.0 * DEGREE,
        state=ControllerState.FULL_LOAD,
    )
    history = simulate(rotor, scenario)
    parameters = (
        "Mean wind speed, m/s: 12.0",
        "Turbulence intensity, %: 13.0",
        "Shear exponent: 0.14",
        f"Random seed: {scenario.climate.seed}",
    )
    of = history.channels
    fastest = int(of["rotor speed"].argmax())
    return Run(
        name="powprod_12ms",
        content="POWPROD",
        configuration="TRANSIENT",
        termination="Run completed.\nSimulated time: 300.0 s in 34000 steps\n",
        message=(
            "Simulation of power production, 5 MW turbine with three blades\n"
            "Time   -40.0 s  Lead-in begins, step 0.010 s\n"
            "Time     0.0 s  Output begins, interval 0.1 s\n"
            f"Time {history.time[fastest]:7.1f} s  Greatest rotor speed:"
            f" {of['rotor speed'][fastest] / RPM:.2f} rpm\n"
            f"Time   300.0 s  Output ends, {history.states['mode changes'][-1]} state changes"
            " of the controller\n"
            "No errors, no warnings.\n"
        ),
        verification=(
            "Input verified: no errors, 1 warning.\n"
            "WARNING 1108: mean wind speed is near the rated wind speed, expect many state"
            " changes\n"
        ),
        groups=(
            summary(turbine, scenario, history, parameters, statistics=True),
            wind_at_hub(2, scenario, history),
            drive_train(3, scenario, history),
            controller_log(4, scenario, history),
            blade_group(5, turbine, scenario, history, statistics=True),
            tower_group(6, turbine, scenario, history),
        ),
    )


def power_curve(rotor: Rotor) -> Run:
    """Return steady operation from cut-in to cut-out: completed."""
    controller = Controller(rotor.turbine, rotor)
    points = [operating_point(rotor, controller, speed) for speed in POWER_CURVE_SPEEDS]
    axis = Values("Wind speed", "L/T", POWER_CURVE_SPEEDS)

    def column(name: str) -> Array:
        return np.array([getattr(point, name) for point in points], dtype=np.float64)

    radius = rotor.turbine.element_radius - rotor.turbine.hub_radius
    forces = np.array(
        [np.interp(BLADE_STATIONS, radius, point.section_loads[0]) for point in points]
    )
    curve = Group(
        1,
        "Steady power curve",
        (
            Variable("Electrical power", "P", column("electrical_power")),
            Variable("Rotor speed", "A/T", column("rotor_speed")),
            Variable("Pitch angle", "A", column("pitch")),
            Variable("Generator torque", "FL", column("generator_torque")),
            Variable("Rotor thrust", "F", column("thrust")),
            Variable("Power coefficient", "N", column("power_coefficient")),
            Variable("Thrust coefficient", "N", column("thrust_coefficient")),
        ),
        axis,
        parameters=("Air density, kg/m3: 1.225",),
        statistics=True,
    )
    along = Group(
        2,
        "Steady blade forces",
        (Variable("Out-of-plane force per length", "F/L", forces.T),),
        axis,
        secondary=Values("Distance along blade", "L", BLADE_STATIONS),
        text=True,
    )
    return Run(
        name="power_curve",
        content="PCURVE1",
        configuration="STATIONARY",
        termination="Run completed.\n45 wind speeds from 3.0 to 25.0 m/s\n",
        message="Steady power curve: 45 of 45 wind speeds converged.\n",
        verification="Input verified: no errors, no warnings.\n",
        groups=(curve, along),
    )


def emergency_stop(rotor: Rotor) -> Run:
    """Return a loss of the grid and a stop that fails to integrate at standstill: errored."""
    turbine = rotor.turbine
    scenario = Scenario(
        climate=WindClimate(mean_speed=14.0, intensity=0.12, seed=7),
        duration=52.3,
        output_step=0.05,
        rotor_speed=turbine.rated_rotor_speed,
        pitch=7.5 * DEGREE,
        state=ControllerState.FULL_LOAD,
        fault=Fault(time=20.0, brake_delay=16.0),
    )
    history = simulate(rotor, scenario)
    error = (
        "*** ERROR 3107: integration step fell below 1.0E-06 s at time 52.300 s"
        " (shaft brake, change of direction at standstill)\n"
    )
    return Run(
        name="estop_fault",
        content="ESTOP",
        configuration="TRANSIENT",
        termination=error + "Simulation stopped, output up to the last complete step is kept.\n",
        message=(
            "Simulation of an emergency stop, 5 MW turbine with three blades\n"
            "Time     0.0 s  Output begins, interval 0.05 s\n"
            "Time    20.0 s  Grid lost: safety chain opened, blades to feather\n"
            "Time    36.0 s  Shaft brake applied\n" + error
        ),
        verification="Input verified: no errors, no warnings.\n",
        groups=(
            summary(turbine, scenario, history),
            blade_root_log(2, turbine, scenario, history),
            controller_log(3, scenario, history),
        ),
    )


def idling(rotor: Rotor) -> Run:
    """Return the first minute of ten of idling with feathered blades: in progress."""
    turbine = rotor.turbine
    scenario = Scenario(
        climate=WindClimate(mean_speed=9.0, intensity=0.14, seed=11),
        duration=60.0,
        output_step=0.1,
        rotor_speed=0.12,
        pitch=76.0 * DEGREE,
        state=ControllerState.IDLING,
    )
    history = simulate(rotor, scenario)
    return Run(
        name="idling_live",
        content="IDLING",
        configuration="TRANSIENT",
        termination="Run in progress\nSimulated time: 60.0 s of 600.0 s\n",
        message=(
            "Simulation of idling, 5 MW turbine with three blades\n"
            "Time     0.0 s  Output begins, interval 0.1 s\n"
        ),
        verification="Input verified: no errors, no warnings.\n",
        groups=(
            summary(turbine, scenario, history),
            blade_group(2, turbine, scenario, history, stations=BLADE_STATIONS[::4]),
        ),
    )


def sample_files() -> Iterator[tuple[Path, bytes]]:
    """Yield path, relative to the directory of the runs, and content of each file."""
    rotor = Rotor(Turbine())
    placed = (
        (Path(), power_production),
        (Path(), power_curve),
        (Path("faults"), emergency_stop),
        (Path("idling"), idling),
    )
    for directory, make in placed:
        for name, content in make(rotor).files():
            yield directory / name, content


def write(root: Path) -> None:
    """Write all files below `root`, and tell how much that was."""
    count = total = 0
    for path, content in sample_files():
        (root / path).parent.mkdir(parents=True, exist_ok=True)
        (root / path).write_bytes(content)
        count, total = count + 1, total + len(content)
    print(f"{count} files, {total / 1e6:.2f} MB, written below {root}")


def differences(root: Path) -> list[str]:
    """Return a line for each file below `root` that is not as it would be written."""
    expected = dict(sample_files())
    found = {path.relative_to(root) for path in root.rglob("*") if path.is_file()}
    lines = [f"{path}: not a file of the sample runs" for path in sorted(found - set(expected))]
    for path, content in expected.items():
        if path not in found:
            lines.append(f"{path}: missing")
        elif (root / path).read_bytes() != content:
            lines.append(f"{path}: differs")
    return lines


def main() -> int:
    """Write the runs, or check them; 1 if the check finds a difference."""
    parser = argparse.ArgumentParser(description="Simulate the bundled runs.")
    parser.add_argument("--directory", type=Path, default=RUNS, help="where the runs stand")
    parser.add_argument("--check", action="store_true", help="compare only, write nothing")
    arguments = parser.parse_args()
    if not arguments.check:
        write(arguments.directory)
        return 0
    found = differences(arguments.directory)
    print("\n".join(found) if found else f"{arguments.directory}: as simulated")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
