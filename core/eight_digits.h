#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "core/text.h"

// Eight characters of a number at a time: the first stands in the lowest byte of a word.

namespace Sumara {

/// Eight characters as a word.
inline std::uint64_t LoadEight(const char* at) {
  std::uint64_t word;
  std::memcpy(&word, at, sizeof(word));
  return word;
}

/// The word of eight characters that are known.
constexpr std::uint64_t EightOf(const char (&text)[9]) {
  std::uint64_t word = 0;
  for (int i = 7; i >= 0; --i) word = word << 8 | static_cast<unsigned char>(text[i]);
  return word;
}

inline constexpr std::uint64_t kEightZeros = 0x3030303030303030u;

/// Sets the top bit of the first byte that is no digit, and maybe of later ones; no bit below it.
constexpr std::uint64_t MarkOthers(std::uint64_t word) {
  constexpr std::uint64_t kBeyondNine = 0x7676767676767676u;  // carries a byte above 9 to its top
  constexpr std::uint64_t kTopBits = 0x8080808080808080u;
  word ^= kEightZeros;
  return ((word + kBeyondNine) | word) & kTopBits;
}

/// How many digits the characters begin with.
constexpr std::size_t CountLeadingDigits(std::uint64_t word) {
  return static_cast<std::size_t>(std::countr_zero(MarkOthers(word))) / 8;  // of no bit 64
}

/// The value of eight digits: pairs, then fours, then all.
constexpr std::uint64_t JoinEightDigits(std::uint64_t word) {
  word -= kEightZeros;
  word = word * 10 + (word >> 8);
  word = ((word & 0x000000FF000000FFu) * 0x000F424000000064u +
          ((word >> 16) & 0x000000FF000000FFu) * 0x0000271000000001u) >>
         32;
  return word & 0xFFFFFFFFu;
}

/// How many digits `text` begins with; looks at eight characters at a time.
inline std::size_t CountDigits(std::string_view text) {
  constexpr std::size_t kBlock = 8;
  std::size_t at = 0;
  for (; text.size() - at >= kBlock; at += kBlock) {
    const std::size_t count = CountLeadingDigits(LoadEight(text.data() + at));
    if (count < kBlock) return at + count;
  }
  while (at < text.size() && IsDigit(text[at])) ++at;
  return at;
}

}  // namespace Sumara
