"""The exported surface of the extension module, as data.

Names, types and prototypes stand in `surface.json`, which `scripts/describe-binding` makes of the
interface files: a change of the surface shows as a change of that file. Here stands what each type
of parameter takes and refuses, and the values of the constants.
"""

from __future__ import annotations

import json
from dataclasses import dataclass, replace
from pathlib import Path

#: Suffix, suffix of member templates, element type.
FAMILY = (
    ("Float32", "float32", "float"),
    ("Float64", "float64", "double"),
    ("Int32", "int32", "int"),
)

_ALLOCATED = "std::vector< {0},std::allocator< {0} > >"


@dataclass(frozen=True)
class Parameter:
    """One parameter of a function: what its errors say and which arguments it takes or refuses."""

    type: str
    good: object = None
    """A fitting argument; an object of a class is named by ``object_of``."""
    object_of: str = ""
    wrong: tuple[object, ...] = ()
    """Arguments of the wrong type."""
    overflow: tuple[object, ...] = ()
    """Numbers that do not fit."""
    none_is_null: bool = False
    """None is a null reference; else it is of the wrong type."""


def _enumeration(name: str) -> Parameter:
    return Parameter(
        f"SumaraApi::{name}",
        good=0,
        wrong=(1.0, "0", b"0", None),
        overflow=(2**31, -(2**31) - 1, 2**64, -(2**64)),
    )


def _vector(element: str, good: object, wrong: tuple[object, ...]) -> Parameter:
    return Parameter(
        f"{element} const &", good=good, wrong=(*wrong, 5, object()), none_is_null=True
    )


PARAMETERS = {
    "string": Parameter(
        "std::string const &", good="x", wrong=(5, b"x", 1.5, ["x"], "\ud800"), none_is_null=True
    ),
    "bool": Parameter("bool", good=True, wrong=(1, 0, "True", 1.0, None)),
    "index": Parameter("size_t", good=0, wrong=(1.0, "0", None), overflow=(-1, 2**64, -(2**70))),
    "ptrdiff": Parameter("ptrdiff_t", good=0, wrong=(1.0, "0", None), overflow=(2**63,)),
    "iterator": Parameter(
        "swig::SwigPyIterator const &",
        object_of="SwigPyIterator",
        wrong=(5, "x"),
        none_is_null=True,
    ),
    "vector<float>": _vector(_ALLOCATED.format("float"), [1.5, 2], ([""], [None], "a", [1e39])),
    "vector<double>": _vector(_ALLOCATED.format("double"), [1.5, 2], ([""], [None], "a")),
    "vector<int>": _vector(_ALLOCATED.format("int"), [1, 2], ([1.0], [None], "a", [2**31])),
    **{
        f"table<{element}>": _vector(
            _ALLOCATED.format(_ALLOCATED.format(element)), [[1, 2], (3, 4)], ([1], [[None]], [None])
        )
        for element in ("float", "double", "int")
    },
    **{
        name: _enumeration(name)
        for name in (
            "DataTypeSpecifier",
            "CalculationType",
            "CompletionState",
            "CaseSensitivity",
            "TEFileCreation",
        )
    },
}

_SURFACE = json.loads(Path(__file__).with_name("surface.json").read_text())

#: Exported classes but the arrays, and the library's names of them.
CLASSES: dict[str, str] = _SURFACE["classes"]
#: Those that a script can construct.
CONSTRUCTED = tuple(_SURFACE["constructed"])
#: Array classes and their elements.
ARRAYS: dict[str, str] = _SURFACE["arrays"]
ARRAY_OPERATIONS = (
    "__len__",
    "__bool__",
    "__nonzero__",
    "__getitem__",
    "__setitem__",
    "__delitem__",
    "__getslice__",
    "__setslice__",
    "__delslice__",
    "iterator",
)

_BY_TYPE = {parameter.type: parameter for parameter in PARAMETERS.values()}
_BY_SELF = {
    f"{native} {constness}": Parameter(
        "", object_of=name, wrong=(5, "x", object()), none_is_null=True
    )
    for name, native in CLASSES.items()
    for constness in ("*", "const *")
} | {
    f"std::vector< {element} > *": Parameter(
        "", object_of=name, wrong=(5, "x", [1], object()), none_is_null=True
    )
    for name, element in ARRAYS.items()
}
_POSITION = Parameter("", good=0, wrong=(1.0, "0", None), overflow=(2**63, -(2**63) - 1))


def _parameter(kind: str) -> Parameter:
    """Return the parameter of a type."""
    if kind in _BY_TYPE:
        return _BY_TYPE[kind]
    position = kind.endswith("::difference_type")
    return replace(_POSITION if position else _BY_SELF[kind], type=kind)


#: Functions with one form, by name.
FUNCTIONS: dict[str, tuple[Parameter, ...]] = {
    name: tuple(map(_parameter, types)) for name, types in _SURFACE["functions"].items()
}


@dataclass(frozen=True)
class Overloads:
    """The forms of an overloaded function."""

    least: int
    most: int
    prototypes: tuple[str, ...]


#: Functions with several forms, by name.
OVERLOADS: dict[str, Overloads] = {
    name: Overloads(least, most, tuple(prototypes))
    for name, (least, most, prototypes) in _SURFACE["overloads"].items()
}


def overload_text(name: str) -> str:
    """The error of a call that no form of the function takes."""
    lines = "".join(f"    {line}\n" for line in OVERLOADS[name].prototypes)
    return (
        f"Wrong number or type of arguments for overloaded function '{name}'.\n"
        f"  Possible C/C++ prototypes are:\n{lines}"
    )


REGISTRATION = {
    *(f"{name}_swigregister" for name in (*CLASSES, *ARRAYS)),
    *(f"{name}_swiginit" for name in (*CONSTRUCTED, *ARRAYS)),
}

#: The integer constants in the order of the module, without the housekeeping one before them.
CONSTANTS: dict[str, int] = {
    f"{enumeration}_{name}": value
    for enumeration, members in {
        "DataTypeSpecifier": {"ReadAsSerialisedType": 0, "ReadAsFloat32": 1, "ReadAsFloat64": 2},
        "VariableDataType": {"Float32": 0, "Float64": 1, "Int32": 2},
        "VariableDataFormat": {"ASCII": 0, "Binary": 1},
        "SearchScope": {"RecursiveSearch": 0, "RootDirectoryOnly": 1},
        "CaseSensitivity": {"IgnoreCase": 0, "MatchCase": 1},
        "AxisTypeId": {"IntervalAxis": 0, "LabelledValueAxis": 1, "LabelledStringAxis": 2},
        "TEFileCreation": {"Create": 0, "DoNotCreate": 1},
        "OverwriteBehaviour": {"OverwriteExistingOutput": 0, "DoNotOverwriteExistingOutput": 1},
        "CalculationType": {
            "AllCalculationTypes": -5,
            "AllTurbineSimulations": -4,
            "AllSupportingCalculations": -3,
            "AllPostProcessingCalculations": -2,
            "Unknown": -1,
            "WindTurbulence": 3,
            "AerodynamicInformation": 4,
            "PerformanceCoefficients": 5,
            "SteadyPowerCurve": 6,
            "SteadyOperationalLoads": 7,
            "SteadyParkedLoads": 8,
            "DynamicPowerCurve": 9,
            "PowerProductionSimulation": 10,
            "NormalStopSimulation": 11,
            "EmergencyStopSimulation": 12,
            "StartUpSimulation": 13,
            "IdlingSimulation": 14,
            "ParkedSimulation": 15,
            "BasicStatistics": 16,
            "FourierHarmonicsAnalysis": 17,
            "PeriodicComponentAnalysis": 18,
            "ExtremePredictionAnalysis": 19,
            "AutoSpectralDensityAnalysis": 20,
            "CrossSpectralDensityAnalysis": 21,
            "ProbabilityDensityAnalysis": 22,
            "PeakAnalysis": 23,
            "LevelCrossingFrequencyAnalysis": 24,
            "RainflowCycleAnalysis": 25,
            "FatigueAnalysis": 26,
            "AnnualEnergyYieldAnalysis": 27,
            "ChannelCombination": 28,
            "UltimateLoadsAnalysis": 29,
            "UltimateLoadCasesAnalysis": 30,
            "FlickerAnalysis": 31,
            "EarthquakeGeneration": 32,
            "ModelLinearisation": 33,
            "ExtremeLoadExtrapolation": 35,
            "ElectricalPerformance": 38,
            "SeaState": 40,
            "MooringStiffness": 41,
            "UserDefined": 1000,
        },
        "CompletionState": {
            "AllCompletionStates": -3,
            "UnsuccessfulRunsOnly": -2,
            "Unknown": -1,
            "InProgress": 0,
            "CompletedNormally": 1,
            "Terminated": 2,
            "Errored": 3,
            "Aborted": 4,
        },
        "IndependentVariableId": {
            "PrimaryIndependentVariable": 0,
            "SecondaryIndependentVariable": 1,
        },
        "FileFormat": {"Tolvan": 0},
    }.items()
    for name, value in members.items()
}

#: The variables of the link object, in the order in which they were linked.
VARIABLES = {
    "Run_termination_file_extension": ".$TE",
    "Run_verification_file_extension": ".$VE",
    "Run_message_file_extension": ".$ME",
}
