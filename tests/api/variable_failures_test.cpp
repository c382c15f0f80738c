// Failures of variables that no file on disk leads to.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "api/group_facts.h"
#include "api/narrow_variable.h"
#include "api/variable_statistics.h"
#include "model/axes.h"
#include "model/group1d.h"
#include "tests/support/message_of.h"

namespace {

using SumaraApi::Extremum;
using SumaraApi::FailureCodeOf;
using SumaraApi::NarrowVariable;
using SumaraApi::StatsType;
using SumaraApi::Variable1D;
using SumaraApi::Variable2D;
using testing_support::MessageOf;

TEST(VariableFailuresTest, EachStatisticHasItsCode) {
  EXPECT_EQ(FailureCodeOf(StatsType::kMaximum), 151);
  EXPECT_EQ(FailureCodeOf(StatsType::kMinimum), 152);
  EXPECT_EQ(FailureCodeOf(StatsType::kMean), 150);
  EXPECT_EQ(FailureCodeOf(Extremum::kMaximum), 154);
  EXPECT_EQ(FailureCodeOf(Extremum::kMinimum), 155);
}

TEST(VariableFailuresTest, OtherStatisticsRaise132And133) {
  for (const int id : {3, -1}) {
    EXPECT_EQ(
        MessageOf([&] { FailureCodeOf(static_cast<StatsType>(id)); }),
        "Sumara Tables error: Unsupported stats type.\nFurther information: Stats type ID = " +
            std::to_string(id));
  }
  EXPECT_EQ(MessageOf([] { FailureCodeOf(static_cast<Extremum>(2)); }),
            "Sumara Tables error: Unsupported extremum type.");
}

TEST(VariableFailuresTest, NoVariableIsNarrowedToNone) {
  const std::string message =
      "Sumara Tables error: Variable supplied was null.\nFurther information: Run: /runs/run1";
  const auto run = [] { return std::string("/runs/run1"); };
  EXPECT_EQ(MessageOf([&] { NarrowVariable<Variable1D<float>>(nullptr, run); }), message);
  EXPECT_EQ(MessageOf([&] { NarrowVariable<Variable2D<int>>(nullptr, run); }), message);
}

TEST(VariableFailuresTest, GroupOfShortsHasNoDataType) {
  Sumara::GroupDescription description;
  description.path = "/runs/run1.%01";
  description.name = "Counts";
  description.dataSource = "UserDefined";
  const Sumara::CGroup1D<short> group(
      description, std::make_shared<Sumara::CIntervalAxis>("Time", "T", 0.0, 0.5));
  EXPECT_EQ(MessageOf([&] { SumaraApi::DataTypeOf(group); }),
            "Sumara Tables error: Data type is not supported by the Tabulon API.\nFurther "
            "information: File path: /runs/Counts\nInner exception: Data precision not supported");
}

}  // namespace
