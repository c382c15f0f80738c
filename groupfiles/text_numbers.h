#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

#include "core/eight_digits.h"
#include "core/numbers.h"
#include "core/scientific_number.h"
#include "core/text.h"

namespace Sumara {

/// Whether a number with this exponent of ten and one digit in front of the point is surely within
/// the range of a float.
constexpr bool IsSafePower(int power) {
  constexpr int kSafePower = 29;
  return power >= -kSafePower && power <= kSafePower;
}

/// The size of a number in scientific notation of everyday magnitude that `text` begins with; 0 if
/// it begins with anything else.
inline std::size_t ScientificNumberSize(std::string_view text) {
  const auto ends = [text](std::size_t size) { return size == text.size() || IsSpace(text[size]); };
  if (const std::size_t size = FloatTextSize(text)) {
    const FloatText number{text.data() + (size - FloatText::kSize)};
    return IsSafePower(number.Power()) && ends(size) ? size : 0;
  }
  const ScientificNumber number = ScientificNumber::At(text);
  if (!IsSafePower(number.power)) return 0;
  return ends(number.size) ? number.size : 0;
}

/// How far `text` begins with a number that surely converts to U, by its characters; 0 if they do
/// not tell.
template <class U>
std::size_t PlainNumberSize(std::string_view text) {
  if constexpr (std::is_floating_point_v<U>) {
    if (const std::size_t size = ScientificNumberSize(text)) return size;
  }
  std::size_t at = 0;
  const auto is = [&](char a, char b) {
    return at < text.size() && (text[at] == a || text[at] == b);
  };
  if (is('-', '+')) ++at;
  std::size_t magnitude = CountDigits(text.substr(at));  // the value is below ten to this power
  at += magnitude;
  if constexpr (std::is_floating_point_v<U>) {
    constexpr std::size_t kSafeMagnitude = std::is_same_v<U, float> ? 38 : 300;
    constexpr std::size_t kMostExponentDigits = 3;
    std::size_t digits = magnitude;
    if (is('.', '.')) {
      const std::size_t fraction = CountDigits(text.substr(++at));
      digits += fraction;
      at += fraction;
    }
    if (digits == 0) return 0;
    if (is('e', 'E')) {
      ++at;
      const bool negative = is('-', '-');
      if (is('-', '+')) ++at;
      const std::size_t first = at;
      std::size_t power = 0;
      for (; at < text.size() && IsDigit(text[at]); ++at) {
        if (at - first == kMostExponentDigits) return 0;
        power = 10 * power + static_cast<std::size_t>(text[at] - '0');
      }
      if (at == first) return 0;
      if (!negative) magnitude += power;
    }
    if (magnitude > kSafeMagnitude) return 0;
  } else {
    constexpr std::size_t kSafeDigits = std::is_same_v<U, short> ? 4 : 9;
    if (magnitude == 0 || magnitude > kSafeDigits) return 0;
  }
  return at == text.size() || IsSpace(text[at]) ? at : 0;
}

/// Passes over one number of `text`, as `ExtractNumber<U>` does, without its value.
///
/// Most numbers show by their characters that they convert; only the others are converted. A reader
/// that wants one column of a text file spends its time here.
template <class U>
bool SkipNumber(std::string_view& text) {
  SkipSpace(text);
  if (const std::size_t size = PlainNumberSize<U>(text)) {
    text.remove_prefix(size);
    return true;
  }
  U unused{};
  return ExtractNumber(text, unused);
}

}  // namespace Sumara
