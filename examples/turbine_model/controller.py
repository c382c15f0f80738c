"""Torque and pitch control, with the states of normal operation and of a stop."""

from __future__ import annotations

import math
from enum import IntEnum, IntFlag

from turbine_model.parameters import DEGREE, Turbine
from turbine_model.rotor import Rotor

_FEATHER = 90.0 * DEGREE
_SPEED_FILTER = 1.0 * 2.0 * math.pi  # corner of the filter on the generator speed, rad/s
_LOOP_FREQUENCY = 0.5  # of the closed speed loop, rad/s
_LOOP_DAMPING = 1.0
_TORQUE_RATE = 1.5e4  # Nm/s at the generator
_RAMP_START = 0.90  # of rated speed: the torque leaves the optimum curve
_RAMP_END = 0.985  # of rated speed: rated power is reached
_OVERSPEED = 1.10  # of rated speed


class ControllerState(IntEnum):
    """What the controller is doing."""

    IDLING = 1
    PARTIAL_LOAD = 3
    FULL_LOAD = 4
    EMERGENCY_STOP = 7


class StatusBit(IntFlag):
    """Bits of the status word."""

    GRID_AVAILABLE = 1
    GENERATOR_CONNECTED = 2
    FINE_PITCH_LIMIT = 4
    RATED_POWER = 8
    TORQUE_RATE_LIMIT = 16
    SAFETY_CHAIN_OPEN = 32
    BRAKE_APPLIED = 64
    OVERSPEED = 128


class Controller:
    """Speed control by torque below rated and by collective pitch above.

    Attributes
    ----------
    state : ControllerState
        Present state.
    status : StatusBit
        Status word of the last step.
    torque_demand, pitch_demand : float
        Demands of the last step: generator torque, Nm, and pitch, rad.
    full_load_steps, mode_changes : int
        Counters since the start.
    """

    def __init__(self, turbine: Turbine, rotor: Rotor) -> None:
        self.turbine = turbine
        ratio = rotor.best_tip_speed_ratio()
        swept = 0.5 * turbine.air_density * math.pi * turbine.radius**5
        best = rotor.power_coefficient(ratio, 0.0) / ratio**3
        self.optimum_gain = swept * best / turbine.gear_ratio**3
        self._schedule_gains(rotor)
        self.state = ControllerState.PARTIAL_LOAD
        self.status = StatusBit(0)
        self.torque_demand = 0.0
        self.pitch_demand = 0.0
        self.full_load_steps = 0
        self.mode_changes = 0
        self._filtered_speed = turbine.rated_generator_speed
        self._integral = 0.0

    def _schedule_gains(self, rotor: Rotor) -> None:
        """Set the pitch gains from the slope of the torque with pitch at two wind speeds."""
        turbine = self.turbine
        speed = turbine.rated_rotor_speed
        torque = turbine.rated_torque * turbine.gear_ratio

        def slope(wind_speed: float) -> tuple[float, float]:
            pitch = rotor.pitch_for_torque(wind_speed, speed, torque)
            above, _ = rotor.torque_and_thrust(wind_speed, speed, pitch + DEGREE)
            below, _ = rotor.torque_and_thrust(wind_speed, speed, pitch - DEGREE)
            return pitch, (below - above) / (2.0 * DEGREE)

        (low_pitch, low_slope), (high_pitch, high_slope) = slope(13.0), slope(21.0)
        growth = (high_slope - low_slope) / (high_pitch - low_pitch)
        at_zero = low_slope - growth * low_pitch
        inertia = turbine.rotor_inertia + turbine.generator_inertia_low_speed
        scale = inertia / (turbine.gear_ratio * at_zero)
        self.doubling_pitch = at_zero / growth
        self.proportional_gain = 2.0 * _LOOP_DAMPING * _LOOP_FREQUENCY * scale
        self.integral_gain = _LOOP_FREQUENCY**2 * scale

    def start(self, state: ControllerState, generator_speed: float, pitch: float) -> None:
        """Begin in a state, with the filter and the integrator settled."""
        self.state = state
        self._filtered_speed = generator_speed
        self._integral = pitch
        self.pitch_demand = pitch
        running = state in (ControllerState.PARTIAL_LOAD, ControllerState.FULL_LOAD)
        self.torque_demand = self.torque_of_speed(generator_speed) if running else 0.0

    def torque_of_speed(self, generator_speed: float) -> float:
        """Return the generator torque, Nm, that the law asks for at a speed, rad/s."""
        turbine = self.turbine
        rated = turbine.rated_generator_speed
        if generator_speed >= _RAMP_END * rated:
            return turbine.rated_power / (turbine.efficiency * generator_speed)
        lowest = turbine.minimum_rotor_speed * turbine.gear_ratio
        start, end = _RAMP_START * rated, _RAMP_END * rated
        if generator_speed > start:
            bottom = self.optimum_gain * start**2
            top = turbine.rated_power / (turbine.efficiency * end)
            return bottom + (top - bottom) * (generator_speed - start) / (end - start)
        optimum = self.optimum_gain * generator_speed**2
        return optimum * min(max((generator_speed / lowest - 1.0) / 0.1, 0.0), 1.0)

    def step(self, generator_speed: float, time_step: float) -> None:
        """Advance by one step in normal operation."""
        share = 1.0 - math.exp(-_SPEED_FILTER * time_step)
        self._filtered_speed += share * (generator_speed - self._filtered_speed)
        self.status = StatusBit.GRID_AVAILABLE
        if self.state is ControllerState.IDLING:
            self.torque_demand = 0.0
            return
        self.status |= StatusBit.GENERATOR_CONNECTED
        self._control_pitch(time_step)
        self._control_torque(time_step)

    def stop(self, generator_speed: float, brake: bool) -> None:
        """Advance by one step with the grid lost: no torque, blades to feather."""
        self._enter(ControllerState.EMERGENCY_STOP)
        self.torque_demand = 0.0
        self.pitch_demand = _FEATHER
        self.status = StatusBit.SAFETY_CHAIN_OPEN
        if brake:
            self.status |= StatusBit.BRAKE_APPLIED
        if generator_speed > _OVERSPEED * self.turbine.rated_generator_speed:
            self.status |= StatusBit.OVERSPEED

    def _enter(self, state: ControllerState) -> None:
        if state is not self.state:
            self.state = state
            self.mode_changes += 1

    def _control_pitch(self, time_step: float) -> None:
        """Hold rated speed by pitch; the integrator never leaves the range of the pitch."""
        error = self._filtered_speed - self.turbine.rated_generator_speed
        weight = 1.0 / (1.0 + self.pitch_demand / self.doubling_pitch)
        self._integral += self.integral_gain * weight * error * time_step
        self._integral = min(max(self._integral, 0.0), _FEATHER)
        demand = self._integral + self.proportional_gain * weight * error
        self.pitch_demand = min(max(demand, 0.0), _FEATHER)
        if self.pitch_demand == 0.0:
            self.status |= StatusBit.FINE_PITCH_LIMIT

    def _control_torque(self, time_step: float) -> None:
        """Follow the optimum curve or constant power, within the rate of the converter.

        Once pitched, the machine stays at constant power through a lull, so
        that torque and pitch do not fight.
        """
        turbine = self.turbine
        speed = self._filtered_speed
        pitched = self.pitch_demand > DEGREE and speed > _RAMP_START * turbine.rated_generator_speed
        if speed >= _RAMP_END * turbine.rated_generator_speed or pitched:
            self._enter(ControllerState.FULL_LOAD)
            self.full_load_steps += 1
            self.status |= StatusBit.RATED_POWER
            wanted = turbine.rated_power / (turbine.efficiency * speed)
        else:
            self._enter(ControllerState.PARTIAL_LOAD)
            wanted = self.torque_of_speed(speed)
        change = wanted - self.torque_demand
        limit = _TORQUE_RATE * time_step
        if abs(change) > limit:
            self.status |= StatusBit.TORQUE_RATE_LIMIT
        self.torque_demand += min(max(change, -limit), limit)
