#include "model/model_context.h"

#include <gtest/gtest.h>

#include <clocale>
#include <limits>
#include <locale>
#include <sstream>

#include "tests/model/make_groups.h"

namespace {

using namespace Sumara;
using testing_support::Add;
using testing_support::DescriptionOf;
using testing_support::Interval;

TEST(ModelContextTest, Groups) {
  CGroup1D<float> group(DescriptionOf("dir/run.%01"), Interval());
  EXPECT_EQ(GroupContext(&group), "File path: dir/Loads");
  group.SetPath("");
  EXPECT_EQ(GroupContext(&group), "Group name: 'Loads'");
  EXPECT_EQ(GroupContext(nullptr), "No further exception context available - group was null");
}

TEST(ModelContextTest, Series) {
  const CSeries1D<float> alone("Mx", "FL");
  EXPECT_EQ(SeriesContext(&alone), "Series name: 'Mx'");
  const auto group = testing_support::NewGroup1D<float>();
  const auto series = Add<float>(*group, "My");
  EXPECT_EQ(SeriesContext(series.get()), "Series name: 'My'; File path: ./Loads");
  EXPECT_EQ(SeriesContext(nullptr), "No further exception context available - series was null");
  EXPECT_EQ(SeriesContext("Mz", group.get()), "Series name: 'Mz'; File path: ./Loads");
  EXPECT_EQ(SeriesContext("Mz", nullptr), "Series name: 'Mz'; group was null");
}

TEST(ModelContextTest, Axes) {
  const auto group = testing_support::NewGroup1D<float>();
  EXPECT_EQ(AxisContext("Time", 7, group.get()),
            "Axis name: 'Time'; axis index: 7; File path: ./Loads");
  EXPECT_EQ(AxisPositionContext("Time", 0, group.get()),
            "Axis name: 'Time'; Primary axis; File path: ./Loads");
  EXPECT_EQ(AxisPositionContext("Time", 1, group.get()),
            "Axis name: 'Time'; Secondary axis; File path: ./Loads");
  EXPECT_EQ(AxisPositionContext("Time", 2, nullptr),
            "Axis name: 'Time'; Unknown axis; group was null");
}

TEST(ModelContextTest, NumbersAreThoseOfAStream) {
  const std::pair<double, const char*> numbers[] = {{0.0, "0"},
                                                    {-0.0, "-0"},
                                                    {5.0, "5"},
                                                    {2.5, "2.5"},
                                                    {1.0 / 3, "0.333333"},
                                                    {123456, "123456"},
                                                    {1234567, "1.23457e+06"},
                                                    {1e-5, "1e-05"},
                                                    {1e300, "1e+300"}};
  for (const auto& [number, text] : numbers) EXPECT_EQ(NumberText(number), text);
  EXPECT_EQ(NumberText(std::numeric_limits<double>::infinity()), "inf");
}

/// Writes numbers as much of Europe does.
struct DecimalComma final : std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

TEST(ModelContextTest, NumbersDoNotFollowTheLocaleOfStreams) {
  const std::locale before =
      std::locale::global(std::locale(std::locale::classic(), new DecimalComma));
  std::ostringstream stream;
  stream << 2.5;
  const std::string text = NumberText(2.5);
  const std::string large = NumberText(123456);
  std::locale::global(before);
  EXPECT_EQ(stream.str(), "2,5");
  EXPECT_EQ(text, "2.5");
  EXPECT_EQ(large, "123456");
}

TEST(ModelContextTest, NumbersDoNotFollowTheLocaleOfTheSystem) {
  if (std::setlocale(LC_NUMERIC, "de_DE.UTF-8") == nullptr)
    GTEST_SKIP() << "the system has no locale de_DE.UTF-8; the locale of streams is tested always";
  const std::string text = NumberText(2.5);
  std::setlocale(LC_NUMERIC, "C");
  EXPECT_EQ(text, "2.5");
}

}  // namespace
