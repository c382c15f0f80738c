#include "tables/natural_order.h"

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

namespace {

using Tabulon::CompareNaturally;

TEST(NaturalOrder, NumbersCompareByTheirValue) {
  EXPECT_LT(CompareNaturally("run2", "run10"), 0);
  EXPECT_GT(CompareNaturally("run10", "run9"), 0);
  EXPECT_LT(CompareNaturally("a99999999999999999999", "a100000000000000000000"), 0);
}

TEST(NaturalOrder, NamesSortAsPeopleListThem) {
  const std::vector<std::string_view> sorted = {"",        "1",      "2",     "10",    "a",   "A1",
                                                "a01",     "a1",     "a1b",   "a2",    "a10", "b",
                                                "run 2.5", "run 12", "run_1", "run_1a"};
  for (std::size_t i = 0; i < sorted.size(); ++i) {
    for (std::size_t j = 0; j < sorted.size(); ++j) {
      const int order = CompareNaturally(sorted[i], sorted[j]);
      EXPECT_EQ(order < 0, i < j) << sorted[i] << " and " << sorted[j];
      EXPECT_EQ(order == 0, i == j) << sorted[i] << " and " << sorted[j];
    }
  }
}

TEST(NaturalOrder, CaseCountsOnlyBetweenNamesThatAreOtherwiseEqual) {
  EXPECT_LT(CompareNaturally("alpha2", "BETA1"), 0);
  EXPECT_LT(CompareNaturally("RUN1", "run1"), 0);
  EXPECT_EQ(CompareNaturally("run1", "run1"), 0);
}

}  // namespace
