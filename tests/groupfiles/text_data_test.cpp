#include <chrono>
#include <fstream>

#include "tests/groupfiles/data_fixture.h"

namespace {

using Sumara::DataRequest;
using testing_support::LinesOf;

using Rows = std::vector<std::vector<double>>;
using Filled = std::vector<std::pair<std::size_t, std::size_t>>;

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

/// Text data files, in all pairs of a stored and a target type.
template <class Pair>
class TextDataTest : public testing_support::DataFixture<Pair> {
 protected:
  void Write(const std::string& text) { this->m_directory.Write("run.$01", text); }

  std::string Failure(const std::string& cause) const {
    return "Sumara Tables error: Error reading series data.\nFurther information: the group\nInner exception: " + cause;
  }
  std::string LineContext(std::uint64_t line) const {
    return "line number = " + std::to_string(line) + "; path: " + this->Path();
  }
  /// The file ended: up to the words of the stream's state.
  std::string EndOfFile(std::uint64_t line) const {
    return Failure("IO error 5009: Failed to read data.\nFurther information: " + LineContext(line) +
                   "\nInner exception: IO error 5008: Data requested past end of file.\n"
                   "Further information: eofbit: unexpected end of file; failbit: ");
  }
  void ExpectStartsWith(const std::string& text, const std::string& start) const {
    EXPECT_EQ(text.substr(0, start.size()), start);
  }

  /// Reads all that a file of these dimensions holds in every way there is: at once, anew, variable by
  /// variable, with and without keeping anything.
  void ExpectCountedInEveryWay(const std::vector<std::uint64_t>& dimensions, std::uint64_t headerRecords = 0) {
    const std::uint64_t points = dimensions.back();
    for (const bool keepBuffer : {true, false}) {
      for (const std::uint64_t asked : {points, std::uint64_t{0}}) {
        this->Open(dimensions, /*binary=*/false, headerRecords);
        for (int request = 0; request < 3; ++request) {
          EXPECT_EQ(this->Read(this->All(asked, keepBuffer)), points);
          this->ExpectAllCounted(points);
          EXPECT_FALSE(this->m_file->IsOpen());
        }
        this->Open(dimensions, /*binary=*/false, headerRecords);
        for (std::size_t variable = 0; variable < this->m_layout.variables; ++variable) {
          for (std::size_t secondary = 0; secondary < this->m_layout.secondary; ++secondary) {
            EXPECT_EQ(this->Read({{variable}, {secondary}, asked, keepBuffer}), points);
            EXPECT_EQ(this->m_target.filled, (Filled{{variable, secondary}}));
            EXPECT_EQ(this->m_target.Of(variable, secondary), this->Counted(variable, secondary, points));
          }
        }
      }
    }
  }
};
TYPED_TEST_SUITE(TextDataTest, testing_support::ElementTypePairs);

TYPED_TEST(TextDataTest, OneAxisWithLinesOfAnyLength) {
  this->Write(LinesOf(CountedRows(40, 3)));
  this->ExpectCountedInEveryWay({3, 40});
}

TYPED_TEST(TextDataTest, OneAxisWithLinesOfOneLength) {
  this->Write(FixedLines(CountedRows(40, 3)));
  this->ExpectCountedInEveryWay({3, 40});
}

TYPED_TEST(TextDataTest, TwoAxesHaveALineForEachSecondaryValue) {
  this->Write(LinesOf(CountedRows(20 * 4, 3)));
  this->ExpectCountedInEveryWay({3, 4, 20});
  this->Write(FixedLines(CountedRows(20 * 4, 3)));
  this->ExpectCountedInEveryWay({3, 4, 20});
}

TYPED_TEST(TextDataTest, TwoAxesOfOneVariableHaveALineForEachPoint) {
  this->Write(LinesOf(CountedRows(20, 4)));
  this->ExpectCountedInEveryWay({1, 4, 20});
  this->Write(FixedLines(CountedRows(20, 4)));
  this->ExpectCountedInEveryWay({1, 4, 20});
}

TYPED_TEST(TextDataTest, CarriageReturns) {
  this->Write(LinesOf(CountedRows(40, 3), "\r\n"));
  this->ExpectCountedInEveryWay({3, 40});
  this->Write(FixedLines(CountedRows(40, 3), "\r\n"));
  this->ExpectCountedInEveryWay({3, 40});
}

TYPED_TEST(TextDataTest, LastLineNeedsNoLineEnd) {
  std::string text = LinesOf(CountedRows(40, 3));
  text.pop_back();
  this->Write(text);
  this->ExpectCountedInEveryWay({3, 40});
}

TYPED_TEST(TextDataTest, HeaderRecordsAreNoData) {
  this->Write("Results of a run\n\t 17 x\n" + LinesOf(CountedRows(40, 3)));
  this->ExpectCountedInEveryWay({3, 40}, 2);
  this->Write("Results\n" + LinesOf(CountedRows(20 * 4, 3)));
  this->ExpectCountedInEveryWay({3, 4, 20}, 1);
  this->Write("12345678901234567\n" + FixedLines(CountedRows(39, 3)) + "   117   118   119");
  this->ExpectCountedInEveryWay({3, 40}, 1);
}

TYPED_TEST(TextDataTest, SingleEmptyLinesArePassedOver) {
  const std::string text = LinesOf(CountedRows(2, 3));
  this->Write("\n" + text.substr(0, text.find('\n')) + "\n\n" + text.substr(text.find('\n') + 1));
  this->Open({3, 2}, /*binary=*/false);
  this->Read(this->All(2));
  this->ExpectAllCounted(2);
}

TYPED_TEST(TextDataTest, FurtherValuesOfALineAreNotData) {
  this->Write("0 1 2 99\n3 4 5 and words\n");
  this->ExpectCountedInEveryWay({3, 2});
}

TYPED_TEST(TextDataTest, FewerPointsThanTheFileHolds) {
  this->Write(LinesOf(CountedRows(40, 3)));
  for (int request = 0; request < 3; ++request) {
    this->Open({3, 7}, /*binary=*/false);
    EXPECT_EQ(this->Read(this->All(7)), 7u);
    this->ExpectAllCounted(7);
  }
}

TYPED_TEST(TextDataTest, TooFewLinesRaise25) {
  this->Write(LinesOf(CountedRows(8, 3)));
  for (const bool keepBuffer : {true, false}) {
    this->Open({3, 10}, /*binary=*/false);
    for (int request = 0; request < 3; ++request) {
      this->ExpectStartsWith(this->FailureOf(this->All(10, keepBuffer)), this->EndOfFile(8));
      EXPECT_TRUE(this->m_target.filled.empty());
      EXPECT_EQ(this->m_target.Of(0), std::vector<double>{});
      EXPECT_FALSE(this->m_file->IsOpen());
    }
  }
}

TYPED_TEST(TextDataTest, PointCutInTwoIsMissing) {
  this->Write(LinesOf(CountedRows(3 * 4 - 1, 2)));
  this->Open({2, 4, 3}, /*binary=*/false);
  this->ExpectStartsWith(this->FailureOf({{0}, {0}, 3, true}), this->EndOfFile(11));
  EXPECT_EQ(this->Read(this->All(0)), 2u);
  this->ExpectAllCounted(2);
}

TYPED_TEST(TextDataTest, ShortLineRaises25WhicheverVariableIsWanted) {
  this->Write("0 1 2\n3 4\n6 7 8\n");
  const std::string failure = this->Failure(
      "Sumara Tables error: Failed to populate 1D ASCII series data container from transient data container.\n"
      "Further information: Point index = 1; values expected = 3; values found = 2");
  for (const std::size_t variable : {0u, 1u, 2u}) {
    this->Open({3, 3}, /*binary=*/false);
    for (int request = 0; request < 3; ++request) EXPECT_EQ(this->FailureOf({{variable}, {0}, 3, true}), failure);
  }
  EXPECT_EQ(this->Read(this->All(0)), 1u);
  this->ExpectAllCounted(1);
}

TYPED_TEST(TextDataTest, LineIsReadUpToTheFirstThatIsNoNumber) {
  this->Write("0 1 2\n3 x 5\n");
  this->Open({3, 2}, /*binary=*/false);
  EXPECT_EQ(this->FailureOf({{0}, {0}, 2, true}),
            this->Failure("Sumara Tables error: Failed to populate 1D ASCII series data container from transient data "
                          "container.\nFurther information: Point index = 1; values expected = 3; values found = 1"));
}

TYPED_TEST(TextDataTest, ShortLineOfTwoAxesRaises29In25) {
  this->Write("0 1 2\n3 4\n");
  this->Open({1, 3, 2}, /*binary=*/false);
  EXPECT_EQ(this->FailureOf({{0}, {0}, 2, true}),
            this->Failure("Sumara Tables error: Failed to populate 2D ASCII series data container from transient data "
                          "container.\nFurther information: Point index = 1; values expected = 3; values found = 2"));
}

TYPED_TEST(TextDataTest, LineWithoutNumbersRaises26Or27In25) {
  for (const char* line : {" \t ", "words", "- 1 2"}) {
    this->Write(std::string("0 1 2\n") + line + "\n6 7 8\n");
    this->Open({3, 3}, /*binary=*/false);
    EXPECT_EQ(this->FailureOf(this->All(3)),
              this->Failure("Sumara Tables error: Transient data container for 1D ASCII series was empty following "
                            "read from file.\nFurther information: Point index = 1"));
    this->Open({1, 3, 3}, /*binary=*/false);
    EXPECT_EQ(this->FailureOf(this->All(3)),
              this->Failure("Sumara Tables error: Transient data container for 2D ASCII series was empty following "
                            "read from file.\nFurther information: Point index = 1"));
  }
}

TYPED_TEST(TextDataTest, EmptyLineRaises5015In25) {
  const std::string failure = this->Failure("IO error 5015: String to populate from was empty.");
  for (const char* text : {"0 1 2\n\n\n6 7 8\n", "0 1 2\r\n\r\n6 7 8\r\n"}) {
    this->Write(text);
    this->Open({3, 3}, /*binary=*/false);
    EXPECT_EQ(this->FailureOf(this->All(3)), failure);
    EXPECT_EQ(this->Read(this->All(0)), 1u);
  }
}

TYPED_TEST(TextDataTest, EmptyFileLeavesTheSeriesEmpty) {
  this->Write("");
  for (const std::uint64_t points : {0u, 10u}) {
    this->Open({2, points}, /*binary=*/false);
    for (int request = 0; request < 3; ++request) {
      EXPECT_EQ(this->Read(this->All(points)), 0u);
      EXPECT_TRUE(this->m_target.filled.empty());
    }
  }
}

TYPED_TEST(TextDataTest, FileOfLineEndsRaises5020) {
  this->Write("\n\n\n");
  this->Open({2, 10}, /*binary=*/false);
  for (int request = 0; request < 3; ++request) {
    this->ExpectStartsWith(this->FailureOf(this->All(10)), this->Failure("IO error 5015: "));
  }
  this->Write("\n");
  this->Open({2, 10}, /*binary=*/false);
  for (int request = 0; request < 3; ++request) {
    this->ExpectStartsWith(this->FailureOf(this->All(10)),
                           "IO error 5020: Failed to determine length of first line in file.\nFurther information: " +
                               this->Path() + "\nInner exception: IO error 5008: Data requested past end of file.");
    EXPECT_FALSE(this->m_file->IsOpen());
  }
}

TYPED_TEST(TextDataTest, MissingFileRaises5000) {
  this->Open({2, 10}, /*binary=*/false);
  for (int request = 0; request < 3; ++request) {
    EXPECT_EQ(this->FailureOf(this->All(10)),
              "IO error 5000: The file does not exist.\nFurther information: " + this->Path());
  }
}

TYPED_TEST(TextDataTest, SizeThatOnlyLooksUniformIsReadByItsLines) {
  this->Write("10 11\n2 3 4\n40 41\n");  // the lines have 6 bytes in all: 18 of 3 x 6
  this->Open({2, 3}, /*binary=*/false);
  EXPECT_EQ(this->Read(this->All(3)), 3u);
  EXPECT_EQ(this->m_target.Of(0), (std::vector<double>{10, 2, 40}));
  this->Write("10 11\n2 3\n040 041\n");
  this->Open({2, 3}, /*binary=*/false);
  EXPECT_EQ(this->Read(this->All(3)), 3u);
  EXPECT_EQ(this->m_target.Of(0), (std::vector<double>{10, 2, 40}));
  EXPECT_EQ(this->m_target.Of(1), (std::vector<double>{11, 3, 41}));
}

TYPED_TEST(TextDataTest, ChangedFileIsReadAnew) {
  Rows rows = CountedRows(5, 2);
  this->Write(FixedLines(rows));
  this->Open({2, 5}, /*binary=*/false);
  for (int request = 0; request < 3; ++request) {
    this->Read({{1}, {0}, 5, true});
    EXPECT_EQ(this->m_target.Of(1), (std::vector<double>{1, 3, 5, 7, 9}));
  }
  rows[2][1] = 77;
  const auto before = std::filesystem::last_write_time(this->Path());
  this->Write(FixedLines(rows));  // of the same size
  std::filesystem::last_write_time(this->Path(), before + std::chrono::seconds(1));
  for (int request = 0; request < 3; ++request) {
    this->Read({{1}, {0}, 5, true});
    EXPECT_EQ(this->m_target.Of(1), (std::vector<double>{1, 3, 77, 7, 9}));
  }
}

TYPED_TEST(TextDataTest, FileThatHasGrownIsReadAnew) {
  this->Write(LinesOf(CountedRows(5, 2)));
  this->Open({2, 5}, /*binary=*/false);
  for (int request = 0; request < 2; ++request) this->Read({{1}, {0}, 5, true});
  this->Write("100 200\n" + LinesOf(CountedRows(5, 2)));
  for (int request = 0; request < 3; ++request) {
    this->Read({{1}, {0}, 5, true});
    EXPECT_EQ(this->m_target.Of(1), (std::vector<double>{200, 1, 3, 5, 7}));
  }
}

TYPED_TEST(TextDataTest, VanishedOrCutFileIsNoticed) {
  this->Write(LinesOf(CountedRows(5, 2)));
  this->Open({2, 5}, /*binary=*/false);
  for (int request = 0; request < 3; ++request) this->Read({{1}, {0}, 5, true});
  this->Write(LinesOf(CountedRows(3, 2)));
  for (int request = 0; request < 3; ++request) {
    this->ExpectStartsWith(this->FailureOf({{1}, {0}, 5, true}), this->EndOfFile(3));
  }
  std::filesystem::remove(this->Path());
  for (int request = 0; request < 3; ++request) {
    EXPECT_EQ(this->FailureOf({{1}, {0}, 5, true}),
              "IO error 5000: The file does not exist.\nFurther information: " + this->Path());
  }
}

TYPED_TEST(TextDataTest, DimensionsOfADamagedHeaderTakeNoMemory) {
  constexpr std::uint64_t kHuge = std::uint64_t{1} << 63;
  this->Write(LinesOf(CountedRows(5, 2)));
  for (const bool keepBuffer : {true, false}) {
    this->Open({2, kHuge}, /*binary=*/false);
    for (int request = 0; request < 3; ++request) {
      this->ExpectStartsWith(this->FailureOf({{1}, {0}, kHuge, keepBuffer}), this->EndOfFile(5));
    }
    for (const std::vector<std::uint64_t>& dimensions : {std::vector<std::uint64_t>{kHuge, 5}, {1, kHuge, 5}}) {
      this->Open(dimensions, /*binary=*/false);
      for (int request = 0; request < 3; ++request) {
        const std::string failure = this->FailureOf({{0}, {1}, 5, keepBuffer});
        EXPECT_EQ(failure.find("Error reading series data"), std::string("Sumara Tables error: ").size()) << failure;
      }
    }
    this->Open({2, 5}, /*binary=*/false, ~std::uint64_t{0});
    const std::string failure = this->FailureOf(this->All(5, keepBuffer));
    EXPECT_EQ(failure.find("IO error 5008"), failure.rfind("IO error 5008")) << failure;
    EXPECT_EQ(failure.find("Error reading series data"), std::string("Sumara Tables error: ").size()) << failure;
  }
}

TYPED_TEST(TextDataTest, VariableThatTheLayoutDoesNotHoldRaises25) {
  this->Write(LinesOf(CountedRows(5, 2)));
  this->Open({2, 5}, /*binary=*/false);
  for (int request = 0; request < 3; ++request) {
    EXPECT_EQ(this->FailureOf({{0, 2}, {0}, 5, true}),
              this->Failure("IO error 5010: Read offset invalid.\nFurther information: path: " + this->Path()));
    EXPECT_TRUE(this->m_target.filled.empty());
  }
}

TYPED_TEST(TextDataTest, NothingWantedReadsNothing) {
  this->Open({2, 5}, /*binary=*/false);
  for (int request = 0; request < 3; ++request) EXPECT_EQ(this->Read({{}, {0}, 5, false}), 0u);
}

/// What text gives depends on the target alone: no value is ever of the stored type.
TEST(TextConversionTest, TokensAreParsedAsTheTarget) {
  testing_support::TempDirectory directory;
  directory.Write("data", "1.75 1e3\n-2.5 70000\n");
  const auto read = [&](auto tag, std::size_t variable) {
    using U = typename decltype(tag)::Type;
    testing_support::CollectingTarget<U> target;
    const auto file = Sumara::MakeGroupDataReader<U>(Sumara::kShortCode, directory.Path("data"), false, {2, 2});
    dynamic_cast<Sumara::IGroupDataReader<U>&>(*file).Read(Sumara::DataLayout::Of({2, 2}, 0), {{variable}, {0}, 0, true},
                                                           target);
    return target.Of(variable);
  };
  EXPECT_EQ(read(Sumara::ElementTag<double>{}, 0), (std::vector<double>{1.75, -2.5}));
  EXPECT_EQ(read(Sumara::ElementTag<float>{}, 1), (std::vector<double>{1000, 70000}));
  EXPECT_EQ(read(Sumara::ElementTag<int>{}, 1), std::vector<double>{}) << "1 and .75 are the values of the line";
}

}  // namespace
