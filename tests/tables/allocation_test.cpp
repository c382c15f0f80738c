#include <algorithm>
#include <filesystem>
#include <functional>
#include <iterator>
#include <new>
#include <system_error>

#include "tables/run_list.h"
#include "tests/tables/failing_allocations.h"
#include "tests/tables/table_fixture.h"

// Each allocation of a call fails in turn: it ends with std::bad_alloc or is right all the same,
// and so is the next.

namespace Tabulon {
namespace {

/// Files that this process has open; 0 where the system does not tell.
std::size_t OpenFiles() {
  std::error_code error;
  std::filesystem::directory_iterator handles("/proc/self/fd", error);
  return error ? 0 : static_cast<std::size_t>(std::distance(begin(handles), end(handles)));
}

class AllocationTest : public TableTest {
 protected:
  /// Makes `call`, which tells whether its answer is right, with no memory from the k-th allocation
  /// on, for each k up to the last.
  static void FailEach(const std::function<bool()>& call) {
    ASSERT_TRUE(call());
    const std::size_t files = OpenFiles();
    constexpr long kMost = 100'000;
    long failures = 0;
    for (bool done = false; !done && failures < kMost; failures += done ? 0 : 1) {
      done = Succeeds(call, failures);
      ASSERT_EQ(OpenFiles(), files) << "after allocation " << failures;
      ASSERT_TRUE(call()) << "after allocation " << failures;
    }
    EXPECT_GT(failures, 0);
    EXPECT_LT(failures, kMost);
    EXPECT_TRUE(call());
  }

 private:
  static bool Succeeds(const std::function<bool()>& call, long allocations) {
    testing_support::SetAllocationsLeft(allocations);
    bool right = true;
    bool done = true;
    try {
      right = call();
    } catch (const std::bad_alloc&) {
      done = false;
    } catch (...) {
      right = false;
    }
    const long left = testing_support::AllocationsLeft();
    testing_support::SetAllocationsLeft(-1);
    EXPECT_TRUE(right) << "with " << allocations << " allocations";
    return done && left > 0;
  }
};

TEST_F(AllocationTest, OpeningAGroupAndItsFigures) {
  WriteHeader(HeaderText::OneAxis().Append(
      {"ULOADS 1 2", "  3 4", "  5 6", "  7 8", "MAXTIME 10 20", "MINTIME 30 40", "MEAN 0.5 1.5"}));
  FailEach([&] { return Table().Variables().size() == 2; });
  const GroupTable table = Table();
  FailEach([&] {
    const auto figures = table.Figures({1, 0}, 1);
    return figures && figures->mean.size() == 2 && figures->atMinimum.size() == 2;
  });
}

TEST_F(AllocationTest, ReadingAndReducing) {
  for (const char* const access : {"D", "S"}) {
    WriteHeader(HeaderText::OneAxis().With("ACCESS", access));
    if (*access == 'D') WriteWords(WordsOf<float>(Count(6)));
    if (*access == 'S') WriteText("0 1\n2 3\n4 5\n");
    const GroupTable table = Table();
    std::vector<double> values(6);
    FailEach([&] {
      std::fill(values.begin(), values.end(), -1.0);
      table.Read<double>({.variables = {1, 0}}, std::span<double>(values));
      return std::equal(values.begin(), values.end(), std::begin({1.0, 3.0, 5.0, 0.0, 2.0, 4.0}));
    });
    FailEach([&] {
      const Reduction figures = table.Reduce({.variables = {1, 0}});
      return figures.mean.size() == 2 && figures.mean[0] == 3.0 && figures.maximum[1] == 4.0;
    });
    FailEach([&] { return table.CountRows().found == 3; });
  }
}

TEST_F(AllocationTest, ReadingLargeFiles) {
  constexpr std::size_t kRows = 5'000;
  WriteHeader(WideHeader(10, kRows));
  WriteWords(WordsOf<float>(Count(10 * kRows)));
  const GroupTable table = Table();
  for (const auto& variables : {std::vector<std::size_t>{7}, {9, 8, 7, 6, 5, 4, 3, 2, 1, 0}}) {
    const Selection selection{.variables = variables};
    std::vector<float> values(variables.size() * kRows);
    FailEach([&] {
      values.back() = -1.0F;
      table.Read<float>(selection, std::span<float>(values));
      return values.back() == static_cast<float>(10 * (kRows - 1) + variables.back());
    });
    FailEach([&] { return table.Reduce(selection).maximumRow[0] == kRows - 1; });
  }
}

TEST_F(AllocationTest, ListingRuns) {
  m_directory.Write("run_10.$TE", "done");
  m_directory.Write("run_9.$TE", "done");
  m_directory.Write("run_9.%01", "");
  m_directory.Write("run_9.$sea", "");
  const std::string root = m_directory.Path("");
  FailEach([&] {
    std::size_t runs = 0;
    std::size_t unreadable = 0;
    ListRuns(
        root, {.recursive = true, .completion = true}, [&](RunFiles&&) { ++runs; },
        [&](UnreadableDirectory&&) { ++unreadable; });
    return runs == 2 && unreadable == 0;
  });
  FailEach([&] { return FindRun(m_directory.Path("run_9.%01"), true)->headers.size() == 1; });
}

}  // namespace
}  // namespace Tabulon
