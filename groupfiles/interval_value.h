#pragma once

#include <cstdint>

namespace Sumara {

/// A value of an interval axis. The product is rounded before the sum on every processor: the
/// library is built without contraction of the two into one operation, which rounds once.
constexpr double IntervalValue(double minimum, double step, std::uint64_t index) {
  return static_cast<double>(index) * step + minimum;
}

}  // namespace Sumara
