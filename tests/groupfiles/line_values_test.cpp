#include "groupfiles/line_values.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/support/element_types.h"

namespace {

template <class U>
class LineValuesTest : public ::testing::Test {
 protected:
  /// Takes values into room that holds -1; `m_found` is what was told.
  std::vector<U> Take(std::string_view line, std::uint64_t count,
                      const std::vector<std::uint64_t>& places) {
    std::vector<U> values(places.size(), static_cast<U>(-1));
    m_found = Sumara::TakeLineValues<U>(line, count, places, values);
    return values;
  }
  static std::vector<U> Of(const std::vector<int>& values) {
    return {values.begin(), values.end()};
  }

  std::uint64_t m_found = 0;
};
TYPED_TEST_SUITE(LineValuesTest, testing_support::ElementTypes);

TYPED_TEST(LineValuesTest, WantedNumbersAreConverted) {
  EXPECT_EQ(this->Take(" 10\t11 12  13 ", 4, {1, 3}), this->Of({11, 13}));
  EXPECT_EQ(this->m_found, 4u);
  EXPECT_EQ(this->Take("10 11 12 13", 4, {0, 1, 2, 3}), this->Of({10, 11, 12, 13}));
}

TYPED_TEST(LineValuesTest, OnePlaceMayBeWantedTwice) {
  EXPECT_EQ(this->Take("10 11 12", 3, {1, 1, 2}), this->Of({11, 11, 12}));
}

TYPED_TEST(LineValuesTest, NumbersBehindTheCountAreNotLookedAt) {
  EXPECT_EQ(this->Take("10 11 words", 2, {0}), this->Of({10}));
  EXPECT_EQ(this->m_found, 2u);
  EXPECT_EQ(this->Take("10 11 12", 2, {2}), this->Of({-1}));
}

TYPED_TEST(LineValuesTest, LineEndsAtWhatIsNoNumber) {
  EXPECT_EQ(this->Take("10 x 12", 3, {0, 2}), this->Of({10, -1}));
  EXPECT_EQ(this->m_found, 1u);
  EXPECT_EQ(this->Take("10 11", 3, {0, 2}), this->Of({10, -1}));
  EXPECT_EQ(this->m_found, 2u);
  EXPECT_EQ(this->Take("10 x 12", 3, {1}), this->Of({-1}));
  EXPECT_EQ(this->m_found, 1u);
}

TYPED_TEST(LineValuesTest, EmptyLineHoldsNothing) {
  EXPECT_EQ(this->Take("", 3, {0}), this->Of({-1}));
  EXPECT_EQ(this->m_found, 0u);
  EXPECT_EQ(this->Take(" \t", 3, {}), this->Of({}));
  EXPECT_EQ(this->m_found, 0u);
}

}  // namespace
