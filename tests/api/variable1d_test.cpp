#include "api/variable1d.h"

#include <filesystem>

#include "api/group.h"
#include "api/independent_variable.h"
#include "tests/api/api_test.h"

namespace {

namespace fs = std::filesystem;
using namespace SumaraApi;
using testing_support::IntervalAxis;
using testing_support::MessageOf;
using testing_support::SampleGroup;
using testing_support::SampleRun;
using testing_support::StatisticsBlock;

/// Figures that differ from those of the data, so that a test sees which of the two answers.
const std::string kHeaderStatistics =
    StatisticsBlock({"104 140", "101 110", "103 141", "102 109"}, "1 1", "0 0", "2.25 22.25");

class Variable1DTest : public testing_support::ApiTest {
 protected:
  SampleRun Write(const SampleGroup& group) {
    SampleRun sample = Sample("run1");
    sample.Group("01", group);
    return sample;
  }
  std::shared_ptr<Variable1D<float>> Load(const std::string& name) {
    return Get("run1")->GetVariable1D<float>(name);
  }
  std::string Context(const std::string& name) const {
    return "\nFurther information: Series name: '" + name + "'; File path: " + Path("Rotor");
  }
  std::string HasNoStatistics() const {
    return "\nInner exception: Sumara Tables error: Header does not contain stats.\nFurther "
           "information: File path: " +
           Path("Rotor");
  }
};

// What a variable tells without its data.

TEST_F(Variable1DTest, TellsWhatTheHeaderTells) {
  Sample("run1").Header("05", {});
  const VariablePtr variable = Get("run1")->GetVariable("power");
  EXPECT_EQ(variable->GetName(), "Power");
  EXPECT_EQ(variable->GetQuantityCode(), "P");
  EXPECT_EQ(variable->GetSIUnit(), "W");
  EXPECT_EQ(variable->GetNumberOfIndependentVariables(), 1u);
  EXPECT_EQ(variable->GetParentGroupName(), "Rotor");
  EXPECT_EQ(variable->GetParentGroupNumber(), 5u);
  EXPECT_EQ(variable->GetParentGroupHeaderFileFullPath(), Path("run1.%05"));
  EXPECT_EQ(variable->GetTimeDomainSimulationLength(), 2.0);
  EXPECT_EQ(variable->GetDataPointCount(), 4u);
  EXPECT_EQ(variable->GetDataType(), VariableDataType::Float32);
  EXPECT_EQ(variable->GetDataFormat(), VariableDataFormat::Binary);
  const auto axes = variable->GetIndependentVariables();
  ASSERT_EQ(axes.size(), 1u);
  EXPECT_EQ(axes.front()->GetName(), "Time");
  EXPECT_EQ(std::dynamic_pointer_cast<Variable1D<float>>(variable)->GetIndependentVariable(),
            axes.front());
}

TEST_F(Variable1DTest, UnitsOfQuantityCodes) {
  SampleGroup group;
  group.variables = {{"a", "N"}, {"b", "MLL"}, {"c", "Furlong"}, {"d", "I"}, {"e", "Unitless"}};
  Sample("run1").Header("01", group);
  const RunPtr run = Get("run1");
  EXPECT_EQ(run->GetVariable("a")->GetSIUnit(), "Unitless");
  EXPECT_EQ(run->GetVariable("b")->GetSIUnit(), "kgm\xB2");
  EXPECT_EQ(run->GetVariable("c")->GetSIUnit(), "");
  EXPECT_EQ(run->GetVariable("c")->GetQuantityCode(), "Furlong");
  EXPECT_EQ(run->GetVariable("d")->GetSIUnit(), "A");
  EXPECT_EQ(run->GetVariable("e")->GetSIUnit(), "");
}

// Data.

TEST_F(Variable1DTest, DataIsInTheOrderOfTheFile) {
  Write({});
  EXPECT_EQ(Load("Speed")->GetData(), (std::vector<float>{1, 4, 2, 3}));
  EXPECT_EQ(Load("Power")->GetData(), (std::vector<float>{10, 40, 20, 30}));
}

TEST_F(Variable1DTest, DataOfOtherElementTypesAndForms) {
  Write({.format = "R*8", .values = {0.1, 1, 0.2, 2, 0.3, 3, 0.4, 4}});
  EXPECT_EQ(Get("run1")->GetVariable1D<double>("Speed")->GetData(),
            (std::vector<double>{0.1, 0.2, 0.3, 0.4}));
  TabulonApi::ClearRuns();
  Write({.format = "I*4", .values = {1, -1, 2, -2, 3, -3, 2147483647, -2147483648.0}});
  EXPECT_EQ(Get("run1")->GetVariable1D<int>("Power")->GetData(),
            (std::vector<int>{-1, -2, -3, -2147483647 - 1}));
  TabulonApi::ClearRuns();
  Write({.binary = false});
  EXPECT_EQ(Load("Speed")->GetData(), (std::vector<float>{1, 4, 2, 3}));
}

TEST_F(Variable1DTest, SecondRequestReadsNothing) {
  const auto sample = Write({});
  const auto speed = Load("Speed");
  const std::vector<float>& data = speed->GetData();
  fs::remove(sample.Path(".$01"));
  EXPECT_EQ(&speed->GetData(), &data);
  EXPECT_EQ(data, (std::vector<float>{1, 4, 2, 3}));
}

TEST_F(Variable1DTest, MissingDataFileRaises147) {
  Sample("run1").Header("01", {});
  const auto speed = Load("Speed");
  EXPECT_EQ(
      MessageOf([&] { speed->GetData(); }),
      "Sumara Tables error: Getting data for 1D variable failed." + Context("Speed") +
          "\nInner exception: IO error 5000: The file does not exist.\nFurther information: " +
          Path("run1.$01"));
}

TEST_F(Variable1DTest, EmptyDataFileRaises147) {
  Sample("run1").Header("01", {}).Write(".$01", "");
  EXPECT_EQ(MessageOf([&] { Load("Speed")->GetData(); }),
            "Sumara Tables error: Getting data for 1D variable failed." + Context("Speed") +
                "\nInner exception: Sumara Tables error: Group data file empty when expecting to "
                "find data.\nFurther information: expected 8 data points but data file was empty: "
                "File path: " +
                Path("run1.$01"));
}

TEST_F(Variable1DTest, DirectoryInPlaceOfTheDataFileIsNoEmptyFile) {
  Sample("run1").Header("01", {});
  m_directory.MakeDirectory("run1.$01");
  EXPECT_EQ(MessageOf([&] { Load("Speed")->GetData(); }),
            "Sumara Tables error: Getting data for 1D variable failed." + Context("Speed") +
                "\nInner exception: IO error 5007: Stream has error flag(s).\nFurther information: "
                "failbit: last operation on stream invalid - check file or directory exists, path "
                "does not contain illegal characters, and file is not locked by another process\n"
                "Further information: Is a directory\nPath: " +
                Path("run1.$01"));
}

TEST_F(Variable1DTest, ShortDataFileRaises147AndALaterReadSucceeds) {
  const auto sample = Write({.values = {1, 10, 4, 40, 2, 20}});
  const auto speed = Load("Speed");
  EXPECT_EQ(MessageOf([&] { speed->GetData(); }),
            "Sumara Tables error: Getting data for 1D variable failed." + Context("Speed") +
                "\nInner exception: Sumara Tables error: Error reading series data.\nFurther "
                "information: Point index = 3; Series name: 'Speed'; File path: " +
                Path("Rotor") +
                "\nInner exception: IO error 5008: Data requested past end of file.\nFurther "
                "information: word offset = 6; m_totalWordCount = 6; path: " +
                Path("run1.$01"));
  sample.Group("01", {});
  TabulonApi::ClearRuns();
  EXPECT_EQ(Load("Speed")->GetData().size(), 4u);
}

TEST_F(Variable1DTest, UnloadedDataIsReadAgain) {
  const auto sample = Write({.variables = {{"Speed", "A/T"}}, .values = {1, 2, 3, 4}});
  const auto speed = Load("Speed");
  speed->GetData();
  sample.Write(".$01", testing_support::DataBytes({.values = {5, 6, 7, 8}}));
  EXPECT_EQ(speed->GetData().front(), 1.0f);
  speed->Unload();
  EXPECT_EQ(speed->GetData(), (std::vector<float>{5, 6, 7, 8}));
  speed->Unload();
  speed->Unload();
  EXPECT_EQ(speed->GetSIUnit(), "rad/s");
}

TEST_F(Variable1DTest, SharedDataOutlivesUnloadAndRun) {
  Write({});
  auto speed = Load("Speed");
  const auto data = speed->ShareData();
  EXPECT_EQ(&speed->GetData(), data.get());
  speed->Unload();
  EXPECT_EQ(*data, (std::vector<float>{1, 4, 2, 3}));
  speed.reset();
  TabulonApi::ClearRuns();
  EXPECT_EQ(*data, (std::vector<float>{1, 4, 2, 3}));
}

TEST_F(Variable1DTest, UnloadOfTheRunReachesTheVariable) {
  Write({});
  const RunPtr run = Get("run1");
  const auto speed = run->GetVariable1D<float>("Speed");
  const auto data = speed->ShareData();
  EXPECT_TRUE(run->UnloadVariable("speed"));
  const auto again = speed->ShareData();
  EXPECT_NE(again, data);
  EXPECT_EQ(*again, *data);
}

TEST_F(Variable1DTest, UnloadReachesTheDataOfAVariableThatItsGroupListsAnew) {
  Write({});
  const RunPtr run = Get("run1");
  const auto speed = run->GetVariable1D<float>("Speed");
  EXPECT_TRUE(run->UnloadVariable("speed"));
  run->GetAllGroups();  // the name is known again, and nobody has asked for its variable
  const auto data = speed->ShareData();
  EXPECT_TRUE(run->UnloadVariable("speed"));
  EXPECT_NE(speed->ShareData(), data);
  EXPECT_TRUE(run->UnloadVariable("speed"));
  const auto kept = speed->ShareData();
  EXPECT_TRUE(run->UnloadVariable("speed"));  // of an entry without a variable: reaches nothing
  EXPECT_EQ(speed->ShareData(), kept);
}

TEST_F(Variable1DTest, NamesThatDifferInCaseOnlyHaveValuesOfTheirOwn) {
  Write({.variables = {{"speed", "L"}, {"Speed", "L"}}});
  const RunPtr run = Get("run1");
  const std::vector<float> first = {1, 4, 2, 3};
  const std::vector<float> second = {10, 40, 20, 30};
  EXPECT_EQ(run->GetVariable1D<float>("Speed")->GetData(), second);
  EXPECT_EQ(run->GetVariable1D<float>("speed")->GetData(), first);
  EXPECT_EQ(run->GetVariable1D<float>("SPEED")->GetData(), first);
  const auto group = run->GetGroup("Rotor");
  EXPECT_EQ(group->GetVariable("Speed")->GetName(), "Speed");
  EXPECT_EQ(group->GetVariable("SPEED")->GetName(), "speed");
  EXPECT_EQ(group->GetVariable1D<float>("Speed")->GetData(), second);
  const auto all = group->GetAllVariables1D<float>();
  EXPECT_EQ(all[0]->GetData(), first);
  EXPECT_EQ(all[1]->GetData(), second);
}

// Statistics.

TEST_F(Variable1DTest, HeaderStatisticsNeedNoDataFile) {
  Sample("run1").Header("01", {.statistics = kHeaderStatistics});
  const auto speed = Load("Speed");
  const auto power = Load("Power");
  EXPECT_EQ(speed->GetMean(), 2.25);
  EXPECT_EQ(power->GetMean(), 22.25);
  EXPECT_EQ(speed->GetMaximum(), 104.0f);
  EXPECT_EQ(speed->GetMinimum(), 101.0f);
  EXPECT_EQ(power->GetMaximum(), 141.0f);
  EXPECT_EQ(power->GetMinimum(), 109.0f);
  EXPECT_EQ(speed->GetMaximumContemporaneous("Power"), 140.0f);
  EXPECT_EQ(speed->GetMinimumContemporaneous("Power"), 110.0f);
  EXPECT_EQ(power->GetMaximumContemporaneous("Speed"), 103.0f);
  EXPECT_EQ(power->GetMinimumContemporaneous("speed"), 102.0f);
}

TEST_F(Variable1DTest, ContemporaneousOfItselfIsTheExtreme) {
  Sample("run1").Header("01", {.statistics = kHeaderStatistics});
  const auto power = Load("Power");
  EXPECT_EQ(power->GetMinimumContemporaneous("Power"), power->GetMinimum());
  EXPECT_EQ(power->GetMaximumContemporaneous("POWER"), power->GetMaximum());
}

TEST_F(Variable1DTest, StatisticsOfDoubleAndIntegerGroups) {
  Sample("run1").Header("01", {.format = "R*8", .statistics = kHeaderStatistics});
  EXPECT_EQ(Get("run1")->GetVariable1D<double>("Speed")->GetMaximum(), 104.0);
  Sample("run2").Header("01", {.format = "I*4", .statistics = kHeaderStatistics});
  const auto speed = Get("run2")->GetVariable1D<int>("Speed");
  EXPECT_EQ(speed->GetMinimum(), 101);
  EXPECT_EQ(speed->GetMean(), 2.25);
}

TEST_F(Variable1DTest, HeaderAnswersUntilAllDataIsLoaded) {
  Write({.statistics = kHeaderStatistics});
  const auto speed = Load("Speed");
  const auto power = Load("Power");
  EXPECT_EQ(speed->GetMean(), 2.25);  // a preview
  speed->GetData();
  EXPECT_EQ(speed->GetMean(), 2.25);  // a full group with part of its data
  EXPECT_EQ(power->GetMaximum(), 141.0f);
  power->GetData();
  EXPECT_EQ(speed->GetMean(), 2.5);  // all of its data
  EXPECT_EQ(speed->GetMaximum(), 4.0f);
  EXPECT_EQ(power->GetMaximumContemporaneous("Speed"), 4.0f);
  EXPECT_EQ(power->GetMinimumContemporaneous("Speed"), 1.0f);
  power->Unload();
  EXPECT_EQ(speed->GetMean(), 2.25);
  EXPECT_EQ(power->GetMinimum(), 109.0f);
}

TEST_F(Variable1DTest, HeaderAnswersForAGroupThatBecameFullWithoutIt) {
  const auto sample = Write({.statistics = kHeaderStatistics});
  const auto speed = Load("Speed");
  speed->GetData();
  EXPECT_EQ(speed->GetMean(), 2.25);
  EXPECT_EQ(Load("Power")->GetMaximum(), 141.0f);
}

TEST_F(Variable1DTest, MeanWorksAfterUnloadWithoutTheDataFile) {
  const auto sample = Write({.statistics = kHeaderStatistics});
  const auto speed = Load("Speed");
  speed->GetData();
  Load("Power")->GetData();
  EXPECT_EQ(speed->GetMean(), 2.5);
  speed->Unload();
  fs::remove(sample.Path(".$01"));
  EXPECT_EQ(speed->GetMean(), 2.25);
}

TEST_F(Variable1DTest, DataAnswersForAHeaderWithoutStatistics) {
  Write({});
  const auto speed = Load("Speed");
  const auto power = Load("Power");
  EXPECT_EQ(MessageOf([&] { speed->GetMean(); }),
            "Sumara Tables error: Getting variable mean value failed." + Context("Speed") +
                HasNoStatistics());
  EXPECT_EQ(MessageOf([&] { power->GetMaximum(); }),
            "Sumara Tables error: Getting variable maximum value failed." + Context("Power") +
                HasNoStatistics());
  EXPECT_EQ(MessageOf([&] { power->GetMinimum(); }),
            "Sumara Tables error: Getting variable minimum value failed." + Context("Power") +
                HasNoStatistics());
  EXPECT_EQ(MessageOf([&] { power->GetMaximumContemporaneous("Speed"); }),
            "Sumara Tables error: Getting variable contemporaneous maximum value failed." +
                Context("Power") + HasNoStatistics());
  EXPECT_EQ(MessageOf([&] { power->GetMinimumContemporaneous("Speed"); }),
            "Sumara Tables error: Getting variable contemporaneous minimum value failed." +
                Context("Power") + HasNoStatistics());
  speed->GetData();
  power->GetData();
  EXPECT_EQ(speed->GetMean(), 2.5);
  EXPECT_EQ(power->GetMean(), 25.0);
  EXPECT_EQ(power->GetMaximum(), 40.0f);
  EXPECT_EQ(power->GetMaximumContemporaneous("Speed"), 4.0f);
}

TEST_F(Variable1DTest, ContemporaneousOfAnUnknownVariableIsRefused) {
  Sample("run1").Header("01", {.statistics = kHeaderStatistics});
  EXPECT_EQ(MessageOf([&] { Load("Speed")->GetMaximumContemporaneous("Torque"); }),
            "Sumara Tables error: Getting variable contemporaneous maximum value failed." +
                Context("Speed") +
                "\nInner exception: Sumara Tables error: Requested series not found in current "
                "group.\nFurther information: File path: " +
                Path("Rotor"));
}

TEST_F(Variable1DTest, DamagedStatisticsAreRefusedWhenTheyAreAskedFor) {
  Sample("run1").Header("01", {.statistics = "ULOADS 1 2\n 3 4\nMAXTIME 1 1\n"});
  const auto speed = Load("Speed");
  EXPECT_EQ(MessageOf([&] { speed->GetMean(); }),
            "Sumara Tables error: Getting variable mean value failed." + Context("Speed") +
                "\nInner exception: Sumara Tables error: Header does not contain the expected "
                "number of ultimate loads blocks (ULOADS).\nFurther information: File path: " +
                Path("run1.%01"));
  EXPECT_EQ(speed->GetSIUnit(), "rad/s");
}

TEST_F(Variable1DTest, PreviewWithStatisticsIsStillTheOneGroup) {
  Sample("run1").Group("01", {.statistics = kHeaderStatistics});
  const RunPtr run = Get("run1");
  run->GetVariable1D<float>("Speed")->GetMean();
  const auto power = run->GetGroup("Rotor")->GetVariable1D<float>("Power");
  EXPECT_EQ(power->GetData(), (std::vector<float>{10, 40, 20, 30}));
  EXPECT_EQ(run->GetVariable("Power"), power);
}

}  // namespace
