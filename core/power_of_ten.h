#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace Sumara {

__extension__ using Uint128 = unsigned __int128;

/// The leading 64 bits of powers of ten, cut off: 10^k is at least `Mantissa(k)` * 2^`Exponent(k)`,
/// and less than the same with a mantissa greater by 2.
class PowersOfTen {
 public:
  static constexpr int kLargest = 64;

  constexpr PowersOfTen() {
    constexpr Uint128 kTopBit = Uint128{1} << 127;
    Uint128 up = kTopBit;  // 128 bits, so that the cuts do not add up to anything that counts
    Uint128 down = kTopBit;
    Set(0, up);
    for (int k = 1; k <= kLargest; ++k) {
      const Uint128 quarter = up >> 2;  // ten is 5/4, and a power of two
      const bool carries = up > ~quarter;
      up = carries ? ((up >> 1) + (quarter >> 1)) : up + quarter;
      Set(k, up);
      down = TakeFourFifths(down);
      Set(-k, down);
    }
  }

  constexpr std::uint64_t Mantissa(int k) const { return m_mantissas[Index(k)]; }
  static constexpr int Exponent(int k) { return ((k * 217706) >> 16) - 63; }  // by log2(10)

 private:
  static constexpr std::size_t Index(int k) {
    const int index = k + kLargest;
    return static_cast<std::size_t>(index);
  }

  static constexpr Uint128 TakeFourFifths(Uint128 value) {
    const Uint128 fifth = value / 5;
    const Uint128 rest = value % 5;
    const Uint128 result = 4 * fifth + 4 * rest / 5;
    return (result >> 127) != 0 ? result : 8 * fifth + 8 * rest / 5;
  }

  constexpr void Set(int k, Uint128 power) {
    m_mantissas[Index(k)] = static_cast<std::uint64_t>(power >> 64);
  }

  std::array<std::uint64_t, 2 * kLargest + 1> m_mantissas{};
};

inline constexpr PowersOfTen kPowersOfTen;

}  // namespace Sumara
