#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace Sumara {

/// The value of `mantissa` times a power of ten, where one multiplication or division of numbers
/// that a double holds gives it: it is rounded once then.
class DecimalValue {
 public:
  /// \return false if it takes more care; `value` stays then.
  template <class T>
  static bool Of(std::uint64_t mantissa, std::ptrdiff_t exponent, T& value) {
    if (mantissa > kLargestExact) return false;
    if (exponent < -kLargestPower || exponent > kLargestPower) return false;
    const auto exact = static_cast<double>(mantissa);
    return Narrow(exponent < 0 ? exact / kPowers[-exponent] : exact * kPowers[exponent], value);
  }

 private:
  static constexpr std::uint64_t kLargestExact = std::uint64_t{1} << 53;
  static constexpr std::ptrdiff_t kLargestPower = 22;  // of ten that a double holds
  static constexpr double kPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                       1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                       1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

  static bool Narrow(double wide, double& value) {
    value = wide;
    return true;
  }

  /// Rounding twice is harmless unless the double lies midway between two floats.
  static bool Narrow(double wide, float& value) {
    constexpr std::uint64_t kDroppedBits = (std::uint64_t{1} << 29) - 1;
    constexpr std::uint64_t kMidway = std::uint64_t{1} << 28;
    const bool inRange = wide == 0 || (wide >= double{std::numeric_limits<float>::min()} &&
                                       wide <= double{std::numeric_limits<float>::max()});
    if (!inRange || (std::bit_cast<std::uint64_t>(wide) & kDroppedBits) == kMidway) return false;
    value = static_cast<float>(wide);
    return true;
  }
};

}  // namespace Sumara
