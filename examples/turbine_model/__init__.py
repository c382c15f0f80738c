"""A small model of a three-bladed 5 MW wind turbine, the source of the bundled runs.

``parameters`` holds the machine, ``rotor`` the aerodynamics, ``wind`` the
inflow, ``controller`` the torque and pitch laws, ``simulation`` the equations
of motion, ``loads`` the section loads, and ``steady`` the steady operating
points. Units are SI throughout, angles are in radians.
"""

from turbine_model.controller import Controller, ControllerState, StatusBit
from turbine_model.loads import BladeLoads, TowerLoads, blade_loads, tower_loads
from turbine_model.parameters import Turbine
from turbine_model.rotor import Rotor
from turbine_model.simulation import Fault, History, Scenario, simulate
from turbine_model.steady import OperatingPoint, operating_point
from turbine_model.wind import Wind, WindClimate

__all__ = [
    "BladeLoads",
    "Controller",
    "ControllerState",
    "Fault",
    "History",
    "OperatingPoint",
    "Rotor",
    "Scenario",
    "StatusBit",
    "TowerLoads",
    "Turbine",
    "Wind",
    "WindClimate",
    "blade_loads",
    "operating_point",
    "simulate",
    "tower_loads",
]
