#include "groupfiles/column_gather.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <thread>

#include "tests/support/type_pairs.h"

namespace {

using Sumara::ColumnPlan;
using Sumara::RowRange;
using Sumara::WordBlock;

constexpr std::uint64_t kMost = ~std::uint64_t{0};

/// Words that no conversion changes.
template <class T>
std::vector<T> Words(std::size_t count) {
  std::vector<T> words;
  for (std::size_t i = 0; i < count; ++i) words.push_back(static_cast<T>(int(i * 7 % 30011)));
  return words;
}

template <class U>
using Columns = std::vector<std::vector<U>>;

constexpr int kUntouched = -5;

template <class U>
Columns<U> Room(const ColumnPlan& plan, const RowRange& rows) {
  return Columns<U>(plan.bases.size(), std::vector<U>(rows.count, static_cast<U>(kUntouched)));
}

/// Reads the words block by block, each of `blockSize`.
template <class U, class T>
void Gather(const std::vector<T>& words, std::size_t blockSize, const ColumnPlan& plan,
            const RowRange& rows, Columns<U>& columns) {
  std::vector<U*> places;
  for (auto& column : columns) places.push_back(column.data());
  for (std::size_t first = 0; first < words.size(); first += blockSize) {
    const std::size_t size = std::min(blockSize, words.size() - first);
    // A copy of its own, so that a read beside the block is seen.
    const std::vector<T> block(words.begin() + std::ptrdiff_t(first),
                               words.begin() + std::ptrdiff_t(first + size));
    Sumara::GatherColumns<T, U>({block, first}, plan, rows, places);
  }
}

/// Appends the words of such blocks.
template <class U, class T>
Columns<U> Appended(const std::vector<T>& words, std::size_t blockSize, const ColumnPlan& plan,
                    const RowRange& rows) {
  Columns<U> columns(plan.bases.size());
  std::vector<std::vector<U>*> places;
  for (auto& column : columns) places.push_back(&column);
  for (std::size_t first = 0; first < words.size(); first += blockSize) {
    const auto block = std::span(words).subspan(first, std::min(blockSize, words.size() - first));
    Sumara::AppendColumns<T, U>({block, first}, plan, rows, places);
  }
  return columns;
}

/// The same, a value at a time.
template <class U, class T>
Columns<U> Plain(const std::vector<T>& words, const ColumnPlan& plan, const RowRange& rows) {
  Columns<U> columns = Room<U>(plan, rows);
  for (std::size_t c = 0; c < columns.size(); ++c) {
    for (std::uint64_t i = 0; i < rows.count; ++i) {
      const std::uint64_t place = plan.bases[c] + (rows.first + i * rows.step) * plan.stride;
      if (place < words.size()) columns[c][i] = Sumara::ConvertElement<U>(words[place]);
    }
  }
  return columns;
}

template <class Pair>
class ColumnGatherTest : public ::testing::Test {};
TYPED_TEST_SUITE(ColumnGatherTest, testing_support::ElementTypePairs);

TYPED_TEST(ColumnGatherTest, ColumnsOfAnyPlanAndRangeComeFromBlocksOfAnySize) {
  using T = typename TypeParam::Stored;
  using U = typename TypeParam::Target;
  std::mt19937 random(20);
  const auto pick = [&](std::uint64_t least, std::uint64_t most) {
    return std::uniform_int_distribution<std::uint64_t>(least, most)(random);
  };
  for (int round = 0; round < 60; ++round) {
    ColumnPlan plan;
    plan.stride = pick(1, 90);
    const RowRange rows{pick(0, 20), pick(0, 400), pick(1, 4)};
    const auto words = Words<T>(pick(0, 500 * plan.stride));
    const bool adjacent = round % 2 == 0;
    for (std::uint64_t c = 0, n = pick(0, plan.stride); c < n; ++c) {
      plan.bases.push_back(adjacent ? c : pick(0, plan.stride - 1));
    }
    for (const std::size_t blockSize : {std::size_t{1 << 20}, std::size_t(pick(1, 5000))}) {
      Columns<U> columns = Room<U>(plan, rows);
      Gather(words, blockSize, plan, rows, columns);
      ASSERT_EQ(columns, Plain<U>(words, plan, rows)) << "round " << round;
      Columns<U> appended = Appended<U>(words, blockSize, plan, rows);
      for (std::size_t c = 0; c < appended.size(); ++c) {
        ASSERT_EQ(appended[c].size(),
                  Sumara::RowsBefore(words.size(), plan.bases[c], plan.stride, rows));
        appended[c].resize(rows.count, static_cast<U>(kUntouched));
      }
      ASSERT_EQ(appended, columns) << "round " << round;
    }
  }
}

/// Gathers columns of which there are more than a cache holds. \return how many values are wrong.
template <class T, class U>
std::size_t WrongValuesOfALargeTarget() {
  ColumnPlan plan{{}, 43};
  for (std::uint64_t c = 0; c < plan.stride; ++c) plan.bases.push_back(c);
  // Columns of an odd length begin anywhere in a cache line; what lies behind them stays.
  const std::uint64_t large = (std::uint64_t{17} << 20) / sizeof(U) / plan.stride;
  const RowRange rows{2, large | 1, 1};
  const auto words = Words<T>((rows.count + rows.first) * plan.stride);
  std::vector<U> room(plan.bases.size() * rows.count + 1, static_cast<U>(kUntouched));
  std::vector<U*> places;
  for (std::size_t c = 0; c < plan.bases.size(); ++c) places.push_back(&room[c * rows.count]);
  Sumara::GatherColumns<T, U>({words, 0}, plan, rows, places);
  std::size_t wrong = room.back() == static_cast<U>(kUntouched) ? 0 : 1;
  for (std::size_t c = 0; c < plan.bases.size(); ++c) {
    for (std::uint64_t i = 0; i < rows.count; ++i) {
      const T stored = words[plan.bases[c] + (i + rows.first) * plan.stride];
      wrong += places[c][i] == Sumara::ConvertElement<U>(stored) ? 0u : 1u;
    }
  }
  return wrong;
}

TEST(ColumnGatherRangeTest, TargetsTooLargeForACacheAreFilled) {
  EXPECT_EQ((WrongValuesOfALargeTarget<float, float>()), 0u);
  EXPECT_EQ((WrongValuesOfALargeTarget<short, double>()), 0u);
  EXPECT_EQ((WrongValuesOfALargeTarget<double, int>()), 0u);
}

TEST(ColumnGatherRangeTest, RowsThatTheBlockDoesNotHoldStayAsTheyAre) {
  const ColumnPlan plan{{0, 2}, 3};
  const RowRange rows{1, 4, 1};
  Columns<int> columns = Room<int>(plan, rows);
  std::vector<int*> places{columns[0].data(), columns[1].data()};
  const std::vector<int> words{5, 6, 7, 8};  // of a file: its words 5 to 8
  Sumara::GatherColumns<int, int>({words, 5}, plan, rows, places);
  EXPECT_EQ(columns, (Columns<int>{{kUntouched, 6, kUntouched, kUntouched},
                                   {5, 8, kUntouched, kUntouched}}));
}

TEST(ColumnGatherRangeTest, NothingIsWantedOfNoColumns) {
  Sumara::GatherColumns<float, float>({std::vector<float>{1, 2}, 0}, {{}, 1}, {0, 2, 1}, {});
}

TEST(ColumnGatherRangeTest, PlacesBeyondAllNumbersAreInNoBlock) {
  std::vector<int> column(3, kUntouched);
  const std::vector<int> words{1, 2, 3};
  for (const ColumnPlan& plan : {ColumnPlan{{kMost}, 1}, ColumnPlan{{1}, kMost}}) {
    std::vector<int*> places{column.data()};
    for (const RowRange& rows : {RowRange{1, 3, 1}, RowRange{kMost, 3, kMost}}) {
      Sumara::GatherColumns<int, int>({words, 0}, plan, rows, places);
    }
  }
  EXPECT_EQ(column, std::vector<int>(3, kUntouched));
}

TEST(ColumnGatherRangeTest, RowsBefore) {
  EXPECT_EQ(Sumara::RowsBefore(0, 0, 3, {0, 9, 1}), 0u);
  EXPECT_EQ(Sumara::RowsBefore(1, 0, 3, {0, 9, 1}), 1u);
  EXPECT_EQ(Sumara::RowsBefore(7, 0, 3, {0, 9, 1}), 3u);
  EXPECT_EQ(Sumara::RowsBefore(7, 1, 3, {0, 9, 1}), 2u);
  EXPECT_EQ(Sumara::RowsBefore(7, 0, 3, {1, 9, 2}), 1u);
  EXPECT_EQ(Sumara::RowsBefore(kMost, 0, 1, {0, 9, 1}), 9u);
  EXPECT_EQ(Sumara::RowsBefore(kMost, 0, 1, {kMost, 9, 1}), 0u);
}

TEST(ColumnGatherThreadsTest, ThreadsShareAPlanAndABlock) {
  const auto words = Words<float>(64 * 1000);
  ColumnPlan plan{{}, 64};
  for (std::uint64_t c = 0; c < 64; ++c) plan.bases.push_back(c);
  const RowRange rows{0, 1000, 1};
  const auto expected = Plain<double>(words, plan, rows);
  std::vector<Columns<double>> results(4, Room<double>(plan, rows));
  std::vector<std::thread> threads;
  for (auto& result : results) {
    threads.emplace_back([&] { Gather(words, words.size(), plan, rows, result); });
  }
  for (auto& thread : threads) thread.join();
  for (const auto& result : results) EXPECT_EQ(result, expected);
}

}  // namespace
