#include <algorithm>
#include <random>

#include "groupfiles/kept_data.h"
#include "tests/groupfiles/data_fixture.h"

// Binary files too large for the buffer of small ones: columns are gathered where the file lies,
// and others along with those that are asked for.

namespace {

using Sumara::KeptData;

std::vector<testing_support::ReaderCase> SomeReaders() {
  std::vector<testing_support::ReaderCase> cases = testing_support::AllReaders();
  std::erase_if(cases, [](const auto& each) { return (each.stored + 2 * each.target) % 6 != 3; });
  return cases;
}

class LargeDataTest : public testing_support::DataFixture {
 protected:
  ~LargeDataTest() override { KeptData::SetLimit(KeptData::kDefaultLimit); }

  /// A value that shows its place and fits all types.
  static double Value(std::uint64_t place, double shift) {
    return static_cast<double>(place % 29989) + shift;
  }
  void WriteFile(std::uint64_t words, double shift = 0) const {
    std::vector<double> values;
    for (std::uint64_t i = 0; i < words; ++i) values.push_back(Value(i, shift));
    Write(m_reader->Bytes(values));
  }
  void WriteGroup(const std::vector<std::uint64_t>& dimensions, double shift = 0) {
    WriteFile(Sumara::ProductOf(dimensions), shift);
    Open(dimensions, /*binary=*/true);
  }

  std::vector<double> Expected(std::size_t variable, std::size_t secondary, std::uint64_t points,
                               double shift = 0) const {
    std::vector<double> values;
    for (std::uint64_t p = 0; p < points; ++p) {
      values.push_back(Value(p * m_layout.Stride() + m_layout.Base(variable, secondary), shift));
    }
    return values;
  }

  void ExpectVariable(std::size_t variable, std::uint64_t points, double shift = 0) {
    Sumara::DataRequest request = All(points);
    request.variables = {variable};
    ASSERT_EQ(Read(request), points);
    EXPECT_EQ(Filled().size(), m_layout.secondary);
    for (std::size_t s = 0; s < m_layout.secondary; ++s) {
      ASSERT_EQ(Of(variable, s), Expected(variable, s, points, shift)) << variable << " at " << s;
    }
    ExpectClosed();
  }
};
INSTANTIATE_TEST_SUITE_P(Readers, LargeDataTest, ::testing::ValuesIn(SomeReaders()),
                         testing_support::ReaderName);

TEST_P(LargeDataTest, VariablesComeInAnyOrderAndAgain) {
  std::mt19937 random(4);
  for (const auto& [variables, secondary] : {std::pair{40u, 1u}, {7u, 5u}, {90u, 2u}}) {
    const std::uint64_t points = 600000 / (variables * secondary);
    WriteGroup(secondary == 1 ? std::vector<std::uint64_t>{variables, points}
                              : std::vector<std::uint64_t>{variables, secondary, points});
    std::vector<std::size_t> order;
    for (std::size_t v = 0; v < variables; ++v) order.insert(order.end(), v % 5 == 0 ? 2 : 1, v);
    std::shuffle(order.begin(), order.end(), random);
    for (const std::size_t variable : order) ExpectVariable(variable, points);
  }
}

TEST_P(LargeDataTest, VariablesInOrder) {
  WriteGroup({40, 15000});
  for (std::size_t variable = 0; variable < 40; ++variable) ExpectVariable(variable, 15000);
  EXPECT_GT(KeptData::Total(), 0u);
  m_reader->File().Close();
  EXPECT_EQ(KeptData::Total(), 0u);
}

TEST_P(LargeDataTest, RowsOfTwoAxesComeOneByOne) {
  WriteGroup({20, 6, 5000});
  for (const std::size_t secondary : {3u, 0u, 5u, 3u}) {
    for (const std::size_t variable : {7u, 19u, 0u}) {
      EXPECT_EQ(Read({{variable}, {secondary}, 5000, true}), 5000u);
      ASSERT_EQ(Of(variable, secondary), Expected(variable, secondary, 5000));
    }
  }
}

TEST_P(LargeDataTest, WholeVariablesOfTwoAxesComeRowByRow) {
  WriteGroup({7, 20, 5000});
  for (const std::size_t variable : {3u, 0u, 6u, 1u, 2u}) {
    for (std::size_t secondary = 0; secondary < 20; ++secondary) {
      EXPECT_EQ(Read({{variable}, {secondary}, 5000, true}), 5000u);
      ASSERT_EQ(Of(variable, secondary), Expected(variable, secondary, 5000));
    }
  }
}

TEST_P(LargeDataTest, ColumnsAskedForTwiceInARequestComeOnce) {
  WriteGroup({40, 15000});
  for (const bool keepBuffer : {true, false}) {
    Read({{3, 7, 3}, {0, 0}, 15000, keepBuffer});
    EXPECT_EQ(Of(3), Expected(3, 0, 15000));
    EXPECT_EQ(Of(7), Expected(7, 0, 15000));
  }
}

TEST_P(LargeDataTest, OtherNumbersOfPointsAreReadAnew) {
  WriteGroup({40, 15000});
  for (const std::uint64_t points : {15000u, 15000u, 100u, 15000u, 100u}) {
    ExpectVariable(points % 37, points);
    ExpectVariable(3, points);
  }
  EXPECT_EQ(Read({{1}, {0}, 0, true}), 15000u);
  EXPECT_EQ(Of(1), Expected(1, 0, 15000));
}

TEST_P(LargeDataTest, FileThatIsReplacedOrRemovedMakesNoDifference) {
  WriteGroup({40, 15000});
  ExpectVariable(0, 15000);
  std::filesystem::remove(Path());
  ExpectVariable(20, 15000);
  WriteFile(40 * 15000, 1);
  for (const std::size_t variable : {0u, 21u, 39u}) ExpectVariable(variable, 15000);
  m_reader->File().Close();
  ExpectVariable(22, 15000, 1);
}

TEST_P(LargeDataTest, FileIsReadAnewWithoutBufferedReading) {
  WriteGroup({40, 15000});
  Read({{0}, {0}, 15000, false});
  WriteFile(40 * 15000, 1);
  Read({{1}, {0}, 15000, false});
  EXPECT_EQ(Of(1), Expected(1, 0, 15000, 1));
  EXPECT_EQ(KeptData::Total(), 0u);
}

TEST_P(LargeDataTest, TooShortAFileRaises25) {
  WriteGroup({40, 15000});
  std::filesystem::resize_file(Path(), 40 * 15000 * m_reader->WordSize() - 1);
  for (const bool keepBuffer : {true, false, true}) {
    EXPECT_EQ(FailureOf({{38, 39}, {0}, 15000, keepBuffer}),
              "Sumara Tables error: Error reading series data.\nFurther information: Point index = "
              "14999; series 39\nInner exception: IO error 5008: Data requested past end of "
              "file.\nFurther information: word offset = 599999; m_totalWordCount = 599999; "
              "path: " +
                  Path());
    EXPECT_EQ(Of(38), Expected(38, 0, 15000));
  }
  ExpectVariable(3, 15000);
  ExpectVariable(5, 15000);
}

TEST_P(LargeDataTest, NothingIsKeptBeyondTheLimit) {
  WriteGroup({40, 15000});
  for (const std::uint64_t limit : {std::uint64_t{0}, std::uint64_t{5} << 20}) {
    KeptData::SetLimit(limit);
    for (std::size_t variable = 0; variable < 40; ++variable) {
      ExpectVariable(variable, 15000);
      EXPECT_LE(KeptData::Total(), limit);
    }
    m_reader->File().Close();
  }
}

TEST_P(LargeDataTest, WhatWasKeptLongestGoesFirst) {
  KeptData::SetLimit(2 * KeptData::kOpenFile);
  WriteGroup({40, 15000});
  ExpectVariable(0, 15000);
  std::vector<std::unique_ptr<testing_support::IAnyDataReader>> others;
  for (int i = 0; i < 2; ++i) {
    others.push_back(GetParam().make());
    others.back()->Open(Path(), /*binary=*/true, {40, 15000});
    others.back()->Read(m_layout, {{0}, {0}, 15000, true});
  }
  EXPECT_EQ(KeptData::Total(), 2 * KeptData::kOpenFile);
  std::filesystem::remove(Path());
  EXPECT_EQ(FailureOf({{1}, {0}, 15000, true}), Missing());
  others[0]->Read(m_layout, {{1}, {0}, 15000, true});
  EXPECT_EQ(others[0]->Of(1, 0), Expected(1, 0, 15000));
}

}  // namespace
