#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdio>
#include <iomanip>
#include <limits>
#include <locale>
#include <random>
#include <sstream>

#include "core/numbers.h"

namespace {

using Sumara::AppendFixed;
using Sumara::AppendScientific;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();

std::string Scientific(double value, int precision = 7, bool upperCase = true) {
  std::string text;
  AppendScientific(text, value, precision, upperCase);
  return text;
}

std::string Fixed(double value, int precision = 7) {
  std::string text;
  AppendFixed(text, value, precision);
  return text;
}

std::string Printed(const char* format, int precision, double value) {
  char text[400];
  std::snprintf(text, sizeof text, format, precision, value);
  return text;
}

std::string Streamed(double value, int precision, bool scientific, bool upperCase) {
  std::ostringstream stream;
  stream.imbue(std::locale::classic());
  stream << (scientific ? std::scientific : std::fixed)
         << (upperCase ? std::uppercase : std::nouppercase) << std::setprecision(precision)
         << value;
  return stream.str();
}

TEST(AppendScientificTest, Examples) {
  EXPECT_EQ(Scientific(1.5), "1.5000000E+00");
  EXPECT_EQ(Scientific(1.5, 7, false), "1.5000000e+00");
  EXPECT_EQ(Scientific(0.05), "5.0000000E-02");
  EXPECT_EQ(Scientific(-1234.5678), "-1.2345678E+03");
  EXPECT_EQ(Scientific(0.0), "0.0000000E+00");
  EXPECT_EQ(Scientific(-0.0), "-0.0000000E+00");
  EXPECT_EQ(Scientific(99999999.7), "1.0000000E+08");
  EXPECT_EQ(Scientific(9.99999999e99), "1.0000000E+100");
  EXPECT_EQ(Scientific(0.1, 15), "1.000000000000000E-01");
  EXPECT_EQ(Scientific(123.456, 0), "1E+02");
}

TEST(AppendScientificTest, AppendsToWhatIsThere) {
  std::string text = "ULOADS   ";
  AppendScientific(text, 2, 7, true);
  AppendScientific(text, kInfinity, 7, true);
  EXPECT_EQ(text, "ULOADS   2.0000000E+00INF");
}

TEST(AppendScientificTest, NoNumbersReadAsStreamsWriteThem) {
  for (const bool upperCase : {false, true}) {
    for (const double value : {kInfinity, -kInfinity, kNotANumber}) {
      EXPECT_EQ(Scientific(value, 7, upperCase), Streamed(value, 7, true, upperCase));
    }
    // The streams of some systems forget this sign.
    EXPECT_EQ(Scientific(-kNotANumber, 7, upperCase), upperCase ? "-NAN" : "-nan");
  }
}

TEST(AppendScientificTest, TiesAndLimitsReadAsPrinted) {
  const double table[] = {12345678.5,
                          12345679.5,
                          1.5,
                          2.5,
                          1e22,
                          1e23,
                          5e-324,
                          2.2250738585072014e-308,
                          1.7976931348623157e308,
                          3.4028234663852886e38,
                          1.401298464324817e-45,
                          0.5,
                          0.25,
                          0.125,
                          1e-5,
                          1e15,
                          1e16,
                          9999999999999998.0,
                          4503599627370496.5,
                          999999999999999.9,
                          99999999.5,
                          9.9999999e22,
                          1e-64,
                          1e64,
                          1e57,
                          1e-57};
  for (const double value : table) {
    for (int precision = 0; precision <= 18; ++precision) {
      EXPECT_EQ(Scientific(value, precision), Printed("%.*E", precision, value));
      EXPECT_EQ(Scientific(-value, precision), Printed("%.*E", precision, -value));
    }
  }
}

TEST(AppendScientificTest, PowersOfTenAndTheirNeighboursReadAsPrinted) {
  for (int exponent = -320; exponent <= 308; ++exponent) {
    const double power = std::strtod(("1e" + std::to_string(exponent)).c_str(), nullptr);
    for (const double value :
         {std::nextafter(power, 0.0), power, std::nextafter(power, kInfinity)}) {
      for (const int precision : {1, 7, 15}) {
        ASSERT_EQ(Scientific(value, precision), Printed("%.*E", precision, value));
      }
    }
  }
}

TEST(AppendScientificTest, RandomFloatsReadAsPrinted) {
  std::mt19937 random(5);
  for (int i = 0; i < 300'000; ++i) {
    const double value = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
    if (std::isnan(value)) continue;
    ASSERT_EQ(Scientific(value), Printed("%.*E", 7, value));
  }
}

TEST(AppendScientificTest, RandomDoublesReadAsPrinted) {
  std::mt19937_64 random(6);
  for (int i = 0; i < 300'000; ++i) {
    const auto any = std::bit_cast<double>(random());
    const double value = i % 2 == 0 ? any : static_cast<double>(random()) * 1e-15;
    const int precision = i % 3 == 0 ? static_cast<int>(random() % 18) : (i % 3 == 1 ? 7 : 15);
    if (std::isnan(value)) continue;
    ASSERT_EQ(Scientific(value, precision), Printed("%.*E", precision, value));
  }
}

TEST(AppendScientificTest, ShortDecimalsReadAsPrinted) {
  for (int i = 0; i < 200'000; ++i) {
    const double value = i / 1000.0;
    ASSERT_EQ(Scientific(value, 7, false), Printed("%.*e", 7, value));
  }
}

TEST(AppendFixedTest, Examples) {
  EXPECT_EQ(Fixed(1.5), "1.5000000");
  EXPECT_EQ(Fixed(-0.0), "-0.0000000");
  EXPECT_EQ(Fixed(0.00000006), "0.0000001");
  EXPECT_EQ(Fixed(2.5, 0), "2");
  EXPECT_EQ(Fixed(kNotANumber), "nan");
  EXPECT_EQ(Fixed(-kInfinity), "-inf");
}

TEST(AppendFixedTest, RandomDoublesReadAsPrinted) {
  std::mt19937_64 random(7);
  for (int i = 0; i < 50'000; ++i) {
    const auto any = std::bit_cast<double>(random());
    const double value = i % 2 == 0 ? any : static_cast<double>(random()) * 1e-15;
    const int precision = i % 4 < 2 ? 7 : 15;
    if (std::isnan(value)) continue;
    ASSERT_EQ(Fixed(value, precision), Printed("%.*f", precision, value));
  }
}

TEST(PrecisionTest, DoubleHasMoreDigits) {
  EXPECT_EQ(Sumara::PrecisionOf(Sumara::kFloatCode), 7);
  EXPECT_EQ(Sumara::PrecisionOf(Sumara::kDoubleCode), 15);
  EXPECT_EQ(Sumara::PrecisionOf(Sumara::kLongCode), 7);
}

}  // namespace
