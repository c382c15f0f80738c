"""Equations of motion of shaft, tower and blades, stepped through a wind record."""

from __future__ import annotations

import math
from dataclasses import dataclass

import numpy as np

from turbine_model.controller import Controller, ControllerState
from turbine_model.parameters import DEGREE, Array, Turbine
from turbine_model.rotor import Rotor
from turbine_model.wind import Wind, WindClimate

TIME_STEP = 0.01
_WIND_STEP = 0.1
_PITCH_RATE = 6.0 * DEGREE
_PITCH_RESOLUTION = 1e-6
_PITCH_LAG = 0.1
_FLAP_SPEED_WEIGHT = 0.7  # of the tip speed of the flap: the uniform wind of equal force
_SHADOW_DEPTH = 0.07
_SHADOW_WIDTH = 12.0 * DEGREE
_EFFECTIVE_RADIUS = 0.7  # where a blade samples shear and gradients
_SMOOTH_SPEED = 0.01  # rad/s, over which dry friction changes sign


@dataclass(frozen=True)
class Fault:
    """Loss of the grid at `time`, and a brake on the shaft `brake_delay` later, s."""

    time: float
    brake_delay: float


@dataclass(frozen=True)
class Scenario:
    """What to simulate, and how to begin.

    Attributes
    ----------
    duration, lead_in : float
        Recorded time, and the time before it that is dropped, s.
    output_step : float
        Time between recorded points, s; a multiple of the time step.
    """

    climate: WindClimate
    duration: float
    output_step: float
    rotor_speed: float
    pitch: float
    state: ControllerState
    lead_in: float = 40.0
    fault: Fault | None = None


@dataclass(frozen=True)
class History:
    """Recorded channels, one row a point.

    `channels` maps a name to shape (points,); `states` the same for counters
    and words. `normal` and `tangential` are the loads per length of blade 1,
    N/m, shape (points, elements).
    """

    time: Array
    channels: dict[str, Array]
    states: dict[str, list[int]]
    normal: Array
    tangential: Array


class _Machine:
    """The moving state of the turbine."""

    def __init__(self, rotor: Rotor, controller: Controller, scenario: Scenario) -> None:
        self.turbine = rotor.turbine
        self.rotor = rotor
        self.controller = controller
        self.shear = scenario.climate.shear
        self.azimuth = 0.0
        self.rotor_speed = scenario.rotor_speed
        self.generator_speed = scenario.rotor_speed  # referred to the low-speed shaft
        self.twist = 0.0
        self.pitch = scenario.pitch
        self.tower = [0.0, 0.0]  # fore-aft and side-to-side
        self.tower_velocity = [0.0, 0.0]
        self.tower_acceleration = [0.0, 0.0]
        blades = self.turbine.blade_count
        self.flap = [0.0] * blades
        self.flap_velocity = [0.0] * blades
        self.flap_acceleration = [0.0] * blades
        self.aero_torque = self.thrust = self.side_force = 0.0
        self.tilt_moment = self.shaft_torque = 0.0
        self.energy = 0.0
        self.section: Array = np.zeros((2, self.turbine.element_count))
        width = self.turbine.element_width
        self._ones = np.full(self.turbine.element_count, width)
        self._arms = self.turbine.element_radius * width
        self._shapes = self.turbine.element_flap_shape * width

    @property
    def electrical_power(self) -> float:
        """Power to the grid, W."""
        turbine = self.turbine
        speed = self.generator_speed * turbine.gear_ratio
        return turbine.efficiency * self.controller.torque_demand * speed

    def begin_record(self) -> None:
        """Start azimuth, energy and counters anew at the end of the lead-in."""
        self.azimuth = math.fmod(self.azimuth, 2.0 * math.pi)
        self.energy = 0.0
        self.controller.full_load_steps = self.controller.mode_changes = 0

    def _wind_at_blade(self, wind: tuple[float, float, float], azimuth: float) -> float:
        """Return the wind that a blade meets: shear, gradients and the shadow of the tower."""
        mean, up, across = wind
        reach = _EFFECTIVE_RADIUS * self.turbine.radius
        height = reach * math.cos(azimuth)
        sheared = mean * math.pow(1.0 + height / self.turbine.hub_height, self.shear)
        below = math.remainder(azimuth - math.pi, 2.0 * math.pi) / _SHADOW_WIDTH
        shadow = 1.0 - _SHADOW_DEPTH * math.exp(-(below**2))
        return (sheared + up * height + across * reach * math.sin(azimuth)) * shadow

    def apply_wind(self, wind: tuple[float, float, float]) -> None:
        """Set the aerodynamic forces and the accelerations of the flap modes."""
        turbine, blade = self.turbine, self.turbine.blade
        self.aero_torque = self.thrust = self.side_force = self.tilt_moment = 0.0
        stiffness = blade.flap_frequency**2 + blade.southwell * self.rotor_speed**2
        damping = 2.0 * blade.flap_damping * math.sqrt(stiffness)
        for index in range(turbine.blade_count):
            azimuth = self.azimuth + 2.0 * math.pi * index / turbine.blade_count
            relative = self._wind_at_blade(wind, azimuth) - self.tower_velocity[0]
            relative -= _FLAP_SPEED_WEIGHT * self.flap_velocity[index]
            loads = self.rotor.section_loads(max(relative, 1.0), self.rotor_speed, self.pitch)
            self.thrust += float((loads[0] * self._ones).sum())
            self.aero_torque += float((loads[1] * self._arms).sum())
            self.tilt_moment += float((loads[0] * self._arms).sum()) * math.cos(azimuth)
            self.side_force += float((loads[1] * self._ones).sum()) * math.cos(azimuth)
            force = float((loads[0] * self._shapes).sum()) / turbine.flap_mass
            self.flap_acceleration[index] = (
                force - damping * self.flap_velocity[index] - stiffness * self.flap[index]
            )
            if index == 0:
                self.section = loads

    def advance(self, brake: bool, step: float) -> None:
        """Move all states on by one step, velocities before positions."""
        self._advance_shaft(brake, step)
        self._advance_tower(step)
        for index, acceleration in enumerate(self.flap_acceleration):
            self.flap_velocity[index] += step * acceleration
            self.flap[index] += step * self.flap_velocity[index]
        self._advance_pitch(step)
        self.energy += step * self.electrical_power

    def _advance_pitch(self, step: float) -> None:
        error = self.controller.pitch_demand - self.pitch
        if abs(error) < _PITCH_RESOLUTION:
            self.pitch = self.controller.pitch_demand
            return
        self.pitch += step * min(max(error / _PITCH_LAG, -_PITCH_RATE), _PITCH_RATE)

    def _advance_shaft(self, brake: bool, step: float) -> None:
        turbine = self.turbine
        slip = self.rotor_speed - self.generator_speed
        self.shaft_torque = turbine.shaft_stiffness * self.twist + turbine.shaft_damping * slip
        friction = turbine.bearing_friction * math.tanh(self.rotor_speed / _SMOOTH_SPEED)
        braking = turbine.brake_torque * math.tanh(self.generator_speed / _SMOOTH_SPEED)
        load = turbine.gear_ratio * self.controller.torque_demand + (braking if brake else 0.0)
        surplus = self.aero_torque - self.shaft_torque - friction
        self.rotor_speed += step * surplus / turbine.rotor_inertia
        surplus = self.shaft_torque - load
        self.generator_speed += step * surplus / turbine.generator_inertia_low_speed
        self.twist += step * (self.rotor_speed - self.generator_speed)
        self.azimuth += step * self.rotor_speed

    def _advance_tower(self, step: float) -> None:
        turbine, tower = self.turbine, self.turbine.tower
        # The reaction of the shaft turns the top of the tower; its mode has the slope 2/H there.
        sideways = self.side_force + 2.0 * self.shaft_torque / tower.height
        for index, force in enumerate((self.thrust, sideways)):
            acceleration = force / turbine.tower_mass - tower.frequency**2 * self.tower[index]
            acceleration -= 2.0 * tower.damping * tower.frequency * self.tower_velocity[index]
            self.tower_acceleration[index] = acceleration
            self.tower_velocity[index] += step * acceleration
            self.tower[index] += step * self.tower_velocity[index]

    def channels(self) -> dict[str, float]:
        """Return the channels of this instant."""
        controller = self.controller
        return {
            "rotor speed": self.rotor_speed,
            "generator speed": self.generator_speed * self.turbine.gear_ratio,
            "azimuth": self.azimuth,
            "shaft twist": self.twist,
            "shaft torque": self.shaft_torque,
            "pitch": self.pitch,
            "pitch demand": controller.pitch_demand,
            "generator torque": controller.torque_demand,
            "electrical power": self.electrical_power,
            "energy": self.energy,
            "aerodynamic torque": self.aero_torque,
            "thrust": self.thrust,
            "side force": self.side_force,
            "tilt moment": self.tilt_moment,
            "tower fore-aft": self.tower[0],
            "tower side-side": self.tower[1],
            "tower fore-aft acceleration": self.tower_acceleration[0],
            "tower side-side acceleration": self.tower_acceleration[1],
            "flap": self.flap[0],
            "flap acceleration": self.flap_acceleration[0],
        }


def _settle(machine: _Machine, scenario: Scenario) -> None:
    """Start the modes at rest under the mean loads, so that the lead-in can be short."""
    turbine = machine.turbine
    machine.apply_wind((scenario.climate.mean_speed, 0.0, 0.0))
    machine.tower[0] = machine.thrust / (turbine.tower_mass * turbine.tower.frequency**2)
    for index, acceleration in enumerate(machine.flap_acceleration):
        blade = turbine.blade
        stiffness = blade.flap_frequency**2 + blade.southwell * machine.rotor_speed**2
        machine.flap[index] = acceleration / stiffness
    speed = machine.rotor_speed * turbine.gear_ratio
    machine.controller.start(scenario.state, speed, scenario.pitch)
    load = turbine.gear_ratio * machine.controller.torque_demand
    machine.twist = load / turbine.shaft_stiffness


def simulate(rotor: Rotor, scenario: Scenario) -> History:
    """Run a scenario and return what was recorded, from time 0 on."""
    controller = Controller(rotor.turbine, rotor)
    machine = _Machine(rotor, controller, scenario)
    _settle(machine, scenario)
    lead, every = round(scenario.lead_in / TIME_STEP), round(scenario.output_step / TIME_STEP)
    inflow = _inflow(rotor.turbine, scenario, lead)
    pushes = (inflow.rotor, inflow.gradient_up, inflow.gradient_across)
    record = _Recorder()
    for number, (mean, up, across) in enumerate(np.stack(pushes, axis=1).tolist(), start=-lead):
        if number == 0:
            machine.begin_record()
        brake = _control(machine, scenario.fault, number * TIME_STEP)
        machine.apply_wind((mean, up, across))
        machine.advance(brake, TIME_STEP)
        if number >= 0 and number % every == 0:
            record.take(machine, number)
    return record.history(inflow, lead, every)


def _inflow(turbine: Turbine, scenario: Scenario, lead: int) -> Wind:
    """Return the wind at all time steps, the `lead` steps before time 0 included."""
    steps = np.arange(-lead, round(scenario.duration / TIME_STEP) + 1, dtype=np.float64)
    count = round((scenario.lead_in + scenario.duration) / _WIND_STEP) + 2
    coarse = np.arange(count, dtype=np.float64) * _WIND_STEP - scenario.lead_in
    wind = Wind.generate(scenario.climate, turbine, coarse, period=scenario.duration)
    return wind.at(steps * TIME_STEP)


def _control(machine: _Machine, fault: Fault | None, time: float) -> bool:
    """Advance the controller; return whether the brake is on."""
    controller = machine.controller
    speed = machine.generator_speed * machine.turbine.gear_ratio
    if fault is None or time < fault.time:
        controller.step(speed, TIME_STEP)
        return False
    brake = time >= fault.time + fault.brake_delay
    controller.stop(speed, brake)
    return brake


class _Recorder:
    """Gathers points while the simulation runs."""

    def __init__(self) -> None:
        self._channels: dict[str, list[float]] = {}
        self._states: dict[str, list[int]] = {}
        self._sections: list[Array] = []

    def take(self, machine: _Machine, steps: int) -> None:
        """Record this instant, `steps` after the start of the record."""
        for name, value in machine.channels().items():
            self._channels.setdefault(name, []).append(value)
        controller = machine.controller
        states = {
            "state": int(controller.state),
            "status word": int(controller.status),
            "steps": steps,
            "full load steps": controller.full_load_steps,
            "mode changes": controller.mode_changes,
        }
        for name, state in states.items():
            self._states.setdefault(name, []).append(state)
        self._sections.append(machine.section)

    def history(self, inflow: Wind, lead: int, every: int) -> History:
        """Return the record together with the wind of the same instants."""
        channels = {name: np.array(values) for name, values in self._channels.items()}
        channels["wind"] = inflow.longitudinal[lead::every]
        channels["lateral wind"] = inflow.lateral[lead::every]
        channels["vertical wind"] = inflow.vertical[lead::every]
        channels["rotor wind"] = inflow.rotor[lead::every]
        sections = np.stack(self._sections)
        return History(
            inflow.time[lead::every], channels, self._states, sections[:, 0], sections[:, 1]
        )
