#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

#include "core/numbers.h"
#include "core/text.h"

namespace Sumara {

/// How many digits `text` begins with; looks at eight characters at a time.
inline std::size_t CountDigits(std::string_view text) {
  constexpr std::size_t kBlock = 8;
  constexpr std::uint64_t kZeros = 0x3030303030303030u;
  constexpr std::uint64_t kBeyondNine =
      0x7676767676767676u;  // carries a byte above 9 into its top bit
  constexpr std::uint64_t kTopBits = 0x8080808080808080u;
  std::size_t at = 0;
  for (; text.size() - at >= kBlock; at += kBlock) {
    std::uint64_t block;
    std::memcpy(&block, text.data() + at, kBlock);
    block ^= kZeros;
    const std::uint64_t others = ((block + kBeyondNine) | block) & kTopBits;
    if (others != 0) return at + static_cast<std::size_t>(std::countr_zero(others)) / 8;
  }
  while (at < text.size() && IsDigit(text[at])) ++at;
  return at;
}

/// The size of a number in scientific notation of everyday magnitude, "-1.2345678E+05", that
/// `text` begins with; 0 if it begins with anything else.
///
/// This is how simulators write. Only the count of the fraction's digits is computed, the other
/// places are guesses to be confirmed, so that the processor need not wait from part to part.
inline std::size_t ScientificNumberSize(std::string_view text) {
  constexpr std::size_t kExponentSize = 4;
  const auto digit = [text](std::size_t at) { return IsDigit(text[at]); };
  const std::size_t first = !text.empty() && text.front() == '-' ? 1 : 0;
  if (text.size() < first + 2 + kExponentSize || !digit(first) || text[first + 1] != '.') return 0;
  const std::size_t end = first + 2 + CountDigits(text.substr(first + 2));
  const std::size_t size = end + kExponentSize;
  if (text.size() < size || (text[end] != 'E' && text[end] != 'e')) return 0;
  if (text[end + 1] != '+' && text[end + 1] != '-') return 0;
  // Up to 29: within the range of a float.
  if (text[end + 2] < '0' || text[end + 2] > '2' || !digit(end + 3)) return 0;
  return size == text.size() || IsSpace(text[size]) ? size : 0;
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
