#include "groupfiles/columns_ahead.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using Sumara::DataLayout;
using Bases = std::vector<std::uint64_t>;
using Places = std::vector<std::size_t>;

constexpr std::uint64_t kPoints = 10;

/// What is read ahead as a group is asked for, 16 columns in the first band.
class ColumnsAheadTest : public ::testing::Test {
 protected:
  /// The columns that are chosen with those of a request, which is answered then.
  Bases ChosenWith(const Places& variables, const Places& secondary = {0}) {
    const Sumara::DataRequest request{variables, secondary, kPoints, true};
    Bases bases = m_ahead.Choose(m_layout, request, m_rule);
    m_ahead.MarkHandedOut(m_layout, request);
    for (const std::uint64_t base : bases) m_ahead.Add(base, std::vector<float>(kPoints));
    std::sort(bases.begin(), bases.end());
    return bases;
  }

  /// All columns of variables `first` to the one before `end`, without some.
  Bases Of(std::size_t first, std::size_t end, const Bases& without = {}) const {
    Bases bases;
    for (std::uint64_t s = 0; s < m_layout.secondary; ++s) {
      for (std::size_t v = first; v < end; ++v) bases.push_back(m_layout.Base(v, s));
    }
    std::erase_if(bases, [&](std::uint64_t base) {
      return std::find(without.begin(), without.end(), base) != without.end();
    });
    return bases;
  }

  DataLayout m_layout = DataLayout::Of({100, kPoints}, 0);
  Sumara::AheadRule m_rule{.together = 16, .most = 100000};
  Sumara::ColumnsAhead<float> m_ahead;
};

TEST_F(ColumnsAheadTest, SecondVariableBringsItsNeighboursAndTheThirdAllOthers) {
  EXPECT_EQ(ChosenWith({20}), Bases{});
  EXPECT_EQ(ChosenWith({40}), Of(32, 48, {40}));
  Bases others = Of(0, 100, Of(32, 48));
  std::erase(others, 20u);
  std::erase(others, 99u);
  EXPECT_EQ(ChosenWith({99}), others);
}

TEST_F(ColumnsAheadTest, SecondaryValueOfTheSameVariableBringsThatVariableAlone) {
  m_layout = DataLayout::Of({30, 20, kPoints}, 0);
  EXPECT_EQ(ChosenWith({4}, {3}), Bases{});
  EXPECT_EQ(ChosenWith({4}, {0}), Of(4, 5, {4, 3 * 30 + 4}));
}

TEST_F(ColumnsAheadTest, WholeVariablesComeOneAtFirstAndAllThen) {
  m_layout = DataLayout::Of({30, 20, kPoints}, 0);
  ChosenWith({4}, {0});
  ChosenWith({4}, {1});
  EXPECT_EQ(ChosenWith({5}, {7}), Of(5, 6, {7 * 30 + 5}));
  Bases others = Of(0, 30, Of(4, 6));
  std::erase(others, 19u * 30 + 29);
  EXPECT_EQ(ChosenWith({29}, {19}), others);
}

TEST_F(ColumnsAheadTest, VariablesAtOneSecondaryValueBringNoOther) {
  m_layout = DataLayout::Of({30, 20, kPoints}, 0);
  ChosenWith({4}, {2});
  Bases band;
  for (const std::uint64_t v : {0, 1, 2, 3, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}) {
    band.push_back(2 * 30 + v);
  }
  EXPECT_EQ(ChosenWith({5}, {2}), band);
}

TEST_F(ColumnsAheadTest, ColumnsThatWereDroppedBringNothing) {
  ChosenWith({4});
  EXPECT_EQ(ChosenWith({4}), Bases{});
  ChosenWith({5});
  EXPECT_EQ(ChosenWith({4}), Bases{});
}

TEST_F(ColumnsAheadTest, AllComeWithTheSecondRequestWhereAllIsTheRule) {
  m_layout = DataLayout::Of({30, 20, kPoints}, 0);
  m_rule.all = true;
  EXPECT_EQ(ChosenWith({4}, {0}), Bases{});
  EXPECT_EQ(ChosenWith({4}, {1}), Of(0, 30, {4, 34}));
}

TEST_F(ColumnsAheadTest, RequestThatWasOnlyMarkedIsTheFirst) {
  m_ahead.MarkHandedOut(m_layout, {{20}, {0}, kPoints, true});
  EXPECT_EQ(ChosenWith({40}), Of(32, 48, {40}));
}

TEST_F(ColumnsAheadTest, NoMoreComeThanMayBeKept) {
  m_rule.most = 3;
  ChosenWith({20});
  EXPECT_EQ(ChosenWith({40}), (Bases{32, 33, 34}));
}

TEST_F(ColumnsAheadTest, DimensionsOfADamagedHeaderEnd) {
  constexpr std::uint64_t kHuge = std::uint64_t{1} << 62;
  m_rule.most = 5;
  for (const auto& dimensions :
       {std::vector<std::uint64_t>{kHuge, kPoints}, {kHuge, kHuge, kPoints}, {kHuge, 2, kPoints}}) {
    m_ahead.Clear();
    m_layout = DataLayout::Of(dimensions, 0);
    EXPECT_EQ(ChosenWith({0}), Bases{});
    EXPECT_EQ(ChosenWith({1}).size(), 5u);
  }
}

}  // namespace
