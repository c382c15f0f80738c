#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Tabulon {

/// Figures that a header holds. Element `v * secondary + s` belongs to the v-th variable asked for
/// at the s-th secondary value; with one axis `secondary` is 1.
struct StoredFigures {
  std::size_t secondary = 1;
  std::vector<double> minimum;
  std::vector<double> maximum;
  std::vector<double> mean;
  std::vector<double> minimumTime;  ///< value of the primary axis where the extreme stands
  std::vector<double> maximumTime;
  /// Values of all variables of the group where one has its extremes, if that was asked for:
  /// element `v * secondary + s` is the v-th variable of the group.
  std::vector<double> atMinimum;
  std::vector<double> atMaximum;
};

}  // namespace Tabulon
