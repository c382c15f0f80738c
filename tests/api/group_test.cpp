#include "api/group.h"

#include "api/independent_variable.h"
#include "api/variable1d.h"
#include "api/variable2d.h"
#include "tests/api/api_test.h"

namespace {

using namespace SumaraApi;
using testing_support::IntervalAxis;
using testing_support::MessageOf;
using testing_support::SampleAxis;
using testing_support::SampleGroup;
using testing_support::StringAxis;
using testing_support::ValueAxis;
using Names = std::vector<std::string>;

class GroupTest : public testing_support::ApiTest {
 protected:
  GroupPtr Load(const SampleGroup& group) {
    TabulonApi::ClearRuns();
    Sample("run1").Group("01", group);
    m_run = Get("run1");
    return m_run->GetGroup(group.name);
  }
  static SampleGroup TwoAxes() {
    SampleGroup group;
    group.name = "Blade loads";
    group.axes = {IntervalAxis("Time", "T", "0.0", "0.5", 2),
                  ValueAxis("Distance", "L", {"0.0", "5.0", "10.0"})};
    group.values = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    return group;
  }
  std::string GroupPath(const std::string& name) { return Path("") + name; }

  RunPtr m_run;
};

TEST_F(GroupTest, TellsWhatTheHeaderTells) {
  Sample("run1").Group("07", SampleGroup{.name = "Rotor", .content = "CYCLES2"});
  const GroupPtr group = Get("run1")->GetGroup("rotor");
  EXPECT_EQ(group->GetName(), "Rotor");
  EXPECT_EQ(group->GetNumber(), 7u);
  EXPECT_EQ(group->GetHeaderFilePath(), Path("run1.%07"));
  EXPECT_EQ(group->GetNumberOfVariables(), 2u);
  EXPECT_EQ(group->GetNumberOfIndependentVariables(), 1u);
  EXPECT_EQ(group->GetVariableNames(), (Names{"Speed", "Power"}));
  EXPECT_EQ(group->GetCalculationShortName(), "CYCLES2");
  EXPECT_EQ(group->GetCalculationType(), CalculationType::RainflowCycleAnalysis);
  EXPECT_EQ(group->GetCalculationDescriptiveName(), "Rainflow analysis");
  EXPECT_EQ(group->GetDataPointCount(), 4u);
  EXPECT_EQ(group->GetVariableDataType(), VariableDataType::Float32);
  EXPECT_EQ(group->GetVariableDataFormat(), VariableDataFormat::Binary);
}

TEST_F(GroupTest, ShortNameKeepsTheTextOfTheFile) {
  const GroupPtr group = Load({.content = "EQLD"});
  EXPECT_EQ(group->GetCalculationShortName(), "EQLD");
  EXPECT_EQ(group->GetCalculationType(), CalculationType::RainflowCycleAnalysis);
}

TEST_F(GroupTest, TextDataFileIsAscii) {
  EXPECT_EQ(Load({.binary = false})->GetVariableDataFormat(), VariableDataFormat::ASCII);
}

TEST_F(GroupTest, DataTypes) {
  EXPECT_EQ(Load({.format = "R*8"})->GetVariableDataType(), VariableDataType::Float64);
  EXPECT_EQ(Load({.format = "I*4"})->GetVariableDataType(), VariableDataType::Int32);
  EXPECT_EQ(Load({.format = "n/a"})->GetVariableDataType(), VariableDataType::Float32);
}

TEST_F(GroupTest, TypesWithoutVariablesRaise172) {
  for (const char* format : {"I*2", "I*8"}) {
    EXPECT_EQ(MessageOf([&] { Load({.format = format}); }),
              "Sumara Tables error: Data type is not supported by the Tabulon API.\n"
              "Further information: Series name: 'Speed'; File path: " +
                  GroupPath("Rotor") + "\nInner exception: Data type not supported");
  }
}

TEST_F(GroupTest, VariableIsFoundWhateverItsCase) {
  const GroupPtr group = Load({});
  EXPECT_EQ(group->GetVariable("speed")->GetName(), "Speed");
  EXPECT_EQ(group->GetVariable("POWER")->GetName(), "Power");
  EXPECT_EQ(MessageOf([&] { group->GetVariable("Spee"); }),
            "Sumara Tables error: The variable was not found.\nFurther information: Group name: "
            "'Rotor'; Variable name requested: 'Spee'");
}

TEST_F(GroupTest, ContainsAsksForTheDimensionsToo) {
  const GroupPtr one = Load({});
  EXPECT_TRUE(one->ContainsVariable1D("SPEED"));
  EXPECT_FALSE(one->ContainsVariable2D("Speed"));
  EXPECT_FALSE(one->ContainsVariable1D("other"));
  const GroupPtr two = Load(TwoAxes());
  EXPECT_FALSE(two->ContainsVariable1D("Speed"));
  EXPECT_TRUE(two->ContainsVariable2D("sPEED"));
  EXPECT_FALSE(two->ContainsVariable2D("other"));
}

TEST_F(GroupTest, IndependentVariablesPrimaryFirst) {
  const GroupPtr group = Load(TwoAxes());
  EXPECT_EQ(group->GetNumberOfIndependentVariables(), 2u);
  const auto axes = group->GetIndependentVariables();
  ASSERT_EQ(axes.size(), 2u);
  EXPECT_EQ(axes[0]->GetName(), "Time");
  EXPECT_EQ(axes[1]->GetName(), "Distance");
  EXPECT_EQ(group->GetIndependentVariable("TIME"), axes[0]);
  EXPECT_EQ(group->GetIndependentVariable("distance"), axes[1]);
  EXPECT_EQ(group->GetIndependentVariable(IndependentVariableId::PrimaryIndependentVariable),
            axes[0]);
  EXPECT_EQ(group->GetIndependentVariable(IndependentVariableId::SecondaryIndependentVariable),
            axes[1]);
}

TEST_F(GroupTest, MissingIndependentVariableRaises167) {
  const GroupPtr group = Load({});
  EXPECT_EQ(MessageOf([&] { group->GetIndependentVariable("Azimuth"); }),
            "Sumara Tables error: Independent variable was not found.\nFurther information: Group "
            "name: 'Rotor'; Independent variable name requested: 'Azimuth'");
  for (const int id : {1, 2, -1}) {
    EXPECT_EQ(
        MessageOf([&] { group->GetIndependentVariable(static_cast<IndependentVariableId>(id)); }),
        "Sumara Tables error: Independent variable was not found.\nFurther information: Group "
        "name: 'Rotor'");
  }
}

TEST_F(GroupTest, TypedVariables) {
  const GroupPtr group = Load({});
  const auto speed = group->GetVariable1D<float>("speed");
  EXPECT_EQ(speed->GetData(), (std::vector<float>{1, 4, 2, 3}));
  EXPECT_EQ(speed, m_run->GetVariable("Speed"));
  const auto all = group->GetAllVariables1D<float>();
  ASSERT_EQ(all.size(), 2u);
  EXPECT_EQ(all[0], speed);
  EXPECT_EQ(all[1]->GetName(), "Power");
  const GroupPtr two = Load(TwoAxes());
  EXPECT_EQ(two->GetVariable2D<float>("Speed")->GetDataAtIndex(1), (std::vector<float>{3, 9}));
  EXPECT_EQ(two->GetAllVariables2D<float>().size(), 2u);
}

TEST_F(GroupTest, TypedVariableOfTheWrongKindIsRefused) {
  const GroupPtr group = Load({});
  const std::string context =
      "Further information: Variable name: 'Speed'\nSpecified group name: 'Rotor'\nRun: " +
      Path("run1");
  const std::string not2d =
      "Sumara Tables error: The variable requested is not 2D - call equivalent 1D function to get "
      "variable.\n" +
      context;
  const std::string otherType =
      "Sumara Tables error: The variable was requested using a data type that does not match the "
      "data type used when the variable was read. Call the function appropriate to the data type "
      "of the variable to get variable.\n" +
      context;
  EXPECT_EQ(MessageOf([&] { group->GetVariable2D<float>("Speed"); }), not2d);
  EXPECT_EQ(MessageOf([&] { group->GetAllVariables2D<float>(); }), not2d);
  EXPECT_EQ(MessageOf([&] { group->GetVariable1D<double>("Speed"); }), otherType);
  EXPECT_EQ(MessageOf([&] { group->GetAllVariables1D<int>(); }), otherType);
  const GroupPtr two = Load(TwoAxes());
  EXPECT_EQ(MessageOf([&] { two->GetAllVariables1D<float>(); }),
            "Sumara Tables error: The variable requested is not 1D - call equivalent 2D function "
            "to get variable.\nFurther information: Variable name: 'Speed'\nSpecified group name: "
            "'Blade loads'\nRun: " +
                Path("run1"));
}

TEST_F(GroupTest, MissingTypedVariableShowsGroupAndRun) {
  const GroupPtr group = Load({});
  EXPECT_EQ(MessageOf([&] { group->GetVariable1D<float>("other"); }),
            "Sumara Tables error: The variable was not found.\nFurther information: Variable "
            "name: 'other'\nSpecified group name: 'Rotor'\nRun: " +
                Path("run1"));
  EXPECT_EQ(MessageOf([&] { group->GetVariable1D<float>(""); }),
            "Sumara Tables error: Variable name was not specified.");
}

TEST_F(GroupTest, GroupOutlivesItsRunForAllButTypedVariables) {
  const GroupPtr group = Load({});
  m_run.reset();
  TabulonApi::ClearRuns();
  EXPECT_EQ(group->GetName(), "Rotor");
  EXPECT_EQ(group->GetVariableNames(), (Names{"Speed", "Power"}));
  EXPECT_EQ(group->GetDataPointCount(), 4u);
  EXPECT_EQ(group->GetTimeDomainSimulationLength(), 2.0);
  EXPECT_TRUE(group->ContainsVariable1D("Speed"));
  const VariablePtr variable = group->GetVariable("speed");
  EXPECT_EQ(variable->GetSIUnit(), "rad/s");
  EXPECT_EQ(variable->GetParentGroupHeaderFileFullPath(), Path("run1.%01"));
  EXPECT_EQ(std::dynamic_pointer_cast<Variable1D<float>>(variable)->GetData(),
            (std::vector<float>{1, 4, 2, 3}));

  const std::string unloaded =
      "Sumara Tables error: Group request cannot be fulfilled because the run it belongs to was "
      "unloaded. Reload the run and try again.\nFurther information: Group path: " +
      Path("run1.%01");
  EXPECT_EQ(MessageOf([&] { group->GetVariable1D<float>("Speed"); }), unloaded);
  EXPECT_EQ(MessageOf([&] { group->GetVariable2D<float>("Speed"); }), unloaded);
  EXPECT_EQ(MessageOf([&] { group->GetAllVariables1D<float>(); }), unloaded);
  EXPECT_EQ(MessageOf([&] { group->GetAllVariables2D<double>(); }), unloaded);
}

TEST_F(GroupTest, LengthIsCountTimesStepToFourDecimals) {
  SampleGroup group;
  group.variables = {{"Speed", "A/T"}};
  const auto lengthOf = [&](const std::string& name, const std::string& step, std::size_t count) {
    group.axes = {IntervalAxis(name, "T", "0.0", step, count)};
    group.values.assign(count, 1.0);
    return Load(group)->GetTimeDomainSimulationLength();
  };
  EXPECT_EQ(lengthOf("Time", "0.05", 2001), 100.05);
  EXPECT_EQ(lengthOf("time", "0.5", 3), 1.5);
  EXPECT_EQ(lengthOf("TIME", "0.00005", 1), 0.0001);  // half away from zero
  EXPECT_EQ(lengthOf("Time", "-0.00005", 1), -0.0001);
  EXPECT_EQ(lengthOf("Time", "0.00004", 1), 0.0);
}

TEST_F(GroupTest, LengthWithoutATimeAxisRaises168) {
  const std::string message =
      "Sumara Tables error: Unable to get the simulation length in seconds because the group does "
      "not contain time series data.\nFurther information: File path: " +
      GroupPath("Rotor") + "\nInner exception: Did not find primary interval axis";
  for (const SampleAxis& axis :
       {IntervalAxis("Azimuth", "A", "0.0", "0.5", 4), ValueAxis("Time", "T", {"0", "1", "2", "3"}),
        StringAxis("Time", "T", {"a", "b", "c", "d"}),
        IntervalAxis("Time ' s", "T", "0", "1", 4)}) {
    const GroupPtr group = Load({.axes = {axis}});
    EXPECT_EQ(MessageOf([&] { group->GetTimeDomainSimulationLength(); }), message) << axis.name;
    EXPECT_EQ(MessageOf([&] { group->GetVariable("Speed")->GetTimeDomainSimulationLength(); }),
              message);
  }
}

TEST_F(GroupTest, SecondaryTimeAxisIsNoTimeSeries) {
  SampleGroup group = TwoAxes();
  std::swap(group.axes[0], group.axes[1]);
  const GroupPtr loaded = Load(group);
  EXPECT_EQ(loaded->GetDataPointCount(), 3u);
  EXPECT_EQ(MessageOf([&] { loaded->GetTimeDomainSimulationLength(); }),
            "Sumara Tables error: Unable to get the simulation length in seconds because the group "
            "does not contain time series data.\nFurther information: File path: " +
                GroupPath("Blade loads") + "\nInner exception: Did not find primary interval axis");
}

}  // namespace
