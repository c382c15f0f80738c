#include "groupfiles/text_numbers.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "tests/support/element_types.h"

namespace {

using Sumara::CountDigits;
using Sumara::ExtractNumber;
using Sumara::SkipNumber;

TEST(CountDigitsTest, DigitsUpToTheFirstOtherCharacter) {
  EXPECT_EQ(CountDigits(""), 0u);
  EXPECT_EQ(CountDigits("x123456789"), 0u);
  EXPECT_EQ(CountDigits("12"), 2u);
  EXPECT_EQ(CountDigits("1234567"), 7u);
  EXPECT_EQ(CountDigits("12345678901234567890"), 20u);
  EXPECT_EQ(CountDigits("1234567 12345678"), 7u);
  EXPECT_EQ(CountDigits("12345678e12345678"), 8u);
}

TEST(CountDigitsTest, EveryCharacterAtEveryPlace) {
  for (std::size_t place = 0; place < 20; ++place) {
    for (int c = 0; c < 256; ++c) {
      std::string text(20, '7');
      text[place] = static_cast<char>(c);
      EXPECT_EQ(CountDigits(text), Sumara::IsDigit(text[place]) ? 20u : place) << c;
    }
  }
}

template <class T>
class SkipNumberTest : public ::testing::Test {
 protected:
  /// Passing over has the outcome of converting, and leaves the same text behind.
  static void ExpectSame(const std::string& text) {
    std::string_view skipped = text;
    std::string_view converted = text;
    T value{};
    const bool skips = SkipNumber<T>(skipped);
    EXPECT_EQ(skips, ExtractNumber(converted, value)) << "'" << text << "'";
    EXPECT_EQ(skipped, converted) << "'" << text << "'";
  }
};
TYPED_TEST_SUITE(SkipNumberTest, testing_support::ElementTypes);

/// Each way to write the places of a scientific number, right and slightly wrong.
TYPED_TEST(SkipNumberTest, ScientificSpellings) {
  for (const char* front : {"1.", "-1.", "+1.", "12.", ".", "-", "x."}) {
    for (const char* fraction : {"", "5", "2345678", "12345678", "234567890123456", "2 3"}) {
      for (const char* exponent :
           {"", "e", "E+", "e+5", "E05", "e-05", "e+29", "E-29", "e+30", "e+37", "e+38", "e+39",
            "e-99", "e+290", "e+308", "e*05", "ex05", "d+05", "e+0x"}) {
        for (const char* rest : {"", " ", "\t7", "\r", "x", ".", "+1"}) {
          this->ExpectSame(std::string(front) + fraction + exponent + rest);
        }
      }
    }
  }
}

TYPED_TEST(SkipNumberTest, Spellings) {
  for (const char* text : {"",
                           " ",
                           "\t\n",
                           "0",
                           "-0",
                           "+7",
                           "12 13",
                           "  -1.2345678e+03  2",
                           "1.",
                           ".5",
                           ".",
                           "-",
                           "+",
                           "+-1",
                           "e5",
                           "1e",
                           "1e+",
                           "1e-",
                           "1e5",
                           "1E05",
                           "1e+38",
                           "1e+39",
                           "1e+308",
                           "1e+309",
                           "9.9e+37",
                           "9.9e+38",
                           "1e0038",
                           "1e00038",
                           "1e+999",
                           "1e+9999",
                           "1e-400",
                           "1e-99999",
                           "1d5",
                           "1,5",
                           "1;",
                           "1x",
                           "x",
                           "n/a",
                           "nan",
                           "inf",
                           "-inf",
                           "0x10",
                           "1.5.5",
                           "1-2",
                           "1+2",
                           "1e5e5",
                           "1e5.5",
                           "1\r",
                           "1\r\n",
                           "\v1\f2",
                           "00000000000000000000000000000000000000001",
                           "12345",
                           "123456789",
                           "1234567890",
                           "99999",
                           "32767",
                           "32768",
                           "-32768",
                           "-32769",
                           "2147483647",
                           "2147483648",
                           "-2147483648",
                           "99999999999999999999",
                           "123456789012345678901234567890123456789",
                           "1234567890123456789012345678901234567890",
                           "0.00000000000000000000000000000000000000000000001"}) {
    this->ExpectSame(text);
  }
}

TYPED_TEST(SkipNumberTest, TextsOfAllKinds) {
  constexpr std::string_view kCharacters = "0123456789999+-..eE  \tx\r";
  std::minstd_rand random(7);
  for (int i = 0; i < 50000; ++i) {
    std::string text;
    const std::size_t size = random() % 14;
    for (std::size_t k = 0; k < size; ++k) text += kCharacters[random() % kCharacters.size()];
    this->ExpectSame(text);
  }
}

}  // namespace
