#include "groupfiles/line_values.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "core/numbers.h"
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

  /// The same, each number converted for itself.
  std::vector<U> TakePlainly(std::string_view line, std::uint64_t count,
                             const std::vector<std::uint64_t>& places) {
    std::vector<U> values(places.size(), static_cast<U>(-1));
    for (m_found = 0; m_found < count; ++m_found) {
      U value{};
      if (!Sumara::ExtractNumber(line, value)) break;
      for (std::size_t i = 0; i < places.size(); ++i) {
        if (places[i] == m_found) values[i] = value;
      }
    }
    return values;
  }

  /// Nothing tells how the values of a line were found.
  void ExpectAsPlain(const std::string& line, std::uint64_t count) {
    for (const std::vector<std::uint64_t>& places :
         {std::vector<std::uint64_t>{0, 1, 2, 3, 4, 5}, {1, 4}, {5}, {}}) {
      const std::vector<U> expected = TakePlainly(line, count, places);
      const std::uint64_t found = m_found;
      EXPECT_EQ(Take(line, count, places), expected) << "'" << line << "'";
      EXPECT_EQ(m_found, found) << "'" << line << "'";
    }
  }

  std::uint64_t m_found = 0;
};

/// A line of six numbers as simulators write them, in fields of one width.
std::string AlignedLine(std::minstd_rand& random, int width) {
  static constexpr int kMostPowers[] = {3, 12, 29, 33, 45};
  const int mostPower = kMostPowers[random() % std::size(kMostPowers)];
  std::string line;
  for (int i = 0; i < 6; ++i) {
    const double mantissa = static_cast<double>(random() % 90'000'000 + 10'000'000) / 1e7;
    const int power = static_cast<int>(random() % static_cast<unsigned>(2 * mostPower)) - mostPower;
    const std::string number = "%*.7f" + std::string(random() % 2 == 0 ? "e" : "E") + "%+03d";
    char text[64];
    std::snprintf(text, sizeof(text), number.c_str(), width - 4,
                  random() % 2 == 0 ? -mantissa : mantissa, power);
    line += text;
  }
  return line;
}
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

TYPED_TEST(LineValuesTest, FieldsOfOneWidth) {
  std::minstd_rand random(3);
  for (int width = 13; width < 26; ++width) {
    for (int i = 0; i < 50 && !this->HasFailure(); ++i) {
      this->ExpectAsPlain(AlignedLine(random, width), 6);
      this->ExpectAsPlain(AlignedLine(random, width) + "\r", 7);
    }
  }
}

TYPED_TEST(LineValuesTest, FieldsThatAreNearlyRight) {
  constexpr std::string_view kCharacters = "0123456789+-.eE \t!,/:x\xad\r";
  std::minstd_rand random(4);
  for (int i = 0; i < 20'000 && !this->HasFailure(); ++i) {
    std::string line = AlignedLine(random, 13 + static_cast<int>(random() % 12));
    for (std::size_t changes = 1 + random() % 3; changes > 0; --changes) {
      line[random() % line.size()] = kCharacters[random() % kCharacters.size()];
    }
    if (random() % 2 == 0) line.resize(random() % line.size());
    this->ExpectAsPlain(line, 6);
  }
}

TYPED_TEST(LineValuesTest, FieldsOfOtherWidths) {
  std::minstd_rand random(5);
  for (int i = 0; i < 2'000 && !this->HasFailure(); ++i) {
    std::string line = "1";
    for (int part = 0; part < 3; ++part) {
      line += AlignedLine(random, 14 + static_cast<int>(random() % 12)).substr(0, random() % 90);
    }
    this->ExpectAsPlain(line, 12);
  }
}

TYPED_TEST(LineValuesTest, EmptyLineHoldsNothing) {
  EXPECT_EQ(this->Take("", 3, {0}), this->Of({-1}));
  EXPECT_EQ(this->m_found, 0u);
  EXPECT_EQ(this->Take(" \t", 3, {}), this->Of({}));
  EXPECT_EQ(this->m_found, 0u);
}

}  // namespace
