#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "groupfiles/column_gather.h"
#include "tables/header_contents.h"
#include "tables/selection.h"
#include "tables/table_error.h"

namespace Tabulon {

/// A column that is wanted: where its values stand in the file.
struct WantedColumn {
  std::size_t variable = 0;
  std::size_t secondary = 0;
};

/// A selection that was held against a header and its data file.
struct ReadPlan {
  std::vector<WantedColumn> columns;
  Sumara::RowRange rows;

  Shape GetShape() const { return {columns.size(), static_cast<std::size_t>(rows.count)}; }
};

/// Rows that `bytes` of a data file can hold: all of them if it is binary, a bound if it is text.
std::uint64_t RowsWithin(const HeaderContents& contents, std::uint64_t bytes);

/// Bytes of so many rows of a binary file.
std::uint64_t BytesOfRows(const HeaderContents& contents, std::uint64_t rows);

/// \param limit the row behind the last that a selection without a count takes.
/// \param within `RowsWithin` of the data file; what a header claims beyond takes no memory.
/// \throws std::out_of_range, std::invalid_argument for what the header does not have;
///         TableError 25 for rows beyond `within`, 5010 for a variable beyond DIMENS.
ReadPlan PlanOf(const HeaderContents& contents, const Selection& selection, std::uint64_t limit,
                std::uint64_t within);

/// What to say of a row that is not there.
TableError MissingRow(const HeaderContents& contents, std::uint64_t row);

}  // namespace Tabulon
