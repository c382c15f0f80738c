"""The enumerations of the library as classes.

Members are integers, and go where the library asks for one.
"""

from enum import IntEnum

import _TabulonAPI_Python as _native

__all__ = [
    "AxisTypeId",
    "CalculationType",
    "CaseSensitivity",
    "CompletionState",
    "DataTypeSpecifier",
    "FileFormat",
    "IndependentVariableId",
    "OverwriteBehaviour",
    "SearchScope",
    "TEFileCreation",
    "VariableDataFormat",
    "VariableDataType",
]


class DataTypeSpecifier(IntEnum):
    """The type in which data is read."""

    ReadAsSerialisedType = _native.DataTypeSpecifier_ReadAsSerialisedType
    ReadAsFloat32 = _native.DataTypeSpecifier_ReadAsFloat32
    ReadAsFloat64 = _native.DataTypeSpecifier_ReadAsFloat64


class VariableDataType(IntEnum):
    """The type of a variable's values."""

    Float32 = _native.VariableDataType_Float32
    Float64 = _native.VariableDataType_Float64
    Int32 = _native.VariableDataType_Int32


class VariableDataFormat(IntEnum):
    """The form of a group's data file."""

    ASCII = _native.VariableDataFormat_ASCII
    Binary = _native.VariableDataFormat_Binary


class SearchScope(IntEnum):
    """How far a search for runs goes."""

    RecursiveSearch = _native.SearchScope_RecursiveSearch
    RootDirectoryOnly = _native.SearchScope_RootDirectoryOnly


class CaseSensitivity(IntEnum):
    """How a search compares run names."""

    IgnoreCase = _native.CaseSensitivity_IgnoreCase
    MatchCase = _native.CaseSensitivity_MatchCase


class AxisTypeId(IntEnum):
    """The kind of values of an independent variable."""

    IntervalAxis = _native.AxisTypeId_IntervalAxis
    LabelledValueAxis = _native.AxisTypeId_LabelledValueAxis
    LabelledStringAxis = _native.AxisTypeId_LabelledStringAxis


class TEFileCreation(IntEnum):
    """Whether writing an output group writes a termination file too."""

    Create = _native.TEFileCreation_Create
    DoNotCreate = _native.TEFileCreation_DoNotCreate


class OverwriteBehaviour(IntEnum):
    """What writing does where there is a header file already."""

    OverwriteExistingOutput = _native.OverwriteBehaviour_OverwriteExistingOutput
    DoNotOverwriteExistingOutput = _native.OverwriteBehaviour_DoNotOverwriteExistingOutput


class CalculationType(IntEnum):
    """The calculation that produced a run.

    The negative values other than ``Unknown`` are categories for searches.
    """

    AllCalculationTypes = _native.CalculationType_AllCalculationTypes
    AllTurbineSimulations = _native.CalculationType_AllTurbineSimulations
    AllSupportingCalculations = _native.CalculationType_AllSupportingCalculations
    AllPostProcessingCalculations = _native.CalculationType_AllPostProcessingCalculations
    Unknown = _native.CalculationType_Unknown
    WindTurbulence = _native.CalculationType_WindTurbulence
    AerodynamicInformation = _native.CalculationType_AerodynamicInformation
    PerformanceCoefficients = _native.CalculationType_PerformanceCoefficients
    SteadyPowerCurve = _native.CalculationType_SteadyPowerCurve
    SteadyOperationalLoads = _native.CalculationType_SteadyOperationalLoads
    SteadyParkedLoads = _native.CalculationType_SteadyParkedLoads
    DynamicPowerCurve = _native.CalculationType_DynamicPowerCurve
    PowerProductionSimulation = _native.CalculationType_PowerProductionSimulation
    NormalStopSimulation = _native.CalculationType_NormalStopSimulation
    EmergencyStopSimulation = _native.CalculationType_EmergencyStopSimulation
    StartUpSimulation = _native.CalculationType_StartUpSimulation
    IdlingSimulation = _native.CalculationType_IdlingSimulation
    ParkedSimulation = _native.CalculationType_ParkedSimulation
    BasicStatistics = _native.CalculationType_BasicStatistics
    FourierHarmonicsAnalysis = _native.CalculationType_FourierHarmonicsAnalysis
    PeriodicComponentAnalysis = _native.CalculationType_PeriodicComponentAnalysis
    ExtremePredictionAnalysis = _native.CalculationType_ExtremePredictionAnalysis
    AutoSpectralDensityAnalysis = _native.CalculationType_AutoSpectralDensityAnalysis
    CrossSpectralDensityAnalysis = _native.CalculationType_CrossSpectralDensityAnalysis
    ProbabilityDensityAnalysis = _native.CalculationType_ProbabilityDensityAnalysis
    PeakAnalysis = _native.CalculationType_PeakAnalysis
    LevelCrossingFrequencyAnalysis = _native.CalculationType_LevelCrossingFrequencyAnalysis
    RainflowCycleAnalysis = _native.CalculationType_RainflowCycleAnalysis
    FatigueAnalysis = _native.CalculationType_FatigueAnalysis
    AnnualEnergyYieldAnalysis = _native.CalculationType_AnnualEnergyYieldAnalysis
    ChannelCombination = _native.CalculationType_ChannelCombination
    UltimateLoadsAnalysis = _native.CalculationType_UltimateLoadsAnalysis
    UltimateLoadCasesAnalysis = _native.CalculationType_UltimateLoadCasesAnalysis
    FlickerAnalysis = _native.CalculationType_FlickerAnalysis
    EarthquakeGeneration = _native.CalculationType_EarthquakeGeneration
    ModelLinearisation = _native.CalculationType_ModelLinearisation
    ExtremeLoadExtrapolation = _native.CalculationType_ExtremeLoadExtrapolation
    ElectricalPerformance = _native.CalculationType_ElectricalPerformance
    SeaState = _native.CalculationType_SeaState
    MooringStiffness = _native.CalculationType_MooringStiffness
    UserDefined = _native.CalculationType_UserDefined


class CompletionState(IntEnum):
    """How a run ended.

    The negative values other than ``Unknown`` are filters for searches.
    """

    AllCompletionStates = _native.CompletionState_AllCompletionStates
    UnsuccessfulRunsOnly = _native.CompletionState_UnsuccessfulRunsOnly
    Unknown = _native.CompletionState_Unknown
    InProgress = _native.CompletionState_InProgress
    CompletedNormally = _native.CompletionState_CompletedNormally
    Terminated = _native.CompletionState_Terminated
    Errored = _native.CompletionState_Errored
    Aborted = _native.CompletionState_Aborted


class IndependentVariableId(IntEnum):
    """The place of an independent variable in its group."""

    PrimaryIndependentVariable = _native.IndependentVariableId_PrimaryIndependentVariable
    SecondaryIndependentVariable = _native.IndependentVariableId_SecondaryIndependentVariable


class FileFormat(IntEnum):
    """The format of what is written."""

    Tolvan = _native.FileFormat_Tolvan
