#include <gtest/gtest.h>

#include "core/exceptions.h"
#include "core/io_base.h"
#include "tests/support/message_of.h"
#include "tests/support/temp_directory.h"

namespace {

using testing_support::MessageOf;
using testing_support::TempDirectory;
using Tokens = std::vector<std::string>;
using Rows = CIOBase::Rows;

constexpr LabelSearch kForward{};
constexpr LabelSearch kWithContinuation{.continuation = true};
constexpr LabelSearch kNextLine{.oneAttempt = true};
constexpr LabelSearch kNextLineQuietly{.oneAttempt = true, .quiet = true};

constexpr std::string_view kNoFlags = "IO error 5007: Stream has error flag(s)";

class LabelSearchTest : public ::testing::Test {
 protected:
  void Open(std::string_view text) {
    m_path = m_directory.Write("header", text);
    m_file = std::make_unique<CIOBase>(m_path, 0);
    m_file->Open();
  }

  std::string Value(std::string_view label, const LabelSearch& how = kForward) {
    std::string value = "untouched";
    m_found = m_file->SeekLabel(label, value, how);
    return value;
  }

  Tokens TokensOf(std::string_view label, const LabelSearch& how, char quote = '\0') {
    Tokens tokens{"untouched"};
    m_found = m_file->SeekLabel(label, tokens, how, quote);
    return tokens;
  }

  Rows RowsOf(std::string_view label, const LabelSearch& how, char quote = '\0') {
    Rows rows{{"untouched"}};
    m_found = m_file->SeekLabel(label, rows, how, quote);
    return rows;
  }

  std::string NextLine() {
    std::string line;
    m_file->ReadLine(line, /*tolerant=*/true);
    return line;
  }

  std::string Peeked() {
    std::string label;
    return m_file->PeekLabel(label) ? label : "nothing";
  }

  std::string Miss(std::int32_t code, std::string_view label, std::string_view inner = {}) const {
    return CIOException(code, "label sought = " + std::string(label) + "; path: " + m_path,
                        std::string(inner))
        .what();
  }

  TempDirectory m_directory;
  std::string m_path;
  std::unique_ptr<CIOBase> m_file;
  bool m_found = false;
};

TEST_F(LabelSearchTest, FindsLabelsForward) {
  Open("FILE\trun.$01\nACCESS D\nFORM\tF\n");
  EXPECT_EQ(Value("FILE"), "run.$01");
  EXPECT_EQ(Value("FORM"), "F");
  EXPECT_TRUE(m_found);
  EXPECT_TRUE(m_file->IsGood());
}

TEST_F(LabelSearchTest, RunsOfWhiteSpaceBecomeOneBlank) {
  Open("GENLAB\t'Two  blanks \t and\ttabs'  \r\n");
  EXPECT_EQ(Value("GENLAB"), "'Two blanks and tabs'");
}

TEST_F(LabelSearchTest, LabelMayStandBehindWhiteSpace) {
  Open("  MIN \t 0.5\n");
  EXPECT_EQ(Value("MIN"), "0.5");
}

TEST_F(LabelSearchTest, LabelIsComparedWholeAndWithCase) {
  Open("MEANS 1\nmean 2\nMEA 3\nMEAN 4\n");
  EXPECT_EQ(Value("MEAN"), "4");
}

TEST_F(LabelSearchTest, LabelWithoutValueIsFound) {
  Open("CONFIG\nNEXT 1\n");
  EXPECT_EQ(Value("CONFIG"), "");
  EXPECT_TRUE(m_found);
}

TEST_F(LabelSearchTest, LastLineWithoutLineEndIsFound) {
  Open("A 1\nB 2");
  EXPECT_EQ(Value("B"), "2");
  EXPECT_FALSE(m_file->IsGood());
}

TEST_F(LabelSearchTest, EmptyLabelRaises5014) {
  Open("A 1\n");
  const std::string text =
      "IO error 5014: Label to read was empty.\nFurther information: " + m_path;
  EXPECT_EQ(MessageOf([&] { Value(""); }), text);
  EXPECT_EQ(MessageOf([&] { m_file->SkipToLabel(""); }), text);
}

TEST_F(LabelSearchTest, MissAtTheEndRaises5018AndGoesBack) {
  for (const char* text : {"A 1\nB 2\nC 3\n", "A 1\nB 2\nC 3"}) {
    Open(text);
    Value("A");
    EXPECT_EQ(MessageOf([&] { Value("X"); }), Miss(5018, "X"));
    EXPECT_TRUE(m_file->IsGood());
    EXPECT_EQ(NextLine(), "B 2");
  }
}

TEST_F(LabelSearchTest, QuietMissIsFalseWhereTheLastLineHasNoEnd) {
  Open("A 1\nB 2");
  EXPECT_EQ(Value("X", {.quiet = true}), "untouched");
  EXPECT_FALSE(m_found);
  EXPECT_EQ(NextLine(), "A 1");
}

TEST_F(LabelSearchTest, QuietSearchBeyondTheNextLineRaises5018BehindTheLastLineEnd) {
  Open("A 1\nB 2\n");
  EXPECT_EQ(MessageOf([&] { Value("X", {.quiet = true}); }), Miss(5018, "X"));
  EXPECT_TRUE(m_file->IsGood());
  EXPECT_EQ(NextLine(), "A 1");
}

TEST_F(LabelSearchTest, MissesSayWhatWasSoughtAndWhere) {
  Open("A 1\nB 2\n");
  EXPECT_EQ(MessageOf([&] { Value("X"); }),
            "IO error 5018: Label was not found - end of file encountered.\nFurther information: "
            "label sought = X; path: " +
                m_path);
  EXPECT_EQ(MessageOf([&] { Value("X", kNextLine); }),
            "IO error 5019: Label was not found on the current line - return after one attempt was "
            "requested.\nFurther information: label sought = X; path: " +
                m_path);
}

TEST_F(LabelSearchTest, RewindSearchesFromTheStart) {
  Open("A 1\nB 2\n");
  Value("B");
  EXPECT_EQ(MessageOf([&] { Value("A"); }), Miss(5018, "A"));
  EXPECT_EQ(Value("A", {.rewind = true}), "1");
  EXPECT_EQ(NextLine(), "B 2");
}

TEST_F(LabelSearchTest, RewindClearsTheFlags) {
  Open("A 1\nB 2");
  Value("B", kWithContinuation);
  EXPECT_FALSE(m_file->IsGood());
  EXPECT_EQ(Value("A", {.rewind = true}), "1");
}

TEST_F(LabelSearchTest, MissAfterRewindGoesBackToWhereItBegan) {
  Open("A 1\nB 2\nC 3\n");
  Value("A");
  EXPECT_EQ(MessageOf([&] { Value("X", {.rewind = true}); }), Miss(5018, "X"));
  EXPECT_EQ(NextLine(), "B 2");
}

TEST_F(LabelSearchTest, KeepPositionGoesBackAfterAHit) {
  Open("A 1\nB 2\nC 3\n");
  Value("A");
  EXPECT_EQ(Value("C", {.keepPosition = true}), "3");
  EXPECT_TRUE(m_found);
  EXPECT_EQ(NextLine(), "B 2");
}

TEST_F(LabelSearchTest, KeepPositionClearsTheFlags) {
  Open("A 1\nB 2");
  EXPECT_EQ(Value("B", {.continuation = true, .keepPosition = true}), "2");
  EXPECT_TRUE(m_file->IsGood());
  EXPECT_EQ(NextLine(), "A 1");
}

TEST_F(LabelSearchTest, OneAttemptFindsOnlyTheNextLine) {
  Open("A 1\nB 2\nC 3\n");
  EXPECT_EQ(Value("A", kNextLine), "1");
  EXPECT_EQ(MessageOf([&] { Value("C", kNextLine); }), Miss(5019, "C"));
  EXPECT_EQ(Value("B", kNextLine), "2");
}

TEST_F(LabelSearchTest, QuietOneAttemptMissLeavesPositionAndFlags) {
  Open("A 1\nB 2\n");
  Value("A");
  EXPECT_EQ(Value("X", kNextLineQuietly), "");
  EXPECT_FALSE(m_found);
  EXPECT_TRUE(m_file->IsGood());
  EXPECT_EQ(NextLine(), "B 2");
}

TEST_F(LabelSearchTest, OneAttemptAtTheEndIsAMissIfQuiet) {
  Open("A 1\n");
  Value("A");
  EXPECT_EQ(MessageOf([&] { Value("B", kNextLine); }), Miss(5018, "B"));
  Value("B", kNextLineQuietly);
  EXPECT_FALSE(m_found);
  EXPECT_TRUE(m_file->IsGood());
}

TEST_F(LabelSearchTest, ContinuationLinesBeginWithABlankOrATab) {
  const std::string text = "A 1 2\n\t3  4\n 5\nB 6\n";
  Open(text);
  EXPECT_EQ(Value("A", kWithContinuation), "1 2\n3 4\n5");
  EXPECT_EQ(NextLine(), "B 6");
  Open(text);
  EXPECT_EQ(Value("A", {.continuation = true, .joinWithBlanks = true}), "1 2 3 4 5");
  Open(text);
  EXPECT_EQ(Value("A"), "1 2");
  EXPECT_EQ(NextLine(), "\t3  4");
}

TEST_F(LabelSearchTest, ContinuationLineOfBlanksIsAnEmptyRow) {
  Open("A 1\n \t\n 2\nB\n");
  EXPECT_EQ(Value("A", kWithContinuation), "1\n\n2");
}

TEST_F(LabelSearchTest, ContinuationLinesOfAnotherLabelAreLookedAtAsLines) {
  Open("A 1\n B 2\nC 3\n");
  EXPECT_EQ(Value("B", kWithContinuation), "2");
}

TEST_F(LabelSearchTest, ContinuedValueAtTheEndIsDeliveredAndLeavesFlags) {
  for (const char* text : {"A 1\n 2\n", "A 1\n 2"}) {
    Open(text);
    EXPECT_EQ(Value("A", kWithContinuation), "1\n2");
    EXPECT_FALSE(m_file->IsGood());
    EXPECT_EQ(MessageOf([&] { Value("B"); }), Miss(5018, "B", kNoFlags));
  }
}

TEST_F(LabelSearchTest, EmptyLineBehindAContinuedValueFailsTheNextSearch) {
  Open("A 1\n\nB 2\n");
  EXPECT_EQ(Value("A", kWithContinuation), "1");
  EXPECT_FALSE(m_file->IsGood());
  EXPECT_EQ(MessageOf([&] { Value("B"); }), Miss(5018, "B", kNoFlags));
  EXPECT_EQ(MessageOf([&] { Value("B", kNextLine); }), Miss(5019, "B", kNoFlags));
  Value("B", kNextLineQuietly);
  EXPECT_FALSE(m_found);
}

TEST_F(LabelSearchTest, EmptyLineBehindASingleLineValueIsHarmless) {
  Open("A 1\n\nB 2\n");
  EXPECT_EQ(Value("A"), "1");
  EXPECT_EQ(Value("B", kNextLine), "2");
}

TEST_F(LabelSearchTest, TwoEmptyLinesAreOneLineWithoutTokens) {
  Open("A 1\n\n\nB 2\n");
  Value("A");
  EXPECT_EQ(Value("B"), "2");
  Open("\n\nB 2\n");
  EXPECT_EQ(MessageOf([&] { Value("B", kNextLine); }), Miss(5019, "B"));
}

TEST_F(LabelSearchTest, LineOfWhiteSpaceRaises5009) {
  for (const char* text : {"A 1\n\r\nB 2\n", "A 1\n \t\nB 2\n"}) {
    Open(text);
    Value("A");
    EXPECT_EQ(MessageOf([&] { Value("B"); }),
              "IO error 5009: Failed to read data.\nFurther information: label sought = B; current "
              "label = ; path: " +
                  m_path);
    EXPECT_TRUE(m_file->IsGood());
    EXPECT_NE(NextLine(), "B 2");
  }
}

TEST_F(LabelSearchTest, LineOfWhiteSpaceAtTheEndRaises5018) {
  Open("A 1\n ");
  EXPECT_EQ(MessageOf([&] { Value("B"); }), Miss(5018, "B"));
}

TEST_F(LabelSearchTest, ClosedFileIsAMiss) {
  CIOBase file("closed", 0);
  m_path = "closed";
  std::string value;
  const std::string inner =
      "IO error 5004: Stream closed - call Prepare method before attempting to read ASCII data";
  EXPECT_EQ(MessageOf([&] { file.SeekLabel("A", value, kForward); }), Miss(5018, "A", inner));
  EXPECT_EQ(MessageOf([&] { file.SeekLabel("A", value, kNextLine); }), Miss(5019, "A", inner));
  EXPECT_FALSE(file.SeekLabel("A", value, {.rewind = true, .quiet = true}));
}

TEST_F(LabelSearchTest, EmptyFileIsAMiss) {
  Open("");
  EXPECT_EQ(MessageOf([&] { Value("A"); }), Miss(5018, "A"));
  EXPECT_TRUE(m_file->IsGood());
}

TEST_F(LabelSearchTest, TokensOfAllRowsAreOneList) {
  Open("A 1 2\n\t3  4\nB\n");
  EXPECT_EQ(TokensOf("A", kWithContinuation), (Tokens{"1", "2", "3", "4"}));
}

TEST_F(LabelSearchTest, TokensHonourQuotes) {
  Open("X it's\nVARIAB 'Rotor  speed' 'Time'\n\t'Blade' plain\nEND\n");
  EXPECT_EQ(TokensOf("VARIAB", kWithContinuation, '\''),
            (Tokens{"Rotor speed", "Time", "Blade", "plain"}));
}

TEST_F(LabelSearchTest, MissedTokensAreEmptied) {
  Open("A 1\n");
  EXPECT_EQ(TokensOf("B", kNextLineQuietly), Tokens{});
  EXPECT_EQ(RowsOf("B", kNextLineQuietly), Rows{});
}

TEST_F(LabelSearchTest, RowsAreLines) {
  Open("ULOADS   1 2\n   3  4\n\n");
  EXPECT_EQ(RowsOf("ULOADS", kWithContinuation), (Rows{{"1", "2"}, {"3", "4"}}));
  Open("A\n 'b c'\nB\n");
  EXPECT_EQ(RowsOf("A", kWithContinuation, '\''), (Rows{{}, {"b c"}}));
}

TEST_F(LabelSearchTest, OpenQuoteInTheValueRaises5009) {
  const std::string inner =
      "IO error 5021: Closing delimeter for string being parsed was not found.\n"
      "Further information: string = 'b c; delimeter = '";
  Open("A 'b c\nB\n");
  EXPECT_EQ(
      MessageOf([&] { TokensOf("A", kForward, '\''); }),
      CIOException(5009, "label sought = A; current label = ; path: " + m_path, inner).what());
  EXPECT_EQ(NextLine(), "A 'b c");
  Open("A 'a'\n 'b c\nB\n");
  EXPECT_EQ(
      MessageOf([&] { TokensOf("A", kWithContinuation, '\''); }),
      CIOException(5009, "label sought = A; current label = A; path: " + m_path, inner).what());
}

TEST_F(LabelSearchTest, OpenQuoteOnTheWayRaises5009) {
  Open("X 'open\nA 'a'\n");
  EXPECT_EQ(MessageOf([&] { TokensOf("A", kForward, '\''); }),
            CIOException(5009, "label sought = A; current label = ; path: " + m_path,
                         "IO error 5021: Closing delimeter for string being parsed was not found.\n"
                         "Further information: string = 'open; delimeter = '")
                .what());
  EXPECT_EQ(TokensOf("A", kForward), (Tokens{"'a'"}));
}

TEST_F(LabelSearchTest, PeekLeavesThePosition) {
  Open("\nA 1\nB 2\n");
  EXPECT_EQ(Peeked(), "A");
  EXPECT_EQ(Peeked(), "A");
  EXPECT_EQ(Value("A", kNextLine), "1");
  EXPECT_EQ(Peeked(), "B");
  EXPECT_EQ(NextLine(), "B 2");
  EXPECT_EQ(Peeked(), "nothing");
  EXPECT_TRUE(m_file->IsGood());
}

TEST_F(LabelSearchTest, PeekOfNoLabelIsFalse) {
  for (const char* text : {"", "\n\nA\n", " \t\nA\n", "\r\n"}) {
    Open(text);
    EXPECT_EQ(Peeked(), "nothing") << text;
  }
  std::string label;
  EXPECT_FALSE(CIOBase("closed", 0).PeekLabel(label));
}

TEST_F(LabelSearchTest, SkipStopsBeforeTheLine) {
  Open("A 1\nB 2\nC 3\n");
  m_file->SkipToLabel("C");
  EXPECT_EQ(NextLine(), "C 3");
  m_file->Rewind();
  m_file->SkipToLabel("A");
  EXPECT_EQ(NextLine(), "A 1");
}

TEST_F(LabelSearchTest, SkipFindsTheLastLineWithoutLineEnd) {
  Open("A 1\nB 2");
  m_file->SkipToLabel("B");
  EXPECT_TRUE(m_file->IsGood());
  EXPECT_EQ(NextLine(), "B 2");
}

TEST_F(LabelSearchTest, SkipToAMissingLabelRaises5018) {
  for (const char* text : {"A 1\nB 2\n", "A 1\nB 2"}) {
    Open(text);
    NextLine();
    EXPECT_EQ(MessageOf([&] { m_file->SkipToLabel("X"); }), Miss(5018, "X"));
    EXPECT_TRUE(m_file->IsGood());
    EXPECT_EQ(NextLine(), "B 2");
  }
}

TEST_F(LabelSearchTest, SearchesCrossBlocks) {
  std::string text;
  for (int i = 0; i < 60'000; ++i) text.append("L").append(std::to_string(i)).append(" value\n");
  Open(text + "LAST 1\n 2\n");
  EXPECT_EQ(Value("LAST", {.continuation = true, .keepPosition = true}), "1\n2");
  EXPECT_EQ(Value("L59999"), "value");
  EXPECT_EQ(Value("L0", {.rewind = true}), "value");
}

TEST_F(LabelSearchTest, HugeLinesTakeLinearTime) {
  const std::string names(30'000'000, 'n');
  Open("X " + names + "\nA 'a " + names + " b'\nB 1\n");
  EXPECT_EQ(Value("B", {.keepPosition = true}), "1");
  EXPECT_EQ(TokensOf("A", kForward, '\'').front().size(), names.size() + 4);
}

}  // namespace
