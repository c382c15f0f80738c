#pragma once

#include <cstdint>
#include <vector>

namespace Tabulon {

/// Figures of columns, one element a column. Values that are not finite are counted and otherwise
/// left out.
struct Reduction {
  std::vector<double> minimum;  ///< NaN, as all figures, where no value is finite
  std::vector<double> maximum;
  /// Row of the file, the first of equals; -1 where no value is finite.
  std::vector<std::int64_t> minimumRow;
  std::vector<std::int64_t> maximumRow;
  std::vector<double> mean;
  /// Standard deviation of the population: sums of a block's distances from a value near its mean
  /// and of their squares, blocks joined pairwise, in double.
  std::vector<double> deviation;
  std::vector<std::int64_t> count;      ///< of finite values
  std::vector<std::int64_t> notFinite;  ///< of the others
};

}  // namespace Tabulon
