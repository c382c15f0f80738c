"""Rotor aerodynamics: section loads, Cp and Ct from blade-element momentum theory."""

from __future__ import annotations

import math
from bisect import bisect_right

import numpy as np

from turbine_model.parameters import DEGREE, Array, Turbine

_ITERATIONS = 150
_RELAXATION = 0.3


def _lift_and_drag(angle: Array, lifting: Array) -> tuple[Array, Array]:
    """Return the coefficients of a cambered section that stalls into a flat plate.

    Parameters
    ----------
    angle : Array
        Angle of attack, rad.
    lifting : Array
        0 for a cylinder (the blade root) to 1 for an aerofoil.
    """
    camber = 3.6 * DEGREE
    effective = np.sin(angle + camber)
    attached = 1.0 / (1.0 + np.exp((np.abs(angle + camber) - 16.0 * DEGREE) / (1.6 * DEGREE)))
    lift = attached * 6.0 * effective + (1.0 - attached) * 1.1 * np.sin(2.0 * angle)
    drag = attached * (0.0075 + 0.25 * effective**4) + (1.0 - attached) * (
        0.02 + 1.3 * np.sin(angle) ** 2
    )
    return lifting * lift, lifting * drag + (1.0 - lifting) * 0.5


def _tip_and_root_loss(turbine: Turbine, sine: Array) -> Array:
    """Return the loss factor of a finite number of blades at each element."""
    radius = turbine.element_radius
    half = 0.5 * turbine.blade_count / np.maximum(sine, 0.05)
    tip = np.arccos(np.exp(-half * (turbine.radius - radius) / radius))
    root = np.arccos(np.exp(-half * (radius - turbine.hub_radius) / radius))
    loss: Array = np.maximum(4.0 / math.pi**2 * tip * root, 0.05)
    return loss


def _axial_induction(thrust: Array, loss: Array) -> Array:
    """Return the axial induction of an annulus from its thrust coefficient.

    Momentum theory holds up to a coefficient of 0.96. A more heavily loaded
    annulus follows a parabola that is tangent there and gives 2 at full blockage.
    """
    loading = thrust / loss
    momentum = 0.5 * (1.0 - np.sqrt(1.0 - np.minimum(loading, 0.96)))
    bend = 14.0 / 9.0
    excess = np.maximum(loading - 0.96, 0.0)
    return momentum + (np.sqrt(0.64 + 4.0 * bend * excess) - 0.8) / (2.0 * bend)


class Rotor:
    """Section loads on a grid of tip speed ratio and pitch angle.

    Loads are steady and made non-dimensional with half the air density, the
    squared wind speed and the rotor radius.

    Attributes
    ----------
    tip_speed_ratio, pitch : Array
        The grid, the pitch in rad.
    coefficients : Array
        Shape (tip speed ratios, pitches, 2, element_count): normal and
        tangential coefficients.
    """

    def __init__(self, turbine: Turbine) -> None:
        self.turbine = turbine
        self.tip_speed_ratio = np.concatenate(
            [np.arange(0.0, 3.0, 0.25), np.arange(3.0, 14.01, 0.5)]
        )
        self.pitch = DEGREE * np.concatenate(
            [np.arange(-2.0, 30.0, 1.0), np.arange(30.0, 95.1, 5.0)]
        )
        self.coefficients, self.angle_of_attack = self._solve()
        self._ratios = self.tip_speed_ratio.tolist()
        self._pitches = self.pitch.tolist()

    def _solve(self) -> tuple[Array, Array]:
        """Iterate the inductions of all annuli of the grid to balance."""
        turbine = self.turbine
        radius = turbine.element_radius
        ratio = self.tip_speed_ratio[:, None, None] * radius / turbine.radius
        ratio = np.maximum(ratio, 1e-3)
        twist = turbine.along_blade(turbine.blade.twist_degrees) * DEGREE
        setting = self.pitch[None, :, None] + twist
        chord = turbine.along_blade(turbine.blade.chord)
        solidity = turbine.blade_count * chord / (2.0 * math.pi * radius)
        lifting = np.clip((radius / turbine.radius - 0.07) / 0.12, 0.0, 1.0)

        axial = np.zeros(np.broadcast_shapes(ratio.shape, setting.shape))
        swirl = np.zeros_like(axial)
        for _ in range(_ITERATIONS):
            through, around = 1.0 - axial, ratio * (1.0 + swirl)
            inflow = np.arctan2(through, around)
            sine, cosine = np.sin(inflow), np.cos(inflow)
            lift, drag = _lift_and_drag(inflow - setting, lifting)
            speed = through**2 + around**2
            normal = lift * cosine + drag * sine
            tangential = lift * sine - drag * cosine
            loss = _tip_and_root_loss(turbine, sine)
            new_axial = _axial_induction(solidity * normal * speed, loss)
            new_swirl = solidity * tangential * speed / (4.0 * loss * through * ratio)
            axial += _RELAXATION * (np.clip(new_axial, -0.5, 0.9) - axial)
            swirl += _RELAXATION * (np.clip(new_swirl, -0.5, 0.5) - swirl)
        scale = speed * chord / turbine.radius
        return np.stack([normal * scale, tangential * scale], axis=2), inflow - setting

    def section_coefficients(self, tip_speed_ratio: float, pitch: float) -> Array:
        """Return the coefficients at one operating point, shape (2, element_count)."""
        i, x = _place(self._ratios, tip_speed_ratio)
        j, y = _place(self._pitches, pitch)
        c = self.coefficients
        low = (1.0 - y) * c[i, j] + y * c[i, j + 1]
        high = (1.0 - y) * c[i + 1, j] + y * c[i + 1, j + 1]
        result: Array = (1.0 - x) * low + x * high
        return result

    def section_loads(self, wind_speed: float, rotor_speed: float, pitch: float) -> Array:
        """Return normal and tangential load per length, N/m, shape (2, element_count)."""
        turbine = self.turbine
        ratio = rotor_speed * turbine.radius / wind_speed
        scale = 0.5 * turbine.air_density * wind_speed**2 * turbine.radius
        return scale * self.section_coefficients(ratio, pitch)

    def torque_and_thrust(
        self, wind_speed: float, rotor_speed: float, pitch: float
    ) -> tuple[float, float]:
        """Return the torque, Nm, and the thrust, N, of the whole rotor in a uniform wind."""
        turbine = self.turbine
        normal, tangential = self.section_loads(wind_speed, rotor_speed, pitch)
        share = turbine.blade_count * turbine.element_width
        torque = share * math.fsum(tangential * turbine.element_radius)
        return torque, share * math.fsum(normal)

    def power_coefficient(self, tip_speed_ratio: float, pitch: float) -> float:
        """Return Cp(tip speed ratio, pitch)."""
        turbine = self.turbine
        _, tangential = self.section_coefficients(tip_speed_ratio, pitch)
        torque = (
            turbine.blade_count
            * turbine.element_width
            * math.fsum(tangential * turbine.element_radius)
        )
        return tip_speed_ratio * torque / (math.pi * turbine.radius**2)

    def pitch_for_torque(self, wind_speed: float, rotor_speed: float, torque: float) -> float:
        """Return the pitch, rad, at which the rotor gives no more than `torque`; 0 at least."""
        low, high = 0.0, 40.0 * DEGREE
        if self.torque_and_thrust(wind_speed, rotor_speed, low)[0] <= torque:
            return low
        for _ in range(48):
            middle = 0.5 * (low + high)
            if self.torque_and_thrust(wind_speed, rotor_speed, middle)[0] > torque:
                low = middle
            else:
                high = middle
        return 0.5 * (low + high)

    def best_tip_speed_ratio(self) -> float:
        """Return the tip speed ratio of the greatest Cp at zero pitch, to 0.05."""
        candidates = [0.05 * k for k in range(80, 240)]
        return max(candidates, key=lambda ratio: self.power_coefficient(ratio, 0.0))


def _place(grid: list[float], value: float) -> tuple[int, float]:
    """Return the cell of `value` in `grid` and the fraction of the way through it."""
    inside = min(max(value, grid[0]), grid[-1])
    cell = min(max(bisect_right(grid, inside) - 1, 0), len(grid) - 2)
    return cell, (inside - grid[cell]) / (grid[cell + 1] - grid[cell])
