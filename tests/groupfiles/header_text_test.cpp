#include "groupfiles/header_text.h"

#include <gtest/gtest.h>

#include <limits>

#include "core/element_types.h"

namespace {

using Sumara::AxisDescription;
using Sumara::AxisMethod;

TEST(HeaderTextTest, RecordLengthAndFormatFollowTheType) {
  struct Row {
    std::uint32_t type;
    int length;
    const char* format;
  };
  for (const Row row :
       {Row{1, 4, "R*4"}, Row{2, 8, "R*8"}, Row{3, 2, "I*2"}, Row{4, 4, "I*4"}, Row{5, 8, "I*8"}}) {
    EXPECT_EQ(Sumara::RecordLengthOf(row.type), row.length);
    EXPECT_EQ(Sumara::FormatOf(row.type), row.format);
  }
  EXPECT_EQ(Sumara::RecordLengthOf(0), 0);
  EXPECT_EQ(Sumara::RecordLengthOf(6), 0);
}

TEST(HeaderTextTest, TopHasEachFieldOnALine) {
  Sumara::HeaderTop top;
  top.dataFileName = "run.$01";
  top.binary = true;
  top.dataType = Sumara::kLongCode;
  top.headerRecordCount = 3;
  top.content = "UserDefined";
  top.axisCount = 2;
  top.dimensions = {4, 3, 100};
  top.name = "Two  blanks";
  EXPECT_EQ(Sumara::TopText(top),
            "FILE\trun.$01\n"
            "ACCESS\tD\n"
            "FORM\tF\n"
            "RECL\t8\n"
            "FORMAT\tI*8\n"
            "CONTENT\t'UserDefined'\n"
            "CONFIG\t''\n"
            "NDIMENS\t3\n"
            "DIMENS\t4\t3\t100\n"
            "GENLAB\t'Two  blanks'\n");
}

TEST(HeaderTextTest, OnlyQuantitiesWithWhiteSpaceAreQuoted) {
  EXPECT_EQ(Sumara::VariablesText({{"Rotor speed", "P"}, {"A/T", "my\tunit"}}),
            "VARIAB\t'Rotor speed' 'P'\n"
            "VARUNIT\tA/T 'my\tunit'\n");
  AxisDescription axis;
  axis.name = "x";
  axis.quantity = "two words";
  axis.step = -1.0;
  EXPECT_EQ(Sumara::AxisText(axis, 7),
            "AXISLAB\t'x'\n"
            "AXIUNIT\t'two words'\n"
            "AXIMETH\t2\n"
            "MIN \t0.0000000E+00\n"
            "STEP\t-1.0000000E+00\n");
}

TEST(HeaderTextTest, LabelsAreListedWithABlankBetween) {
  AxisDescription axis;
  axis.name = "Blade";
  axis.quantity = "N";
  axis.method = AxisMethod::kStrings;
  axis.labels = {"tip", "", "mid span"};
  EXPECT_EQ(Sumara::AxisText(axis, 7),
            "AXISLAB\t'Blade'\nAXIUNIT\tN\nAXIMETH\t1\nAXITICK\t'tip' '' 'mid span'\n");
  axis.method = AxisMethod::kValues;
  axis.values = {0.1, -2.0, 12345.0};
  EXPECT_EQ(Sumara::AxisText(axis, 7),
            "AXISLAB\t'Blade'\nAXIUNIT\tN\nAXIMETH\t3\n"
            "AXIVAL\t0.1000000 -2.0000000 12345.0000000\n");
  EXPECT_EQ(Sumara::AxisText(axis, 15),
            "AXISLAB\t'Blade'\nAXIUNIT\tN\nAXIMETH\t3\n"
            "AXIVAL\t0.100000000000000 -2.000000000000000 12345.000000000000000\n");
}

TEST(HeaderTextTest, NamedParametersAreCountedAlsoIfThereAreNone) {
  EXPECT_EQ(Sumara::NamedParametersText({}), "NVARS\t0\n");
  EXPECT_EQ(Sumara::NamedParametersText({"HUBHEIGHT 80", "  'as it stands'"}),
            "NVARS\t2\nHUBHEIGHT 80\n  'as it stands'\n");
}

TEST(HeaderTextTest, ASignTakesThePlaceOfABlank) {
  EXPECT_EQ(Sumara::UloadsText<float>({{1.5F, -0.0F}, {-20.0F, 0.0F}}, 7),
            "ULOADS   1.5000000E+00  -0.0000000E+00\n"
            "  -2.0000000E+01   0.0000000E+00\n");
  EXPECT_EQ(Sumara::UloadsText<short>({{short{7}, short{-7}}}, 7), "ULOADS   7  -7\n");
  EXPECT_EQ(Sumara::UloadsText<Sumara::Long>({{Sumara::Long(-2147483647)}}, 7),
            "ULOADS  -2147483647\n");
  EXPECT_EQ(Sumara::StatisticsText("MEAN", {0.25, -1e-5}, 7),
            "MEAN   2.5000000E-01  -1.0000000E-05\n");
  EXPECT_EQ(Sumara::StatisticsText("MEAN", {0.1}, 15), "MEAN   1.000000000000000E-01\n");
}

TEST(HeaderTextTest, WholeStatisticsAreCutTowardZero) {
  EXPECT_EQ(Sumara::WholeStatisticsText("MAXTIME", {2.9, -2.9, 0.0}), "MAXTIME 2 -2 0\n");
  EXPECT_EQ(Sumara::WholeStatisticsText("MINTIME", {3e9}), "MINTIME -2147483648\n");
  EXPECT_EQ(Sumara::WholeStatisticsText("MINTIME", {std::numeric_limits<double>::quiet_NaN()}),
            "MINTIME -2147483648\n");
}

}  // namespace
