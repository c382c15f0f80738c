"""Steady operating points in a uniform wind."""

from __future__ import annotations

import math
from dataclasses import dataclass

from turbine_model.controller import Controller
from turbine_model.parameters import Array
from turbine_model.rotor import Rotor


@dataclass(frozen=True)
class OperatingPoint:
    """One point of the power curve; speeds in rad/s, loads per length in N/m."""

    wind_speed: float
    rotor_speed: float
    pitch: float
    generator_torque: float
    electrical_power: float
    thrust: float
    power_coefficient: float
    thrust_coefficient: float
    section_loads: Array


def operating_point(rotor: Rotor, controller: Controller, wind_speed: float) -> OperatingPoint:
    """Return where aerodynamic and generator torque balance at a wind speed, m/s."""
    turbine = rotor.turbine

    def load(speed: float) -> float:
        torque = controller.torque_of_speed(speed * turbine.gear_ratio)
        return turbine.gear_ratio * torque + turbine.bearing_friction

    low, high = 0.5 * turbine.minimum_rotor_speed, turbine.rated_rotor_speed
    for _ in range(48):
        middle = 0.5 * (low + high)
        if rotor.torque_and_thrust(wind_speed, middle, 0.0)[0] > load(middle):
            low = middle
        else:
            high = middle
    speed = 0.5 * (low + high)
    at_rated = speed > 0.999 * turbine.rated_rotor_speed
    pitch = rotor.pitch_for_torque(wind_speed, speed, load(speed)) if at_rated else 0.0
    torque = controller.torque_of_speed(speed * turbine.gear_ratio)
    _, thrust = rotor.torque_and_thrust(wind_speed, speed, pitch)
    power = turbine.efficiency * torque * speed * turbine.gear_ratio
    pressure = 0.5 * turbine.air_density * math.pi * turbine.radius**2 * wind_speed**2
    return OperatingPoint(
        wind_speed=wind_speed,
        rotor_speed=speed,
        pitch=pitch,
        generator_torque=torque,
        electrical_power=power,
        thrust=thrust,
        power_coefficient=power / (pressure * wind_speed),
        thrust_coefficient=thrust / pressure,
        section_loads=rotor.section_loads(wind_speed, speed, pitch),
    )
