#include "api/independent_variable.h"

#include "api/group.h"
#include "tests/api/api_test.h"

namespace {

using namespace SumaraApi;
using testing_support::IntervalAxis;
using testing_support::MessageOf;
using testing_support::SampleAxis;
using testing_support::StringAxis;
using testing_support::ValueAxis;
using Texts = std::vector<std::string>;
using Numbers = std::vector<double>;

class IndependentVariableTest : public testing_support::ApiTest {
 protected:
  /// The primary axis of a group of a run.
  IndependentVariablePtr Load(const SampleAxis& axis, const std::string& format = "R*4") {
    TabulonApi::ClearRuns();
    Sample("run1").Header("01", {.format = format, .axes = {axis}});
    return Get("run1")->GetGroup("Rotor")->GetIndependentVariable(
        IndependentVariableId::PrimaryIndependentVariable);
  }
};

// Of a group.

TEST_F(IndependentVariableTest, IntervalAxisOfAGroup) {
  const auto axis = Load(IntervalAxis("Time", "T", "0.5", "-0.25", 4));
  EXPECT_EQ(axis->GetName(), "Time");
  EXPECT_EQ(axis->GetSIUnit(), "s");
  EXPECT_EQ(axis->GetAxisType(), AxisTypeId::IntervalAxis);
  EXPECT_EQ(axis->GetNumberOfValues(), 4u);
  EXPECT_EQ(axis->GetValuesAsNumber(), (Numbers{0.5, 0.25, 0.0, -0.25}));
  EXPECT_EQ(axis->GetValuesAsString(),
            (Texts{"5.0000000E-01", "2.5000000E-01", "0.0000000E+00", "-2.5000000E-01"}));
  EXPECT_EQ(axis->ShareValuesAsNumber().get(), &axis->GetValuesAsNumber());
}

TEST_F(IndependentVariableTest, LabelledNumbersOfAGroup) {
  const auto axis = Load(ValueAxis("Wind speed", "L/T", {"3.0", "10.5", "10.5"}));
  EXPECT_EQ(axis->GetSIUnit(), "m/s");
  EXPECT_EQ(axis->GetAxisType(), AxisTypeId::LabelledValueAxis);
  EXPECT_EQ(axis->GetNumberOfValues(), 3u);
  EXPECT_EQ(axis->GetValuesAsNumber(), (Numbers{3.0, 10.5, 10.5}));
  EXPECT_EQ(axis->GetValuesAsString(), (Texts{"3.0000000E+00", "1.0500000E+01", "1.0500000E+01"}));
}

TEST_F(IndependentVariableTest, LabelledStringsOfAGroup) {
  const auto axis = Load(StringAxis("Blade", "N", {"Blade 1", "2"}));
  EXPECT_EQ(axis->GetSIUnit(), "Unitless");
  EXPECT_EQ(axis->GetAxisType(), AxisTypeId::LabelledStringAxis);
  EXPECT_EQ(axis->GetNumberOfValues(), 2u);
  EXPECT_EQ(axis->GetValuesAsString(), (Texts{"Blade 1", "2"}));
  EXPECT_EQ(MessageOf([&] { axis->GetValuesAsNumber(); }),
            "Sumara Tables error: Labelled string axis labels cannot be requested as numeric "
            "labels.\nFurther information: Axis name: 'Blade'");
}

TEST_F(IndependentVariableTest, DoubleGroupHas15Digits) {
  EXPECT_EQ(Load(ValueAxis("x", "L", {"0.1"}), "R*8")->GetValuesAsString(),
            (Texts{"1.000000000000000E-01"}));
}

TEST_F(IndependentVariableTest, UnknownUnitIsEmpty) {
  EXPECT_EQ(Load(IntervalAxis("x", "Fathom", "0", "1", 2))->GetSIUnit(), "");
}

TEST_F(IndependentVariableTest, AxisOutlivesItsRun) {
  const auto axis = Load(IntervalAxis("Time", "T", "0", "1", 2));
  TabulonApi::ClearRuns();
  EXPECT_EQ(axis->GetValuesAsNumber(), (Numbers{0, 1}));
  EXPECT_EQ(axis->GetName(), "Time");
}

// Without a group.

TEST_F(IndependentVariableTest, IntervalWithoutAGroupHasNoEnd) {
  IndependentVariable axis("Time", "s", 0.0, 0.5);
  EXPECT_EQ(axis.GetName(), "Time");
  EXPECT_EQ(axis.GetSIUnit(), "s");
  EXPECT_EQ(axis.GetAxisType(), AxisTypeId::IntervalAxis);
  EXPECT_EQ(axis.GetNumberOfValues(), 0u);
  EXPECT_EQ(axis.GetValuesAsNumber(), Numbers{});
  EXPECT_EQ(axis.GetValuesAsString(), Texts{});
}

TEST_F(IndependentVariableTest, LabelsWithoutAGroupAreCounted) {
  IndependentVariable numbers("Position", "m", Numbers{1.0, 2.5});
  EXPECT_EQ(numbers.GetAxisType(), AxisTypeId::LabelledValueAxis);
  EXPECT_EQ(numbers.GetNumberOfValues(), 2u);
  EXPECT_EQ(numbers.GetValuesAsNumber(), (Numbers{1.0, 2.5}));
  IndependentVariable texts("Blade", ".", Texts{"a", "b", "c"});
  EXPECT_EQ(texts.GetAxisType(), AxisTypeId::LabelledStringAxis);
  EXPECT_EQ(texts.GetNumberOfValues(), 3u);
  EXPECT_EQ(texts.GetValuesAsString(), (Texts{"a", "b", "c"}));
  EXPECT_EQ(texts.GetSIUnit(), ".");
  EXPECT_EQ(MessageOf([&] { texts.GetValuesAsNumber(); }),
            "Sumara Tables error: Labelled string axis labels cannot be requested as numeric "
            "labels.\nFurther information: Axis name: 'Blade'");
}

TEST_F(IndependentVariableTest, UnitWithoutACodeIsKept) {
  IndependentVariable axis("Depth", "fathom", 0.0, 1.0);
  EXPECT_EQ(axis.GetSIUnit(), "fathom");
}

TEST_F(IndependentVariableTest, BadArgumentsAreRefused) {
  const std::string badName =
      "Sumara Tables error: Independent variable name invalid.\nInner exception: Sumara Tables "
      "error: Axis name must not be empty, must contain at least one non-whitespace character, "
      "and must not contain carriage return or line feed characters.";
  for (const char* name : {"", " \t", "a\nb", "a\rb"}) {
    EXPECT_EQ(MessageOf([&] { IndependentVariable(name, "s", 0.0, 1.0); }), badName);
    EXPECT_EQ(MessageOf([&] { IndependentVariable(name, "", Numbers{}); }), badName);
  }
  const std::string badUnit =
      "Sumara Tables error: Independent variable unit invalid.\nInner exception: Sumara Tables "
      "error: Axis quantity code must not be empty, must contain at least one non-whitespace "
      "character, and must not contain carriage return or line feed characters.\nFurther "
      "information: Axis name: 'x'";
  for (const char* unit : {"", " ", "m\n"}) {
    EXPECT_EQ(MessageOf([&] { IndependentVariable("x", unit, Texts{}); }), badUnit);
  }
  const std::string noLabels =
      "Sumara Tables error: Independent variable labels array empty.\nInner exception: Sumara "
      "Tables error: Labelled axis labels array must not be empty.\nFurther information: Axis "
      "name: 'x'";
  EXPECT_EQ(MessageOf([] { IndependentVariable("x", "m", Texts{}); }), noLabels);
  EXPECT_EQ(MessageOf([] { IndependentVariable("x", "m", Numbers{}); }), noLabels);
  EXPECT_EQ(MessageOf([] { IndependentVariable("x", "m", 1.0, 0.0); }),
            "Sumara Tables error: Interval axis step size must be non-zero.\nFurther information: "
            "Axis name: 'x'");
}

}  // namespace
