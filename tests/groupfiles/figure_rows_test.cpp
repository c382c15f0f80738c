#include "groupfiles/figure_rows.h"

#include <array>
#include <functional>
#include <random>

#include "tests/groupfiles/header_fixture.h"
#include "tests/support/element_types.h"

namespace {

using Sumara::Extreme;
using Sumara::FigureLine;
using Sumara::FigureRows;
using testing_support::FiguresOf;
using testing_support::HeaderText;
using testing_support::kAllBlocks;
using testing_support::MessageOf;
using testing_support::PlainFigureReader;
using testing_support::PlainFigures;

constexpr std::string_view kBlock =
    "ULOADS 9 1.5\n  -9 2.5\n   3 7\n\t4 -7\r\nMAXTIME 12 4\nMINTIME 0 2\nMEAN 1.25 -0.25\n";

TEST(FigureRowsTest, RowsAreFoundAndConvertedOneByOne) {
  const std::string text = "NVARS\t0\n" + std::string(kBlock) + "\n" + std::string(kBlock);
  const FigureRows rows = Sumara::FindFigureRows(text, 8, 2, kAllBlocks, "run.%01");
  ASSERT_EQ(rows.BlockCount(), 2u);
  EXPECT_EQ(Sumara::ReadFigure<float>(text, rows.UloadsRow(0, 0, Extreme::kMinimum), 0), -9);
  EXPECT_EQ(Sumara::ReadFigure<float>(text, rows.UloadsRow(1, 1, Extreme::kMinimum), 1), -7);
  EXPECT_EQ(Sumara::ReadFigure<int>(text, rows.UloadsRow(0, 0, Extreme::kMaximum), 1), 1);
  EXPECT_EQ(Sumara::ReadFigure<double>(text, rows.Line(1, FigureLine::kMaxTime), 0), 12);
  EXPECT_EQ(Sumara::ReadFigure<double>(text, rows.Line(0, FigureLine::kMinTime), 1), 2);
  std::array<double, 2> means{};
  Sumara::ReadFigures<double>(text, rows.Line(0, FigureLine::kMean), means);
  EXPECT_EQ(means, (std::array<double, 2>{1.25, -0.25}));
}

TEST(FigureRowsTest, NoMoreBlocksAreSoughtThanAreAskedFor) {
  const std::string text = std::string(kBlock) + std::string(kBlock) + "ULOADS damaged\n";
  EXPECT_EQ(Sumara::FindFigureRows(text, 0, 2, 2, "run.%01").BlockCount(), 2u);
  EXPECT_EQ(Sumara::FindFigureRows(text, 0, 2, 0, "run.%01").BlockCount(), 0u);
  EXPECT_EQ(Sumara::FindFigureRows(text, text.size() + 1, 2, 1, "run.%01").BlockCount(), 0u);
}

TEST(FigureRowsTest, RefusedBlockLeavesTheRowsBefore) {
  const std::string text = std::string(kBlock) + "ULOADS 1 2\n 1 2\n 1 2\n 1 2\nMAXTIME 1 2\n";
  FigureRows rows;
  rows.variableCount = 2;
  const auto next = Sumara::FindFigureBlock(text, 0, rows, "run.%01");
  ASSERT_EQ(next, kBlock.size());
  EXPECT_EQ(MessageOf([&] { Sumara::FindFigureBlock(text, *next, rows, "run.%01"); }),
            "Sumara Tables error: Header does not contain the expected number of minimum time "
            "blocks (MINTIME).\nFurther information: File path: run.%01\nInner exception: IO error "
            "5018: Label was not found - end of file encountered.\nFurther information: label "
            "sought = MINTIME; path: run.%01");
  EXPECT_EQ(rows.BlockCount(), 1u);
}

/// Values are counted in blocks: rows of every length around theirs.
TEST(FigureRowsTest, ValuesOfRowsOfAnyLengthAreCounted) {
  std::mt19937 random(7);
  for (std::uint64_t count = 1; count < 400; ++count) {
    std::string row;
    for (std::uint64_t i = 0; i < count; ++i) {
      row.append(1 + random() % 3, " \t\r\v"[random() % 4]).append(1 + random() % 9, 'x');
    }
    EXPECT_EQ(Sumara::CountFigures(row + "\n 1 2", 0), count);
    EXPECT_EQ(Sumara::CountFigures("row " + row + " ", 3), count);
  }
  EXPECT_EQ(Sumara::CountFigures("", 0), 0u);
}

/// Random texts behind the axes of a header, most of them nearly a block.
class RandomFigures {
 public:
  explicit RandomFigures(unsigned seed) : m_random(seed) {}

  std::string Text(std::size_t variables) {
    std::string text;
    for (std::size_t block = Below(3); block <= 2; ++block) text += Block(variables);
    if (Below(4) == 0) text.resize(Below(text.size() + 1));
    return text;
  }

  std::size_t Below(std::size_t limit) { return m_random() % limit; }

 private:
  std::string Block(std::size_t variables) {
    std::string text = Strange();
    const std::size_t rows = 2 * variables + (Below(40) == 0 ? Below(3) - 1 : 0);
    for (std::size_t row = 0; row < rows; ++row) {
      text += (row == 0 ? "ULOADS" : Blank()) + Row(variables);
    }
    for (const char* label : {"MAXTIME", "MINTIME", "MEAN"}) {
      if (Below(60) != 0) text += Strange() + label + Row(variables);
    }
    return text;
  }

  std::string Row(std::size_t count) {
    if (Below(80) == 0) count = Below(4);
    std::string row;
    for (std::size_t i = 0; i < count; ++i) row += Blank() + Number();
    if (Below(20) == 0) row += Blank();
    return row + (Below(8) == 0 ? "\r\n" : "\n");
  }

  std::string Number() {
    static const char* const kNumbers[] = {"1.5000000E+00", "-9", "+3", "n/a",  "1e99", "2y", "-",
                                           "70000",         "1e", ".",  "1e-5", "0x10", "7"};
    return kNumbers[Below(std::size(kNumbers))];
  }

  std::string Blank() {
    static const char* const kBlanks[] = {" ", "   ", "\t", " \t ", "  "};
    return kBlanks[Below(std::size(kBlanks))];
  }

  std::string Strange() {
    static const char* const kLines[] = {"\n",       "\n\n",    " \n", "\r\n",
                                         "MEAN 1\n", "OTHER\n", " 5\n"};
    return Below(25) == 0 ? kLines[Below(std::size(kLines))] : "";
  }

  std::mt19937 m_random;
};

template <class T>
class FigureRowsTypesTest : public testing_support::HeaderFixture {
 protected:
  using Blocks = std::vector<PlainFigures<T>>;

  static constexpr std::string_view kTop = "FILE x\nNVARS\t0\n";

  /// The blocks as the plain reader finds them, or its refusal.
  std::string ReadPlainly(std::uint64_t variables, Blocks& blocks) {
    Sumara::CHeaderReader header(Path());
    StartBehindTop(header);
    return MessageOfAny([&] {
      PlainFigureReader<T> reader(header, variables);
      while (auto block = reader.Next()) blocks.push_back(std::move(*block));
    });
  }

  std::string ReadByCounting(std::uint64_t variables, Blocks& blocks) {
    Sumara::CHeaderReader header(Path());
    StartBehindTop(header);
    return MessageOfAny([&] { blocks = FiguresOf<T>(header.ReadFigures(variables, kAllBlocks)); });
  }

  static std::string MessageOfAny(const std::function<void()>& read) {
    try {
      read();
    } catch (const CExceptionBase& failure) {
      return failure.what();
    }
    return {};
  }

 private:
  static void StartBehindTop(Sumara::CHeaderReader& header) {
    header.Start();
    std::string value;
    header.SeekLabel("NVARS", value, {});
  }
};
TYPED_TEST_SUITE(FigureRowsTypesTest, testing_support::ElementTypes);

TYPED_TEST(FigureRowsTypesTest, CountingAgreesWithTheSearchForLabels) {
  RandomFigures random(20);
  std::size_t refused = 0;
  std::size_t read = 0;
  for (int round = 0; round < 600; ++round) {
    const std::size_t variables = 1 + random.Below(round % 50 == 0 ? 40 : 4);
    const std::string text = random.Text(variables);
    this->m_directory.Write("run.%01", std::string(this->kTop) + text);
    typename TestFixture::Blocks plain;
    typename TestFixture::Blocks counted;
    const std::string refusal = this->ReadPlainly(variables, plain);
    ASSERT_EQ(this->ReadByCounting(variables, counted), refusal) << text;
    if (refusal.empty()) {
      ASSERT_EQ(counted, plain) << text;
    }
    (refusal.empty() ? read : refused) += 1;
  }
  EXPECT_GT(read, 120u);
  EXPECT_GT(refused, 120u);
}

TYPED_TEST(FigureRowsTypesTest, EmptyLineBehindAValueHidesTheFigures) {
  this->m_directory.Write("run.%01", std::string(this->kTop) + "\n" + std::string(kBlock));
  Sumara::CHeaderReader header(this->Path());
  header.Start();
  std::string value;
  header.SeekLabel("NVARS", value, {.continuation = true});
  EXPECT_EQ(header.ReadFigures(2, 1).rows.BlockCount(), 0u);
}

}  // namespace
