"""Turbulent inflow: one point at the hub, the rotor average and its gradients."""

from __future__ import annotations

import math
import random
from dataclasses import dataclass

import numpy as np

from turbine_model.parameters import Array, Turbine

_LENGTH_SCALES = (340.0, 113.0, 28.0)  # longitudinal, lateral, vertical, m
_SHARES = (1.0, 0.8, 0.5)  # of the longitudinal standard deviation
_GRADIENT_SHARE = 0.35  # of what the rotor averages out, seen as a gradient in one direction
_HIGHEST_FREQUENCY = 2.5  # Hz


@dataclass(frozen=True)
class WindClimate:
    """Mean hub wind speed, m/s, turbulence intensity, shear exponent and random seed."""

    mean_speed: float
    intensity: float
    seed: int
    shear: float = 0.14


@dataclass(frozen=True)
class Wind:
    """Wind at equidistant times, each signal of shape (times,).

    The three components are those at the hub. `rotor` is the longitudinal
    component averaged over the disc, `gradient_up` and `gradient_across` are
    its slopes over the disc, 1/s. Signals repeat after `period`.
    """

    time: Array
    longitudinal: Array
    lateral: Array
    vertical: Array
    rotor: Array
    gradient_up: Array
    gradient_across: Array

    @classmethod
    def generate(cls, climate: WindClimate, turbine: Turbine, time: Array, period: float) -> Wind:
        """Sum the harmonics of a Kaimal spectrum with random phases.

        Parameters
        ----------
        climate : WindClimate
            Mean, intensity and seed.
        turbine : Turbine
            Its rotor does the averaging.
        time : Array
            Times asked for, s; times before 0 are those before the end of the period.
        period : float
            Length of the record, s, over which the mean is exact.
        """
        count = int(period * _HIGHEST_FREQUENCY)
        frequency = np.arange(1, count + 1) / period
        source = random.Random(climate.seed)
        deviation = climate.mean_speed * climate.intensity

        def phases() -> Array:
            return np.array([2.0 * math.pi * source.random() for _ in range(count)])

        def signal(amplitude: Array, phase: Array) -> Array:
            angle = 2.0 * math.pi * frequency[:, None] * time[None, :] + phase[:, None]
            total: Array = (amplitude[:, None] * np.cos(angle)).sum(axis=0)
            return total

        along, across, up = (
            deviation * share * _amplitudes(frequency, scale / climate.mean_speed)
            for share, scale in zip(_SHARES, _LENGTH_SCALES, strict=True)
        )
        width = math.sqrt(math.pi) * turbine.radius
        admittance = 1.0 / (1.0 + (2.0 * frequency * width / climate.mean_speed) ** (4.0 / 3.0))
        lost = along * np.sqrt(1.0 - admittance**2)
        slope = _GRADIENT_SHARE * lost / turbine.radius
        phase = phases()
        return cls(
            time=time,
            longitudinal=climate.mean_speed + signal(along, phase),
            lateral=signal(across, phases()),
            vertical=signal(up, phases()),
            rotor=climate.mean_speed + signal(along * admittance, phase),
            gradient_up=signal(slope, phases()),
            gradient_across=signal(slope, phases()),
        )

    def at(self, time: Array) -> Wind:
        """Return the wind interpolated to other times."""
        return Wind(
            time,
            *(
                np.interp(time, self.time, signal)
                for signal in (
                    self.longitudinal,
                    self.lateral,
                    self.vertical,
                    self.rotor,
                    self.gradient_up,
                    self.gradient_across,
                )
            ),
        )


def _amplitudes(frequency: Array, time_scale: float) -> Array:
    """Return the amplitudes of harmonics of unit variance in all, in a Kaimal spectrum."""
    spectrum = time_scale / (1.0 + 6.0 * frequency * time_scale) ** (5.0 / 3.0)
    amplitude: Array = np.sqrt(2.0 * spectrum / math.fsum(spectrum))
    return amplitude
