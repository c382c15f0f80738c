#include "api/name_expression.h"

#include <gtest/gtest.h>

#include <string>

#include "api/expression_shape.h"
#include "tests/support/message_of.h"
#include "tests/support/repeated.h"

namespace {

using SumaraApi::NameExpression;
using testing_support::MessageOf;
using testing_support::Repeated;

constexpr bool kIgnoresCase = true;
constexpr bool kMatchesCase = false;

std::string Refusal(const std::string& expression, const std::string& reason) {
  return "Sumara Tables error: Run name regular expression invalid.\nFurther information: "
         "Expression: " +
         expression + "\nInner exception: " + reason;
}

bool Matches(const std::string& expression, const std::string& name) {
  return NameExpression(expression, kMatchesCase).Matches(name);
}

std::string FailureOf(const std::string& expression, const std::string& name) {
  return MessageOf([&] { Matches(expression, name); });
}

TEST(NameExpressionTest, WholeNamesMatch) {
  EXPECT_TRUE(Matches("run\\d+", "run12"));
  EXPECT_FALSE(Matches("run\\d", "run12"));
  EXPECT_FALSE(Matches("un", "run"));
  EXPECT_TRUE(Matches("(a+)-\\1", "aa-aa"));
  EXPECT_FALSE(Matches("(a+)-\\1", "aa-a"));
  EXPECT_TRUE(Matches("(?!base)\\w+(?=_x).*", "run_x"));
  EXPECT_TRUE(Matches("^\\brun$", "run"));
  EXPECT_TRUE(Matches("[[:alpha:]]*", ""));
}

TEST(NameExpressionTest, CaseCountsUnlessItIsIgnored) {
  EXPECT_TRUE(NameExpression("RUN[a-c]", kIgnoresCase).Matches("runB"));
  EXPECT_FALSE(NameExpression("RUN[a-c]", kMatchesCase).Matches("runB"));
}

TEST(NameExpressionTest, WrongExpressionRaises169) {
  EXPECT_EQ(MessageOf([] { NameExpression("(", kMatchesCase); }),
            Refusal("(", "Mismatched '(' and ')' in regular expression"));
}

TEST(NameExpressionTest, AlternativesMatchEachByItself) {
  const NameExpression names("run_1|RUN_2|base\\d|(a|b)c|", kMatchesCase);
  for (const char* name : {"run_1", "RUN_2", "base7", "ac", "bc", ""}) {
    EXPECT_TRUE(names.Matches(name)) << name;
  }
  for (const char* name : {"run_2", "Run_1", "run_1|RUN_2", "base", "c"}) {
    EXPECT_FALSE(names.Matches(name)) << name;
  }
  EXPECT_TRUE(NameExpression("x|Run_\xC4", kIgnoresCase).Matches("rUN_\xC4"));
}

TEST(NameExpressionTest, AWrongAlternativeIsAWrongExpression) {
  for (const char* expression : {"run|(", "(|run", "run|*", "run|[a", "run)|a", "a|\\"}) {
    EXPECT_EQ(FailureOf(expression, "run").find(Refusal(expression, "")), 0u) << expression;
  }
}

TEST(NameExpressionTest, LargestExpressionsCompileAndMatch) {
  const std::string terms = Repeated("a?", SumaraApi::kMostTerms);
  EXPECT_TRUE(Matches(terms, std::string(255, 'a')));
  EXPECT_FALSE(Matches(terms, "b"));
  const std::size_t depth = SumaraApi::kMostNestedGroups;
  EXPECT_TRUE(Matches(Repeated("(", depth) + "a" + Repeated(")", depth), "a"));
  EXPECT_TRUE(Matches(Repeated("(?=", depth) + "a" + Repeated(")", depth) + "a", "a"));
  const std::string open = Repeated("a?", SumaraApi::kMostTerms - 2) + "(";
  EXPECT_TRUE(Matches(open + open + "|b))", "b"));
}

TEST(NameExpressionTest, TooLargeExpressionRaises169) {
  const std::string terms = Repeated("a", 87'000);
  EXPECT_EQ(FailureOf(terms, "a"), Refusal(terms, "More than 16384 terms in one alternative"));
  const std::string groups = Repeated("(", 15'000) + Repeated(")", 15'000);
  EXPECT_EQ(FailureOf(groups, "a"), Refusal(groups, "More than 1000 groups in one another"));
  const std::string states = "(a{1000}){1000}";
  EXPECT_EQ(FailureOf(states, "a").find(Refusal(states, "")), 0u);
}

TEST(NameExpressionTest, AlternationOfThousandsOfNamesWorks) {
  std::string expression = "first";
  for (int i = 0; i < 20'000; ++i) expression += "|run_number_" + std::to_string(100'000 + i);
  const NameExpression names(expression, kIgnoresCase);
  EXPECT_TRUE(names.Matches("first"));
  EXPECT_TRUE(names.Matches("RUN_number_119999"));
  EXPECT_FALSE(names.Matches("run_number_120000"));
}

TEST(NameExpressionTest, EndlessBacktrackingRaises169) {
  const std::string name(40, 'a');
  for (const char* expression :
       {"(a*)*b", "(a|aa)+b", "(a+)+\\1b", "(?:a?){40}a{40}b", "((a*)*(a*)*)*b", "(?=(a*)*b)a*",
        "(.*)(.*)(.*)(.*)(.*)(.*)(.*)b"}) {
    EXPECT_EQ(FailureOf(expression, name),
              Refusal(expression, "Matching a name takes too many steps"))
        << expression;
  }
}

TEST(NameExpressionTest, PathsThatReadNoCharacterAreStepsToo) {
  const std::string expression = Repeated("(^|^)", 60) + Repeated("^", 10'000) + "b";
  EXPECT_EQ(FailureOf(expression, "a"),
            Refusal(expression, "Matching a name takes too many steps"));
}

TEST(NameExpressionTest, NoExpressionOverflowsTheStack) {
  const std::string name(255, 'a');
  const std::string anchors = Repeated("(" + Repeated("^", 100) + ")", 900);
  const std::string bars = Repeated("|", SumaraApi::kMostGroupedAlternatives);
  for (const std::string& expression :
       {anchors, "(?:" + bars + ")*b", Repeated("(|)", 10'000) + "b",
        Repeated("(", 900) + "a" + Repeated(")*", 900),
        Repeated("(", 900) + "a" + Repeated("|)?", 900) + "*",
        Repeated("(?:", 1'000) + bars + Repeated(")", 1'000) + "*b", Repeated("a.|", 100'000)}) {
    const std::string outcome = FailureOf(expression, name);
    EXPECT_TRUE(outcome == "no exception" || outcome.ends_with("goes too deep") ||
                outcome.ends_with("takes too many steps"))
        << outcome.substr(0, 100) << " ... " << outcome.substr(outcome.rfind('\n'));
  }
}

TEST(NameExpressionTest, EachNameHasStepsOfItsOwn) {
  const NameExpression expression("(a*)*", kMatchesCase);
  const std::string name(200, 'a');
  for (int i = 0; i < 1'000; ++i) ASSERT_TRUE(expression.Matches(name));
}

}  // namespace
