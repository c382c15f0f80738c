#include "vocabulary/calculation_kinds.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace SumaraApi {
namespace {

using enum CalculationType;

struct ShortName {
  std::string_view text;
  CalculationType type;
};

constexpr std::array<ShortName, 39> kShortNames{{
    {"WIND", WindTurbulence},
    {"AEROINF", AerodynamicInformation},
    {"PCOEFF", PerformanceCoefficients},
    {"PCURVE1", SteadyPowerCurve},
    {"SLOAD", SteadyOperationalLoads},
    {"SPLOAD", SteadyParkedLoads},
    {"POWPROD", PowerProductionSimulation},
    {"NSTOP", NormalStopSimulation},
    {"ESTOP", EmergencyStopSimulation},
    {"START", StartUpSimulation},
    {"IDLING", IdlingSimulation},
    {"PLOAD", ParkedSimulation},
    {"STATS", BasicStatistics},
    {"FOURHARM", FourierHarmonicsAnalysis},
    {"PERCOMP", PeriodicComponentAnalysis},
    {"EXTREME", ExtremePredictionAnalysis},
    {"ASD", AutoSpectralDensityAnalysis},
    {"CROSS", CrossSpectralDensityAnalysis},
    {"PROBD", ProbabilityDensityAnalysis},
    {"PEAK", PeakAnalysis},
    {"LEVEL", LevelCrossingFrequencyAnalysis},
    {"CYCLES1", RainflowCycleAnalysis},
    {"CYCLES2", RainflowCycleAnalysis},
    {"CYCLES3", RainflowCycleAnalysis},
    {"EQLD", RainflowCycleAnalysis},
    {"DAMAGE1", FatigueAnalysis},
    {"DAMAGE2", FatigueAnalysis},
    {"DAMAGE3", FatigueAnalysis},
    {"AEY", AnnualEnergyYieldAnalysis},
    {"CHAN", ChannelCombination},
    {"MMX", UltimateLoadCasesAnalysis},
    {"FLICKER", FlickerAnalysis},
    {"QUAKE", EarthquakeGeneration},
    {"Linearisation", ModelLinearisation},
    {"CAMPBELL", ModelLinearisation},
    {"NA", ModelLinearisation},
    {"Electrical", ElectricalPerformance},
    {"MooringStiffness", MooringStiffness},
    {"UserDefined", UserDefined},
}};

struct DescriptiveName {
  CalculationType type;
  std::string_view text;
};

constexpr DescriptiveName kDescriptiveNames[] = {
    {WindTurbulence, "Turbulent wind generation"},
    {AerodynamicInformation, "Aerodynamic information"},
    {PerformanceCoefficients, "Performance coefficients"},
    {SteadyPowerCurve, "Steady power curve"},
    {SteadyOperationalLoads, "Steady operational loads"},
    {SteadyParkedLoads, "Steady parked loads"},
    {PowerProductionSimulation, "Power production simulation"},
    {NormalStopSimulation, "Normal stop simulation"},
    {EmergencyStopSimulation, "Emergency stop simulation"},
    {StartUpSimulation, "Start-up simulation"},
    {IdlingSimulation, "Idling simulation"},
    {ParkedSimulation, "Parked simulation"},
    {BasicStatistics, "Basic statistics"},
    {FourierHarmonicsAnalysis, "Fourier harmonics analysis"},
    {PeriodicComponentAnalysis, "Periodic component analysis"},
    {ExtremePredictionAnalysis, "Extreme prediction analysis"},
    {AutoSpectralDensityAnalysis, "Auto-spectral density analysis"},
    {CrossSpectralDensityAnalysis, "Cross-spectral density analysis"},
    {ProbabilityDensityAnalysis, "Probability distribution analysis"},
    {PeakAnalysis, "Peak analysis"},
    {LevelCrossingFrequencyAnalysis, "Level crossing frequency analysis"},
    {RainflowCycleAnalysis, "Rainflow analysis"},
    {FatigueAnalysis, "Fatigue analysis"},
    {AnnualEnergyYieldAnalysis, "Annual energy yield analysis"},
    {ChannelCombination, "Channel combination"},
    {UltimateLoadsAnalysis, "Ultimate loads analysis"},
    {UltimateLoadCasesAnalysis, "Ultimate load cases analysis"},
    {FlickerAnalysis, "Flicker analysis"},
    {EarthquakeGeneration, "Earthquake generation"},
    {ModelLinearisation, "Model linearisation"},
    {ExtremeLoadExtrapolation, "Extreme load extrapolation"},
    {ElectricalPerformance, "Electrical performance"},
    {SeaState, "Sea state generation"},
    {MooringStiffness, "Mooring stiffness"},
    {UserDefined, "User-defined output"},
};

constexpr std::string_view kUnknownCalculation =
    "Unknown calculation (a type of calculation not recognised by the Tabulon API)";

template <std::size_t N>
bool IsOneOf(CalculationType type, const CalculationType (&types)[N]) {
  return std::find(std::begin(types), std::end(types), type) != std::end(types);
}

}  // namespace

CalculationType CalculationTypeOf(std::string_view shortName) {
  const auto* const found =
      std::find_if(kShortNames.begin(), kShortNames.end(),
                   [&](const ShortName& name) { return name.text == shortName; });
  return found == kShortNames.end() ? Unknown : found->type;
}

std::string DescriptiveNameOf(CalculationType type) {
  const auto found = std::find_if(std::begin(kDescriptiveNames), std::end(kDescriptiveNames),
                                  [&](const DescriptiveName& name) { return name.type == type; });
  return std::string(found == std::end(kDescriptiveNames) ? kUnknownCalculation : found->text);
}

bool IsTurbineSimulation(CalculationType type) {
  return IsOneOf(type, {SteadyOperationalLoads, SteadyParkedLoads, PowerProductionSimulation,
                        NormalStopSimulation, EmergencyStopSimulation, StartUpSimulation,
                        IdlingSimulation, ParkedSimulation});
}

bool IsSupporting(CalculationType type) {
  return IsOneOf(type, {WindTurbulence, AerodynamicInformation, PerformanceCoefficients,
                        SteadyPowerCurve, DynamicPowerCurve, EarthquakeGeneration,
                        ModelLinearisation, ElectricalPerformance, SeaState, MooringStiffness});
}

bool IsPostProcessing(CalculationType type) {
  return (type >= BasicStatistics && type <= FlickerAnalysis) || type == ExtremeLoadExtrapolation;
}

bool IsSupported(CalculationType type) {
  return !IsOneOf(type, {Unknown, WindTurbulence, ExtremePredictionAnalysis, UltimateLoadsAnalysis,
                         EarthquakeGeneration, ExtremeLoadExtrapolation, SeaState});
}

}  // namespace SumaraApi
