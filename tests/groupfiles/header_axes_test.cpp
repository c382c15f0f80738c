#include "tests/groupfiles/header_fixture.h"
#include "tests/support/stream_state.h"

namespace {

using Sumara::AxisMethod;
using testing_support::HeaderText;
using testing_support::ReadHeader;

/// Axis blocks, named parameters and the lists of variables.
class HeaderAxesTest : public testing_support::HeaderFixture {
 protected:
  /// A header of one axis with the lines of its type.
  static HeaderText Labelled(const char* method, const std::string& line) {
    return HeaderText::OneAxis()
        .Without("MIN")
        .Without("STEP")
        .With("AXIMETH", method)
        .After("AXIMETH", {line});
  }
};

TEST_F(HeaderAxesTest, IntervalAxis) {
  const auto axis = Read(HeaderText::OneAxis()).axes.at(0);
  EXPECT_EQ(axis.name, "Time");
  EXPECT_EQ(axis.quantity, "T");
  EXPECT_EQ(axis.method, AxisMethod::kInterval);
  EXPECT_EQ(axis.minimum, 1.0);
  EXPECT_EQ(axis.step, 0.5);
  EXPECT_EQ(axis.pointCount, 3u);
}

TEST_F(HeaderAxesTest, SecondaryAxisComesFirst) {
  const ReadHeader header = Read(HeaderText::TwoAxes());
  ASSERT_EQ(header.axes.size(), 2u);
  EXPECT_EQ(header.axes[0].name, "Radius");
  EXPECT_EQ(header.axes[0].method, AxisMethod::kValues);
  EXPECT_EQ(header.axes[0].values, (std::vector<double>{1.5, 2.5, 3.5}));
  EXPECT_EQ(header.axes[0].pointCount, 3u);
  EXPECT_EQ(header.axes[1].name, "Time");
  EXPECT_EQ(header.axes[1].pointCount, 4u);
}

TEST_F(HeaderAxesTest, StringAxisGoesOnInContinuationLines) {
  const auto axis = Read(Labelled("1", "AXITICK\t'Blade 1' Hub\n\t'Blade  2' ''")).axes.at(0);
  EXPECT_EQ(axis.method, AxisMethod::kStrings);
  EXPECT_EQ(axis.labels, (std::vector<std::string>{"Blade 1", "Hub", "Blade 2", ""}));
}

TEST_F(HeaderAxesTest, ValueAxisGoesOnInContinuationLines) {
  const auto axis = Read(Labelled("3", "AXIVAL\t1 -2.5\n 3E+01\n\t+4")).axes.at(0);
  EXPECT_EQ(axis.values, (std::vector<double>{1, -2.5, 30, 4}));
}

TEST_F(HeaderAxesTest, QuoteMarksOfNameAndQuantityAreStripped) {
  const auto axis =
      Read(HeaderText::OneAxis().With("AXISLAB", "\"Wind  speed\"").With("AXIUNIT", "'L T'"))
          .axes.at(0);
  EXPECT_EQ(axis.name, "Wind speed");
  EXPECT_EQ(axis.quantity, "L T");
}

TEST_F(HeaderAxesTest, LinesMissingRaiseTheirCode) {
  const std::pair<const char*, const char*> fields[] = {
      {"AXISLAB", "Header does not specify axis name (AXISLAB)"},
      {"AXIUNIT", "Header does not specify axis quantity identifier (AXIUNIT)"},
      {"AXIMETH", "Header does not specify axis type (AXIMETH)"},
      {"MIN", "Header does not specify axis minimum value (MIN)"},
      {"STEP", "Header does not specify axis step value (STEP)"},
  };
  for (const auto& [label, words] : fields) {
    EXPECT_EQ(FailureOf(HeaderText::OneAxis().Without(label)), Model(words, label));
  }
  EXPECT_EQ(FailureOf(Labelled("1", "AXIVAL 1")),
            Model("Header does not specify axis discrete string intervals (AXITICK)", "AXITICK"));
  EXPECT_EQ(FailureOf(Labelled("3", "AXITICK a")),
            Model("Header does not specify axis discrete value intervals (AXIVAL)", "AXIVAL"));
}

TEST_F(HeaderAxesTest, SecondBlockMissingRaises104) {
  HeaderText text = HeaderText::TwoAxes();
  text.Without("AXISLAB", 1);
  EXPECT_EQ(FailureOf(text), Model("Header does not specify axis name (AXISLAB)", "AXISLAB"));
}

TEST_F(HeaderAxesTest, MethodOutside1To3Raises129) {
  for (const char* value : {"", "0", "4", "-1", "x", "4294967297"}) {
    EXPECT_EQ(FailureOf(HeaderText::OneAxis().With("AXIMETH", value)),
              Model("Axis type invalid (AXIMETH)"))
        << value;
  }
}

TEST_F(HeaderAxesTest, OpenQuoteInLabelsRaises110) {
  EXPECT_EQ(FailureOf(Labelled("1", "AXITICK\t'Blade 1' 'Hub")),
            Model("Axis discrete string intervals invalid (AXITICK)") +
                "\nInner exception: " + OpenQuote("'Hub"));
}

TEST_F(HeaderAxesTest, BadValueRaises108AndAnEmptyOne5015) {
  for (const char* values : {"1 x", "x", "1 2 nan", "1,5"}) {
    EXPECT_EQ(FailureOf(Labelled("3", std::string("AXIVAL ") + values)),
              Model("Axis discrete value intervals invalid (AXITICK)"))
        << values;
  }
  EXPECT_EQ(FailureOf(Labelled("3", "AXIVAL")),
            "IO error 5015: String to populate from was empty.");
}

TEST_F(HeaderAxesTest, MinimumOrStepThatIsNoNumberRaisesItsCode) {
  for (const char* value : {"", "x", "-"}) {
    EXPECT_EQ(FailureOf(HeaderText::OneAxis().With("MIN", value)),
              Model("Header does not specify axis minimum value (MIN)"));
    EXPECT_EQ(FailureOf(HeaderText::OneAxis().With("STEP", value)),
              Model("Header does not specify axis step value (STEP)"));
  }
}

TEST_F(HeaderAxesTest, EmptyLabelListsAreLeftToTheAxis) {
  EXPECT_TRUE(Read(Labelled("1", "AXITICK")).axes.at(0).labels.empty());
}

TEST_F(HeaderAxesTest, NamedParametersStandAsTheyAre) {
  HeaderText text = HeaderText::OneAxis().With("NVARS", "4");
  text.Append({"GRAVITY\t9.81", "  indented  ", "", "MEAN of it"});
  EXPECT_EQ(Read(text).parameters,
            (std::vector<std::string>{"GRAVITY\t9.81", "  indented  ", "", "MEAN of it"}));
}

TEST_F(HeaderAxesTest, ParametersAreAbsentUnlessDirectlyBehindTheAxes) {
  EXPECT_TRUE(Read(HeaderText::OneAxis()).parameters.empty());
  EXPECT_TRUE(Read(HeaderText::OneAxis().Without("NVARS")).parameters.empty());
  EXPECT_TRUE(
      Read(HeaderText::OneAxis().With("NVARS", "1").Before("NVARS", {"OTHER"}).Append({"a"}))
          .parameters.empty());
  std::string unended = HeaderText::OneAxis().Without("NVARS").Text();
  unended.pop_back();
  EXPECT_TRUE(Read(unended).parameters.empty());
}

TEST_F(HeaderAxesTest, LastParameterNeedsNoLineEnd) {
  EXPECT_EQ(Read(HeaderText::OneAxis().With("NVARS", "1").Text() + "a b").parameters,
            std::vector<std::string>{"a b"});
}

TEST_F(HeaderAxesTest, BadParameterCountRaises103) {
  for (const char* value : {"", "x", "-1", "18446744073709551616"}) {
    EXPECT_EQ(FailureOf(HeaderText::OneAxis().With("NVARS", value)),
              Model("Header does not specify number of optional variables (NVARS)"))
        << value;
  }
}

TEST_F(HeaderAxesTest, MoreParametersThanLinesRaise103) {
  for (const char* value : {"2", "9223372036854775808"}) {
    EXPECT_EQ(FailureOf(HeaderText::OneAxis().With("NVARS", value).Append({"one"})),
              Model("Header does not specify number of optional variables (NVARS)") +
                  "\nInner exception: " + testing_support::PastEndOfFile(Path()));
  }
}

TEST_F(HeaderAxesTest, LineOfWhiteSpaceBehindTheAxesRaises103) {
  EXPECT_EQ(FailureOf(HeaderText::OneAxis().Before("NVARS", {"\t"})),
            Model("Header does not specify number of optional variables (NVARS)") +
                "\nInner exception: " + EmptyLine("NVARS"));
}

TEST_F(HeaderAxesTest, VariablesAndTheirQuantities) {
  const ReadHeader header = Read(HeaderText::OneAxis()
                                     .After("VARIAB", {"\t'Blade  root  Mz'", " 'plain'"})
                                     .With("VARUNIT", "FL 'F L' T N"));
  EXPECT_EQ(header.variables.names,
            (std::vector<std::string>{"Mx", "My", "Blade root Mz", "plain"}));
  EXPECT_EQ(header.variables.quantities, (std::vector<std::string>{"FL", "F L", "T", "N"}));
}

TEST_F(HeaderAxesTest, FirstVariablesFromTheTopWin) {
  HeaderText text = HeaderText::OneAxis();
  text.Append({"VARIAB\t'other' 'one'", "VARUNIT\tA A"});
  EXPECT_EQ(Read(text).variables.names, (std::vector<std::string>{"Mx", "My"}));
  text.Before("FILE", {"VARIAB\t'very' 'first'"});
  EXPECT_EQ(Read(text).variables.names, (std::vector<std::string>{"very", "first"}));
}

TEST_F(HeaderAxesTest, NoVariablesAtAllAreAllowed) {
  const ReadHeader header = Read(HeaderText::OneAxis().With("VARIAB", "").With("VARUNIT", ""));
  EXPECT_TRUE(header.variables.names.Empty());
  EXPECT_TRUE(header.variables.quantities.Empty());
}

TEST_F(HeaderAxesTest, OpenQuotesRaise114And116) {
  EXPECT_EQ(
      FailureOf(HeaderText::OneAxis().With("VARIAB", "'Mx' 'My and")),
      Model("Header variables invalid (VARIAB)") + "\nInner exception: " + OpenQuote("'My and"));
  EXPECT_EQ(FailureOf(HeaderText::OneAxis().With("VARUNIT", "FL '")),
            Model("Header quantity identifier invalid (VARUNIT)") +
                "\nInner exception: " + OpenQuote("'"));
}

TEST_F(HeaderAxesTest, CountsThatDifferRaise117) {
  for (const char* quantities : {"", "FL", "FL FL FL"}) {
    EXPECT_EQ(FailureOf(HeaderText::OneAxis().With("VARUNIT", quantities)),
              Model("Number of header variables (VARIAB) and quantity identifiers (VARUNIT) are "
                    "not the same"));
  }
}

}  // namespace
