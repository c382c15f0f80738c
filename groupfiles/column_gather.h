#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "core/element_types.h"

namespace Sumara {

/// Rows of a data file: `count` of them from `first` on, every `step`-th.
struct RowRange {
  std::uint64_t first = 0;
  std::uint64_t count = 0;
  std::uint64_t step = 1;  ///< at least 1
};

/// Where the values of columns stand in a binary data file, counted in words from its start: that
/// of column c in row r at `bases[c] + r * stride`.
struct ColumnPlan {
  std::vector<std::uint64_t> bases;
  std::uint64_t stride = 1;  ///< at least 1
};

/// Words of a data file that lie in memory: all of them, or a block.
template <class T>
struct WordBlock {
  std::span<const T> words;
  std::uint64_t first = 0;  ///< the place of the first of them in the file
};

/// How many of `rows` have their value of the column at `base` before the word `end`.
std::uint64_t RowsBefore(std::uint64_t end, std::uint64_t base, std::uint64_t stride,
                         const RowRange& rows);

/// Copies values of the wanted columns to memory of the caller, converted to U.
///
/// `columns[c][i]` becomes the value of column c in the i-th of `rows` if that stands in `block`;
/// all others stay as they are. So a file may come in blocks, one call for each, and a column needs
/// room for `rows.count` values in all. Columns that stand beside each other in the file and in the
/// plan are copied together, a cache line of the file at a time.
///
/// Nothing is kept: any number of threads may call it at a time.
template <class T, class U>
void GatherColumns(const WordBlock<T>& block, const ColumnPlan& plan, const RowRange& rows,
                   std::span<U* const> columns);

/// The same, but appends the values: blocks have to come in the order of the file. So no column has
/// to be filled with anything before.
template <class T, class U>
void AppendColumns(const WordBlock<T>& block, const ColumnPlan& plan, const RowRange& rows,
                   std::span<std::vector<U>* const> columns);

}  // namespace Sumara
