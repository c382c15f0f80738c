#include "core/name_list.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "core/text.h"
#include "tests/support/message_of.h"

namespace {

using Sumara::NameList;
using Strings = std::vector<std::string>;
using testing_support::MessageOf;

TEST(NameListTest, NamesStandInTheirOrder) {
  NameList names = {"Mx", "", "My"};
  EXPECT_EQ(names.Size(), 3u);
  EXPECT_EQ(names[0], "Mx");
  EXPECT_EQ(names[1], "");
  EXPECT_EQ(names[2], "My");
  EXPECT_EQ(names.Strings(), (Strings{"Mx", "", "My"}));
  names.Append("Mz");
  names.Remove(1);
  EXPECT_EQ(names, (Strings{"Mx", "My", "Mz"}));
  EXPECT_EQ(names, NameList({"Mx", "My", "Mz"})) << "whatever was removed before";
  EXPECT_FALSE(names == NameList({"Mx", "My"}));
  EXPECT_FALSE(names == NameList({"Mx", "My", "MZ"}));
  EXPECT_TRUE(NameList().Empty());
}

TEST(NameListTest, WhatIsRemovedLeavesNoTextBehind) {
  NameList names{"Mx", "", "My", "Mz"};
  for (int round = 0; round < 100; ++round) {
    names.Remove(2);
    names.Append("My");
    names.Remove(2);
    names.Append("Mz");
  }
  names.Remove(1);
  EXPECT_EQ(names, (Strings{"Mx", "My", "Mz"}));
  EXPECT_EQ(names[2].data() - names[0].data(), 4);
}

TEST(NameListTest, CopiesAndMovesHoldTheSameNames) {
  const NameList names = NameList::Split("'a b' c", '\'');
  NameList copy = names;
  const NameList moved = std::move(copy);
  EXPECT_EQ(moved, (Strings{"a b", "c"}));
  EXPECT_EQ(names, moved);
}

TEST(NameListTest, QuotedNameMayGoOverRows) {
  EXPECT_EQ(NameList::Split("'a\nb' c\n'd'", '\''), (Strings{"a b", "c", "d"}));
  EXPECT_EQ(NameList::Split("'a\n\nb'", '\''), (Strings{"a b"}));
}

/// A text as it comes from the rows of a label's value.
std::string RowsOf(std::mt19937& random) {
  std::string text;
  for (std::size_t rows = random() % 4; rows > 0; --rows) {
    std::string row;
    for (std::size_t left = random() % 20; left > 0; --left) row += "ab'  \t'c\""[random() % 9];
    Sumara::AppendCollapsed(text, Sumara::TrimSpace(row));
    if (rows > 1) text += '\n';
  }
  return text;
}

TEST(NameListTest, SplitsAsTokensAreSplit) {
  std::mt19937 random(6);
  for (int i = 0; i < 50'000 && !HasFailure(); ++i) {
    const std::string text = RowsOf(random);
    Strings tokens;
    NameList names;
    const std::string refusal = MessageOf([&] { Sumara::SplitTokens(text, tokens, '\''); });
    EXPECT_EQ(MessageOf([&] { names = NameList::Split(text, '\''); }), refusal) << text;
    if (refusal == "no exception") {
      EXPECT_EQ(names, tokens) << text;
    }
  }
}

}  // namespace
