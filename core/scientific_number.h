#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "core/eight_digits.h"
#include "core/text.h"

namespace Sumara {

/// Thirteen characters that may be a number as floats are written, "1.2345678E+05".
///
/// Nearly all numbers of text files look so. That they do is confirmed for all characters at once;
/// then the place of each part is known.
struct FloatText {
  static constexpr std::size_t kSize = 13;
  static constexpr int kDigits = 7;  ///< behind the point

  const char* at;

  bool IsNumber() const {
    // What differs from zero in a digit's place must not be above 9, in any other place nothing.
    constexpr std::uint64_t kFront = EightOf("0.000000");
    constexpr std::uint64_t kFrontLimits = 0x7676767676767F76u;
    constexpr std::uint64_t kBack = EightOf("0000E+00");
    constexpr std::uint64_t kBackLimits = 0x76767F7F76767676u;
    constexpr std::uint64_t kSmallLetter = std::uint64_t{'e' - 'E'} << 32;
    const std::uint64_t minus = HasMinus() ? std::uint64_t{'+' ^ '-'} << 40 : 0;
    const std::uint64_t front = LoadEight(at) ^ kFront;
    const std::uint64_t back = (LoadEight(at + kBackStart) & ~kSmallLetter) ^ kBack ^ minus;
    const std::uint64_t above = (front + kFrontLimits) | front | (back + kBackLimits) | back;
    return (above & kTopBits) == 0;
  }

  /// All eight digits, without the point.
  std::uint64_t Mantissa() const {
    return JoinEightDigits(LoadEight(at + 2) << 8 | static_cast<unsigned char>(*at));
  }

  /// The exponent as it is written.
  int Power() const {
    const int magnitude = 10 * (at[11] - '0') + (at[12] - '0');
    return HasMinus() ? -magnitude : magnitude;
  }

 private:
  static constexpr std::size_t kBackStart = kSize - 8;
  static constexpr std::uint64_t kTopBits = 0x8080808080808080u;

  bool HasMinus() const { return at[10] == '-'; }
};

/// The size of a float's text, with its sign, that `text` begins with; 0 if it begins with anything
/// else.
inline std::size_t FloatTextSize(std::string_view text) {
  const std::size_t sign = !text.empty() && text.front() == '-' ? 1 : 0;
  const std::size_t size = sign + FloatText::kSize;
  if (text.size() < size || !FloatText{text.data() + sign}.IsNumber()) return 0;
  return text.size() == size || !IsDigit(text[size]) ? size : 0;
}

/// The parts of a number as simulators write it, "-1.2345678E+05": one digit, a point, at least one
/// more, and an exponent of two.
struct ScientificNumber {
  std::size_t size = 0;  ///< of the text; 0 if it begins with anything else
  bool negative = false;
  unsigned first = 0;          ///< the digit in front of the point
  std::size_t digits = 0;      ///< behind the point
  std::uint64_t fraction = 0;  ///< the first of those as characters
  int power = 0;               ///< the exponent

  static ScientificNumber At(std::string_view text) {
    ScientificNumber number;
    number.negative = !text.empty() && text.front() == '-';
    const std::size_t sign = number.negative ? 1 : 0;
    if (text.size() < sign + 2 + kBlock) return number;
    const char* const at = text.data() + sign;
    if (!IsDigit(at[0]) || at[1] != '.') return number;
    number.first = static_cast<unsigned>(at[0] - '0');
    number.fraction = LoadEight(at + 2);
    std::size_t count = CountLeadingDigits(number.fraction);
    if (count == kBlock) count += CountDigits(text.substr(sign + 2 + kBlock));
    number.TakeExponent(text, sign + 2, count);
    return number;
  }

  /// Whether there are so few digits that `Mantissa` gives all of them as a number.
  bool IsShort() const { return digits <= 8; }

  std::uint64_t Mantissa() const {
    constexpr std::uint64_t kScales[] = {1,       10,        100,        1'000,      10'000,
                                         100'000, 1'000'000, 10'000'000, 100'000'000};
    const std::size_t missing = kBlock - digits;
    const std::uint64_t word =
        missing == 0 ? fraction : fraction << 8 * missing | kEightZeros >> 8 * digits;
    return first * kScales[digits] + JoinEightDigits(word);
  }

 private:
  static constexpr std::size_t kBlock = 8;

  void TakeExponent(std::string_view text, std::size_t at, std::size_t count) {
    constexpr std::size_t kExponentSize = 4;
    digits = count;
    const std::size_t end = at + count + kExponentSize;
    if (count == 0 || text.size() < end) return;
    const char* const tail = text.data() + at + count;
    if ((tail[0] != 'e' && tail[0] != 'E') || (tail[1] != '+' && tail[1] != '-')) return;
    if (!IsDigit(tail[2]) || !IsDigit(tail[3])) return;
    const int magnitude = 10 * (tail[2] - '0') + (tail[3] - '0');
    power = tail[1] == '-' ? -magnitude : magnitude;
    if (text.size() == end || !IsDigit(text[end])) size = end;
  }
};

}  // namespace Sumara
