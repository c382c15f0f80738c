"""Section loads of blade and tower, by summing the forces outboard of a section."""

from __future__ import annotations

from dataclasses import dataclass

import numpy as np

from turbine_model.parameters import Array, Turbine
from turbine_model.simulation import History

_TOWER_ELEMENTS = 40


@dataclass(frozen=True)
class BladeLoads:
    """Loads of blade 1 at distances from the root, each of shape (stations, points).

    Moments in Nm, the shear force in N, the deflection in m.
    """

    out_of_plane_moment: Array
    in_plane_moment: Array
    out_of_plane_shear: Array
    out_of_plane_deflection: Array


@dataclass(frozen=True)
class TowerLoads:
    """Bending moments, Nm, and deflection, m, at heights, each of shape (heights, points)."""

    fore_aft_moment: Array
    side_to_side_moment: Array
    fore_aft_deflection: Array


def blade_loads(turbine: Turbine, history: History, distances: Array) -> BladeLoads:
    """Return the loads of blade 1 at `distances` from its root, m.

    Out of plane: air load, inertia of the flap mode and the restoring moment
    of the centrifugal force. In plane: air load and gravity.
    """
    radius = turbine.element_radius - turbine.hub_radius
    width, mass, shape = turbine.element_width, turbine.element_mass, turbine.element_flap_shape
    channels = history.channels
    speed_squared = channels["rotor speed"] ** 2
    pull = (mass * turbine.element_radius)[None, :] * speed_squared[:, None]
    inertia = (mass * shape)[None, :] * channels["flap acceleration"][:, None]
    normal = history.normal * width - inertia
    weight = mass[None, :] * (turbine.gravity * np.sin(channels["azimuth"]))[:, None]
    tangential = history.tangential * width + weight
    flap = channels["flap"]

    rows: list[tuple[Array, Array, Array, Array]] = []
    for distance in distances.tolist():
        share = np.clip((radius - distance) / width + 0.5, 0.0, 1.0)
        # A cut element acts at the middle of its outboard part.
        arm = np.maximum(radius - distance, 0.5 * share * width) * share
        bent = turbine.flap_shape(np.array([distance]))[0]
        lift = flap[:, None] * ((shape - bent) * share)[None, :]
        rows.append(
            (
                (normal * arm - pull * lift).sum(axis=1),
                (tangential * arm).sum(axis=1),
                (normal * share).sum(axis=1),
                flap * bent,
            )
        )
    return BladeLoads(*(np.stack(column) for column in zip(*rows, strict=True)))


def tower_loads(turbine: Turbine, history: History, heights: Array) -> TowerLoads:
    """Return the loads of the tower at `heights` above its base, m."""
    tower = turbine.tower
    width = tower.height / _TOWER_ELEMENTS
    middle = (np.arange(_TOWER_ELEMENTS) + 0.5) * width
    share = middle / tower.height
    mass = (tower.mass_at_base + (tower.mass_at_top - tower.mass_at_base) * share) * width
    channels = history.channels
    ahead = channels["tower fore-aft acceleration"]
    aside = channels["tower side-side acceleration"]
    top_ahead = channels["thrust"] - turbine.tower_top_mass * ahead
    top_aside = channels["side force"] - turbine.tower_top_mass * aside

    rows: list[tuple[Array, Array, Array]] = []
    for height in heights.tolist():
        lever = float((mass * share**2 * np.maximum(middle - height, 0.0)).sum())
        above = tower.height - height
        rows.append(
            (
                top_ahead * above - ahead * lever + channels["tilt moment"],
                top_aside * above - aside * lever + channels["shaft torque"],
                channels["tower fore-aft"] * (height / tower.height) ** 2,
            )
        )
    return TowerLoads(*(np.stack(column) for column in zip(*rows, strict=True)))
