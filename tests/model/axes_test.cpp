#include "model/axes.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/model/make_groups.h"
#include "tests/support/message_of.h"

namespace {

using Sumara::CIntervalAxis;
using Sumara::CLabelledStringAxis;
using Sumara::CLabelledValueAxis;
using Sumara::kPrimary;
using Sumara::kSecondary;
using testing_support::Add;
using testing_support::Interval;
using testing_support::MessageOf;
using testing_support::NewGroup1D;
using testing_support::NewGroup2D;
using testing_support::Strings;
using testing_support::Values;

const char* const kBadName =
    "Sumara Tables error: Axis name must not be empty, must contain at least one non-whitespace "
    "character, and must "
    "not contain carriage return or line feed characters.";
const char* const kBadQuantity =
    "Sumara Tables error: Axis quantity code must not be empty, must contain at least one "
    "non-whitespace character, "
    "and must not contain carriage return or line feed characters.\nFurther information: Axis "
    "name: 'Time'";
const char* const kNotFound =
    "Sumara Tables error: Axis index not found - unable to return corresponding axis "
    "value.\nFurther information: ";

TEST(CAxisBaseTest, InvalidNamesAreRefused) {
  for (const char* name : {"", " ", "\t\v\f", "a\nb", "a\r", "\n"}) {
    EXPECT_EQ(MessageOf([&] { CIntervalAxis(name, "T", 0, 1); }), kBadName);
    EXPECT_EQ(MessageOf([&] { CLabelledValueAxis(name, "T", {1}, kPrimary); }), kBadName);
    EXPECT_EQ(MessageOf([&] { CLabelledStringAxis(name, "T", {"a"}, kPrimary); }), kBadName);
  }
}

TEST(CAxisBaseTest, InvalidQuantitiesAreRefused) {
  for (const char* quantity : {"", " ", "\t\v\f", "a\nb", "a\r", "\n"}) {
    EXPECT_EQ(MessageOf([&] { CIntervalAxis("Time", quantity, 0, 1); }), kBadQuantity);
    EXPECT_EQ(MessageOf([&] { CLabelledValueAxis("Time", quantity, {1}, kPrimary); }),
              kBadQuantity);
  }
}

TEST(CAxisBaseTest, ChecksComeInOrder) {
  EXPECT_EQ(MessageOf([] { CIntervalAxis("", "", 0, 0); }), kBadName);
  EXPECT_EQ(MessageOf([] { CIntervalAxis("Time", "", 0, 0); }), kBadQuantity);
  EXPECT_EQ(MessageOf([] { CLabelledValueAxis("Time", "", {}, kPrimary); }), kBadQuantity);
}

TEST(CIntervalAxisTest, StepOfZeroIsRefused) {
  const char* const failure =
      "Sumara Tables error: Interval axis step size must be non-zero.\nFurther information: Axis "
      "name: 'Time'";
  EXPECT_EQ(MessageOf([] { CIntervalAxis("Time", "T", 1, 0.0); }), failure);
  EXPECT_EQ(MessageOf([] { CIntervalAxis("Time", "T", 1, -0.0); }), failure);
  EXPECT_EQ(MessageOf([] { CIntervalAxis("Time", "T", 1, -1e-300); }), "no exception");
}

TEST(CIntervalAxisTest, NewAxis) {
  CIntervalAxis axis("Time", "T", 1.5, -2);
  EXPECT_EQ(axis.GetName(), "Time");
  EXPECT_EQ(axis.GetQuantity(), "T");
  EXPECT_EQ(axis.GetMinimum(), 1.5);
  EXPECT_EQ(axis.GetStep(), -2);
  EXPECT_EQ(axis.GetAxisType(), 0u);
  EXPECT_EQ(axis.GetPosition(), 0u);
  EXPECT_EQ(axis.GetNumberOfPoints(), 0u);
  EXPECT_TRUE(axis.GetValues().empty());
  EXPECT_TRUE(axis.GetLabelsAsStrings(1).empty());
}

TEST(CIntervalAxisTest, ValuesCountThePointsOfTheGroup) {
  const auto group = NewGroup1D<float>(Interval(0.5, -0.25));
  Add(*group, "a", {1, 2, 3});
  const auto axis = group->GetIntervalAxis(kPrimary, true);
  EXPECT_EQ(axis->GetValues(), (std::vector<double>{0.5, 0.25, 0.0}));
  EXPECT_EQ(axis->DataAtIndex(2), 0.0);
  EXPECT_EQ(MessageOf([&] { axis->DataAtIndex(3); }),
            std::string(kNotFound) + "Axis name: 'Time'; axis index: 3");
  EXPECT_EQ(MessageOf([&] { axis->GetLabelAsString(3, 1); }),
            std::string(kNotFound) + "Axis name: 'Time'; axis index: 3");
}

TEST(CIntervalAxisTest, MultiplicationComesFirst) {
  const auto group = NewGroup1D<float>(Interval(0.1, 0.7));
  Add(*group, "a", {1, 2, 3, 4});
  EXPECT_EQ(group->GetIntervalAxis(kPrimary, true)->GetValues()[3], 3 * 0.7 + 0.1);
}

TEST(CIntervalAxisTest, ValuesStayUntilTheNumberOfPointsIsSet) {
  const auto group = NewGroup1D<float>();
  const auto series = Add<float>(*group, "a", {1, 2});
  const auto axis = group->GetIntervalAxis(kPrimary, true);
  const auto handedOut = axis->ShareValues();
  EXPECT_EQ(axis->GetLabelsAsStrings(1),
            (std::vector<std::string>{"0.0000000E+00", "5.0000000E-01"}));
  series->AddSeriesPoints(std::vector<float>{3}, true);
  EXPECT_EQ(axis->GetValues().size(), 2u);
  EXPECT_EQ(axis->GetLabelsAsStrings(2).size(), 2u);
  axis->SetNumberOfPoints(3);
  EXPECT_EQ(axis->GetValues(), (std::vector<double>{0, 0.5, 1}));
  EXPECT_EQ(axis->GetLabelsAsStrings(2),
            (std::vector<std::string>{"0.000000000000000E+00", "5.000000000000000E-01",
                                      "1.000000000000000E+00"}));
  EXPECT_EQ(*handedOut, (std::vector<double>{0, 0.5}));
}

TEST(CIntervalAxisTest, NumberThatWasSetCountsBeforeThatOfTheGroup) {
  CIntervalAxis axis("Time", "T", 1, 1);
  axis.SetNumberOfPoints(2);
  EXPECT_EQ(axis.GetValues(), (std::vector<double>{1, 2}));
  EXPECT_EQ(axis.GetNumberOfPoints(), 2u);
}

TEST(CLabelledAxisTest, NewAxis) {
  CLabelledValueAxis values("Radius", "L", {1.5, 2}, kPrimary);
  EXPECT_EQ(values.GetAxisType(), 1u);
  EXPECT_EQ(values.GetLabels(), (std::vector<double>{1.5, 2}));
  CLabelledStringAxis strings("Part", "N", {"Hub", ""}, kPrimary);
  EXPECT_EQ(strings.GetAxisType(), 2u);
  EXPECT_EQ(strings.GetLabels(), (std::vector<std::string>{"Hub", ""}));
}

TEST(CLabelledAxisTest, NoLabelsAreRefused) {
  const char* const failure =
      "Sumara Tables error: Labelled axis labels array must not be empty.\nFurther information: "
      "Axis name: 'Part'";
  EXPECT_EQ(MessageOf([] { CLabelledValueAxis("Part", "N", {}, kPrimary); }), failure);
  EXPECT_EQ(MessageOf([] { CLabelledStringAxis("Part", "N", {}, kSecondary); }), failure);
}

TEST(CLabelledAxisTest, EqualLabelsAreRefusedWhereTheyHaveToBeUnique) {
  const char* const failure =
      "Sumara Tables error: Axis labels are not unique.\nFurther information: Axis name: 'Part'";
  EXPECT_EQ(MessageOf([] { CLabelledValueAxis("Part", "N", {1, 2, 1}, kSecondary); }), failure);
  EXPECT_EQ(MessageOf([] {
              CLabelledStringAxis("Part", "N", {"a", "b", "b"}, kSecondary);
            }),
            failure);
  EXPECT_EQ(MessageOf([] {
              CLabelledStringAxis("Part", "N", {"Blade", "BLADE", "Blad"}, kSecondary);
            }),
            "no exception");
  EXPECT_EQ(MessageOf([] { CLabelledValueAxis("Part", "N", {1, 1}, kPrimary); }), "no exception");
  EXPECT_EQ(MessageOf([] { CLabelledValueAxis("Part", "N", {1, 1}, 2); }), "no exception");
}

TEST(CLabelledAxisTest, PrimaryAxisCountsPointsAndASecondaryOneLabels) {
  CLabelledValueAxis axis("Radius", "L", {1, 2, 3}, kPrimary);
  EXPECT_EQ(axis.GetNumberOfPoints(), 0u);
  axis.SetNumberOfPoints(2);
  EXPECT_EQ(axis.GetNumberOfPoints(), 2u);
  axis.SetPosition(kSecondary);
  EXPECT_EQ(axis.GetNumberOfPoints(), 3u);
}

TEST(CLabelledAxisTest, LabelsByTheirIndex) {
  CLabelledValueAxis values("Radius", "L", {1.5, -2}, kPrimary);
  EXPECT_EQ(values.DataAtIndex(1), -2);
  EXPECT_EQ(values.GetNumberAtIndex(1), -2);
  EXPECT_EQ(values.GetLabelAsString(0, 1), "1.5000000E+00");
  EXPECT_EQ(values.GetLabelAsString(0, 2), "1.500000000000000E+00");
  CLabelledStringAxis strings("Part", "N", {"Hub", "Blade"}, kPrimary);
  EXPECT_EQ(strings.DataAtIndex(1), "Blade");
  EXPECT_EQ(strings.GetNumberAtIndex(1), 1.0);
  EXPECT_EQ(strings.GetLabelAsString(0, 2), "Hub");
  EXPECT_EQ(MessageOf([&] { values.DataAtIndex(2); }),
            std::string(kNotFound) + "Axis name: 'Radius'; axis index: 2");
  EXPECT_EQ(MessageOf([&] { strings.GetLabelAsString(~std::uint64_t{0}, 1); }),
            std::string(kNotFound) + "Axis name: 'Part'; axis index: 18446744073709551615");
}

TEST(CLabelledAxisTest, StringsOfNumbersAreMadeOnce) {
  CLabelledValueAxis axis("Radius", "L", {1.0 / 3}, kPrimary);
  EXPECT_EQ(axis.GetLabelsAsStrings(1), std::vector<std::string>{"3.3333333E-01"});
  EXPECT_EQ(axis.GetLabelsAsStrings(2), std::vector<std::string>{"3.3333333E-01"});
  axis.SetNumberOfPoints(1);
  EXPECT_EQ(axis.GetLabelsAsStrings(2), std::vector<std::string>{"3.3333333E-01"});
  CLabelledValueAxis precise("Radius", "L", {1.0 / 3}, kPrimary);
  EXPECT_EQ(precise.GetLabelsAsStrings(2), std::vector<std::string>{"3.333333333333333E-01"});
}

TEST(CLabelledAxisTest, TextLabelsAreTheirOwnStrings) {
  CLabelledStringAxis axis("Part", "N", {"Hub", "1.5"}, kPrimary);
  EXPECT_EQ(&axis.GetLabelsAsStrings(1), &axis.GetLabels());
}

TEST(CLabelledAxisTest, AllLabelsThatMatchAreFound) {
  const CLabelledValueAxis values("Radius", "L", {1, 2, 1, -0.0}, kPrimary);
  EXPECT_EQ(values.FindIndices(1), (std::vector<std::uint64_t>{0, 2}));
  EXPECT_EQ(values.FindIndices(0.0), (std::vector<std::uint64_t>{3}));
  const CLabelledStringAxis strings("Part", "N", {"Blade", "Hub", "bLADE", "Blade 2"}, kPrimary);
  EXPECT_EQ(strings.FindIndices("BLADE"), (std::vector<std::uint64_t>{0, 2}));
}

TEST(CLabelledAxisTest, ValueThatIsNotFound) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const CLabelledValueAxis values("Radius", "L", {1, nan}, kPrimary);
  const std::string failure =
      "Sumara Tables error: Axis value not found - unable to return corresponding axis "
      "index.\nFurther information: "
      "Axis name: ";
  EXPECT_EQ(MessageOf([&] { values.FindIndices(nan); }), failure + "'Radius'; axis value: nan");
  EXPECT_EQ(MessageOf([&] { values.FindIndices(1.0000001); }), failure + "'Radius'; axis value: 1");
  EXPECT_EQ(MessageOf([&] { values.FindIndices(1.25e-7); }),
            failure + "'Radius'; axis value: 1.25e-07");
  const CLabelledStringAxis strings("Part", "N", {"Blade"}, kPrimary);
  EXPECT_EQ(MessageOf([&] { strings.FindIndices("Blad"); }), failure + "'Part'; axis value: Blad");
}

TEST(AxisOfAGroupTest, EqualLabelsComeToLightInALookup) {
  const auto radius = Values({1.0, 1.0});
  EXPECT_EQ(std::static_pointer_cast<CLabelledValueAxis>(radius)->FindIndices(1.0),
            (std::vector<std::uint64_t>{0, 1}));
  const auto group = NewGroup2D<float>(Interval(), radius);
  EXPECT_EQ(MessageOf([&] { group->GetAxisIndexOfValue(kSecondary, 1.0); }),
            "Sumara Tables error: Axis labels are not unique.\nFurther information: Axis name: "
            "'Radius'; axis value: 1; File path: ./Loads");
}

TEST(AxisOfAGroupTest, GroupKeepsACopyAndTellsItsPosition) {
  const auto time = Interval();
  const auto radius = Values({1, 2});
  const auto group = NewGroup2D<float>(time, radius);
  EXPECT_NE(group->GetAxis(kPrimary, true), time);
  EXPECT_NE(group->GetAxis(kSecondary, true), radius);
  EXPECT_EQ(radius->GetPosition(), kSecondary);
  EXPECT_EQ(group->GetAxis(kSecondary, true)->GetPosition(), kSecondary);
  EXPECT_EQ(group->GetAxis(kPrimary, true)->GetPosition(), kPrimary);
  EXPECT_NE(&group->GetNumericLabels(kSecondary),
            &std::static_pointer_cast<CLabelledValueAxis>(radius)->GetLabels());
}

TEST(AxisOfAGroupTest, CopyAndOriginalKnowTheGroup) {
  const auto time = std::make_shared<CIntervalAxis>("Time", "T", 0.0, 0.5);
  const auto group = NewGroup1D<float>(time);
  Add<float>(*group, "a", {1, 2, 3});
  EXPECT_EQ(time->DataAtIndex(2), 1.0);
  EXPECT_EQ(group->GetIntervalAxis(kPrimary, true)->DataAtIndex(2), 1.0);
}

TEST(AxisOfAGroupTest, CopyKeepsItsCaches) {
  const auto radius =
      std::make_shared<CLabelledValueAxis>("Radius", "L", std::vector<double>{1.5}, kPrimary);
  radius->GetLabelsAsStrings(1);
  const auto group = NewGroup1D<double>(radius);
  EXPECT_EQ(group->GetAxis(kPrimary, true)->GetLabelsAsStrings(2),
            std::vector<std::string>{"1.5000000E+00"});
}

TEST(AxisOfAGroupTest, SecondaryIntervalAxisCountsVectors) {
  const auto group = NewGroup2D<float>(Interval(), Interval(10, 1));
  Add<float>(*group, "a", {{1, 2}, {3, 4}, {5, 6}});
  EXPECT_EQ(group->GetIntervalAxis(kSecondary, true)->GetValues(),
            (std::vector<double>{10, 11, 12}));
  EXPECT_EQ(group->GetIntervalAxis(kPrimary, true)->GetValues(), (std::vector<double>{0, 0.5}));
}

TEST(AxisOfAGroupTest, IntervalAxisOfASecondGroupCountsItsPoints) {
  const auto first = NewGroup1D<float>();
  Add<float>(*first, "a", {1, 2, 3});
  const auto axis = first->GetIntervalAxis(kPrimary, true);
  axis->SetNumberOfPoints(3);  // as a write does
  EXPECT_EQ(axis->GetValues(), (std::vector<double>{0, 0.5, 1}));
  EXPECT_EQ(axis->GetLabelsAsStrings(1).size(), 3u);
  const auto second = NewGroup1D<float>(axis->Copy());
  Add<float>(*second, "a", {1, 2});
  const auto copy = second->GetIntervalAxis(kPrimary, true);
  EXPECT_EQ(copy->GetNumberOfPoints(), 0u) << "it was not told yet";
  EXPECT_EQ(copy->GetValues(), (std::vector<double>{0, 0.5}));
  EXPECT_EQ(copy->GetLabelsAsStrings(1).size(), 2u);
  EXPECT_EQ(axis->GetValues().size(), 3u);
}

TEST(AxisOfAGroupTest, CopiesHaveValuesOfTheirOwn) {
  CIntervalAxis axis("Time", "T", 0, 1);
  axis.SetNumberOfPoints(2);
  const auto values = axis.ShareValues();
  CIntervalAxis copy(axis);
  (*copy.ShareValues())[1] = 9;
  EXPECT_EQ(*values, (std::vector<double>{0, 1}));
  EXPECT_EQ(copy.GetValues(), (std::vector<double>{0, 9}));
  const CLabelledValueAxis radius("Radius", "L", {1.5}, kPrimary);
  const CLabelledValueAxis other(radius);
  (*other.ShareLabels())[0] = 9;
  EXPECT_EQ(radius.GetLabels(), std::vector<double>{1.5});
}

}  // namespace
