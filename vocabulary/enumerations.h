#pragma once

#include <cstdint>

// The enumerations of the public interface, with the numbers that scripts see.

namespace SumaraApi {

/// The type in which data is read.
enum class DataTypeSpecifier : std::int32_t {
  ReadAsSerialisedType = 0,  ///< each group in the type in which it was written
  ReadAsFloat32 = 1,
  ReadAsFloat64 = 2,
};

/// The type of a variable's values. Not the data type code of a header.
enum class VariableDataType : std::int32_t { Float32 = 0, Float64 = 1, Int32 = 2 };

/// The form of a group's data file.
enum class VariableDataFormat : std::int32_t { ASCII = 0, Binary = 1 };

/// How far a search for runs goes.
enum class SearchScope : std::int32_t { RecursiveSearch = 0, RootDirectoryOnly = 1 };

/// How a search compares run names.
enum class CaseSensitivity : std::int32_t { IgnoreCase = 0, MatchCase = 1 };

/// The kind of an independent variable's axis.
enum class AxisTypeId : std::int32_t {
  IntervalAxis = 0,
  LabelledValueAxis = 1,
  LabelledStringAxis = 2
};

/// Whether writing an output group writes a termination file too.
enum class TEFileCreation : std::int32_t { Create = 0, DoNotCreate = 1 };

/// What writing does when there is a header file already.
enum class OverwriteBehaviour : std::int32_t {
  OverwriteExistingOutput = 0,
  DoNotOverwriteExistingOutput = 1
};

/// The position of an independent variable in its group.
enum class IndependentVariableId : std::int32_t {
  PrimaryIndependentVariable = 0,
  SecondaryIndependentVariable = 1
};

/// The format of an output specification.
enum class FileFormat : std::int32_t { Tolvan = 0 };

/// How a run ended. Negative values but `Unknown` are filters for searches only.
enum class CompletionState : std::int32_t {
  AllCompletionStates = -3,
  UnsuccessfulRunsOnly = -2,
  Unknown = -1,
  InProgress = 0,
  CompletedNormally = 1,
  Terminated = 2,
  Errored = 3,
  Aborted = 4,
};

/// The calculation that produced a run. Negative values but `Unknown` are filters for searches
/// only.
enum class CalculationType : std::int32_t {
  AllCalculationTypes = -5,
  AllTurbineSimulations = -4,
  AllSupportingCalculations = -3,
  AllPostProcessingCalculations = -2,
  Unknown = -1,
  WindTurbulence = 3,
  AerodynamicInformation = 4,
  PerformanceCoefficients = 5,
  SteadyPowerCurve = 6,
  SteadyOperationalLoads = 7,
  SteadyParkedLoads = 8,
  DynamicPowerCurve = 9,
  PowerProductionSimulation = 10,
  NormalStopSimulation = 11,
  EmergencyStopSimulation = 12,
  StartUpSimulation = 13,
  IdlingSimulation = 14,
  ParkedSimulation = 15,
  BasicStatistics = 16,
  FourierHarmonicsAnalysis = 17,
  PeriodicComponentAnalysis = 18,
  ExtremePredictionAnalysis = 19,
  AutoSpectralDensityAnalysis = 20,
  CrossSpectralDensityAnalysis = 21,
  ProbabilityDensityAnalysis = 22,
  PeakAnalysis = 23,
  LevelCrossingFrequencyAnalysis = 24,
  RainflowCycleAnalysis = 25,
  FatigueAnalysis = 26,
  AnnualEnergyYieldAnalysis = 27,
  ChannelCombination = 28,
  UltimateLoadsAnalysis = 29,
  UltimateLoadCasesAnalysis = 30,
  FlickerAnalysis = 31,
  EarthquakeGeneration = 32,
  ModelLinearisation = 33,
  ExtremeLoadExtrapolation = 35,
  ElectricalPerformance = 38,
  SeaState = 40,
  MooringStiffness = 41,
  UserDefined = 1000,
};

}  // namespace SumaraApi
