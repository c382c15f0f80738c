#include "api/variable2d.h"

#include <filesystem>

#include "api/independent_variable.h"
#include "tests/api/api_test.h"

namespace {

namespace fs = std::filesystem;
using namespace SumaraApi;
using testing_support::IntervalAxis;
using testing_support::MessageOf;
using testing_support::SampleAxis;
using testing_support::SampleGroup;
using testing_support::StatisticsBlock;
using testing_support::StringAxis;
using testing_support::ValueAxis;
using Floats = std::vector<float>;

/// A block whose figures begin at `first`; they differ from those of the data.
std::string Statistics(int first) {
  const auto row = [&](int i) {
    return std::to_string(first + 2 * i) + " " + std::to_string(first + 2 * i + 1);
  };
  return StatisticsBlock({row(0), row(1), row(2), row(3)}, "0 0", "1 1",
                         std::to_string(first) + ".5 " + std::to_string(first) + ".75");
}

class Variable2DTest : public testing_support::ApiTest {
 protected:
  /// Two variables over two points of time and three places.
  static SampleGroup Group(const SampleAxis& secondary) {
    SampleGroup group;
    group.axes = {IntervalAxis("Time", "T", "0.0", "0.5", 2), secondary};
    group.values = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    return group;
  }
  static SampleAxis Distances() { return ValueAxis("Distance", "L", {"0.0", "5.0", "10.0"}); }
  static SampleAxis Blades() { return StringAxis("Blade", "N", {"Blade 1", "Blade 2", "Blade 3"}); }

  std::shared_ptr<Variable2D<float>> Load(const SampleGroup& group,
                                          const std::string& name = "Speed") {
    TabulonApi::ClearRuns();
    Sample("run1").Group("01", group);
    return Get("run1")->GetVariable2D<float>(name);
  }
  std::string Context(const std::string& name = "Speed") const {
    return "Series name: '" + name + "'; File path: " + Path("Rotor");
  }
  std::string ContextAt(int index) const {
    return "\nFurther information: Secondary independent variable value index: " +
           std::to_string(index) + "\n" + Context();
  }
  std::string ValueNotFound(const std::string& value, const std::string& reason) const {
    return "Sumara Tables error: Axis value not found - unable to return corresponding axis "
           "index.\nFurther information: Secondary independent variable value: " +
           value + "\n" + Context() +
           "\nInner exception: Labelled secondary axis value not found; " + reason;
  }
  std::string AxisValueNotFound(const std::string& axis, const std::string& value) const {
    return "Sumara Tables error: Axis value not found - unable to return corresponding axis "
           "index.\nFurther information: Axis name: '" +
           axis + "'; axis value: " + value;
  }
  std::string IndexNotFound(int index) const {
    return "\nInner exception: Sumara Tables error: Axis index not found - unable to return "
           "corresponding axis value.\nFurther information: Axis name: 'Distance'; axis index: " +
           std::to_string(index) + "; File path: " + Path("Rotor");
  }
};

// Data.

TEST_F(Variable2DTest, DataAtIndex) {
  const auto speed = Load(Group(Distances()));
  EXPECT_EQ(speed->GetDataAtIndex(0), (Floats{1, 7}));
  EXPECT_EQ(speed->GetDataAtIndex(1), (Floats{3, 9}));
  EXPECT_EQ(speed->GetDataAtIndex(2), (Floats{5, 11}));
  EXPECT_EQ(speed->GetDataPointCount(), 2u);
  EXPECT_EQ(speed->GetNumberOfIndependentVariables(), 2u);
}

TEST_F(Variable2DTest, DataAtValue) {
  const auto speed = Load(Group(Distances()));
  EXPECT_EQ(speed->GetDataAtValue(5.0), (Floats{3, 9}));
  EXPECT_EQ(speed->GetDataAtValue("5.0"), (Floats{3, 9}));
  EXPECT_EQ(speed->GetDataAtValue("1e1"), (Floats{5, 11}));
  EXPECT_EQ(&speed->GetDataAtValue("5"), &speed->GetDataAtIndex(1));
}

TEST_F(Variable2DTest, DataForAllValues) {
  const auto power = Load(Group(Distances()), "Power");
  EXPECT_EQ(power->GetDataAtIndex(2), (Floats{6, 12}));
  EXPECT_EQ(power->GetDataForAllIndependentVariableValues(),
            (std::vector<Floats>{{2, 8}, {4, 10}, {6, 12}}));
}

TEST_F(Variable2DTest, OneSecondaryValueAloneIsRead) {
  const auto speed = Load(Group(Distances()));
  speed->GetDataAtIndex(1);
  // The data file grows no bigger than what is asked for: the second point has no third place.
  Sample("run2").Header("01", Group(Distances()));
  SampleGroup shortened = Group(Distances());
  shortened.values.resize(10);
  Sample("run2").Group("01", shortened);
  const auto cut = Get("run2")->GetVariable2D<float>("Speed");
  EXPECT_EQ(cut->GetDataAtIndex(1), (Floats{3, 9}));
  EXPECT_EQ(MessageOf([&] { cut->GetDataForAllIndependentVariableValues(); }),
            "Sumara Tables error: Getting data for 2D variable (all independent variables) "
            "failed.\nFurther information: " +
                Context() +
                "\nInner exception: Sumara Tables error: Error reading series data.\nFurther "
                "information: Point index = 1; " +
                Context() +
                "\nInner exception: IO error 5008: Data requested past end of file.\nFurther "
                "information: word offset = 10; m_totalWordCount = 10; path: " +
                Path("run2.$01"));
}

TEST_F(Variable2DTest, SecondRequestReadsNothing) {
  const auto speed = Load(Group(Distances()));
  const Floats& data = speed->GetDataAtIndex(1);
  fs::remove(Path("run1.$01"));
  EXPECT_EQ(&speed->GetDataAtIndex(1), &data);
  EXPECT_EQ(&speed->GetDataAtValue(5.0), &data);
}

TEST_F(Variable2DTest, TextData) {
  SampleGroup group = Group(Distances());
  group.binary = false;
  EXPECT_EQ(Load(group)->GetDataAtIndex(2), (Floats{5, 11}));
  group.variables = {{"Speed", "A/T"}};
  group.values = {1, 2, 3, 4, 5, 6};
  EXPECT_EQ(Load(group)->GetDataForAllIndependentVariableValues(),
            (std::vector<Floats>{{1, 4}, {2, 5}, {3, 6}}));
}

TEST_F(Variable2DTest, OtherElementTypes) {
  SampleGroup group = Group(Distances());
  group.format = "R*8";
  Sample("run1").Group("01", group);
  EXPECT_EQ(Get("run1")->GetVariable2D<double>("Power")->GetDataAtIndex(0),
            (std::vector<double>{2, 8}));
  group.format = "I*4";
  Sample("run2").Group("01", group);
  EXPECT_EQ(Get("run2")->GetVariable2D<int>("Power")->GetDataAtValue(10.0),
            (std::vector<int>{6, 12}));
}

TEST_F(Variable2DTest, IndexPastTheLastRaises148) {
  EXPECT_EQ(MessageOf([&] { Load(Group(Distances()))->GetDataAtIndex(3); }),
            "Sumara Tables error: Getting data for 2D variable (specified independent variable) "
            "failed." +
                ContextAt(3) + IndexNotFound(3));
}

TEST_F(Variable2DTest, MissingDataFileRaises148And149) {
  const auto speed = Load(Group(Distances()));
  fs::remove(Path("run1.$01"));
  const std::string missing =
      "\nInner exception: IO error 5000: The file does not exist.\nFurther information: " +
      Path("run1.$01");
  const std::string failed =
      "Sumara Tables error: Getting data for 2D variable (specified independent variable) failed.";
  EXPECT_EQ(MessageOf([&] { speed->GetDataAtIndex(0); }), failed + ContextAt(0) + missing);
  EXPECT_EQ(MessageOf([&] { speed->GetDataAtValue(5.0); }), failed + ContextAt(1) + missing);
  EXPECT_EQ(MessageOf([&] { speed->GetDataAtValue("10"); }), failed + ContextAt(2) + missing);
  EXPECT_EQ(MessageOf([&] { speed->GetDataForAllIndependentVariableValues(); }),
            "Sumara Tables error: Getting data for 2D variable (all independent variables) "
            "failed.\nFurther information: " +
                Context() + missing);
}

TEST_F(Variable2DTest, EqualLabelsAreReachedByIndex) {
  const auto speed = Load(Group(ValueAxis("Distance", "L", {"0.0", "5.0", "5.0"})));
  EXPECT_EQ(speed->GetDataAtValue(5.0), (Floats{3, 9}));
  EXPECT_EQ(speed->GetDataAtValue("5.0"), (Floats{3, 9}));
  EXPECT_EQ(speed->GetDataAtIndex(1), (Floats{3, 9}));
  EXPECT_EQ(speed->GetDataAtIndex(2), (Floats{5, 11}));
}

TEST_F(Variable2DTest, ValuesWithNoiseAreReachedByIndex) {
  const auto speed = Load(Group(ValueAxis("Distance", "L", {"0.0", "5.0000001", "10.0"})));
  EXPECT_EQ(MessageOf([&] { speed->GetDataAtValue(5.0); }), AxisValueNotFound("Distance", "5"));
  EXPECT_EQ(speed->GetDataAtValue(5.0000001), (Floats{3, 9}));
  EXPECT_EQ(speed->GetDataAtIndex(1), (Floats{3, 9}));
}

TEST_F(Variable2DTest, TextThatIsNoValueIsRefused) {
  const auto speed = Load(Group(Distances()));
  EXPECT_EQ(MessageOf([&] { speed->GetDataAtValue("far"); }), ValueNotFound("far", "stod"));
  EXPECT_EQ(MessageOf([&] { speed->GetDataAtValue("1e999"); }), ValueNotFound("1e999", "stod"));
  EXPECT_EQ(MessageOf([&] { speed->GetDataAtValue("4.0"); }),
            ValueNotFound("4.0", AxisValueNotFound("Distance", "4")));
  EXPECT_EQ(MessageOf([&] { speed->GetMeanAtValue("far"); }), ValueNotFound("far", "stod"));
  EXPECT_EQ(MessageOf([&] { speed->GetMaximumAtValue(4.0); }), AxisValueNotFound("Distance", "4"));
}

TEST_F(Variable2DTest, LabelsAreSoughtExactlyForData) {
  const auto speed = Load(Group(Blades()));
  EXPECT_EQ(speed->GetDataAtValue("Blade 2"), (Floats{3, 9}));
  EXPECT_EQ(MessageOf([&] { speed->GetDataAtValue("BLADE 2"); }),
            ValueNotFound("BLADE 2",
                          "Sumara Tables error: Secondary axis value not found.\nFurther "
                          "information: Requested item: 'BLADE 2'"));
}

TEST_F(Variable2DTest, LabelsThatDifferInCaseAreKeptApart) {
  SampleGroup group = Group(StringAxis("Blade", "N", {"blade", "Blade", "BLADE"}));
  group.statistics = Statistics(100) + Statistics(200) + Statistics(300);
  const auto speed = Load(group);
  EXPECT_EQ(speed->GetMeanAtValue("Blade"), 200.5);
  EXPECT_EQ(speed->GetMeanAtValue("blADE"), 100.5);
  EXPECT_EQ(speed->GetDataAtValue("Blade"), (Floats{3, 9}));
  EXPECT_EQ(speed->GetDataAtValue("BLADE"), (Floats{5, 11}));
  EXPECT_EQ(speed->GetDataAtValue("blade"), (Floats{1, 7}));
}

TEST_F(Variable2DTest, NumberOnAnAxisOfLabelsIsRefused) {
  const auto speed = Load(Group(Blades()));
  EXPECT_EQ(MessageOf([&] { speed->GetDataAtValue(1.0); }),
            "Sumara Tables error: Axis does not match the type requested, e.g. a labelled value "
            "axis was requested but a labelled string axis was found.\nFurther information: File "
            "path: " +
                Path("Rotor"));
}

TEST_F(Variable2DTest, IntervalAxisIsAskedByValueToo) {
  const auto speed = Load(Group(IntervalAxis("Distance", "L", "1.0", "0.5", 3)));
  EXPECT_EQ(speed->GetDataAtValue(1.5), (Floats{3, 9}));
  EXPECT_EQ(speed->GetDataAtValue("2"), (Floats{5, 11}));
  EXPECT_EQ(MessageOf([&] { speed->GetDataAtValue(1.25); }), AxisValueNotFound("Distance", "1.25"));
}

TEST_F(Variable2DTest, SharedDataOutlivesUnload) {
  const auto speed = Load(Group(Distances()));
  const auto data = speed->ShareDataAtValue(5.0);
  EXPECT_EQ(data, speed->ShareDataAtIndex(1));
  EXPECT_EQ(data, speed->ShareDataAtValue(std::string("5.0")));
  speed->Unload();
  EXPECT_EQ(*data, (Floats{3, 9}));
  const auto again = speed->ShareDataAtIndex(1);
  EXPECT_NE(again, data);
  EXPECT_EQ(*again, *data);
  TabulonApi::ClearRuns();
  EXPECT_EQ(*data, (Floats{3, 9}));
}

// Independent variables.

TEST_F(Variable2DTest, IndependentVariablesByNameAndId) {
  const auto speed = Load(Group(Distances()));
  EXPECT_EQ(speed->GetIndependentVariable("DISTANCE")->GetName(), "Distance");
  EXPECT_EQ(speed->GetIndependentVariable("time")->GetName(), "Time");
  EXPECT_EQ(
      speed->GetIndependentVariable(IndependentVariableId::PrimaryIndependentVariable)->GetName(),
      "Time");
  EXPECT_EQ(
      speed->GetIndependentVariable(IndependentVariableId::SecondaryIndependentVariable)->GetName(),
      "Distance");
  EXPECT_EQ(MessageOf([&] { speed->GetIndependentVariable("Angle"); }),
            "Sumara Tables error: Independent variable was not found.\nFurther information: "
            "Independent variable name requested: 'Angle'" +
                Context());
  EXPECT_EQ(
      MessageOf([&] { speed->GetIndependentVariable(static_cast<IndependentVariableId>(2)); }),
      "Sumara Tables error: Independent variable was not found.\nFurther information: " +
          Context());
}

// Statistics.

TEST_F(Variable2DTest, HeaderStatisticsNeedNoDataFile) {
  SampleGroup group = Group(Distances());
  group.statistics = Statistics(100) + Statistics(200) + Statistics(300);
  Sample("run1").Header("01", group);
  const auto power = Get("run1")->GetVariable2D<float>("Power");
  EXPECT_EQ(power->GetMeanAtIndex(0), 100.75);
  EXPECT_EQ(power->GetMeanAtIndex(2), 300.75);
  EXPECT_EQ(power->GetMeanAtValue(5.0), 200.75);
  EXPECT_EQ(power->GetMeanAtValue("10.0"), 300.75);
  EXPECT_EQ(power->GetMaximumAtIndex(1), 205.0f);
  EXPECT_EQ(power->GetMaximumAtValue(5.0), 205.0f);
  EXPECT_EQ(power->GetMaximumAtValue("5"), 205.0f);
  EXPECT_EQ(power->GetMinimumAtIndex(1), 207.0f);
  EXPECT_EQ(power->GetMinimumAtValue(10.0), 307.0f);
  EXPECT_EQ(power->GetMinimumAtValue("0"), 107.0f);
  EXPECT_EQ(power->GetMaximumContemporaneousAtIndex("speed", 1), 204.0f);
  EXPECT_EQ(power->GetMaximumContemporaneousAtValue("Speed", 5.0), 204.0f);
  EXPECT_EQ(power->GetMaximumContemporaneousAtValue("Speed", "10"), 304.0f);
  EXPECT_EQ(power->GetMinimumContemporaneousAtIndex("Speed", 2), 306.0f);
  EXPECT_EQ(power->GetMinimumContemporaneousAtValue("Speed", 0.0), 106.0f);
  EXPECT_EQ(power->GetMinimumContemporaneousAtValue("Power", "0"), 107.0f);
}

TEST_F(Variable2DTest, StatisticsAtLabelsWhateverTheirCase) {
  SampleGroup group = Group(Blades());
  group.statistics = Statistics(100) + Statistics(200) + Statistics(300);
  EXPECT_EQ(Load(group)->GetMaximumAtValue("BLADE 2"), 200.0f);
}

TEST_F(Variable2DTest, StatisticsPastTheLastIndexAreRefused) {
  SampleGroup group = Group(Distances());
  group.statistics = Statistics(100) + Statistics(200) + Statistics(300);
  EXPECT_EQ(MessageOf([&] { Load(group)->GetMeanAtIndex(3); }),
            "Sumara Tables error: Getting variable mean value failed." + ContextAt(3) +
                "\nInner exception: Sumara Tables error: Axis index not found - unable to return "
                "corresponding axis value.\nFurther information: Axis name: 'Distance'; Secondary "
                "axis; File path: " +
                Path("Rotor"));
}

TEST_F(Variable2DTest, HeaderWithFewerBlocksAnswersForThose) {
  SampleGroup group = Group(Distances());
  group.statistics = Statistics(100);
  const auto speed = Load(group);
  EXPECT_EQ(speed->GetMeanAtIndex(0), 100.5);
  EXPECT_EQ(MessageOf([&] { speed->GetMaximumAtIndex(1); }),
            "Sumara Tables error: Getting variable maximum value failed." + ContextAt(1) +
                "\nInner exception: Sumara Tables error: Header does not contain stats.\nFurther "
                "information: File path: " +
                Path("Rotor"));
}

TEST_F(Variable2DTest, HeaderAnswersUntilAllDataOfAnIndexIsLoaded) {
  SampleGroup group = Group(Distances());
  group.statistics = Statistics(100) + Statistics(200) + Statistics(300);
  const auto speed = Load(group);
  const auto power = Get("run1")->GetVariable2D<float>("Power");
  speed->GetDataAtIndex(1);
  EXPECT_EQ(speed->GetMeanAtIndex(1), 200.5);
  power->GetDataAtIndex(1);
  EXPECT_EQ(speed->GetMeanAtIndex(1), 6.0);
  EXPECT_EQ(power->GetMaximumAtIndex(1), 10.0f);
  EXPECT_EQ(power->GetMaximumContemporaneousAtIndex("Speed", 1), 9.0f);
  EXPECT_EQ(speed->GetMeanAtIndex(0), 100.5);
  power->Unload();
  EXPECT_EQ(speed->GetMeanAtIndex(1), 200.5);
}

TEST_F(Variable2DTest, DataAnswersForAHeaderWithoutStatistics) {
  const auto speed = Load(Group(Distances()));
  const auto power = Get("run1")->GetVariable2D<float>("Power");
  speed->GetDataForAllIndependentVariableValues();
  power->GetDataForAllIndependentVariableValues();
  EXPECT_EQ(speed->GetMeanAtIndex(2), 8.0);
  EXPECT_EQ(power->GetMinimumAtValue(10.0), 6.0f);
  EXPECT_EQ(speed->GetMinimumContemporaneousAtIndex("Power", 0), 2.0f);
}

}  // namespace
