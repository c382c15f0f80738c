#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "core/file_stream.h"

// The figures in the text of a header: found by counting, converted row by row as they are asked
// for. All here works on bytes of the caller and keeps nothing: any number of threads may call it.

namespace Sumara {

/// The rows of a statistics block that have one line: times of the extremes, and means.
enum class FigureLine : std::uint32_t { kMaxTime = 0, kMinTime = 1, kMean = 2 };

/// The two rows of ULOADS that a variable has.
enum class Extreme : std::uint32_t { kMaximum = 0, kMinimum = 1 };

/// Where the rows of a header's statistics blocks stand, as offsets into its text. A header over
/// one axis has one block, one over two axes a block for each secondary index.
struct FigureRows {
  std::uint64_t variableCount = 0;
  std::vector<std::size_t> places;  ///< block behind block: 2n rows of ULOADS, then three lines

  std::uint64_t BlockCount() const { return places.empty() ? 0 : places.size() / RowsOfABlock(); }
  /// A row of ULOADS: `variableCount` values. Row 2i holds those where variable i has its maximum,
  /// row 2i + 1 where it has its minimum.
  std::size_t UloadsRow(std::uint64_t block, std::uint64_t row) const {
    return places[static_cast<std::size_t>(block * RowsOfABlock() + row)];
  }
  std::size_t UloadsRow(std::uint64_t block, std::uint64_t variable, Extreme extreme) const {
    return UloadsRow(block, 2 * variable + static_cast<std::uint64_t>(extreme));
  }
  /// The row of MAXTIME, MINTIME or MEAN: `variableCount` values.
  std::size_t Line(std::uint64_t block, FigureLine line) const {
    return UloadsRow(block, 2 * variableCount + static_cast<std::uint64_t>(line));
  }
  std::uint64_t RowsOfABlock() const { return 2 * variableCount + 3; }
};

/// Whether a line of this label belongs to the statistics.
bool IsFigureLabel(std::string_view label);

/// A header's figures with the bytes in which they stand: what was in the file when it was read.
struct HeaderFigures {
  FileBytes text;  ///< from the first block on
  FigureRows rows;
  FileState file;           ///< before the text was read
  std::uint64_t start = 0;  ///< of the text in the file
  std::size_t size = 0;     ///< of the text, which its owner may give up
};

/// Finds the next statistics block of `header` and appends its rows to `rows`. Each row is counted
/// and none is converted.
/// \param start where the block is looked for: behind the axis blocks and the named parameters, or
/// behind the block before.
/// \param path of the header, for the failures.
/// \return the place behind the block; none, and `rows` as it was, if no statistics follow.
/// \throws CException 119 for rows that are too few, too many or of a wrong length, 120, 121, 122
/// for MAXTIME, MINTIME or MEAN that is missing or of a wrong length.
std::optional<std::size_t> FindFigureBlock(std::string_view header, std::size_t start,
                                           FigureRows& rows, std::string_view path);

/// Finds the blocks from `start` on, at most so many; the first that is not there ends the search.
/// \throws CException as `FindFigureBlock`.
FigureRows FindFigureRows(std::string_view header, std::size_t start, std::uint64_t variableCount,
                          std::uint64_t mostBlocks, std::string_view path);

/// The number of values in the row at `place`, up to the end of its line.
std::uint64_t CountFigures(std::string_view header, std::size_t place);

/// The first `values.size()` values of the row at `place`. A value that is no number gives what a
/// stream stores.
template <class T>
void ReadFigures(std::string_view header, std::size_t place, std::span<T> values);

/// The value in one column of the row at `place`.
template <class T>
T ReadFigure(std::string_view header, std::size_t place, std::uint64_t column);

}  // namespace Sumara
