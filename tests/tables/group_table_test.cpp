#include "tables/group_table.h"

#include <filesystem>
#include <stdexcept>

#include "tests/tables/table_fixture.h"

namespace Tabulon {
namespace {

using SumaraApi::AxisTypeId;
using SumaraApi::CalculationType;

TEST_F(TableTest, OpenTellsWhatTheHeaderHolds) {
  WriteHeader(HeaderText::OneAxis().With("NVARS", "1").Append({"Wind: 12"}));
  const GroupTable table = Table();
  EXPECT_EQ(table.Path(), HeaderPath());
  EXPECT_EQ(table.DataPath(), DataPath());
  EXPECT_EQ(table.Name(), "Tower loads");
  EXPECT_EQ(table.Number(), 1);
  EXPECT_EQ(table.Calculation(), CalculationType::PowerProductionSimulation);
  EXPECT_EQ(table.Content(), "POWPROD");
  EXPECT_EQ(table.Config(), "TRANSIENT");
  EXPECT_EQ(table.Parameters(), std::vector<std::string>{"Wind: 12"});
  EXPECT_TRUE(table.IsBinary());
  EXPECT_EQ(table.StoredType(), 1u);
  EXPECT_EQ(table.HeaderRecords(), 0u);
  EXPECT_EQ(table.Dimensions(), (std::vector<std::uint64_t>{2, 3}));
  EXPECT_FALSE(table.HasFigures());
  ASSERT_EQ(table.Variables().size(), 2u);
  EXPECT_EQ(table.Variables()[0].name, "Mx");
  EXPECT_EQ(table.Variables()[0].quantity, "FL");
  EXPECT_EQ(table.Variables()[0].unit, "Nm");
  EXPECT_EQ(table.Variables()[1].quantity, "F L");
  EXPECT_EQ(table.Variables()[1].unit, "");
}

TEST_F(TableTest, AxesComePrimaryFirst) {
  WriteHeader(HeaderText::TwoAxes());
  const GroupTable table = Table();
  ASSERT_EQ(table.Axes().size(), 2u);
  EXPECT_EQ(table.Axes()[0].name, "Time");
  EXPECT_EQ(table.Axes()[0].kind, AxisTypeId::IntervalAxis);
  EXPECT_EQ(table.Axes()[0].count, 4u);
  EXPECT_EQ(table.Axes()[0].minimum, 1.0);
  EXPECT_EQ(table.Axes()[0].step, 0.5);
  EXPECT_EQ(table.Axes()[1].name, "Radius");
  EXPECT_EQ(table.Axes()[1].unit, "m");
  EXPECT_EQ(table.Axes()[1].kind, AxisTypeId::LabelledValueAxis);
  EXPECT_EQ(table.Axes()[1].values, (std::vector<double>{1.5, 2.5, 3.5}));
}

TEST_F(TableTest, UnitsAreUtf8) {
  WriteHeader(HeaderText::OneAxis().With("VARUNIT", "MLL FL"));
  EXPECT_EQ(Table().Variables()[0].unit, "kgm\xC2\xB2");
}

TEST_F(TableTest, AFailureTellsCodePathFieldAndWhatWasFound) {
  struct Case {
    HeaderText header;
    std::int32_t code;
    std::string field;
    std::string found;
  };
  const Case cases[] = {
      {HeaderText::OneAxis().With("FORMAT", "R*3"), 127, "FORMAT", "R*3"},
      {HeaderText::OneAxis().With("ACCESS", "X"), 97, "ACCESS", "X"},
      {HeaderText::OneAxis().With("NDIMENS", "4"), 128, "NDIMENS", "4"},
      {HeaderText::OneAxis().With("DIMENS", "two"), 126, "DIMENS", "two"},
      {HeaderText::OneAxis().With("AXIMETH", "9"), 129, "AXIMETH", "9"},
      {HeaderText::OneAxis().With("STEP", "0"), 33, "STEP", "0"},
      {HeaderText::OneAxis().With("VARIAB", "'Mx"), 114, "VARIAB", "'Mx"},
      {HeaderText::OneAxis().With("VARUNIT", "FL"), 117, "VARUNIT", "FL"},
      {HeaderText::OneAxis().Without("GENLAB"), 102, "GENLAB", ""},
      {HeaderText::OneAxis().Without("RECL"), 5018, "RECL", ""},
      {HeaderText::TwoAxes().With("AXIMETH", "7", 1), 129, "AXIMETH", "7"},
  };
  for (const Case& each : cases) {
    WriteHeader(each.header);
    const TableError failure = FailureOf([&] { Table(); });
    EXPECT_EQ(failure.Code(), each.code) << failure.what();
    EXPECT_EQ(failure.Path(), HeaderPath());
    EXPECT_EQ(failure.Field(), each.field);
    EXPECT_EQ(failure.Found(), each.found);
  }
}

TEST_F(TableTest, WhatWasFoundIsCutToALine) {
  WriteHeader(HeaderText::OneAxis().With("FORMAT", std::string(79, 'x') + "\xC2\xB2" + "yy"));
  EXPECT_EQ(FailureOf([&] { Table(); }).Found(), std::string(79, 'x'));
}

TEST_F(TableTest, AMissingHeaderDoesNotOpen) {
  const TableError failure = FailureOf([&] { Table(); });
  EXPECT_EQ(failure.Code(), 81);
  EXPECT_EQ(failure.Path(), HeaderPath());
}

TEST_F(TableTest, RowsThatAreThereAreCounted) {
  WriteHeader(HeaderText::OneAxis());
  const GroupTable table = Table();
  EXPECT_EQ(table.DataSize(), std::nullopt);
  EXPECT_EQ(FailureOf([&] { table.CountRows(); }).Code(), 5000);
  struct Case {
    std::size_t words;
    std::uint64_t found;
    bool torn;
  };
  for (const Case& each : {Case{0, 0, false}, Case{4, 2, false}, Case{5, 2, true},
                           Case{6, 3, false}, Case{8, 4, false}}) {
    WriteWords(std::vector<float>(each.words));
    const Rows rows = table.CountRows();
    EXPECT_EQ(rows.expected, 3u);
    EXPECT_EQ(rows.found, each.found) << each.words;
    EXPECT_EQ(rows.torn, each.torn) << each.words;
    EXPECT_EQ(table.DataSize(), each.words * sizeof(float));
  }
}

TEST_F(TableTest, RowsOfTextAreCountedByLines) {
  WriteHeader(HeaderText::OneAxis().With("ACCESS", "S").After("FORMAT", {"HEADREC\t1"}));
  struct Case {
    std::string text;
    std::uint64_t found;
    bool torn;
  };
  const Case cases[] = {{"", 0, false},
                        {"head\n", 0, false},
                        {"head\n1 2\n", 1, false},
                        {"head\n1 2\n3 4", 1, true},  // its last number may be cut
                        {"head\n1 2\n3 4\n5", 2, true},
                        {"head\n1 2\n3 4\n5 6", 3, false},  // the last that is expected
                        {"head\n1 2\n3 4\n5 6\n7 8\n", 4, false}};
  for (const Case& each : cases) {
    WriteText(each.text);
    const Rows rows = Table().CountRows();
    EXPECT_EQ(rows.found, each.found) << each.text;
    EXPECT_EQ(rows.torn, each.torn) << each.text;
  }
}

TEST_F(TableTest, ColumnsComeInTheOrderAskedFor) {
  WriteHeader(HeaderText::TwoAxes());
  WriteWords(WordsOf<float>(Count(24)));
  Selection selection{.variables = {1, 0}};
  EXPECT_EQ(ValuesOf<double>(Table(), selection),
            (std::vector<double>{1, 7, 13, 19, 3, 9, 15, 21, 5, 11, 17, 23,  //
                                 0, 6, 12, 18, 2, 8, 14, 20, 4, 10, 16, 22}));
  selection = {.variables = {1}, .secondary = {{2, 2, 0}}, .first = 1, .count = 2, .step = 2};
  EXPECT_EQ(ValuesOf<int>(Table(), selection), (std::vector<int>{11, 23, 11, 23, 7, 19}));
}

TEST_F(TableTest, RoomIsMadeForTheShapeThatIsRead) {
  WriteHeader(HeaderText::OneAxis().With("DIMENS", "2\t0"));
  WriteWords(WordsOf<float>(Count(7)));
  std::vector<double> values;
  const Room<double> room = [&](const Shape& shape) {
    EXPECT_EQ(shape, (Shape{2, 3}));
    values.resize(shape.columns * shape.rows);
    return std::vector<double*>{values.data() + shape.rows, values.data()};
  };
  Table().Read({.variables = {0, 1}}, room);
  EXPECT_EQ(values, (std::vector<double>{1, 3, 5, 0, 2, 4}));
}

TEST_F(TableTest, NoRoomIsMadeForWhatCannotBeRead) {
  WriteHeader(HeaderText::OneAxis());
  WriteWords(WordsOf<float>(Count(5)));
  const GroupTable table = Table();
  const Room<float> room = [](const Shape&) -> std::vector<float*> { throw std::bad_alloc(); };
  EXPECT_EQ(FailureOf([&] { table.Read({.variables = {0}}, room); }).Code(), 25);
  EXPECT_THROW(table.Read({.variables = {0}, .count = 2}, room), std::bad_alloc);
}

TEST_F(TableTest, MostColumnsOfAGroupOfManyBlocksComeInAnyOrder) {
  constexpr std::size_t kRows = 60'001;
  constexpr std::size_t kVariables = 37;
  WriteHeader(WideHeader(kVariables, kRows).With("FORMAT", "I*2"));
  std::vector<std::int16_t> words(kRows * kVariables);
  for (std::size_t i = 0; i < words.size(); ++i) words[i] = static_cast<std::int16_t>(i * 7);
  WriteWords(words);
  Selection selection;
  for (std::size_t i = 0; i < kVariables; ++i) selection.variables.push_back(i * 10 % kVariables);
  selection.variables.push_back(3);
  const auto values = ValuesOf<double>(Table(), selection);
  ASSERT_EQ(values.size(), selection.variables.size() * kRows);
  std::size_t wrong = 0;
  for (std::size_t i = 0; i < values.size(); ++i) {
    const std::size_t v = selection.variables[i / kRows];
    wrong += values[i] == words[i % kRows * kVariables + v] ? 0u : 1u;
  }
  EXPECT_EQ(wrong, 0u);
}

TEST_F(TableTest, TextReadsAsTheTypeAskedFor) {
  WriteHeader(HeaderText::OneAxis().With("ACCESS", "S"));
  WriteText("0.1 2\n3e1 4\n5 6\n");
  const Selection selection{.variables = {0}};
  EXPECT_EQ(ValuesOf<double>(Table(), selection), (std::vector<double>{0.1, 30, 5}));
  EXPECT_EQ(ValuesOf<float>(Table(), selection), (std::vector<float>{0.1F, 30, 5}));
}

TEST_F(TableTest, MissingRowsAreToldAndNotFilled) {
  WriteHeader(HeaderText::OneAxis());
  const GroupTable table = Table();
  WriteWords(WordsOf<float>(Count(5)));
  const Selection all{.variables = {0}};
  const TableError failure = FailureOf([&] { ValuesOf<float>(table, all); });
  EXPECT_EQ(failure.Code(), 25);
  EXPECT_EQ(failure.Path(), DataPath());
  EXPECT_EQ(failure.Field(), "rows");
  EXPECT_EQ(failure.Found(), "2 rows");
  EXPECT_EQ(failure.Text(),
            "Sumara Tables error: Error reading series data.\nFurther information: Point index = "
            "2; File path: " +
                DataPath() +
                "\nInner exception: IO error 5008: Data requested past end of file.\nFurther "
                "information: rows expected = 3; rows found = 2; path: " +
                DataPath());
  const Selection there{.variables = {0}, .count = 2};
  EXPECT_EQ(ValuesOf<float>(table, there), (std::vector<float>{0, 2}));
}

TEST_F(TableTest, AShortLineOfTextIsToldWithItsText) {
  WriteHeader(HeaderText::OneAxis().With("ACCESS", "S"));
  WriteText("1 2\n3 x\n5 6\n");
  const TableError failure = FailureOf([&] { ValuesOf<float>(Table(), {.variables = {0}}); });
  EXPECT_EQ(failure.Code(), 25);
  EXPECT_EQ(failure.Found(), "3 x");
  EXPECT_EQ(ValuesOf<float>(Table(), {.variables = {0}, .count = 1}), std::vector<float>{1});
}

TEST_F(TableTest, WithoutExpectedRowsAllAreRead) {
  WriteHeader(HeaderText::OneAxis().With("DIMENS", "2\t0"));
  WriteWords(WordsOf<float>(Count(7)));
  EXPECT_EQ(ValuesOf<float>(Table(), {.variables = {1}}), (std::vector<float>{1, 3, 5}));
}

TEST_F(TableTest, PositionsBeyondTheHeaderAreRefused) {
  WriteHeader(HeaderText::TwoAxes());
  WriteWords(WordsOf<float>(Count(24)));
  const GroupTable table = Table();
  EXPECT_THROW(table.ShapeOf({.variables = {2}}), std::out_of_range);
  EXPECT_THROW(table.ShapeOf({.variables = {0}, .secondary = {{3}}}), std::out_of_range);
  EXPECT_THROW(table.ShapeOf({.variables = {0}, .step = 0}), std::invalid_argument);
  EXPECT_THROW(table.Figures({2}), std::out_of_range);
  std::vector<float> tooFew(5);
  EXPECT_THROW(table.Read<float>({.variables = {0}}, std::span<float>(tooFew)),
               std::invalid_argument);
}

TEST_F(TableTest, ClaimsBeyondTheFileTakeNoMemory) {
  WriteWords(WordsOf<float>(Count(24)));
  const char* const claims[] = {"2\t1000000000000000\t4", "2\t3\t1000000000000000",
                                "18446744073709551615\t18446744073709551615\t2",
                                "2\t18446744073709551615\t0"};
  for (const char* const claim : claims) {
    for (const char* const access : {"D", "S"}) {
      WriteHeader(HeaderText::TwoAxes().With("DIMENS", claim).With("ACCESS", access));
      const GroupTable table = Table();
      EXPECT_GT(FailureOf([&] { table.ShapeOf({.variables = {0}}); }).Code(), 0) << claim;
      EXPECT_GT(FailureOf([&] { table.Reduce({.variables = {0}}); }).Code(), 0) << claim;
    }
  }
}

TEST_F(TableTest, AStopEndsTheCall) {
  WriteHeader(HeaderText::OneAxis());
  WriteWords(WordsOf<float>(Count(6)));
  std::vector<float> values(3);
  const auto stop = [] { return true; };
  EXPECT_THROW(Table().Read<float>({.variables = {0}}, std::span<float>(values), stop), Stopped);
  EXPECT_THROW(Table().Reduce({.variables = {0}}, stop), Stopped);
}

TEST_F(TableTest, TheWayToAFarLineOfTextCanBeStopped) {
  constexpr int kLines = 5'000;
  WriteHeader(HeaderText::OneAxis().With("ACCESS", "S").With("DIMENS", "2\t5000"));
  std::string text;
  for (int line = 0; line < kLines; ++line) text += "1 " + std::to_string(line) + "\n";
  WriteText(text);
  int questions = 0;
  std::vector<float> value(1);
  const Selection last{.variables = {1}, .first = kLines - 1, .count = 1};
  const std::span<float> target(value);
  Table().Read<float>(last, target, [&] { return ++questions < 0; });
  EXPECT_EQ(value.front(), 4999.0F);
  EXPECT_GT(questions, 15);
  questions = 0;
  EXPECT_THROW(Table().Read<float>(last, target, [&] { return ++questions == 10; }), Stopped);
}

TEST_F(TableTest, FiguresAreThoseOfTheHeader) {
  WriteHeader(HeaderText::OneAxis().Append(
      {"ULOADS 1 2", "  3 4", "  5 6", "  7 8", "MAXTIME 10 20", "MINTIME 30 40", "MEAN 0.5 1.5"}));
  const GroupTable table = Table();
  EXPECT_TRUE(table.HasFigures());
  const auto figures = table.Figures({1, 0}, 1);
  ASSERT_TRUE(figures);
  EXPECT_EQ(figures->maximum, (std::vector<double>{6, 1}));
  EXPECT_EQ(figures->minimum, (std::vector<double>{8, 3}));
  EXPECT_EQ(figures->maximumTime, (std::vector<double>{20, 10}));
  EXPECT_EQ(figures->minimumTime, (std::vector<double>{40, 30}));
  EXPECT_EQ(figures->mean, (std::vector<double>{1.5, 0.5}));
  EXPECT_EQ(figures->atMaximum, (std::vector<double>{5, 6}));
  EXPECT_EQ(figures->atMinimum, (std::vector<double>{7, 8}));
}

TEST_F(TableTest, DamagedFiguresAreToldWhenTheyAreAskedFor) {
  WriteHeader(HeaderText::OneAxis().Append({"ULOADS 1 2", "  3 4"}));
  const GroupTable table = Table();
  const TableError failure = FailureOf([&] { table.Figures({0}); });
  EXPECT_EQ(failure.Code(), 119);
  EXPECT_EQ(failure.Field(), "ULOADS");
}

TEST_F(TableTest, FiguresOfAHeaderThatWasReplacedAreRefused) {
  const HeaderText header = HeaderText::OneAxis().Append(
      {"ULOADS 1 2", "  3 4", "  5 6", "  7 8", "MAXTIME 1 2", "MINTIME 3 4", "MEAN 5 6"});
  WriteHeader(header);
  const GroupTable table = Table();
  WriteHeader(header);
  EXPECT_EQ(FailureOf([&] { table.Figures({0}); }).Code(), 5009);
}

TEST_F(TableTest, CopiesReadOnWhenTheFirstIsGone) {
  WriteHeader(HeaderText::OneAxis());
  WriteWords(WordsOf<float>(Count(6)));
  const auto copy = [&] { return GroupTable(Table()); }();
  EXPECT_EQ(ValuesOf<float>(copy, {.variables = {1}}), (std::vector<float>{1, 3, 5}));
}

}  // namespace
}  // namespace Tabulon
