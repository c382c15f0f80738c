#include "api/expression_shape.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "tests/support/repeated.h"

namespace {

using SumaraApi::IsLiteral;
using SumaraApi::kMostGroupedAlternatives;
using SumaraApi::kMostNestedGroups;
using SumaraApi::kMostTerms;
using SumaraApi::ShapeOf;
using testing_support::Repeated;
using Parts = std::vector<std::string_view>;

constexpr const char* kTooManyTerms = "More than 16384 terms in one alternative";
constexpr const char* kTooNested = "More than 1000 groups in one another";

TEST(ExpressionShapeTest, TermsOfOneAlternativeAreBounded) {
  for (const char* term : {"a", "a*", "a{2,3}", "a+?", "\\d", "\\x41", "\\u0041", "\\cA", "\\12",
                           "[a]", "[^]", "(ab)", "(|)", "^", "."}) {
    EXPECT_EQ(ShapeOf(Repeated(term, term[1] == '|' ? 10'000 : kMostTerms)).excess, nullptr)
        << term;
    EXPECT_STREQ(ShapeOf(Repeated("a", kMostTerms) + term).excess, kTooManyTerms) << term;
  }
}

TEST(ExpressionShapeTest, AlternativesAreCountedEachByItself) {
  const std::string full = Repeated("a", kMostTerms);
  EXPECT_EQ(ShapeOf(full + "|" + full + "|" + full).excess, nullptr);
  EXPECT_STREQ(ShapeOf(full + "|a" + full).excess, kTooManyTerms);
  EXPECT_EQ(ShapeOf(Repeated("name|", 100'000)).excess, nullptr);
}

TEST(ExpressionShapeTest, AlternativesInGroupsAreBoundedTogether) {
  const std::string half = "(" + Repeated("a|", kMostGroupedAlternatives / 2) + ")";
  EXPECT_EQ(ShapeOf(half + "x|" + half).excess, nullptr);
  EXPECT_STREQ(ShapeOf(half + "x|(|)" + half).excess, "More than 10000 alternatives in groups");
}

TEST(ExpressionShapeTest, GroupsInOneAnotherAreBounded) {
  for (const char* group : {"(", "(?:", "(?=", "(?!", "a(", "(|"}) {
    EXPECT_EQ(ShapeOf(Repeated(group, kMostNestedGroups)).excess, nullptr) << group;
    EXPECT_STREQ(ShapeOf(Repeated(group, kMostNestedGroups + 1)).excess, kTooNested) << group;
  }
  EXPECT_EQ(ShapeOf(Repeated("(a)", kMostTerms)).excess, nullptr);
}

TEST(ExpressionShapeTest, TermsThatStayOpenAddUp) {
  const std::string open = Repeated("a", kMostTerms - 1) + "(";
  EXPECT_EQ(ShapeOf(open + open).excess, nullptr);
  EXPECT_STREQ(ShapeOf(open + open + "a").excess, "Too many terms around groups in one another");
  EXPECT_EQ(ShapeOf(open + open + "|").excess, nullptr);
  EXPECT_EQ(ShapeOf(open + ")|" + open + ")|" + open).excess, nullptr);
}

TEST(ExpressionShapeTest, SetsOfCharactersAreBounded) {
  EXPECT_EQ(ShapeOf(Repeated("\\d|", 32'768)).excess, nullptr);
  EXPECT_STREQ(ShapeOf(Repeated("\\W|", 32'769)).excess, "Too many sets of characters");
  EXPECT_EQ(ShapeOf("[" + std::string(131'068, 'a') + "]").excess, nullptr);
  EXPECT_STREQ(ShapeOf("[" + std::string(131'069, 'a') + "]").excess,
               "Too many sets of characters");
}

TEST(ExpressionShapeTest, GroupsAndBarsInBracketsAndBehindBackslashesAreNone) {
  EXPECT_EQ(ShapeOf("[" + Repeated("(", 100'000) + "]").excess, nullptr);
  EXPECT_EQ(ShapeOf("a[|]b|c").alternatives, (Parts{"a[|]b", "c"}));
  EXPECT_EQ(ShapeOf("a[\\]|]b|c").alternatives, (Parts{"a[\\]|]b", "c"}));
  EXPECT_EQ(ShapeOf("[[:digit:]|]|[[=]=]|]|c").alternatives,
            (Parts{"[[:digit:]|]", "[[=]=]|]", "c"}));
  EXPECT_EQ(ShapeOf("a\\|b|\\(|c").alternatives, (Parts{"a\\|b", "\\(", "c"}));
}

TEST(ExpressionShapeTest, BarsOutsideAllGroupsCutTheExpression) {
  EXPECT_EQ(ShapeOf("").alternatives, (Parts{""}));
  EXPECT_EQ(ShapeOf("a|b").alternatives, (Parts{"a", "b"}));
  EXPECT_EQ(ShapeOf("|a||").alternatives, (Parts{"", "a", "", ""}));
  EXPECT_EQ(ShapeOf("(a|b)|(?:c|(d|e))x").alternatives, (Parts{"(a|b)", "(?:c|(d|e))x"}));
}

TEST(ExpressionShapeTest, WhatCannotBeCutStaysWhole) {
  for (const char* whole : {"a|(b", "a)|b", "(a))|b", "a|[b", "a|[b\\]", "(a)\\1|b", "a|b\\12"}) {
    EXPECT_EQ(ShapeOf(whole).alternatives, (Parts{whole})) << whole;
  }
}

TEST(ExpressionShapeTest, WrongExpressionsAreReadToTheirEnd) {
  for (const char* wrong : {"", ")", "))(", "[", "[[:", "[[:digit", "\\", "{", "(?", "\\x", "\\c",
                            "[\\", "*", "a{1", "[]a", "[^"}) {
    EXPECT_EQ(ShapeOf(wrong).excess, nullptr) << wrong;
    EXPECT_EQ(ShapeOf(wrong).alternatives, (Parts{wrong})) << wrong;
  }
}

TEST(ExpressionShapeTest, LiteralsHaveNoSpecialCharacter) {
  for (const char* literal : {"", "run_01", "a-b,c/d e", "\xE4#~"}) {
    EXPECT_TRUE(IsLiteral(literal)) << literal;
  }
  for (const char c : std::string("^$\\.*+?()[]{}|\0", 15)) {
    EXPECT_FALSE(IsLiteral(std::string("a") + c + "b")) << c;
  }
}

}  // namespace
