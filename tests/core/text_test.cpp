#include "core/text.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <unordered_set>

#include "core/exceptions.h"
#include "core/time_text.h"
#include "tests/support/message_of.h"

namespace {

using testing_support::MessageOf;
using Tokens = std::vector<std::string>;

Tokens Split(std::string_view text, char quote = '\0', bool keepQuotes = false) {
  Tokens tokens;
  Sumara::SplitTokens(text, tokens, quote, keepQuotes);
  return tokens;
}

std::string Stripped(std::string text) {
  Sumara::StripQuotes(text);
  return text;
}

std::string Trimmed(std::string text) {
  Sumara::TrimTrailing(text);
  return text;
}

/// Word by word, as the rule is told: words are joined by a blank until one ends in the mark.
Tokens SplitByRule(const std::string& text) {
  Tokens tokens;
  std::istringstream words(text);
  std::string token;
  while (words >> token) {
    const bool isQuoted = token.front() == '\'';
    while (isQuoted && (token.size() == 1 || token.back() != '\'')) {
      std::string word;
      if (!(words >> word)) return {"open: " + token};
      token += ' ' + word;
    }
    tokens.push_back(isQuoted ? token.substr(1, token.size() - 2) : token);
  }
  return tokens;
}

Tokens SplitOrFail(const std::string& text) {
  try {
    return Split(text, '\'');
  } catch (const CIOException& failure) {
    const std::string words = failure.what();
    const std::size_t start = words.find("string = ") + 9;
    return {"open: " + words.substr(start, words.find("; delimeter = '", start) - start)};
  }
}

TEST(SplitTokensTest, SplitsAtAnyWhiteSpace) {
  EXPECT_EQ(Split(" a\tbb \v\f\r\n c "), (Tokens{"a", "bb", "c"}));
  EXPECT_EQ(Split(""), Tokens{});
  EXPECT_EQ(Split(" \t\r\n"), Tokens{});
}

TEST(SplitTokensTest, AppendsToWhatIsThere) {
  Tokens tokens{"first"};
  Sumara::SplitTokens("", tokens);
  Sumara::SplitTokens("second", tokens);
  EXPECT_EQ(tokens, (Tokens{"first", "second"}));
}

TEST(SplitTokensTest, QuotesAreLettersWithoutAQuoteCharacter) {
  EXPECT_EQ(Split("'a b' c"), (Tokens{"'a", "b'", "c"}));
}

TEST(SplitTokensTest, QuotedTokens) {
  const std::vector<std::pair<std::string_view, Tokens>> table = {
      {"'a b' c 'd'", {"a b", "c", "d"}},
      {"'two \t blanks'", {"two blanks"}},
      {"''", {""}},
      {"' '", {" "}},
      {"' a '", {" a "}},
      {"'a''b'", {"a''b"}},
      {"it's 'that'", {"it's", "that"}},
      {"'a'b c'", {"a'b c"}},
      {"\"a b\"", {"\"a", "b\""}},
      {"", {}},
  };
  for (const auto& [text, tokens] : table) EXPECT_EQ(Split(text, '\''), tokens) << text;
}

TEST(SplitTokensTest, KeepsQuotesIfAsked) {
  EXPECT_EQ(Split("'a  b' c ''", '\'', true), (Tokens{"'a b'", "c", "''"}));
}

TEST(SplitTokensTest, OpenQuoteRaises5021) {
  EXPECT_EQ(MessageOf([] { Split("x 'a  b", '\''); }),
            "IO error 5021: Closing delimeter for string being parsed was not found.\n"
            "Further information: string = 'a b; delimeter = '");
  EXPECT_EQ(MessageOf([] { Split("'", '\''); }),
            "IO error 5021: Closing delimeter for string being parsed was not found.\n"
            "Further information: string = '; delimeter = '");
}

TEST(SplitTokensTest, LongOpenQuoteTakesLinearTime) {
  std::string text = "'";
  for (int i = 0; i < 2'000'000; ++i) text += " ab";
  EXPECT_EQ(MessageOf([&] { Split(text, '\''); }).size(),
            std::string("IO error 5021: Closing delimeter for string being parsed was not found.\n"
                        "Further information: string = ; delimeter = '")
                    .size() +
                text.size());
}

TEST(SplitTokensTest, RandomTextsSplitAsTheRuleSays) {
  std::mt19937 random(8);
  for (int i = 0; i < 50'000 && !HasFailure(); ++i) {
    std::string text;
    for (std::size_t left = random() % 40; left > 0; --left) text += "ab'  \t'c\n"[random() % 9];
    EXPECT_EQ(SplitOrFail(text), SplitByRule(text)) << "'" << text << "'";
  }
}

/// Character by character.
std::string CollapsedByRule(const std::string& text) {
  std::string collapsed;
  for (const char c : text) {
    if (c != ' ' && (c < '\t' || c > '\r')) {
      collapsed += c;
    } else if (collapsed.empty() || collapsed.back() != ' ') {
      collapsed += ' ';
    }
  }
  return collapsed;
}

TEST(AppendCollapsedTest, RunsOfWhiteSpaceBecomeOneBlank) {
  std::mt19937 random(9);
  for (int i = 0; i < 20'000 && !HasFailure(); ++i) {
    std::string text;
    for (std::size_t left = random() % 50; left > 0; --left) {
      text += random() % 4 == 0 ? " \t \r "[random() % 5] : static_cast<char>(random() % 256);
    }
    std::string collapsed;
    Sumara::AppendCollapsed(collapsed, text);
    EXPECT_EQ(collapsed, CollapsedByRule(text));
  }
}

TEST(StripQuotesTest, BothMarksCountAndNeedNotMatch) {
  const std::vector<std::pair<std::string, std::string>> table = {
      {"", ""},        {"'", ""},   {"\"", ""},     {"''", ""},   {"'a'", "a"},     {"'a\"", "a"},
      {"\"a'", "a"},   {"'a", "a"}, {"a'", "a"},    {"a", "a"},   {"''a''", "'a'"}, {"a'b", "a'b"},
      {" 'a'", " 'a"}, {"'''", ""}, {"''''", "''"}, {"'\"'", ""}, {"'a''", "a'"},
  };
  for (const auto& [text, stripped] : table) EXPECT_EQ(Stripped(text), stripped) << text;
}

TEST(TimeTextTest, FieldsHaveTheirDigitsWhateverTheYear) {
  const auto textOf = [](int year) {
    std::tm time{};
    time.tm_year = year - 1900;
    time.tm_mon = 2;
    time.tm_mday = 1;
    time.tm_hour = 9;
    time.tm_min = 5;
    time.tm_sec = 7;
    return Sumara::TimeText(time);
  };
  EXPECT_EQ(textOf(2024), "2024-03-01 09:05:07");
  EXPECT_EQ(textOf(999), "0999-03-01 09:05:07");
  EXPECT_EQ(textOf(7), "0007-03-01 09:05:07");
  EXPECT_EQ(textOf(12024), "12024-03-01 09:05:07");
}

TEST(TrimTrailingTest, CutsBlanksTabsAndLineEndsOnly) {
  EXPECT_EQ(Trimmed(" a b \t\r\n"), " a b");
  EXPECT_EQ(Trimmed(" \t\r\n"), "");
  EXPECT_EQ(Trimmed(""), "");
  EXPECT_EQ(Trimmed("a\v"), "a\v");
}

TEST(TextTest, WhiteSpaceTests) {
  EXPECT_TRUE(Sumara::IsOnlyWhitespace(""));
  EXPECT_TRUE(Sumara::IsOnlyWhitespace(" \t\n\v\f\r"));
  EXPECT_FALSE(Sumara::IsOnlyWhitespace(" \xA0"));
  EXPECT_TRUE(Sumara::ContainsWhitespace("a b"));
  EXPECT_FALSE(Sumara::ContainsWhitespace("ab"));
  EXPECT_TRUE(Sumara::ContainsLineBreak("a\rb"));
  EXPECT_TRUE(Sumara::ContainsLineBreak("a\nb"));
  EXPECT_FALSE(Sumara::ContainsLineBreak("a\tb"));
}

TEST(TextTest, ValidNames) {
  for (const char* name : {"a", " a ", "a\tb", "\xC3\xA4"}) {
    EXPECT_TRUE(Sumara::IsValidName(name)) << name;
  }
  for (const char* name : {"", " ", "\t \v", "a\nb", "a\r"}) {
    EXPECT_FALSE(Sumara::IsValidName(name)) << name;
  }
}

TEST(TextTest, ComparisonWithoutCaseCountsTheLongerLength) {
  EXPECT_TRUE(Sumara::EqualsNoCase("Wind Speed", "wINd sPEED"));
  EXPECT_TRUE(Sumara::EqualsNoCase("", ""));
  EXPECT_FALSE(Sumara::EqualsNoCase("Wind", "Wind "));
  EXPECT_FALSE(Sumara::EqualsNoCase("[", "{"));
  EXPECT_FALSE(Sumara::EqualsNoCase("\xC4", "\xE4"));
}

TEST(TextTest, HashFitsTheComparison) {
  std::unordered_set<std::string, Sumara::HashNoCase, Sumara::EqualNoCase> names{"Rotor Speed"};
  EXPECT_TRUE(names.contains(std::string_view("ROTOR speed")));
  EXPECT_FALSE(names.contains(std::string_view("ROTOR speed ")));
}

TEST(TextTest, HashKnowsNoCaseAtAnyPlace) {
  constexpr std::size_t kLongest = 20;
  for (std::size_t size = 1; size <= kLongest; ++size) {
    for (std::size_t place = 0; place < size; ++place) {
      for (int c = 0; c < 256; ++c) {
        const std::string plain(size, 'x');
        std::string text = plain;
        text[place] = static_cast<char>(c);
        std::string lower = text;
        lower[place] = Sumara::ToLower(text[place]);
        EXPECT_EQ(Sumara::HashNoCase{}(text), Sumara::HashNoCase{}(lower)) << text;
        EXPECT_EQ(Sumara::HashNoCase{}(text) == Sumara::HashNoCase{}(plain), c == 'x' || c == 'X')
            << text;
      }
    }
    EXPECT_NE(Sumara::HashNoCase{}(std::string(size, '\0')),
              Sumara::HashNoCase{}(std::string(size - 1, '\0')));
  }
}

/// As many of 2^16 values are met by 50,000 names that are much alike as by random ones: 35,000.
TEST(TextTest, AnyBitsOfTheHashSpreadNames) {
  for (const int shift : {0, 8, 16}) {
    std::unordered_set<std::size_t> met;
    for (int group = 0; group < 100; ++group) {
      for (int i = 0; i < 500; ++i) {
        const std::string name =
            "Group " + std::to_string(group) + " load channel " + std::to_string(1000 + i);
        met.insert(Sumara::HashNoCase{}(name) >> shift & 0xFFFFu);
      }
    }
    EXPECT_GT(met.size(), 34'000u) << shift;
  }
}

TEST(TextTest, TakesPathsApart) {
  EXPECT_EQ(Sumara::StemOf("a.b.%01"), "a.b");
  EXPECT_EQ(Sumara::StemOf("a"), "a");
  EXPECT_EQ(Sumara::ExtensionOf("a.b.%01"), ".%01");
  EXPECT_EQ(Sumara::ExtensionOf(".hidden"), "");
  EXPECT_EQ(Sumara::ExtensionOf("a"), "");
  EXPECT_EQ(Sumara::ExtensionOf("a."), ".");
  EXPECT_EQ(Sumara::FileNameOf("a/b\\c.x"), "c.x");
  EXPECT_EQ(Sumara::FileNameOf("a\\b/c.x"), "c.x");
  EXPECT_EQ(Sumara::FileNameOf("c.x"), "c.x");
  EXPECT_EQ(Sumara::FileNameOf("a/"), "");
}

}  // namespace
