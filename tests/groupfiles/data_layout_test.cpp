#include "groupfiles/data_layout.h"

#include <gtest/gtest.h>

namespace {

using Sumara::DataLayout;
using Sumara::ProductOf;

constexpr std::uint64_t kMost = ~std::uint64_t{0};

TEST(DataLayoutTest, OneAxis) {
  const DataLayout layout = DataLayout::Of({3, 10}, 2);
  EXPECT_EQ(layout.variables, 3u);
  EXPECT_EQ(layout.secondary, 1u);
  EXPECT_EQ(layout.headerRecords, 2u);
  EXPECT_EQ(layout.Stride(), 3u);
  EXPECT_EQ(layout.Base(2, 0), 2u);
  EXPECT_EQ(layout.LinesPerPoint(), 1u);
  EXPECT_EQ(layout.ValuesPerLine(), 3u);
  EXPECT_TRUE(layout.Holds(2, 0));
  EXPECT_FALSE(layout.Holds(3, 0));
  EXPECT_FALSE(layout.Holds(0, 1));
}

TEST(DataLayoutTest, TwoAxes) {
  const DataLayout layout = DataLayout::Of({3, 4, 10}, 0);
  EXPECT_EQ(layout.Stride(), 12u);
  EXPECT_EQ(layout.Base(2, 3), 11u);
  EXPECT_EQ(layout.LinesPerPoint(), 4u);
  EXPECT_EQ(layout.ValuesPerLine(), 3u);
  EXPECT_TRUE(layout.Holds(2, 3));
  EXPECT_FALSE(layout.Holds(0, 4));
}

TEST(DataLayoutTest, TwoAxesOfOneVariableHaveOneLineForEachPoint) {
  const DataLayout layout = DataLayout::Of({1, 4, 10}, 0);
  EXPECT_EQ(layout.LinesPerPoint(), 1u);
  EXPECT_EQ(layout.ValuesPerLine(), 4u);
}

TEST(DataLayoutTest, PointsWithinCountsThoseThatHoldTheValue) {
  const DataLayout layout = DataLayout::Of({3, 10}, 0);
  EXPECT_EQ(layout.PointsWithin(0, 0), 0u);
  EXPECT_EQ(layout.PointsWithin(3, 0), 1u);
  EXPECT_EQ(layout.PointsWithin(4, 0), 2u);
  EXPECT_EQ(layout.PointsWithin(4, 1), 1u);
  EXPECT_EQ(layout.PointsWithin(2, 2), 0u);
  EXPECT_EQ(DataLayout::Of({0, 10}, 0).PointsWithin(4, 0), 0u);
}

TEST(DataLayoutTest, StrideBeyondAllNumbersIsTheLargest) {
  EXPECT_EQ(DataLayout::Of({kMost / 2, 3, 1}, 0).Stride(), kMost);
  EXPECT_EQ(DataLayout::Of({kMost / 2, 3, 1}, 0).PointsWithin(8, 0), 1u);
}

TEST(DataLayoutTest, OffsetBeyondAllNumbersIsTheLargest) {
  EXPECT_EQ(DataLayout::OffsetOf(3, 4, 5), 17u);
  EXPECT_EQ(DataLayout::OffsetOf(0, kMost, kMost), kMost);
  EXPECT_EQ(DataLayout::OffsetOf(kMost, 0, 7), 7u);
  EXPECT_EQ(DataLayout::OffsetOf(kMost, 1, 0), kMost);
  EXPECT_EQ(DataLayout::OffsetOf(kMost / 2, 2, 1), kMost);      // the last that there is
  EXPECT_EQ(DataLayout::OffsetOf(kMost / 2, 2, 2), kMost);      // the sum is one too large
  EXPECT_EQ(DataLayout::OffsetOf(kMost / 2 + 1, 2, 0), kMost);  // the product is
  EXPECT_EQ(DataLayout::OffsetOf(kMost, kMost, kMost), kMost);
  EXPECT_EQ(DataLayout::OffsetOf(kMost / 2, 2, 0), kMost - 1);
}

TEST(DataLayoutTest, BaseBeyondAllNumbersIsTheLargest) {
  EXPECT_EQ(DataLayout::Of({kMost / 2, 4, 1}, 0).Base(1, 1), kMost / 2 + 1);
  EXPECT_EQ(DataLayout::Of({kMost / 2, 4, 1}, 0).Base(1, 3), kMost);
  EXPECT_EQ(DataLayout::Of({kMost / 2, 4, 1}, 0).PointsWithin(kMost, kMost), 0u);
}

TEST(DataLayoutTest, NumberOfAxesSaysWhatDimensionsMean) {
  EXPECT_EQ(Sumara::DataDimensions({3, 4, 10}, 2), (std::vector<std::uint64_t>{3, 4, 10}));
  EXPECT_EQ(Sumara::DataDimensions({3, 4, 10}, 1), (std::vector<std::uint64_t>{3, 10}));
  EXPECT_EQ(Sumara::DataDimensions({3, 4, 5, 10}, 1), (std::vector<std::uint64_t>{3, 10}));
  EXPECT_EQ(Sumara::DataDimensions({3, 10}, 1), (std::vector<std::uint64_t>{3, 10}));
  EXPECT_EQ(Sumara::DataDimensions({3}, 1), (std::vector<std::uint64_t>{3}));
}

TEST(DataLayoutTest, ProductOfDimensions) {
  EXPECT_EQ(ProductOf({2, 3, 4}), 24u);
  EXPECT_EQ(ProductOf({2, 0, kMost}), 0u);
  EXPECT_EQ(ProductOf({kMost, 2, 2}), kMost);
  EXPECT_EQ(ProductOf({kMost, 1}), kMost);
  EXPECT_EQ(ProductOf({std::uint64_t{1} << 32, std::uint64_t{1} << 32}), kMost);
}

}  // namespace
