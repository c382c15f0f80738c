#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "core/eight_digits.h"
#include "core/text.h"

namespace Sumara {

/// The parts of a number as simulators write it, "-1.2345678E+05": one digit, a point, at least one
/// more, and an exponent of two.
///
/// The places of all parts are guesses that are confirmed, so that the processor need not wait from
/// part to part; seven digits behind the point, as floats are written, is the first guess.
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
    std::memcpy(&number.fraction, at + 2, kBlock);
    const std::uint64_t others = MarkOthers(number.fraction);
    if (others == kAllButSeven) {
      number.TakeExponent(text, sign + 2, 7);
    } else if (others == 0) {
      number.TakeExponent(text, sign + 2, kBlock + CountDigits(text.substr(sign + 2 + kBlock)));
    } else {
      number.TakeExponent(text, sign + 2, static_cast<std::size_t>(std::countr_zero(others)) / 8);
    }
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
  static constexpr std::uint64_t kAllButSeven = std::uint64_t{1} << 63;

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
