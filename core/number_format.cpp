#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "core/numbers.h"
#include "core/power_of_ten.h"

namespace Sumara {
namespace {

constexpr int kFewestDigits = 2;  // a point is written
constexpr int kMostDigits = 16;

constexpr std::array<std::uint64_t, kMostDigits + 1> kIntegerPowers = [] {
  std::array<std::uint64_t, kMostDigits + 1> powers{1};
  for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = 10 * powers[i - 1];
  return powers;
}();

/// A positive number as a whole number of so many digits, times a power of ten.
struct Decimal {
  std::uint64_t digits = 0;
  int exponent = 0;  ///< of the first digit
};

/// Rounds `value` * 10^`scale` to the nearest whole number, and halves to the even one.
///
/// The product with the cut power of ten is too small by less than 3 units of its upper half; for
/// the powers that fit their 64 bits it is exact.
/// \return false if that leaves open which way to round.
bool ScaleAndRound(double value, int scale, std::uint64_t& result) {
  constexpr std::uint64_t kMargin = 3;
  constexpr int kLargestExact = 27;
  const auto bits = std::bit_cast<std::uint64_t>(value);
  const std::uint64_t mantissa = (bits | (std::uint64_t{1} << 52)) << 11;
  const int exponent = static_cast<int>((bits >> 52) & 0x7FF) - 1023 - 63;
  const Uint128 product = Uint128{mantissa} * kPowersOfTen.Mantissa(scale);
  const auto upper = static_cast<std::uint64_t>(product >> 64);
  const int fractionBits = -(exponent + PowersOfTen::Exponent(scale)) - 64;
  const std::uint64_t half = std::uint64_t{1} << (fractionBits - 1);
  const std::uint64_t fraction = upper & (2 * half - 1);
  const std::uint64_t whole = upper >> fractionBits;
  // No branches: which way to round is as good as random.
  const bool tieGoesUp = (static_cast<std::uint64_t>(product) | (whole & 1)) != 0;
  const bool isUp = static_cast<int>(fraction > half) |
                    (static_cast<int>(fraction == half) & static_cast<int>(tieGoesUp));
  result = whole + static_cast<std::uint64_t>(isUp);
  const bool isExact = scale >= 0 && scale <= kLargestExact;
  return isExact || fraction > half || fraction + kMargin <= half;
}

/// \return false where the exact road has to be taken.
bool RoundToDigits(double value, int count, Decimal& decimal) {
  const auto biased = static_cast<int>(std::bit_cast<std::uint64_t>(value) >> 52);
  const int binaryExponent = biased - 1023;
  decimal.exponent = (binaryExponent * 78913) >> 18;  // by log10(2); may be one too small
  const auto power = static_cast<std::size_t>(count);
  for (int attempt = 0; attempt < 2; ++attempt, ++decimal.exponent) {
    const int scale = count - 1 - decimal.exponent;
    if (std::abs(scale) > PowersOfTen::kLargest) return false;
    if (!ScaleAndRound(value, scale, decimal.digits)) return false;
    if (decimal.digits < kIntegerPowers[power]) return true;
  }
  return false;
}

bool IsNormalOrZero(double value) { return value == 0 || std::fpclassify(value) == FP_NORMAL; }

constexpr std::array<char, 200> kPairs = [] {
  std::array<char, 200> pairs{};
  for (std::size_t i = 0; i < 100; ++i) {
    pairs[2 * i] = static_cast<char>('0' + i / 10);
    pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
  }
  return pairs;
}();

void WritePair(char* at, std::uint32_t number) {
  std::memcpy(at, &kPairs[std::size_t{2} * number], 2);
}

void WriteEightDigits(char* at, std::uint64_t digits) {
  const auto number = static_cast<std::uint32_t>(digits);
  const std::uint32_t upper = number / 10'000;
  const std::uint32_t lower = number % 10'000;
  WritePair(at, upper / 100);
  WritePair(at + 2, upper % 100);
  WritePair(at + 4, lower / 100);
  WritePair(at + 6, lower % 100);
}

/// Writes `count` digits that end before `end`, eight at a time while there are as many.
void WriteDigits(char* end, std::uint64_t number, int count) {
  constexpr int kEight = 8;
  for (; count >= kEight; count -= kEight, number /= kIntegerPowers[kEight]) {
    end -= kEight;
    WriteEightDigits(end, number % kIntegerPowers[kEight]);
  }
  for (; count > 0; --count, number /= 10) *--end = static_cast<char>('0' + number % 10);
}

/// Writes a number whose exponent has two digits.
char* WriteDecimal(char* at, const Decimal& decimal, int count, char exponentLetter) {
  WriteDigits(at + 1 + count, decimal.digits, count);
  at[0] = at[1];
  at[1] = '.';
  at += count + 1;
  *at++ = exponentLetter;
  *at++ = decimal.exponent < 0 ? '-' : '+';
  WritePair(at, static_cast<std::uint32_t>(std::abs(decimal.exponent)));
  return at + 2;
}

/// \return the end of the number, or null where the exact road has to be taken.
char* WriteFast(char* at, double value, int count, char exponentLetter) {
  if (count < kFewestDigits || count > kMostDigits || !IsNormalOrZero(value)) return nullptr;
  Decimal decimal;
  if (value != 0 && !RoundToDigits(std::fabs(value), count, decimal)) return nullptr;
  *at = '-';
  at += std::signbit(value) ? 1 : 0;
  return WriteDecimal(at, decimal, count, exponentLetter);
}

void AppendExact(std::string& text, double value, std::chars_format format, int precision) {
  constexpr std::size_t kLargestInteger = 320;  // digits before the point, sign, exponent
  const std::size_t size = text.size();
  text.resize(size + kLargestInteger + static_cast<std::size_t>(precision));
  const auto [end, error] =
      std::to_chars(text.data() + size, text.data() + text.size(), value, format, precision);
  text.resize(static_cast<std::size_t>(end - text.data()));
}

char ToUpper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

}  // namespace

char* WriteScientific(char* at, double value, int precision, bool upperCase) {
  if (char* const end = WriteFast(at, value, precision + 1, upperCase ? 'E' : 'e')) return end;
  char* const end =
      std::to_chars(at, at + kLongestScientific, value, std::chars_format::scientific, precision)
          .ptr;
  if (upperCase) std::transform(at, end, at, ToUpper);
  return end;
}

void AppendScientific(std::string& text, double value, int precision, bool upperCase) {
  if (precision <= kMostWrittenPrecision) {
    std::array<char, kLongestScientific> buffer;
    text.append(buffer.data(), WriteScientific(buffer.data(), value, precision, upperCase));
    return;
  }
  const auto start = static_cast<std::ptrdiff_t>(text.size());
  AppendExact(text, value, std::chars_format::scientific, precision);
  if (upperCase) std::transform(text.begin() + start, text.end(), text.begin() + start, ToUpper);
}

void AppendFixed(std::string& text, double value, int precision) {
  AppendExact(text, value, std::chars_format::fixed, precision);
}

}  // namespace Sumara
