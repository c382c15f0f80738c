#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tables/reduction.h"

namespace Tabulon {

/// Values of columns, side by side: that of column c in row r at `values[r * pitch + c * apart]`.
template <class T>
struct ValueBlock {
  const T* values = nullptr;
  std::size_t rows = 0;
  std::size_t columns = 0;
  std::size_t pitch = 0;
  std::size_t apart = 1;
};

/// The figures of columns, gathered block by block.
///
/// A block's sums are those of the distances from a value near the column's mean, so that they lose
/// nothing to its size; blocks are joined by their counts.
template <class T>
class ColumnFigures {
 public:
  explicit ColumnFigures(std::size_t columns) : m_columns(columns) {}

  /// \param firstRow the row of the file with which the block begins. \param step rows of the file
  /// from one row of the block to the next.
  void Add(const ValueBlock<T>& block, std::uint64_t firstRow, std::uint64_t step);

  Reduction Result() const;

 private:
  struct Column {
    double minimum = 0.0;
    double maximum = 0.0;
    std::int64_t minimumRow = -1;
    std::int64_t maximumRow = -1;
    double mean = 0.0;
    double squares = 0.0;  ///< sum of the squared distances from the mean
    std::int64_t count = 0;
    std::int64_t notFinite = 0;
  };
  struct BlockSums;

  void AddSlice(const ValueBlock<T>& slice, std::size_t firstColumn, std::uint64_t firstRow,
                std::uint64_t step);
  static void Join(Column& column, const BlockSums& sums, std::size_t c);

  std::vector<Column> m_columns;
};

}  // namespace Tabulon
