#include <gtest/gtest.h>

#include "core/exceptions.h"
#include "core/numbers.h"
#include "tests/support/element_types.h"
#include "tests/support/message_of.h"

namespace {

using Sumara::PopulateFromString;
using Sumara::PopulateFromTokens;
using testing_support::MessageOf;

template <class T>
class PopulateTest : public ::testing::Test {
 protected:
  static std::vector<double> Doubles(const std::vector<T>& values) {
    return {values.begin(), values.end()};
  }
};
TYPED_TEST_SUITE(PopulateTest, testing_support::ElementTypes);

TYPED_TEST(PopulateTest, StringOverwritesAndThenAppends) {
  std::vector<TypeParam> values{1, 2, 3};
  PopulateFromString("7 8\t9", values, 2);
  EXPECT_EQ(this->Doubles(values), (std::vector<double>{1, 2, 7, 8, 9}));
  PopulateFromString("5", values);
  EXPECT_EQ(this->Doubles(values), (std::vector<double>{5, 2, 7, 8, 9}));
  PopulateFromString("6", values, 5);
  EXPECT_EQ(this->Doubles(values), (std::vector<double>{5, 2, 7, 8, 9, 6}));
}

TYPED_TEST(PopulateTest, StringStopsAtTheFirstThatFails) {
  std::vector<TypeParam> values;
  PopulateFromString("1 2 x 4", values);
  EXPECT_EQ(this->Doubles(values), (std::vector<double>{1, 2}));
  PopulateFromString(" \t", values, 2);
  EXPECT_EQ(this->Doubles(values), (std::vector<double>{1, 2}));
}

TYPED_TEST(PopulateTest, EmptyStringRaises5015) {
  std::vector<TypeParam> values;
  EXPECT_EQ(MessageOf([&] { PopulateFromString("", values, 9); }),
            "IO error 5015: String to populate from was empty.");
}

TYPED_TEST(PopulateTest, StartBeyondTheEndRaises5017) {
  std::vector<TypeParam> values{1, 2};
  const std::string text =
      "IO error 5017: Start index of container to populate is out of bounds.\n"
      "Further information: start index = 3; container size = 2";
  EXPECT_EQ(MessageOf([&] { PopulateFromString("1", values, 3); }), text);
  EXPECT_EQ(MessageOf([&] { PopulateFromTokens({"1"}, values, 3); }), text);
}

TYPED_TEST(PopulateTest, TokensAreConvertedEachOnItsOwn) {
  std::vector<TypeParam> values{9, 9, 9, 9, 9};
  PopulateFromTokens({"1", "x", "3y", ""}, values, 1);
  EXPECT_EQ(this->Doubles(values), (std::vector<double>{9, 1, 0, 3, 0}));
}

TYPED_TEST(PopulateTest, TokensMakeRoom) {
  std::vector<TypeParam> values{1};
  PopulateFromTokens({"2", "3"}, values, 1);
  EXPECT_EQ(this->Doubles(values), (std::vector<double>{1, 2, 3}));
}

TYPED_TEST(PopulateTest, NoTokensRaise5016) {
  std::vector<TypeParam> values;
  EXPECT_EQ(MessageOf([&] { PopulateFromTokens({}, values, 9); }),
            "IO error 5016: Vector to populate from was empty.");
}

TEST(PopulateNumbersTest, IntegersReadThePrefixOfAFloatingNumber) {
  std::vector<int> values;
  PopulateFromTokens({"1.0E+01", "-2.9"}, values);
  EXPECT_EQ(values, (std::vector<int>{1, -2}));
  values.clear();
  PopulateFromString("1.0E+01 5", values);
  EXPECT_EQ(values, (std::vector<int>{1}));
}

TEST(PopulateNumbersTest, TokenBeyondTheTypeGivesItsLimit) {
  std::vector<short> values;
  PopulateFromTokens({"40000", "-40000"}, values);
  EXPECT_EQ(values, (std::vector<short>{32767, -32768}));
}

}  // namespace
