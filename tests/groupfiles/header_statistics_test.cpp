#include "tests/groupfiles/header_fixture.h"
#include "tests/support/element_types.h"

namespace {

using testing_support::HeaderText;
using testing_support::ReadHeader;

const std::initializer_list<std::string> kBlock = {"ULOADS   9.0000000E+00   1.5000000E+00",
                                                   "  -9.0000000E+00   2.5000000E+00",
                                                   "   3.0000000E+00   7.0000000E+00",
                                                   "   4.0000000E+00  -7.0000000E+00",
                                                   "MAXTIME 12 4",
                                                   "MINTIME 0 2",
                                                   "MEAN   1.2500000E+00  -2.5000000E-01"};

/// Statistics blocks of a group of two variables.
class HeaderStatisticsTest : public testing_support::HeaderFixture {
 protected:
  static HeaderText WithBlock() { return HeaderText::OneAxis().Append(kBlock); }

  std::string ExpectedUloads() const {
    return Model("Header does not contain the expected number of ultimate loads blocks (ULOADS)");
  }
  std::string NotOnNextLine(const std::string& label) const {
    return "IO error 5019: Label was not found on the current line - return after one attempt was "
           "requested.\nFurther information: label sought = " +
           label + "; path: " + Path();
  }
};

TEST_F(HeaderStatisticsTest, OneBlock) {
  const ReadHeader header = Read(WithBlock());
  ASSERT_EQ(header.statistics.size(), 1u);
  const auto& block = header.statistics[0];
  EXPECT_EQ(block.uloads, (std::vector<std::vector<float>>{{9, 1.5}, {-9, 2.5}, {3, 7}, {4, -7}}));
  EXPECT_EQ(block.maxTime, (std::vector<double>{12, 4}));
  EXPECT_EQ(block.minTime, (std::vector<double>{0, 2}));
  EXPECT_EQ(block.mean, (std::vector<double>{1.25, -0.25}));
}

TEST_F(HeaderStatisticsTest, BlocksFollowEachOtherAndAnIncompleteSeriesEndsQuietly) {
  const ReadHeader header = Read(HeaderText::TwoAxes().Append(kBlock).Append(kBlock));
  EXPECT_EQ(header.statistics.size(), 2u);
}

TEST_F(HeaderStatisticsTest, CarriageReturnsAndAMissingLastLineEnd) {
  EXPECT_EQ(Read(WithBlock().Text("\r\n")).statistics.at(0).mean,
            (std::vector<double>{1.25, -0.25}));
  std::string unended = WithBlock().Text();
  unended.pop_back();
  EXPECT_EQ(Read(unended).statistics.at(0).mean, (std::vector<double>{1.25, -0.25}));
}

TEST_F(HeaderStatisticsTest, AbsentBlocksAreNoError) {
  EXPECT_TRUE(Read(HeaderText::OneAxis()).statistics.empty());
  EXPECT_TRUE(Read(HeaderText::OneAxis().Append({"OTHER", "ULOADS 1 2"})).statistics.empty());
}

TEST_F(HeaderStatisticsTest, OtherStatisticsWithoutUloadsRaise119) {
  for (const char* label : {"MAXTIME", "MINTIME", "MEAN"}) {
    EXPECT_EQ(FailureOf(HeaderText::OneAxis().Append({std::string(label) + " 1 2"})),
              ExpectedUloads());
  }
  EXPECT_TRUE(Read(HeaderText::OneAxis().Append({"MEANS 1 2"})).statistics.empty());
}

TEST_F(HeaderStatisticsTest, WrongNumberOfRowsRaises119) {
  EXPECT_EQ(FailureOf(HeaderText::OneAxis().Append({"ULOADS 1 2", " 1 2", " 1 2", "MAXTIME 1 2"})),
            ExpectedUloads());
  EXPECT_EQ(FailureOf(HeaderText::OneAxis().Append({"ULOADS 1 2", " 1 2", " 1 2", " 1 2", " 1 2"})),
            ExpectedUloads());
  EXPECT_EQ(FailureOf(WithBlock().With("DIMENS", "9223372036854775810 3")), ExpectedUloads());
  EXPECT_EQ(FailureOf(WithBlock().With("DIMENS", "0 3")), ExpectedUloads());
}

TEST_F(HeaderStatisticsTest, RowOfOtherLengthRaises119) {
  EXPECT_EQ(FailureOf(HeaderText::OneAxis().Append({"ULOADS 1 2", " 1", " 1 2", " 1 2"})),
            ExpectedUloads());
  EXPECT_EQ(FailureOf(HeaderText::OneAxis().Append({"ULOADS", " 1 2", " 1 2", " 1 2"})),
            ExpectedUloads());
  EXPECT_EQ(FailureOf(HeaderText::OneAxis().Append({"ULOADS 1 2", " 1 2", " 1 2 3", " 1 2"})),
            ExpectedUloads());
}

TEST_F(HeaderStatisticsTest, LineOfWhiteSpaceIsAFailureOfItsField) {
  EXPECT_EQ(FailureOf(HeaderText::OneAxis().Append({" "})),
            ExpectedUloads() + "\nInner exception: " + EmptyLine("ULOADS"));
  EXPECT_EQ(FailureOf(WithBlock().After("MAXTIME", {" "})),
            Model("Header does not contain the expected number of minimum time blocks (MINTIME)") +
                "\nInner exception: " + EmptyLine("MINTIME"));
}

TEST_F(HeaderStatisticsTest, LinesMissingOrOfOtherLengthRaiseTheirCode) {
  const std::pair<const char*, const char*> fields[] = {
      {"MAXTIME", "Header does not contain the expected number of maximum time blocks (MAXTIME)"},
      {"MINTIME", "Header does not contain the expected number of minimum time blocks (MINTIME)"},
      {"MEAN", "Header does not contain the expected number of means blocks (MEAN)"},
  };
  for (const auto& [label, words] : fields) {
    EXPECT_EQ(FailureOf(WithBlock().Without(label).Append({"OTHER 1"})),
              Model(words) + "\nInner exception: " + NotOnNextLine(label));
    EXPECT_EQ(FailureOf(WithBlock().Before(label, {"OTHER 1"})),
              Model(words) + "\nInner exception: " + NotOnNextLine(label));
    for (const char* value : {"", "1", "1 2 3"}) {
      EXPECT_EQ(FailureOf(WithBlock().With(label, value)), Model(words)) << value;
    }
    EXPECT_EQ(FailureOf(WithBlock().With(label, "1").After(label, {" 2"})), Model(words))
        << "no continuation";
  }
}

TEST_F(HeaderStatisticsTest, TokensThatDoNotParseGiveWhatAStreamStores) {
  HeaderText text = WithBlock().With("MEAN", "x 2y").With("ULOADS", "1e99 n/a");
  const auto block = Read(text).statistics.at(0);
  EXPECT_EQ(block.mean, (std::vector<double>{0, 2}));
  EXPECT_EQ(block.uloads[0], (std::vector<float>{std::numeric_limits<float>::max(), 0}));
}

TEST_F(HeaderStatisticsTest, BlockThatIsCutOffRaisesTheCodeOfTheNextField) {
  EXPECT_EQ(FailureOf(WithBlock().Without("MEAN")),
            Model("Header does not contain the expected number of means blocks (MEAN)", "MEAN"));
  EXPECT_EQ(FailureOf(WithBlock().Without("MEAN").Without("MINTIME")),
            Model("Header does not contain the expected number of minimum time blocks (MINTIME)",
                  "MINTIME"));
}

TEST_F(HeaderStatisticsTest, BlankLineBehindTheRowsFailsTheNextField) {
  EXPECT_EQ(FailureOf(WithBlock().Before("MAXTIME", {""})),
            Model("Header does not contain the expected number of maximum time blocks (MAXTIME)") +
                "\nInner exception: " + NotOnNextLine("MAXTIME") +
                "\nInner exception: IO error 5007: Stream has error flag(s)");
  EXPECT_EQ(Read(WithBlock().Before("MINTIME", {""})).statistics.at(0).minTime,
            (std::vector<double>{0, 2}));
}

template <class T>
class HeaderStatisticsTypesTest : public HeaderStatisticsTest {
 protected:
  std::vector<std::vector<double>> Uloads(const HeaderText& text) {
    m_directory.Write("run.%01", text.Text());
    Sumara::CHeaderReader reader(Path());
    reader.Start();
    const auto top = reader.ReadTop();
    reader.ReadAxis(top, 1);
    reader.ReadNamedParameters();
    std::vector<std::vector<double>> rows;
    const auto blocks = testing_support::FiguresOf<T>(reader.ReadFigures(2, 1));
    for (const auto& row : blocks.at(0).uloads) rows.emplace_back(row.begin(), row.end());
    return rows;
  }
};
TYPED_TEST_SUITE(HeaderStatisticsTypesTest, testing_support::ElementTypes);

TYPED_TEST(HeaderStatisticsTypesTest, UloadsAreOfTheTypeOfTheGroup) {
  const auto rows = this->Uloads(this->WithBlock());
  const bool integer = !std::is_floating_point_v<TypeParam>;
  EXPECT_EQ(rows[0], (std::vector<double>{9, integer ? 1 : 1.5}));
  EXPECT_EQ(rows[1], (std::vector<double>{-9, integer ? 2 : 2.5}));
  EXPECT_EQ(rows[3], (std::vector<double>{4, -7}));
}

}  // namespace
