"""The words for how a run ended and what it calculates.

Members are integers, the numbers of the library, and print as their names.
"""

from __future__ import annotations

from enum import IntEnum

from tabulon._public import public

__all__ = [
    "CalculationType",
    "CompletionState",
]


class _Word(IntEnum):
    def __str__(self) -> str:
        return self.name

    def __format__(self, specification: str) -> str:
        return format(self.name, specification)

    def __repr__(self) -> str:
        return f"{type(self).__name__}.{self.name}"


@public
class CompletionState(_Word):
    """How a run ended.

    The negative values other than ``Unknown`` are filters for searches.

    Examples
    --------
    >>> import tabulon as tb
    >>> print(tb.open_run(tb.sample("power_curve")).state)
    CompletedNormally
    """

    AllCompletionStates = -3
    UnsuccessfulRunsOnly = -2
    Unknown = -1
    InProgress = 0
    CompletedNormally = 1
    Terminated = 2
    Errored = 3
    Aborted = 4


@public
class CalculationType(_Word):
    """The calculation that produced a run.

    The negative values other than ``Unknown`` are categories for searches.

    Examples
    --------
    >>> import tabulon as tb
    >>> print(tb.open_run(tb.sample("power_curve")).calculation)
    SteadyPowerCurve
    """

    AllCalculationTypes = -5
    AllTurbineSimulations = -4
    AllSupportingCalculations = -3
    AllPostProcessingCalculations = -2
    Unknown = -1
    WindTurbulence = 3
    AerodynamicInformation = 4
    PerformanceCoefficients = 5
    SteadyPowerCurve = 6
    SteadyOperationalLoads = 7
    SteadyParkedLoads = 8
    DynamicPowerCurve = 9
    PowerProductionSimulation = 10
    NormalStopSimulation = 11
    EmergencyStopSimulation = 12
    StartUpSimulation = 13
    IdlingSimulation = 14
    ParkedSimulation = 15
    BasicStatistics = 16
    FourierHarmonicsAnalysis = 17
    PeriodicComponentAnalysis = 18
    ExtremePredictionAnalysis = 19
    AutoSpectralDensityAnalysis = 20
    CrossSpectralDensityAnalysis = 21
    ProbabilityDensityAnalysis = 22
    PeakAnalysis = 23
    LevelCrossingFrequencyAnalysis = 24
    RainflowCycleAnalysis = 25
    FatigueAnalysis = 26
    AnnualEnergyYieldAnalysis = 27
    ChannelCombination = 28
    UltimateLoadsAnalysis = 29
    UltimateLoadCasesAnalysis = 30
    FlickerAnalysis = 31
    EarthquakeGeneration = 32
    ModelLinearisation = 33
    ExtremeLoadExtrapolation = 35
    ElectricalPerformance = 38
    SeaState = 40
    MooringStiffness = 41
    UserDefined = 1000
