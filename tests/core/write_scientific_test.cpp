#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

#include "core/numbers.h"

namespace {

std::string Written(double value, int precision = 7, bool upperCase = false) {
  std::array<char, Sumara::kLongestScientific> text;
  return {text.data(), Sumara::WriteScientific(text.data(), value, precision, upperCase)};
}

std::string Printed(double value, int precision = 7) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%.*e", precision, value);
  return text.data();
}

TEST(WriteScientificTest, EndsBehindTheNumber) {
  std::string text(40, '#');
  char* const end = Sumara::WriteScientific(text.data() + 2, -0.05, 7, /*upperCase=*/true);
  EXPECT_EQ(end, text.data() + 2 + std::string("-5.0000000E-02").size());
  EXPECT_EQ(text.substr(0, 18), "##-5.0000000E-02##");
}

TEST(WriteScientificTest, LongestNumbersFit) {
  constexpr double kLowest = std::numeric_limits<double>::lowest();
  EXPECT_EQ(Written(kLowest, Sumara::kMostWrittenPrecision), Printed(kLowest, 16));
  EXPECT_EQ(Written(-5e-324, Sumara::kMostWrittenPrecision), Printed(-5e-324, 16));
}

TEST(WriteScientificTest, NoNumbersFollowTheCase) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(Written(-kInfinity), "-inf");
  EXPECT_EQ(Written(kInfinity, 7, true), "INF");
  EXPECT_EQ(Written(kNotANumber), "nan");
  EXPECT_EQ(Written(-kNotANumber, 7, true), "-NAN");
}

TEST(WriteScientificTest, TiesGoToTheEvenDigit) {
  EXPECT_EQ(Written(1000000.25), "1.0000002e+06");
  EXPECT_EQ(Written(1000000.75), "1.0000008e+06");
  EXPECT_EQ(Written(100000005.0), "1.0000000e+08");
  EXPECT_EQ(Written(100000015.0), "1.0000002e+08");
  EXPECT_EQ(Written(0.5, 0), "5e-01");
  EXPECT_EQ(Written(2.5, 0), "2e+00");
}

TEST(WriteScientificTest, BinaryFractionsReadAsPrinted) {
  for (int i = 1; i < 400'000; ++i) {
    for (const double unit : {1.0 / 8, 1.0 / 512, 1.0 / 16384}) {
      ASSERT_EQ(Written(i * unit), Printed(i * unit));
    }
  }
}

TEST(WriteScientificTest, WholeNumbersReadAsPrinted) {
  std::mt19937_64 random(11);
  for (int i = 0; i < 300'000; ++i) {
    const auto value = 5.0 * static_cast<double>(random() >> (11 + i % 50));
    ASSERT_EQ(Written(value), Printed(value));
    ASSERT_EQ(Written(value, 15), Printed(value, 15));
  }
}

TEST(WriteScientificTest, RandomFloatBitsReadAsPrinted) {
  std::mt19937 random(12);
  for (int i = 0; i < 1'500'000; ++i) {
    const double value = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
    if (std::isnan(value)) continue;
    ASSERT_EQ(Written(value), Printed(value));
  }
}

TEST(WriteScientificTest, RandomDoubleBitsReadAsPrinted) {
  std::mt19937_64 random(13);
  for (int i = 0; i < 500'000; ++i) {
    const auto value = std::bit_cast<double>(random());
    if (std::isnan(value)) continue;
    ASSERT_EQ(Written(value, 15), Printed(value, 15));
  }
}

}  // namespace
