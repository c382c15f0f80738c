#include <cmath>
#include <limits>

#include "tests/tables/table_fixture.h"

namespace Tabulon {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

class ReductionTest : public TableTest {
 protected:
  /// Figures of rows of two columns of type R*8.
  Reduction Reduced(const std::vector<double>& words, const Selection& selection) {
    WriteHeader(HeaderText::OneAxis()
                    .With("FORMAT", "R*8")
                    .With("DIMENS", "2\t" + std::to_string(words.size() / 2)));
    WriteWords(words);
    return Table().Reduce(selection);
  }
};

TEST_F(ReductionTest, FiguresAreThoseOfTheColumns) {
  const Reduction figures = Reduced({1, 5, 2, 5, 3, 2, 2, 2}, {.variables = {0, 1}});
  EXPECT_EQ(figures.minimum, (std::vector<double>{1, 2}));
  EXPECT_EQ(figures.maximum, (std::vector<double>{3, 5}));
  EXPECT_EQ(figures.minimumRow, (std::vector<std::int64_t>{0, 2}));
  EXPECT_EQ(figures.maximumRow, (std::vector<std::int64_t>{2, 0}));  // the first of equals
  EXPECT_EQ(figures.mean, (std::vector<double>{2, 3.5}));
  EXPECT_DOUBLE_EQ(figures.deviation[0], std::sqrt(0.5));
  EXPECT_EQ(figures.deviation[1], 1.5);
  EXPECT_EQ(figures.count, (std::vector<std::int64_t>{4, 4}));
  EXPECT_EQ(figures.notFinite, (std::vector<std::int64_t>{0, 0}));
}

TEST_F(ReductionTest, ValuesThatAreNotFiniteAreCountedAndLeftOut) {
  const Reduction figures =
      Reduced({kNan, kNan, 4, -kInfinity, kInfinity, kNan, 2, kInfinity}, {.variables = {0, 1}});
  EXPECT_EQ(figures.minimum[0], 2);
  EXPECT_EQ(figures.maximum[0], 4);
  EXPECT_EQ(figures.minimumRow, (std::vector<std::int64_t>{3, -1}));
  EXPECT_EQ(figures.maximumRow, (std::vector<std::int64_t>{1, -1}));
  EXPECT_EQ(figures.mean[0], 3);
  EXPECT_EQ(figures.deviation[0], 1);
  EXPECT_EQ(figures.count, (std::vector<std::int64_t>{2, 0}));
  EXPECT_EQ(figures.notFinite, (std::vector<std::int64_t>{2, 4}));
  EXPECT_TRUE(std::isnan(figures.minimum[1]));
  EXPECT_TRUE(std::isnan(figures.mean[1]));
  EXPECT_TRUE(std::isnan(figures.deviation[1]));
}

TEST_F(ReductionTest, RowsAreThoseOfTheFile) {
  std::vector<double> words;
  for (int i = 0; i < 100; ++i) words.insert(words.end(), {i == 55 ? 9.0 : 0.0, 1.0 * i});
  const Selection selection{.variables = {1, 0}, .first = 5, .count = 19, .step = 5};
  const Reduction figures = Reduced(words, selection);
  EXPECT_EQ(figures.minimumRow, (std::vector<std::int64_t>{5, 5}));
  EXPECT_EQ(figures.maximumRow, (std::vector<std::int64_t>{95, 55}));
}

TEST_F(ReductionTest, ALargeOffsetCostsNoDigits) {
  std::vector<double> words;
  for (int i = 0; i < 100'000; ++i) words.insert(words.end(), {1e9 + (i % 2), 7.25});
  const Reduction figures = Reduced(words, {.variables = {0, 1}});
  EXPECT_EQ(figures.mean, (std::vector<double>{1e9 + 0.5, 7.25}));
  EXPECT_NEAR(figures.deviation[0], 0.5, 1e-9);
  EXPECT_EQ(figures.deviation[1], 0);
}

TEST_F(ReductionTest, IntegersAreReducedExactly) {
  WriteHeader(HeaderText::OneAxis().With("FORMAT", "I*2").With("DIMENS", "2\t4"));
  WriteWords(std::vector<std::int16_t>{-32768, 1, 32767, 2, 0, 3, 1, 4});
  const Reduction figures = Table().Reduce({.variables = {0, 1}});
  EXPECT_EQ(figures.minimum, (std::vector<double>{-32768, 1}));
  EXPECT_EQ(figures.maximum, (std::vector<double>{32767, 4}));
  EXPECT_EQ(figures.mean, (std::vector<double>{0, 2.5}));
}

TEST_F(ReductionTest, TextIsReducedInOnePass) {
  WriteHeader(HeaderText::OneAxis().With("ACCESS", "S").With("DIMENS", "2\t3"));
  WriteText("1 10\n2 20\n6 0\n");
  const Reduction figures = Table().Reduce({.variables = {1, 0}});
  EXPECT_EQ(figures.maximum, (std::vector<double>{20, 6}));
  EXPECT_EQ(figures.mean, (std::vector<double>{10, 3}));
  EXPECT_EQ(figures.maximumRow, (std::vector<std::int64_t>{1, 2}));
}

TEST_F(ReductionTest, NothingIsReducedToNothing) {
  const Reduction figures = Reduced({1, 2}, {.variables = {0}, .count = 0});
  EXPECT_EQ(figures.count, std::vector<std::int64_t>{0});
  EXPECT_TRUE(std::isnan(figures.minimum[0]));
}

}  // namespace
}  // namespace Tabulon
