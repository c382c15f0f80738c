#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <iomanip>
#include <limits>
#include <locale>
#include <random>
#include <sstream>

#include "core/numbers.h"
#include "tests/support/element_types.h"

namespace {

using Sumara::ExtractNumber;
using Sumara::Long;

template <class T>
struct Extraction {
  T value;
  std::string rest;
  bool isNumber;
};

template <class T>
Extraction<T> ByStream(const std::string& text) {
  std::istringstream stream(text);
  stream.imbue(std::locale::classic());
  T value = 77;
  const bool isNumber = static_cast<bool>(stream >> value);
  stream.clear();
  return {value, text.substr(static_cast<std::size_t>(stream.tellg())), isNumber};
}

template <class T>
Extraction<T> ByUs(const std::string& text) {
  std::string_view rest = text;
  T value = 77;
  const bool isNumber = ExtractNumber(rest, value);
  return {value, std::string(rest), isNumber};
}

template <class T>
bool SameBits(T a, T b) {
  return std::signbit(static_cast<double>(a)) == std::signbit(static_cast<double>(b)) && a == b;
}

template <class T>
void Compare(const std::string& text) {
  using Standard = std::conditional_t<std::is_same_v<T, Long>, int, T>;
  const auto expected = ByStream<Standard>(text);
  const auto found = ByUs<T>(text);
  EXPECT_TRUE(SameBits<Standard>(found.value, expected.value))
      << "'" << text << "' gives " << static_cast<double>(found.value) << ", not "
      << static_cast<double>(expected.value);
  EXPECT_EQ(found.rest, expected.rest) << "'" << text << "'";
  EXPECT_EQ(found.isNumber, expected.isNumber) << "'" << text << "'";
}

template <class T>
class ExtractNumberTest : public ::testing::Test {};

TYPED_TEST_SUITE(ExtractNumberTest, testing_support::ElementTypes);

TYPED_TEST(ExtractNumberTest, OddSpellingsReadAsAStreamReadsThem) {
  const char* const table[] = {"",
                               " ",
                               "\t\n",
                               "0",
                               "-0",
                               "+0",
                               "00",
                               "-007",
                               "1",
                               " 12 34",
                               "\t\v\f\r\n5",
                               "+3",
                               "-3",
                               "- 3",
                               "+ 3",
                               "+-3",
                               "--3",
                               "1.0E+01",
                               "1.0e-01",
                               "1e5",
                               "1E5x",
                               "1e",
                               "1e+",
                               "1e-",
                               "1e+x",
                               "1e.5",
                               "1ee5",
                               "1e5e5",
                               "1e5.5",
                               "1.5.2",
                               ".5",
                               "-.5",
                               "+.5",
                               "5.",
                               "5.e1",
                               ".",
                               "-",
                               "+",
                               "-.",
                               ".e5",
                               "e5",
                               "E",
                               "nan",
                               "NaN",
                               "-nan",
                               "inf",
                               "-inf",
                               "INFINITY",
                               "0x10",
                               "0X1p3",
                               "0x",
                               "-0x1F",
                               "010",
                               "1,000",
                               "1'000",
                               "1_0",
                               "12abc",
                               "abc",
                               "$",
                               "1\xA0",
                               "99999999999999999999",
                               "2147483647",
                               "2147483648",
                               "-2147483648",
                               "-2147483649",
                               "32767",
                               "32768",
                               "-32768",
                               "-32769",
                               "65537",
                               "9223372036854775807",
                               "9223372036854775808",
                               "-9223372036854775808",
                               "-9223372036854775809",
                               "18446744073709551616",
                               "1e38",
                               "3.4028235e38",
                               "3.4028236e38",
                               "3.40282357e38",
                               "-1e39",
                               "1e308",
                               "1.7976931348623157e308",
                               "1.7976931348623159e308",
                               "1e309",
                               "-1e400",
                               "1e99999999999999999999",
                               "1e-99999999999999999999",
                               "1e-45",
                               "7e-46",
                               "1e-46",
                               "1.1754943e-38",
                               "1.17549429e-38",
                               "1e-40",
                               "4.9e-324",
                               "2e-324",
                               "3e-324",
                               "2.2250738585072011e-308",
                               "1e-400",
                               "-1e-400",
                               "0e999999",
                               "0.000000000000000000000000000000000000000000000000000001",
                               "16777217",
                               "16777219",
                               "33554433.0",
                               "9007199254740993",
                               "9007199254740992.5",
                               "1.00000005960464477539062500000000",
                               "1.00000005960464477539062500000001",
                               "1.0000001788139343261718750",
                               "0.1",
                               "0.3",
                               "1e22",
                               "1e23",
                               "8.5e22",
                               "123456789012345678901234567890",
                               "0.123456789012345678901234567890",
                               "100000000000000000000000000000000000000",
                               "00000000000000000000000000000000000001.5",
                               "1.50000000000000000000000000000000000000000000000000000000",
                               "6.3382531e+29",
                               "1 ",
                               "1\n",
                               "7\r"};
  for (const char* text : table) Compare<TypeParam>(text);
}

TYPED_TEST(ExtractNumberTest, EmbeddedNullEndsANumber) {
  Compare<TypeParam>(std::string("1\0002", 3));
}

TYPED_TEST(ExtractNumberTest, RandomSpellingsReadAsAStreamReadsThem) {
  std::mt19937 random(1);
  const std::string letters = "0123456789012345678901234567890123456789..eE+-+- ,xn";
  for (int i = 0; i < 100'000 && !this->HasFailure(); ++i) {
    std::string text;
    for (std::size_t left = random() % 14; left > 0; --left) {
      text += letters[random() % letters.size()];
    }
    Compare<TypeParam>(text);
  }
}

TYPED_TEST(ExtractNumberTest, RandomNumbersReadAsAStreamReadsThem) {
  std::mt19937_64 random(2);
  for (int i = 0; i < 100'000 && !this->HasFailure(); ++i) {
    std::ostringstream text;
    const auto any = std::bit_cast<double>(random());
    const auto anyFloat = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
    const double wide = i % 2 == 0 ? static_cast<double>(anyFloat) : any;
    const double value = i % 3 == 0 ? static_cast<double>(random()) * 1e-19 : wide;
    text << std::scientific << std::setprecision(static_cast<int>(random() % 20)) << value;
    Compare<TypeParam>(text.str());
  }
}

TYPED_TEST(ExtractNumberTest, NumbersOfSimulatorsReadAsAStreamReadsThem) {
  static constexpr const char* kTails[] = {"",  " ",  "  1.0", "5", ".",
                                           "e", "-1", "\n",    "x", "      "};
  std::mt19937 random(5);
  for (int i = 0; i < 100'000 && !this->HasFailure(); ++i) {
    std::string text = random() % 2 == 0 ? "-" : "";
    text += static_cast<char>('0' + random() % 10);
    text += '.';
    for (std::size_t left = random() % 11; left > 0; --left) {
      text += static_cast<char>('0' + random() % 10);
    }
    text += "eE"[random() % 2];
    text += "+-"[random() % 2];
    text += static_cast<char>('0' + random() % 5);
    text += static_cast<char>('0' + random() % 10);
    Compare<TypeParam>(text + kTails[random() % std::size(kTails)]);
  }
}

TYPED_TEST(ExtractNumberTest, EveryCharacterAtEveryPlaceOfAFloat) {
  for (const std::string_view number : {"1.2345678E+05 ", "-9.0000000e-17 "}) {
    for (std::size_t place = 0; place < number.size(); ++place) {
      for (int c = 0; c < 256; ++c) {
        std::string text(number);
        text[place] = static_cast<char>(c);
        Compare<TypeParam>(text);
        Compare<TypeParam>(text.substr(0, place + 1));
      }
    }
  }
}

TYPED_TEST(ExtractNumberTest, LongDigitStringsReadAsAStreamReadsThem) {
  std::mt19937 random(3);
  for (int i = 0; i < 2'000 && !this->HasFailure(); ++i) {
    std::string text;
    for (std::size_t left = random() % 60; left > 0; --left)
      text += static_cast<char>('0' + random() % 10);
    if (random() % 2 == 0) text.insert(random() % (text.size() + 1), 1, '.');
    if (random() % 2 == 0) {
      text.append("e").append(std::to_string(static_cast<int>(random() % 80) - 60));
    }
    Compare<TypeParam>(text);
  }
}

TEST(ExtractNumberTextTest, FloatsMidwayBetweenNeighboursRoundOnce) {
  std::mt19937 random(4);
  for (int i = 0; i < 50'000; ++i) {
    const float low = std::abs(std::bit_cast<float>(static_cast<std::uint32_t>(random())));
    if (!std::isfinite(low)) continue;
    const double middle =
        (static_cast<double>(low) + static_cast<double>(std::nextafter(low, 2 * low + 1))) / 2;
    std::ostringstream text;
    text << std::setprecision(16 + static_cast<int>(random() % 40)) << middle;
    Compare<float>(text.str());
    if (HasFailure()) break;
  }
}

TEST(ExtractNumberTextTest, ShortNumbersMidwayBetweenFloatsRoundOnce) {
  for (const char* const text : {"1.6777217e+07 ", "1.6777219e+07 ", "-3.3554434e+07 ",
                                 "3.3554438e+07       ", "5.0000000e-01        "}) {
    Compare<float>(text);
  }
}

TEST(ExtractNumberTextTest, ManyDigitsTakeLinearTime) {
  std::string text = "1." + std::string(20'000'000, '3');
  std::string_view rest = text;
  double value = 0;
  EXPECT_TRUE(ExtractNumber(rest, value));
  EXPECT_EQ(value, 4.0 / 3);
  EXPECT_EQ(rest, "");
}

}  // namespace
