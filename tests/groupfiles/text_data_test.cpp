#include <chrono>
#include <fstream>

#include "groupfiles/kept_data.h"
#include "tests/groupfiles/data_fixture.h"
#include "tests/support/stream_state.h"

namespace {

using testing_support::LinesOf;

using Rows = std::vector<std::vector<double>>;

/// 0, 1, 2 and so on in rows.
Rows CountedRows(std::size_t rows, std::size_t columns) {
  Rows values(rows);
  double next = 0;
  for (auto& row : values) {
    for (std::size_t i = 0; i < columns; ++i) row.push_back(next++);
  }
  return values;
}

/// Lines of one length.
std::string FixedLines(const Rows& rows, const std::string& lineEnd = "\n") {
  std::string text;
  for (const auto& row : rows) {
    for (const double value : row) {
      const std::string number = std::to_string(static_cast<int>(value));
      text.append(6 - number.size(), ' ').append(number);
    }
    text += lineEnd;
  }
  return text;
}

class TextDataTest : public testing_support::DataFixture {
 protected:
  std::string Failure(const std::string& cause) const {
    return "Sumara Tables error: Error reading series data.\nFurther information: the group\nInner "
           "exception: " +
           cause;
  }
  std::string LineContext(std::uint64_t line) const {
    return "line number = " + std::to_string(line) + "; path: " + Path();
  }
  /// The file ended.
  std::string EndOfFile(std::uint64_t line) const {
    return Failure(
        "IO error 5009: Failed to read data.\nFurther information: " + LineContext(line) +
        "\nInner exception: " + testing_support::PastEndOfFile(Path()));
  }

  /// Reads all that a file of these dimensions holds in every way there is: at once, anew, variable
  /// by variable, with and without keeping anything.
  void ExpectCountedInEveryWay(const std::vector<std::uint64_t>& dimensions,
                               std::uint64_t headerRecords = 0) {
    const std::uint64_t points = dimensions.back();
    for (const bool keepBuffer : {true, false}) {
      for (const std::uint64_t asked : {points, std::uint64_t{0}}) {
        Open(dimensions, /*binary=*/false, headerRecords);
        for (int request = 0; request < 3; ++request) {
          EXPECT_EQ(Read(All(asked, keepBuffer)), points);
          ExpectAllCounted(points);
          ExpectClosed();
        }
        Open(dimensions, /*binary=*/false, headerRecords);
        for (std::size_t variable = 0; variable < m_layout.variables; ++variable) {
          for (std::size_t secondary = 0; secondary < m_layout.secondary; ++secondary) {
            EXPECT_EQ(Read({{variable}, {secondary}, asked, keepBuffer}), points);
            EXPECT_EQ(Filled(), (Places{{variable, secondary}}));
            EXPECT_EQ(Of(variable, secondary), Counted(variable, secondary, points));
          }
        }
      }
    }
  }
};
INSTANTIATE_TEST_SUITE_P(Readers, TextDataTest, ::testing::ValuesIn(testing_support::AllReaders()),
                         testing_support::ReaderName);

TEST_P(TextDataTest, OneAxisWithLinesOfAnyLength) {
  Write(LinesOf(CountedRows(40, 3)));
  ExpectCountedInEveryWay({3, 40});
}

TEST_P(TextDataTest, OneAxisWithLinesOfOneLength) {
  Write(FixedLines(CountedRows(40, 3)));
  ExpectCountedInEveryWay({3, 40});
}

TEST_P(TextDataTest, TwoAxesHaveALineForEachSecondaryValue) {
  Write(LinesOf(CountedRows(20 * 4, 3)));
  ExpectCountedInEveryWay({3, 4, 20});
  Write(FixedLines(CountedRows(20 * 4, 3)));
  ExpectCountedInEveryWay({3, 4, 20});
}

TEST_P(TextDataTest, TwoAxesOfOneVariableHaveALineForEachPoint) {
  Write(LinesOf(CountedRows(20, 4)));
  ExpectCountedInEveryWay({1, 4, 20});
  Write(FixedLines(CountedRows(20, 4)));
  ExpectCountedInEveryWay({1, 4, 20});
}

TEST_P(TextDataTest, CarriageReturns) {
  Write(LinesOf(CountedRows(40, 3), "\r\n"));
  ExpectCountedInEveryWay({3, 40});
  Write(FixedLines(CountedRows(40, 3), "\r\n"));
  ExpectCountedInEveryWay({3, 40});
}

TEST_P(TextDataTest, LastLineNeedsNoLineEnd) {
  std::string text = LinesOf(CountedRows(40, 3));
  text.pop_back();
  Write(text);
  ExpectCountedInEveryWay({3, 40});
}

TEST_P(TextDataTest, HeaderRecordsAreNoData) {
  Write("Results of a run\n\t 17 x\n" + LinesOf(CountedRows(40, 3)));
  ExpectCountedInEveryWay({3, 40}, 2);
  Write("Results\n" + LinesOf(CountedRows(20 * 4, 3)));
  ExpectCountedInEveryWay({3, 4, 20}, 1);
  Write("12345678901234567\n" + FixedLines(CountedRows(39, 3)) + "   117   118   119");
  ExpectCountedInEveryWay({3, 40}, 1);
}

TEST_P(TextDataTest, SingleEmptyLinesArePassedOver) {
  const std::string text = LinesOf(CountedRows(2, 3));
  Write("\n" + text.substr(0, text.find('\n')) + "\n\n" + text.substr(text.find('\n') + 1));
  Open({3, 2}, /*binary=*/false);
  Read(All(2));
  ExpectAllCounted(2);
}

TEST_P(TextDataTest, FurtherValuesOfALineAreNotData) {
  Write("0 1 2 99\n3 4 5 and words\n");
  ExpectCountedInEveryWay({3, 2});
}

TEST_P(TextDataTest, FewerPointsThanTheFileHolds) {
  Write(LinesOf(CountedRows(40, 3)));
  for (int request = 0; request < 3; ++request) {
    Open({3, 7}, /*binary=*/false);
    EXPECT_EQ(Read(All(7)), 7u);
    ExpectAllCounted(7);
  }
}

TEST_P(TextDataTest, TooFewLinesRaise25) {
  Write(LinesOf(CountedRows(8, 3)));
  for (const bool keepBuffer : {true, false}) {
    Open({3, 10}, /*binary=*/false);
    for (int request = 0; request < 3; ++request) {
      EXPECT_EQ(FailureOf(All(10, keepBuffer)), EndOfFile(8));
      EXPECT_TRUE(Filled().empty());
      EXPECT_EQ(Of(0), std::vector<double>{});
      ExpectClosed();
    }
  }
}

TEST_P(TextDataTest, PointCutInTwoIsMissing) {
  Write(LinesOf(CountedRows(3 * 4 - 1, 2)));
  Open({2, 4, 3}, /*binary=*/false);
  EXPECT_EQ(FailureOf({{0}, {0}, 3, true}), EndOfFile(11));
  EXPECT_EQ(Read(All(0)), 2u);
  ExpectAllCounted(2);
}

TEST_P(TextDataTest, ShortLineRaises25WhicheverVariableIsWanted) {
  Write("0 1 2\n3 4\n6 7 8\n");
  const std::string failure = Failure(
      "Sumara Tables error: Failed to populate 1D ASCII series data container from transient data "
      "container.\n"
      "Further information: Point index = 1; values expected = 3; values found = 2");
  for (const std::size_t variable : {0u, 1u, 2u}) {
    Open({3, 3}, /*binary=*/false);
    for (int request = 0; request < 3; ++request)
      EXPECT_EQ(FailureOf({{variable}, {0}, 3, true}), failure);
  }
  EXPECT_EQ(Read(All(0)), 1u);
  ExpectAllCounted(1);
}

TEST_P(TextDataTest, LineIsReadUpToTheFirstThatIsNoNumber) {
  Write("0 1 2\n3 x 5\n");
  Open({3, 2}, /*binary=*/false);
  EXPECT_EQ(FailureOf({{0}, {0}, 2, true}),
            Failure("Sumara Tables error: Failed to populate 1D ASCII series data container from "
                    "transient data "
                    "container.\nFurther information: Point index = 1; values expected = 3; values "
                    "found = 1"));
}

TEST_P(TextDataTest, ShortLineOfTwoAxesRaises29In25) {
  Write("0 1 2\n3 4\n");
  Open({1, 3, 2}, /*binary=*/false);
  EXPECT_EQ(FailureOf({{0}, {0}, 2, true}),
            Failure("Sumara Tables error: Failed to populate 2D ASCII series data container from "
                    "transient data "
                    "container.\nFurther information: Point index = 1; values expected = 3; values "
                    "found = 2"));
}

TEST_P(TextDataTest, LineWithoutNumbersRaises26Or27In25) {
  for (const char* line : {" \t ", "words", "- 1 2"}) {
    Write(std::string("0 1 2\n") + line + "\n6 7 8\n");
    Open({3, 3}, /*binary=*/false);
    EXPECT_EQ(
        FailureOf(All(3)),
        Failure(
            "Sumara Tables error: Transient data container for 1D ASCII series was empty following "
            "read from file.\nFurther information: Point index = 1"));
    Open({1, 3, 3}, /*binary=*/false);
    EXPECT_EQ(
        FailureOf(All(3)),
        Failure(
            "Sumara Tables error: Transient data container for 2D ASCII series was empty following "
            "read from file.\nFurther information: Point index = 1"));
  }
}

TEST_P(TextDataTest, EmptyLineRaises5015In25) {
  const std::string failure = Failure("IO error 5015: String to populate from was empty.");
  for (const char* text : {"0 1 2\n\n\n6 7 8\n", "0 1 2\r\n\r\n6 7 8\r\n"}) {
    Write(text);
    Open({3, 3}, /*binary=*/false);
    EXPECT_EQ(FailureOf(All(3)), failure);
    EXPECT_EQ(Read(All(0)), 1u);
  }
}

TEST_P(TextDataTest, EmptyFileLeavesTheSeriesEmpty) {
  Write("");
  for (const std::uint64_t points : {0u, 10u}) {
    Open({2, points}, /*binary=*/false);
    for (int request = 0; request < 3; ++request) {
      EXPECT_EQ(Read(All(points)), 0u);
      EXPECT_TRUE(Filled().empty());
    }
  }
}

TEST_P(TextDataTest, FileOfLineEndsRaises5020) {
  Write("\n\n\n");
  Open({2, 10}, /*binary=*/false);
  for (int request = 0; request < 3; ++request) {
    EXPECT_EQ(FailureOf(All(10)), Failure("IO error 5015: String to populate from was empty."));
  }
  Write("\n");
  Open({2, 10}, /*binary=*/false);
  for (int request = 0; request < 3; ++request) {
    EXPECT_EQ(
        FailureOf(All(10)),
        "IO error 5020: Failed to determine length of first line in file.\nFurther information: " +
            Path() + "\nInner exception: " + testing_support::PastEndOfFile(Path()));
    ExpectClosed();
  }
}

TEST_P(TextDataTest, MissingFileRaises5000) {
  Open({2, 10}, /*binary=*/false);
  for (int request = 0; request < 3; ++request) {
    EXPECT_EQ(FailureOf(All(10)), Missing());
  }
}

TEST_P(TextDataTest, SizeThatOnlyLooksUniformIsReadByItsLines) {
  Write("10 11\n2 3 4\n40 41\n");  // the lines have 6 bytes in all: 18 of 3 x 6
  Open({2, 3}, /*binary=*/false);
  EXPECT_EQ(Read(All(3)), 3u);
  EXPECT_EQ(Of(0), (std::vector<double>{10, 2, 40}));
  Write("10 11\n2 3\n040 041\n");
  Open({2, 3}, /*binary=*/false);
  EXPECT_EQ(Read(All(3)), 3u);
  EXPECT_EQ(Of(0), (std::vector<double>{10, 2, 40}));
  EXPECT_EQ(Of(1), (std::vector<double>{11, 3, 41}));
}

TEST_P(TextDataTest, LinesThatOnlySeemAlikeAreReadOneByOne) {
  Write("10000\n22\n33\n        444\n");  // as long as four lines of the first's length
  Open({1, 4}, /*binary=*/false);
  EXPECT_EQ(Read(All(4)), 4u);
  EXPECT_EQ(Of(0), (std::vector<double>{10000, 22, 33, 444}));
  Write("Results of a run\n 1 2 3\n 10 11 12\n");  // as long as two such header records
  Open({3, 2}, /*binary=*/false, /*headerRecords=*/1);
  EXPECT_EQ(Read(All(2)), 2u);
  EXPECT_EQ(Of(0), (std::vector<double>{1, 10}));
}

TEST_P(TextDataTest, SeveralHeaderRecordsAreCountedWhateverTheSizeOfTheFile) {
  Write("aaa\nb\n1\n222\n3\n4\n");  // as long as four lines of the first's length
  for (int request = 0; request < 3; ++request) {
    Open({1, 4}, /*binary=*/false, /*headerRecords=*/2);
    EXPECT_EQ(Read(All(4)), 4u);
    EXPECT_EQ(Of(0), (std::vector<double>{1, 222, 3, 4}));
    EXPECT_EQ(Read(All(0)), 4u);
    EXPECT_EQ(Of(0), (std::vector<double>{1, 222, 3, 4}));
  }
}

TEST_P(TextDataTest, SecondRequestConvertsAllElseAlong) {
  Write(LinesOf(CountedRows(5, 4)));
  Open({4, 5}, /*binary=*/false);
  std::vector<std::uint64_t> kept;
  for (const std::size_t variable : {0, 1, 2, 3}) {
    Read({{variable}, {0}, 5, true});
    kept.push_back(Sumara::KeptData::Total());
  }
  const std::uint64_t column = kept[2];
  EXPECT_GT(column, 0u);
  EXPECT_EQ(kept, (std::vector<std::uint64_t>{0, 2 * column, column, 0}));
}

TEST_P(TextDataTest, ChangedFileIsReadAnew) {
  Rows rows = CountedRows(5, 2);
  Write(FixedLines(rows));
  Open({2, 5}, /*binary=*/false);
  for (int request = 0; request < 3; ++request) {
    Read({{1}, {0}, 5, true});
    EXPECT_EQ(Of(1), (std::vector<double>{1, 3, 5, 7, 9}));
  }
  rows[2][1] = 77;
  const auto before = std::filesystem::last_write_time(Path());
  Write(FixedLines(rows));  // of the same size
  std::filesystem::last_write_time(Path(), before + std::chrono::seconds(1));
  for (int request = 0; request < 3; ++request) {
    Read({{1}, {0}, 5, true});
    EXPECT_EQ(Of(1), (std::vector<double>{1, 3, 77, 7, 9}));
  }
}

/// As programs leave it that copy files with their times.
TEST_P(TextDataTest, ReplacementOfTheSameSizeAndTimeIsReadAnew) {
  Rows rows = CountedRows(5, 2);
  Write(FixedLines(rows));
  Open({2, 5}, /*binary=*/false);
  for (int request = 0; request < 3; ++request) Read({{1}, {0}, 5, true});
  const auto before = std::filesystem::last_write_time(Path());
  std::filesystem::rename(Path(), Path() + ".old");
  rows[2][1] = 77;
  Write(FixedLines(rows));
  std::filesystem::last_write_time(Path(), before);
  for (int request = 0; request < 3; ++request) {
    Read({{1}, {0}, 5, true});
    EXPECT_EQ(Of(1), (std::vector<double>{1, 3, 77, 7, 9}));
  }
}

TEST_P(TextDataTest, FileThatHasGrownIsReadAnew) {
  Write(LinesOf(CountedRows(5, 2)));
  Open({2, 5}, /*binary=*/false);
  for (int request = 0; request < 2; ++request) Read({{1}, {0}, 5, true});
  Write("100 200\n" + LinesOf(CountedRows(5, 2)));
  for (int request = 0; request < 3; ++request) {
    Read({{1}, {0}, 5, true});
    EXPECT_EQ(Of(1), (std::vector<double>{200, 1, 3, 5, 7}));
  }
}

TEST_P(TextDataTest, VanishedOrCutFileIsNoticed) {
  Write(LinesOf(CountedRows(5, 2)));
  Open({2, 5}, /*binary=*/false);
  for (int request = 0; request < 3; ++request) Read({{1}, {0}, 5, true});
  Write(LinesOf(CountedRows(3, 2)));
  for (int request = 0; request < 3; ++request) {
    EXPECT_EQ(FailureOf({{1}, {0}, 5, true}), EndOfFile(3));
  }
  std::filesystem::remove(Path());
  for (int request = 0; request < 3; ++request) {
    EXPECT_EQ(FailureOf({{1}, {0}, 5, true}), Missing());
  }
}

TEST_P(TextDataTest, DimensionsOfADamagedHeaderTakeNoMemory) {
  constexpr std::uint64_t kHuge = std::uint64_t{1} << 63;
  Write(LinesOf(CountedRows(5, 2)));
  for (const bool keepBuffer : {true, false}) {
    Open({2, kHuge}, /*binary=*/false);
    for (int request = 0; request < 3; ++request) {
      EXPECT_EQ(FailureOf({{1}, {0}, kHuge, keepBuffer}), EndOfFile(5));
    }
    const std::pair<std::vector<std::uint64_t>, std::string> table[] = {
        {{kHuge, 5}, "IO error 5010: Read offset invalid.\nFurther information: path: " + Path()},
        {{1, kHuge, 5},
         "Sumara Tables error: Failed to populate 2D ASCII series data container from transient "
         "data container.\nFurther information: Point index = 0; values expected = "
         "9223372036854775808; values found = 2"}};
    for (const auto& [dimensions, cause] : table) {
      Open(dimensions, /*binary=*/false);
      for (int request = 0; request < 3; ++request) {
        EXPECT_EQ(FailureOf({{0}, {1}, 5, keepBuffer}), Failure(cause));
      }
    }
    Open({2, 5}, /*binary=*/false, ~std::uint64_t{0});
    EXPECT_EQ(FailureOf(All(5, keepBuffer)),
              Failure("IO error 5008: Data requested past end of file.\nFurther information: " +
                      LineContext(~std::uint64_t{0})));
  }
}

TEST_P(TextDataTest, VariableThatTheLayoutDoesNotHoldRaises25) {
  Write(LinesOf(CountedRows(5, 2)));
  Open({2, 5}, /*binary=*/false);
  for (int request = 0; request < 3; ++request) {
    EXPECT_EQ(FailureOf({{0, 2}, {0}, 5, true}),
              Failure("IO error 5010: Read offset invalid.\nFurther information: path: " + Path()));
    EXPECT_TRUE(Filled().empty());
  }
}

TEST_P(TextDataTest, NothingWantedReadsNothing) {
  Open({2, 5}, /*binary=*/false);
  for (int request = 0; request < 3; ++request) EXPECT_EQ(Read({{}, {0}, 5, false}), 0u);
}

/// What text gives depends on the target alone: no value is ever of the stored type.
TEST(TextConversionTest, TokensAreParsedAsTheTarget) {
  testing_support::TempDirectory directory;
  directory.Write("data", "1.75 1e3\n-2.5 70000\n");
  const auto read = [&](auto tag, std::size_t variable) {
    using U = typename decltype(tag)::Type;
    testing_support::CollectingTarget<U> target;
    const auto file =
        Sumara::MakeGroupDataReader<U>(Sumara::kShortCode, directory.Path("data"), false, {2, 2});
    dynamic_cast<Sumara::IGroupDataReader<U>&>(*file).Read(Sumara::DataLayout::Of({2, 2}, 0),
                                                           {{variable}, {0}, 0, true}, target);
    return target.Of(variable);
  };
  EXPECT_EQ(read(Sumara::ElementTag<double>{}, 0), (std::vector<double>{1.75, -2.5}));
  EXPECT_EQ(read(Sumara::ElementTag<float>{}, 1), (std::vector<double>{1000, 70000}));
  EXPECT_EQ(read(Sumara::ElementTag<int>{}, 1), std::vector<double>{})
      << "1 and .75 are the values of the line";
}

}  // namespace
