// The enumerations, as integers `<Enum>_<Enumerator>`. The numbers come from vocabulary/enumerations.h.

namespace SumaraApi {

enum class DataTypeSpecifier { ReadAsSerialisedType, ReadAsFloat32, ReadAsFloat64 };

enum class VariableDataType { Float32, Float64, Int32 };

enum class VariableDataFormat { ASCII, Binary };

enum class SearchScope { RecursiveSearch, RootDirectoryOnly };

enum class CaseSensitivity { IgnoreCase, MatchCase };

enum class AxisTypeId { IntervalAxis, LabelledValueAxis, LabelledStringAxis };

enum class TEFileCreation { Create, DoNotCreate };

enum class OverwriteBehaviour { OverwriteExistingOutput, DoNotOverwriteExistingOutput };

enum class CalculationType {
  AllCalculationTypes,
  AllTurbineSimulations,
  AllSupportingCalculations,
  AllPostProcessingCalculations,
  Unknown,
  WindTurbulence,
  AerodynamicInformation,
  PerformanceCoefficients,
  SteadyPowerCurve,
  SteadyOperationalLoads,
  SteadyParkedLoads,
  DynamicPowerCurve,
  PowerProductionSimulation,
  NormalStopSimulation,
  EmergencyStopSimulation,
  StartUpSimulation,
  IdlingSimulation,
  ParkedSimulation,
  BasicStatistics,
  FourierHarmonicsAnalysis,
  PeriodicComponentAnalysis,
  ExtremePredictionAnalysis,
  AutoSpectralDensityAnalysis,
  CrossSpectralDensityAnalysis,
  ProbabilityDensityAnalysis,
  PeakAnalysis,
  LevelCrossingFrequencyAnalysis,
  RainflowCycleAnalysis,
  FatigueAnalysis,
  AnnualEnergyYieldAnalysis,
  ChannelCombination,
  UltimateLoadsAnalysis,
  UltimateLoadCasesAnalysis,
  FlickerAnalysis,
  EarthquakeGeneration,
  ModelLinearisation,
  ExtremeLoadExtrapolation,
  ElectricalPerformance,
  SeaState,
  MooringStiffness,
  UserDefined
};

enum class CompletionState {
  AllCompletionStates,
  UnsuccessfulRunsOnly,
  Unknown,
  InProgress,
  CompletedNormally,
  Terminated,
  Errored,
  Aborted
};

enum class IndependentVariableId { PrimaryIndependentVariable, SecondaryIndependentVariable };

enum class FileFormat { Tolvan };

}  // namespace SumaraApi
