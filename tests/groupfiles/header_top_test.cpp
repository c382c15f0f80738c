#include "tests/groupfiles/header_fixture.h"

namespace {

using Sumara::CHeaderReader;
using testing_support::HeaderText;
using testing_support::MessageOf;
using testing_support::ReadHeader;

/// The fields above the axis blocks.
class HeaderTopTest : public testing_support::HeaderFixture {};

TEST_F(HeaderTopTest, AllFieldsOfOneAxis) {
  const ReadHeader header = Read(HeaderText::OneAxis().With("CONFIG", "''"));
  EXPECT_EQ(header.top.dataFileName, "run.$01");
  EXPECT_TRUE(header.top.binary);
  EXPECT_EQ(header.top.dataType, Sumara::kFloatCode);
  EXPECT_EQ(header.top.headerRecordCount, 0u);
  EXPECT_EQ(header.top.content, "POWPROD");
  EXPECT_EQ(header.top.config, "");
  EXPECT_EQ(header.top.axisCount, 1u);
  EXPECT_EQ(header.top.dimensions, (std::vector<std::uint64_t>{2, 3}));
  EXPECT_EQ(header.top.name, "Tower loads");
}

TEST_F(HeaderTopTest, DimensionsOfTwoAxesAndTextAccess) {
  const ReadHeader header = Read(HeaderText::TwoAxes().With("ACCESS", "S"));
  EXPECT_FALSE(header.top.binary);
  EXPECT_EQ(header.top.axisCount, 2u);
  EXPECT_EQ(header.top.dimensions, (std::vector<std::uint64_t>{2, 3, 4}));
}

TEST_F(HeaderTopTest, CarriageReturnsAreNoPartOfAnyValue) {
  const ReadHeader header =
      Read(HeaderText::TwoAxes().With("NVARS", "1").Append({"GRAVITY 9.81"}).Text("\r\n"));
  EXPECT_EQ(header.top.dataFileName, "run.$01");
  EXPECT_EQ(header.top.name, "Blade loads");
  EXPECT_EQ(header.top.dimensions, (std::vector<std::uint64_t>{2, 3, 4}));
  EXPECT_EQ(header.axes[0].values, (std::vector<double>{1.5, 2.5, 3.5}));
  EXPECT_EQ(header.axes[1].step, 0.5);
  EXPECT_EQ(header.parameters, std::vector<std::string>{"GRAVITY 9.81"});
  EXPECT_EQ(header.variables.names, (std::vector<std::string>{"Mx", "My"}));
}

TEST_F(HeaderTopTest, LinesOfOtherLabelsArePassedOver) {
  HeaderText text = HeaderText::OneAxis();
  text.Before("FILE", {"COMMENT first"}).After("ACCESS", {"SOURCE somewhere", "FORMER F"});
  text.After("CONFIG", {"CONTENTS 'other'"}).After("AXISLAB", {"COLOUR blue"});
  const ReadHeader header = Read(text);
  EXPECT_EQ(header.top.content, "POWPROD");
  EXPECT_EQ(header.axes[0].quantity, "T");
}

TEST_F(HeaderTopTest, FieldsOutOfOrderAreNotFound) {
  HeaderText text = HeaderText::OneAxis().Without("RECL").Before("ACCESS", {"RECL\t4"});
  EXPECT_EQ(FailureOf(text), NotFound("RECL"));
}

TEST_F(HeaderTopTest, FirstFourFieldsMissingRaise5018) {
  for (const char* label : {"FILE", "ACCESS", "FORM", "RECL"}) {
    EXPECT_EQ(FailureOf(HeaderText::OneAxis().Without(label)), NotFound(label));
  }
}

TEST_F(HeaderTopTest, FieldsMissingRaiseTheirCode) {
  const std::pair<const char*, const char*> fields[] = {
      {"FORMAT", "Header does not specify data format (FORMAT)"},
      {"CONTENT", "Header does not specify data source (CONTENT)"},
      {"CONFIG", "Header does not specify config (CONFIG)"},
      {"NDIMENS", "Header does not specify number of dimensions (NDIMENS)"},
      {"DIMENS", "Header does not specify data dimensions (DIMENS)"},
      {"GENLAB", "Header does not specify group name (GENLAB)"},
      {"VARIAB", "Header does not specify variables (VARIAB)"},
      {"VARUNIT", "Header does not specify variable quantity identifier (VARUNIT)"},
  };
  for (const auto& [label, words] : fields) {
    EXPECT_EQ(FailureOf(HeaderText::OneAxis().Without(label)), Model(words, label));
  }
}

TEST_F(HeaderTopTest, DoubledFieldsGiveTheFirst) {
  HeaderText text = HeaderText::OneAxis();
  text.After("FILE", {"FILE\tother.$01"})
      .After("FORM", {"RECL\t8"})
      .After("CONTENT", {"CONTENT\t'OTHER'"});
  text.After("CONFIG", {"CONFIG\t'OTHER'"})
      .After("NDIMENS", {"NDIMENS\t3"})
      .After("DIMENS", {"DIMENS\t9\t9"});
  text.After("GENLAB", {"GENLAB\t'Other'"})
      .After("FORMAT", {"FORMAT\tI*2"})
      .After("ACCESS", {"ACCESS\tS"});
  const ReadHeader header = Read(text);
  EXPECT_EQ(header.top.dataFileName, "run.$01");
  EXPECT_TRUE(header.top.binary);
  EXPECT_EQ(header.top.dataType, Sumara::kFloatCode);
  EXPECT_EQ(header.top.content, "POWPROD");
  EXPECT_EQ(header.top.config, "TRANSIENT");
  EXPECT_EQ(header.top.axisCount, 1u);
  EXPECT_EQ(header.top.dimensions, (std::vector<std::uint64_t>{2, 3}));
  EXPECT_EQ(header.top.name, "Tower loads");
}

TEST_F(HeaderTopTest, AccessOtherThanDOrSRaises97) {
  const std::string failure = Model("Header does not specify access type (ACCESS)");
  for (const char* value : {"", "d", "DD", "D S", "'D'", "DIRECT"}) {
    EXPECT_EQ(FailureOf(HeaderText::OneAxis().With("ACCESS", value)), failure) << value;
  }
}

TEST_F(HeaderTopTest, RecordLengthIsNotUsed) {
  for (const char* value : {"", "8", "many", "-1", "9223372036854775808"}) {
    EXPECT_EQ(Read(HeaderText::OneAxis().With("RECL", value)).top.dataType, Sumara::kFloatCode);
  }
}

TEST_F(HeaderTopTest, FormatsAndTheirCodes) {
  const std::pair<const char*, std::uint32_t> formats[] = {
      {"R*4", 1}, {"R4", 1},  {"n/a", 1}, {"R*8", 2}, {"R8", 2}, {"I*2", 3},
      {"I2", 3},  {"I*4", 4}, {"I4", 4},  {"I*8", 5}, {"I8", 5}};
  for (const auto& [format, code] : formats) {
    EXPECT_EQ(Read(HeaderText::OneAxis().With("FORMAT", format)).top.dataType, code) << format;
  }
  for (const char* format : {"", "R*3", "r*4", "R*4 ,", "R*44", "'R*4'", "N/A", "4"}) {
    EXPECT_EQ(FailureOf(HeaderText::OneAxis().With("FORMAT", format)),
              Model("Data type invalid (FORMAT)"));
  }
}

TEST_F(HeaderTopTest, HeaderRecordsCountOnlyDirectlyBehindFormat) {
  EXPECT_EQ(Read(HeaderText::OneAxis().After("FORMAT", {"HEADREC\t3"})).top.headerRecordCount, 3u);
  EXPECT_EQ(
      Read(HeaderText::OneAxis().After("FORMAT", {"OTHER", "HEADREC\t3"})).top.headerRecordCount,
      0u);
  EXPECT_EQ(Read(HeaderText::OneAxis().Before("FORMAT", {"HEADREC\t3"})).top.headerRecordCount, 0u);
  for (const char* line :
       {"HEADREC", "HEADREC none", "HEADREC -3", "HEADREC 99999999999999999999"}) {
    EXPECT_EQ(Read(HeaderText::OneAxis().After("FORMAT", {line})).top.headerRecordCount, 0u)
        << line;
  }
  EXPECT_EQ(Read(HeaderText::OneAxis().After("FORMAT", {"HEADREC 9223372036854775808"}))
                .top.headerRecordCount,
            9223372036854775808u);
}

TEST_F(HeaderTopTest, EmptyLineBehindFormatIsPassedOver) {
  EXPECT_EQ(Read(HeaderText::OneAxis().After("FORMAT", {"", "HEADREC\t3"})).top.headerRecordCount,
            3u);
}

TEST_F(HeaderTopTest, BlankLineBehindAFieldWithContinuationFailsTheNextField) {
  EXPECT_EQ(FailureOf(HeaderText::OneAxis().After("ACCESS", {""})), NotFoundOnBadStream("FORM"));
  EXPECT_EQ(FailureOf(HeaderText::OneAxis().After("FORM", {""})), NotFoundOnBadStream("RECL"));
  EXPECT_EQ(FailureOf(HeaderText::OneAxis().After("RECL", {""})),
            Model("Header does not specify data format (FORMAT)") +
                "\nInner exception: " + NotFoundOnBadStream("FORMAT"));
  EXPECT_EQ(FailureOf(HeaderText::OneAxis().After("DIMENS", {""})),
            Model("Header does not specify group name (GENLAB)") +
                "\nInner exception: " + NotFoundOnBadStream("GENLAB"));
}

TEST_F(HeaderTopTest, LineOfWhiteSpaceRaises5009) {
  EXPECT_EQ(FailureOf(HeaderText::OneAxis().After("FILE", {" \t"})), EmptyLine("ACCESS"));
  EXPECT_EQ(FailureOf(HeaderText::OneAxis().After("FORMAT", {" "})),
            Model("Header does not specify data source (CONTENT)") +
                "\nInner exception: " + EmptyLine("CONTENT"))
      << "the look for HEADREC never fails by itself";
  EXPECT_EQ(FailureOf(HeaderText::OneAxis().After("FILE", {""}).Text("\r\n")), EmptyLine("ACCESS"));
}

TEST_F(HeaderTopTest, EmptyLineBehindFileIsHarmless) {
  EXPECT_EQ(Read(HeaderText::OneAxis().After("FILE", {""})).top.name, "Tower loads");
  EXPECT_EQ(Read(HeaderText::OneAxis().After("FILE", {"", ""})).top.name, "Tower loads");
}

TEST_F(HeaderTopTest, WhiteSpaceWithinAValueCollapses) {
  const ReadHeader header = Read(HeaderText::OneAxis().With("GENLAB", "'Two  \t blanks'"));
  EXPECT_EQ(header.top.name, "Two blanks");
}

TEST_F(HeaderTopTest, OnePairOfQuoteMarksIsStripped) {
  const std::pair<const char*, const char*> values[] = {
      {"'a'", "a"}, {"\"a\"", "a"}, {"''a''", "'a'"}, {"'a\"", "a"},
      {"a", "a"},   {"'", ""},      {"''", ""},       {"", ""}};
  for (const auto& [value, stripped] : values) {
    HeaderText text = HeaderText::OneAxis();
    text.With("FILE", value).With("CONTENT", value).With("CONFIG", value).With("GENLAB", value);
    const ReadHeader header = Read(text);
    EXPECT_EQ(header.top.dataFileName, stripped) << value;
    EXPECT_EQ(header.top.content, stripped) << value;
    EXPECT_EQ(header.top.config, stripped) << value;
    EXPECT_EQ(header.top.name, stripped) << value;
  }
}

TEST_F(HeaderTopTest, ContinuationLinesBelongToTheValueButNotOfFile) {
  const ReadHeader header =
      Read(HeaderText::OneAxis().After("GENLAB", {"\tand more"}).After("FILE", {" .old"}));
  EXPECT_EQ(header.top.name, "Tower loads'\nand more") << "the last mark is not at the end";
  EXPECT_EQ(header.top.dataFileName, "run.$01");
}

TEST_F(HeaderTopTest, NumberOfDimensionsOtherThan2Or3Raises128) {
  for (const char* value : {"", "0", "1", "4", "-2", "two", "9223372036854775808", "'2'"}) {
    EXPECT_EQ(FailureOf(HeaderText::OneAxis().With("NDIMENS", value)),
              Model("Number of dimensions invalid (NDIMENS)"))
        << value;
  }
}

TEST_F(HeaderTopTest, NumberOfDimensionsIsCheckedBeforeAnyAxisIsRead) {
  EXPECT_EQ(FailureOf(HeaderText::OneAxis().With("NDIMENS", "4").Without("AXISLAB")),
            Model("Number of dimensions invalid (NDIMENS)"));
}

TEST_F(HeaderTopTest, DimensionsWithoutAnIntegerRaise126) {
  const std::string failure = Model("Error populating vector from data dimensions (DIMENS)");
  for (const char* value : {"none", "-2 3", ".5", "18446744073709551616 3"}) {
    EXPECT_EQ(FailureOf(HeaderText::OneAxis().With("DIMENS", value)), failure) << value;
  }
  EXPECT_EQ(FailureOf(HeaderText::OneAxis().With("DIMENS", "")),
            failure + "\nInner exception: IO error 5015: String to populate from was empty.");
}

TEST_F(HeaderTopTest, DimensionsStopAtTheFirstThatIsNoInteger) {
  EXPECT_EQ(Read(HeaderText::OneAxis().With("DIMENS", "2 3 x 4")).top.dimensions,
            (std::vector<std::uint64_t>{2, 3}));
  EXPECT_EQ(Read(HeaderText::OneAxis().With("DIMENS", "2 3.5 4")).top.dimensions,
            (std::vector<std::uint64_t>{2, 3}));
  for (const char* value : {"2", "2 -3", "2 x 3"}) {
    EXPECT_EQ(FailureOf(HeaderText::OneAxis().With("DIMENS", value)),
              Model("Axis dimensions invalid (DIMENS)"));
  }
  EXPECT_EQ(FailureOf(HeaderText::TwoAxes().With("DIMENS", "2 3")),
            Model("Axis dimensions invalid (DIMENS)"));
}

TEST_F(HeaderTopTest, LargeDimensionsTakeNoMemory) {
  const ReadHeader header =
      Read(HeaderText::OneAxis().With("DIMENS", "9223372036854775808 18446744073709551615"));
  EXPECT_EQ(header.top.dimensions,
            (std::vector<std::uint64_t>{9223372036854775808u, 18446744073709551615u}));
  EXPECT_EQ(header.axes[0].pointCount, 18446744073709551615u);
}

TEST_F(HeaderTopTest, EmptyFileRaises5018) { EXPECT_EQ(FailureOf(""), NotFound("FILE")); }

TEST_F(HeaderTopTest, HeaderThatIsCutOffIsRefused) {
  const std::string whole = HeaderText::TwoAxes().Text();
  const std::size_t last = whole.rfind("STEP") + std::string_view("STEP\t").size();
  for (std::size_t size = 0; size <= last; ++size) {
    EXPECT_NE(FailureOf(whole.substr(0, size)), "no exception") << size;
  }
  EXPECT_EQ(FailureOf(whole.substr(0, last + 1)), "no exception");
}

TEST_F(HeaderTopTest, FileThatDoesNotOpenRaises81) {
  CHeaderReader missing(Path());
  EXPECT_EQ(MessageOf([&] { missing.Start(); }),
            Model("Failed to open file") +
                "\nInner exception: IO error 5000: The file does not exist.\n"
                "Further information: " +
                Path());
  CHeaderReader unnamed("");
  EXPECT_EQ(MessageOf([&] { unnamed.Start(); }),
            "Sumara Tables error: Failed to open file.\nFurther information: File path: \n"
            "Inner exception: IO error 5002: Filename not set or invalid.");
}

}  // namespace
