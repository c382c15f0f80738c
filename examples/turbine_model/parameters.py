"""The machine: geometry, masses, first modes and ratings of a generic 5 MW turbine."""

from __future__ import annotations

import math
from dataclasses import dataclass, field
from functools import cached_property

import numpy as np
from numpy.typing import NDArray

Array = NDArray[np.float64]

RPM = 2.0 * math.pi / 60.0
DEGREE = math.pi / 180.0


@dataclass(frozen=True)
class Blade:
    """One blade, tabulated against the fraction of the rotor radius.

    The tables are piecewise linear. Twist is positive towards feather.
    """

    fraction: tuple[float, ...] = (0.024, 0.10, 0.22, 0.40, 0.60, 0.80, 0.95, 1.00)
    chord: tuple[float, ...] = (3.40, 3.60, 4.70, 4.20, 3.40, 2.60, 1.95, 0.90)
    twist_degrees: tuple[float, ...] = (13.5, 13.5, 12.5, 8.0, 4.4, 2.0, 0.5, 0.0)
    mass_per_length: tuple[float, ...] = (720.0, 470.0, 400.0, 335.0, 245.0, 150.0, 65.0, 25.0)
    flap_frequency: float = 0.66 * 2.0 * math.pi  # standing still, rad/s
    flap_damping: float = 0.010  # structural damping ratio of the first flap mode
    southwell: float = 1.7  # rise of the squared flap frequency with the squared rotor speed


@dataclass(frozen=True)
class Tower:
    """A tubular steel tower with one bending mode in each direction."""

    height: float = 87.6  # base to yaw bearing
    mass_at_base: float = 5400.0  # kg/m
    mass_at_top: float = 2500.0  # kg/m
    frequency: float = 0.32 * 2.0 * math.pi  # with the nacelle and the rotor on top
    damping: float = 0.01


@dataclass(frozen=True)
class Turbine:
    """A pitch-regulated, variable-speed machine of 5 MW at 12.1 rpm."""

    radius: float = 63.0
    hub_radius: float = 1.5
    hub_height: float = 90.0
    blade_count: int = 3
    gear_ratio: float = 97.0
    rated_power: float = 5.0e6
    rated_rotor_speed: float = 12.1 * RPM
    minimum_rotor_speed: float = 6.9 * RPM
    efficiency: float = 0.944  # from the generator's shaft to the grid
    hub_inertia: float = 1.2e5
    generator_inertia: float = 530.0  # on its own shaft
    shaft_stiffness: float = 8.6e8  # referred to the low-speed shaft
    shaft_damping: float = 6.0e6
    bearing_friction: float = 6.0e3  # low-speed shaft, Nm
    brake_torque: float = 2.9e6  # referred to the low-speed shaft
    nacelle_mass: float = 2.9e5  # with the hub
    air_density: float = 1.225
    gravity: float = 9.81
    element_count: int = 24
    blade: Blade = field(default_factory=Blade)
    tower: Tower = field(default_factory=Tower)

    @property
    def rated_generator_speed(self) -> float:
        """Generator speed at rated, rad/s."""
        return self.rated_rotor_speed * self.gear_ratio

    @property
    def rated_torque(self) -> float:
        """Generator torque at rated, Nm."""
        return self.rated_power / (self.efficiency * self.rated_generator_speed)

    @property
    def blade_length(self) -> float:
        """Length from the blade root to the tip, m."""
        return self.radius - self.hub_radius

    @cached_property
    def element_width(self) -> float:
        """Length of one blade element, m."""
        return self.blade_length / self.element_count

    @cached_property
    def element_radius(self) -> Array:
        """Radius of the middle of each blade element, shape (element_count,)."""
        index = np.arange(self.element_count, dtype=np.float64)
        return self.hub_radius + (index + 0.5) * self.element_width

    def along_blade(self, table: tuple[float, ...]) -> Array:
        """Return a table of the blade at the elements, shape (element_count,)."""
        return np.interp(self.element_radius / self.radius, self.blade.fraction, table)

    @cached_property
    def element_mass(self) -> Array:
        """Mass of each blade element, kg, shape (element_count,)."""
        return self.along_blade(self.blade.mass_per_length) * self.element_width

    def flap_shape(self, distance: Array) -> Array:
        """Return the first flap mode at distances from the root, 1 at the tip."""
        x = distance / self.blade_length
        return 0.65 * x**2 + 0.35 * x**3

    @cached_property
    def element_flap_shape(self) -> Array:
        """First flap mode at the elements, shape (element_count,)."""
        return self.flap_shape(self.element_radius - self.hub_radius)

    @cached_property
    def flap_mass(self) -> float:
        """Generalised mass of the first flap mode, kg."""
        return math.fsum(self.element_mass * self.element_flap_shape**2)

    @cached_property
    def blade_mass(self) -> float:
        """Mass of one blade, kg."""
        return math.fsum(self.element_mass)

    @cached_property
    def rotor_inertia(self) -> float:
        """Moment of inertia of hub and blades about the shaft, kgm2."""
        of_blade = math.fsum(self.element_mass * self.element_radius**2)
        return self.hub_inertia + self.blade_count * of_blade

    @property
    def generator_inertia_low_speed(self) -> float:
        """Moment of inertia of the generator referred to the low-speed shaft, kgm2."""
        return self.generator_inertia * self.gear_ratio**2

    @property
    def tower_top_mass(self) -> float:
        """Mass of nacelle and rotor, kg."""
        return self.nacelle_mass + self.blade_count * self.blade_mass

    @cached_property
    def tower_mass(self) -> float:
        """Generalised mass of a tower mode of the shape (z/H)^2, kg."""
        tower = self.tower
        # The integral of (base + (top - base) x) x^4 over 0 to 1, times the height.
        share = tower.mass_at_base / 5.0 + (tower.mass_at_top - tower.mass_at_base) / 6.0
        return self.tower_top_mass + share * tower.height
