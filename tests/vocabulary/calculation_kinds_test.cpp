#include "vocabulary/calculation_kinds.h"

#include <gtest/gtest.h>

#include <iterator>
#include <string>
#include <vector>

namespace {

using SumaraApi::CalculationType;

enum class Class { kNone, kTurbine, kSupporting, kPostProcessing };

constexpr const char* kUnknownText =
    "Unknown calculation (a type of calculation not recognised by the Tabulon API)";

struct Row {
  CalculationType type;
  int number;
  std::vector<std::string> shortNames;
  std::string descriptiveName;
  Class kind;
  bool supported;
};

const std::vector<Row>& Table() {
  using enum CalculationType;
  using enum Class;
  static const std::vector<Row> table = {
      {Unknown, -1, {}, kUnknownText, kNone, false},
      {WindTurbulence, 3, {"WIND"}, "Turbulent wind generation", kSupporting, false},
      {AerodynamicInformation, 4, {"AEROINF"}, "Aerodynamic information", kSupporting, true},
      {PerformanceCoefficients, 5, {"PCOEFF"}, "Performance coefficients", kSupporting, true},
      {SteadyPowerCurve, 6, {"PCURVE1"}, "Steady power curve", kSupporting, true},
      {SteadyOperationalLoads, 7, {"SLOAD"}, "Steady operational loads", kTurbine, true},
      {SteadyParkedLoads, 8, {"SPLOAD"}, "Steady parked loads", kTurbine, true},
      {DynamicPowerCurve, 9, {}, kUnknownText, kSupporting, true},
      {PowerProductionSimulation, 10, {"POWPROD"}, "Power production simulation", kTurbine, true},
      {NormalStopSimulation, 11, {"NSTOP"}, "Normal stop simulation", kTurbine, true},
      {EmergencyStopSimulation, 12, {"ESTOP"}, "Emergency stop simulation", kTurbine, true},
      {StartUpSimulation, 13, {"START"}, "Start-up simulation", kTurbine, true},
      {IdlingSimulation, 14, {"IDLING"}, "Idling simulation", kTurbine, true},
      {ParkedSimulation, 15, {"PLOAD"}, "Parked simulation", kTurbine, true},
      {BasicStatistics, 16, {"STATS"}, "Basic statistics", kPostProcessing, true},
      {FourierHarmonicsAnalysis,
       17,
       {"FOURHARM"},
       "Fourier harmonics analysis",
       kPostProcessing,
       true},
      {PeriodicComponentAnalysis,
       18,
       {"PERCOMP"},
       "Periodic component analysis",
       kPostProcessing,
       true},
      {ExtremePredictionAnalysis,
       19,
       {"EXTREME"},
       "Extreme prediction analysis",
       kPostProcessing,
       false},
      {AutoSpectralDensityAnalysis,
       20,
       {"ASD"},
       "Auto-spectral density analysis",
       kPostProcessing,
       true},
      {CrossSpectralDensityAnalysis,
       21,
       {"CROSS"},
       "Cross-spectral density analysis",
       kPostProcessing,
       true},
      {ProbabilityDensityAnalysis,
       22,
       {"PROBD"},
       "Probability distribution analysis",
       kPostProcessing,
       true},
      {PeakAnalysis, 23, {"PEAK"}, "Peak analysis", kPostProcessing, true},
      {LevelCrossingFrequencyAnalysis,
       24,
       {"LEVEL"},
       "Level crossing frequency analysis",
       kPostProcessing,
       true},
      {RainflowCycleAnalysis,
       25,
       {"CYCLES1", "CYCLES2", "CYCLES3", "EQLD"},
       "Rainflow analysis",
       kPostProcessing,
       true},
      {FatigueAnalysis,
       26,
       {"DAMAGE1", "DAMAGE2", "DAMAGE3"},
       "Fatigue analysis",
       kPostProcessing,
       true},
      {AnnualEnergyYieldAnalysis,
       27,
       {"AEY"},
       "Annual energy yield analysis",
       kPostProcessing,
       true},
      {ChannelCombination, 28, {"CHAN"}, "Channel combination", kPostProcessing, true},
      {UltimateLoadsAnalysis, 29, {}, "Ultimate loads analysis", kPostProcessing, false},
      {UltimateLoadCasesAnalysis,
       30,
       {"MMX"},
       "Ultimate load cases analysis",
       kPostProcessing,
       true},
      {FlickerAnalysis, 31, {"FLICKER"}, "Flicker analysis", kPostProcessing, true},
      {EarthquakeGeneration, 32, {"QUAKE"}, "Earthquake generation", kSupporting, false},
      {ModelLinearisation,
       33,
       {"Linearisation", "CAMPBELL", "NA"},
       "Model linearisation",
       kSupporting,
       true},
      {ExtremeLoadExtrapolation, 35, {}, "Extreme load extrapolation", kPostProcessing, false},
      {ElectricalPerformance, 38, {"Electrical"}, "Electrical performance", kSupporting, true},
      {SeaState, 40, {}, "Sea state generation", kSupporting, false},
      {MooringStiffness, 41, {"MooringStiffness"}, "Mooring stiffness", kSupporting, true},
      {UserDefined, 1000, {"UserDefined"}, "User-defined output", kNone, true},
  };
  return table;
}

TEST(CalculationKindsTest, NumbersAreThoseThatScriptsSee) {
  for (const Row& row : Table()) {
    EXPECT_EQ(static_cast<int>(row.type), row.number) << row.descriptiveName;
  }
  EXPECT_EQ(static_cast<int>(CalculationType::AllCalculationTypes), -5);
  EXPECT_EQ(static_cast<int>(CalculationType::AllTurbineSimulations), -4);
  EXPECT_EQ(static_cast<int>(CalculationType::AllSupportingCalculations), -3);
  EXPECT_EQ(static_cast<int>(CalculationType::AllPostProcessingCalculations), -2);
}

TEST(CalculationKindsTest, EachShortNameGivesItsType) {
  std::size_t names = 0;
  for (const Row& row : Table()) {
    for (const std::string& name : row.shortNames) {
      EXPECT_EQ(SumaraApi::CalculationTypeOf(name), row.type) << name;
    }
    names += row.shortNames.size();
  }
  EXPECT_EQ(names, 39u);
}

TEST(CalculationKindsTest, OtherTextsGiveUnknown) {
  for (const char* text : {"", "powprod", "Powprod", " POWPROD", "POWPROD ", "'POWPROD'", "CYCLES",
                           "CYCLES4", "DAMAGE", "LINEARISATION", "userdefined", "TURB", "DYNPOW"}) {
    EXPECT_EQ(SumaraApi::CalculationTypeOf(text), CalculationType::Unknown) << text;
  }
}

TEST(CalculationKindsTest, DescriptiveNamesOfAllTypes) {
  for (const Row& row : Table()) {
    EXPECT_EQ(SumaraApi::DescriptiveNameOf(row.type), row.descriptiveName) << row.number;
  }
}

TEST(CalculationKindsTest, OtherValuesHaveTheTextForUnknown) {
  for (const int value : {-5, -4, -3, -2, 0, 1, 2, 34, 36, 37, 39, 42, 999, 1001}) {
    EXPECT_EQ(SumaraApi::DescriptiveNameOf(static_cast<CalculationType>(value)), kUnknownText)
        << value;
  }
}

TEST(CalculationKindsTest, ClassesDoNotOverlap) {
  for (const Row& row : Table()) {
    EXPECT_EQ(SumaraApi::IsTurbineSimulation(row.type), row.kind == Class::kTurbine) << row.number;
    EXPECT_EQ(SumaraApi::IsSupporting(row.type), row.kind == Class::kSupporting) << row.number;
    EXPECT_EQ(SumaraApi::IsPostProcessing(row.type), row.kind == Class::kPostProcessing)
        << row.number;
  }
}

TEST(CalculationKindsTest, ValuesOutsideTheTableAreInNoClass) {
  for (const int value : {-5, -4, -3, -2, 0, 1, 2, 34, 36, 37, 39, 42, 999, 1001}) {
    const auto type = static_cast<CalculationType>(value);
    EXPECT_FALSE(SumaraApi::IsTurbineSimulation(type)) << value;
    EXPECT_FALSE(SumaraApi::IsSupporting(type)) << value;
    EXPECT_FALSE(SumaraApi::IsPostProcessing(type)) << value;
  }
}

TEST(CalculationKindsTest, SupportIsDeniedToSevenValuesOnly) {
  for (const Row& row : Table()) {
    EXPECT_EQ(SumaraApi::IsSupported(row.type), row.supported) << row.number;
  }
  for (const int value : {-5, -4, -3, -2, 0, 1, 2, 34, 36, 37, 39, 42, 999, 1001}) {
    EXPECT_TRUE(SumaraApi::IsSupported(static_cast<CalculationType>(value))) << value;
  }
}

}  // namespace
