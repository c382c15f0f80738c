#include "tables/column_figures.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <type_traits>

namespace Tabulon {
namespace {

constexpr std::size_t kSliceColumns = 64;  // sums of so many stay in the processor's nearest cache
constexpr std::size_t kSliceRows = 512;
constexpr std::size_t kFewColumns = 8;  // so many fill the processor's registers row by row

template <class T>
bool IsFinite(T value) {
  if constexpr (std::is_floating_point_v<T>) {
    return std::isfinite(value);
  } else {
    return true;
  }
}

}  // namespace

/// Sums over a slice of a block, an element a column.
template <class T>
struct ColumnFigures<T>::BlockSums {
  std::array<double, kSliceColumns> shift;
  std::array<double, kSliceColumns> sum;
  std::array<double, kSliceColumns> squares;
  std::array<T, kSliceColumns> lowest;
  std::array<T, kSliceColumns> highest;
  std::array<std::int64_t, kSliceColumns> count;

  /// Adds all rows as if they were finite: one that is not shows in the sum.
  void AddRows(const ValueBlock<T>& slice) {
    for (std::size_t c = 0; c < slice.columns; ++c) {
      sum[c] = squares[c] = 0.0;
      lowest[c] = highest[c] = slice.values[c * slice.apart];
      count[c] = static_cast<std::int64_t>(slice.rows);
    }
    if (slice.apart == 1 && slice.columns >= kFewColumns) {
      for (std::size_t r = 0; r < slice.rows; ++r) AddRow(slice.values + r * slice.pitch, slice);
    } else {
      for (std::size_t c = 0; c < slice.columns; ++c) AddColumn(slice, c);
    }
  }

  void AddRow(const T* values, const ValueBlock<T>& slice) {
    for (std::size_t c = 0; c < slice.columns; ++c) {
      const T value = values[c];
      const double distance = static_cast<double>(value) - shift[c];
      sum[c] += distance;
      squares[c] += distance * distance;
      lowest[c] = value < lowest[c] ? value : lowest[c];
      highest[c] = highest[c] < value ? value : highest[c];
    }
  }

  /// Four sums run side by side: one waits for its own last addition.
  void AddColumn(const ValueBlock<T>& slice, std::size_t c) {
    constexpr std::size_t kLanes = 4;
    const T* const values = slice.values + c * slice.apart;
    std::array<double, kLanes> sums{};
    std::array<double, kLanes> squareSums{};
    std::array<T, kLanes> least;
    std::array<T, kLanes> most;
    least.fill(*values);
    most.fill(*values);
    const auto add = [&](std::size_t r, std::size_t lane) {
      const T value = values[r * slice.pitch];
      const double distance = static_cast<double>(value) - shift[c];
      sums[lane] += distance;
      squareSums[lane] += distance * distance;
      least[lane] = value < least[lane] ? value : least[lane];
      most[lane] = most[lane] < value ? value : most[lane];
    };
    std::size_t r = 0;
    for (; r + kLanes <= slice.rows; r += kLanes) {
      for (std::size_t lane = 0; lane < kLanes; ++lane) add(r + lane, lane);
    }
    for (; r < slice.rows; ++r) add(r, 0);
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
      sum[c] += sums[lane];
      squares[c] += squareSums[lane];
    }
    lowest[c] = *std::min_element(least.begin(), least.end());
    highest[c] = *std::max_element(most.begin(), most.end());
  }

  /// The same of one column, with a look at each value.
  void AddFinite(const ValueBlock<T>& slice, std::size_t c) {
    sum[c] = squares[c] = 0.0;
    count[c] = 0;
    for (std::size_t r = 0; r < slice.rows; ++r) {
      const T value = slice.values[r * slice.pitch + c * slice.apart];
      if (!IsFinite(value)) continue;
      if (count[c] == 0) lowest[c] = highest[c] = value;
      if (!IsFinite(shift[c])) shift[c] = static_cast<double>(value);
      const double distance = static_cast<double>(value) - shift[c];
      sum[c] += distance;
      squares[c] += distance * distance;
      lowest[c] = std::min(lowest[c], value);
      highest[c] = std::max(highest[c], value);
      ++count[c];
    }
  }
};

template <class T>
void ColumnFigures<T>::Join(Column& column, const BlockSums& sums, std::size_t c) {
  const auto added = static_cast<double>(sums.count[c]);
  const double mean = sums.shift[c] + sums.sum[c] / added;
  const double difference = sums.squares[c] - sums.sum[c] * sums.sum[c] / added;
  const double squares =
      std::isnan(difference) ? std::numeric_limits<double>::infinity() : std::max(0.0, difference);
  const auto before = static_cast<double>(column.count);
  const double total = before + added;
  const double distance = mean - column.mean;
  column.mean = column.count == 0 ? mean : column.mean + distance * (added / total);
  column.squares +=
      squares + (column.count == 0 ? 0.0 : distance * distance * (before * added / total));
  column.count += sums.count[c];
}

template <class T>
void ColumnFigures<T>::AddSlice(const ValueBlock<T>& slice, std::size_t firstColumn,
                                std::uint64_t firstRow, std::uint64_t step) {
  BlockSums sums;
  for (std::size_t c = 0; c < slice.columns; ++c) {
    const Column& column = m_columns[firstColumn + c];
    sums.shift[c] =
        column.count > 0 ? column.mean : static_cast<double>(slice.values[c * slice.apart]);
  }
  sums.AddRows(slice);
  // The first of equal values, itself: zeros have a sign, which the lanes do not heed.
  const auto take = [&](std::size_t c, T value, double& extreme, std::int64_t& row) {
    std::size_t r = 0;
    while (slice.values[r * slice.pitch + c * slice.apart] != value) ++r;
    extreme = static_cast<double>(slice.values[r * slice.pitch + c * slice.apart]);
    row = static_cast<std::int64_t>(firstRow + r * step);
  };
  for (std::size_t c = 0; c < slice.columns; ++c) {
    Column& column = m_columns[firstColumn + c];
    if (!IsFinite(sums.sum[c]) || !IsFinite(sums.squares[c])) sums.AddFinite(slice, c);
    column.notFinite += static_cast<std::int64_t>(slice.rows) - sums.count[c];
    if (sums.count[c] == 0) continue;
    const auto lowest = static_cast<double>(sums.lowest[c]);
    const auto highest = static_cast<double>(sums.highest[c]);
    if (column.minimumRow < 0 || lowest < column.minimum) {
      take(c, sums.lowest[c], column.minimum, column.minimumRow);
    }
    if (column.maximumRow < 0 || highest > column.maximum) {
      take(c, sums.highest[c], column.maximum, column.maximumRow);
    }
    Join(column, sums, c);
  }
}

template <class T>
void ColumnFigures<T>::Add(const ValueBlock<T>& block, std::uint64_t firstRow, std::uint64_t step) {
  for (std::size_t r = 0; r < block.rows; r += kSliceRows) {
    for (std::size_t c = 0; c < block.columns; c += kSliceColumns) {
      const ValueBlock<T> slice{
          block.values + r * block.pitch + c * block.apart, std::min(kSliceRows, block.rows - r),
          std::min(kSliceColumns, block.columns - c), block.pitch, block.apart};
      AddSlice(slice, c, firstRow + r * step, step);
    }
  }
}

template <class T>
Reduction ColumnFigures<T>::Result() const {
  constexpr double kNothing = std::numeric_limits<double>::quiet_NaN();
  Reduction result;
  for (const Column& column : m_columns) {
    const bool none = column.count == 0;
    result.minimum.push_back(none ? kNothing : column.minimum);
    result.maximum.push_back(none ? kNothing : column.maximum);
    result.minimumRow.push_back(column.minimumRow);
    result.maximumRow.push_back(column.maximumRow);
    result.mean.push_back(none ? kNothing : column.mean);
    result.deviation.push_back(
        none ? kNothing : std::sqrt(column.squares / static_cast<double>(column.count)));
    result.count.push_back(column.count);
    result.notFinite.push_back(column.notFinite);
  }
  return result;
}

template class ColumnFigures<float>;
template class ColumnFigures<double>;
template class ColumnFigures<int>;

}  // namespace Tabulon
