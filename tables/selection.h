#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace Tabulon {

/// The columns and rows of a group that are wanted.
///
/// A column is a variable at a secondary value; columns come in the order of `variables`, those of
/// one variable in the order of `secondary`.
struct Selection {
  std::vector<std::size_t> variables;  ///< positions in the header
  /// Positions on the secondary axis; none: all.
  std::optional<std::vector<std::size_t>> secondary = {};
  std::uint64_t first = 0;  ///< row of the file
  /// None: up to the last row that the header expects, or that is there if it expects none.
  std::optional<std::uint64_t> count = {};
  std::uint64_t step = 1;  ///< rows from one wanted row to the next
};

/// What a selection comes to for a group.
struct Shape {
  std::size_t columns = 0;
  std::size_t rows = 0;

  bool operator==(const Shape&) const = default;
};

}  // namespace Tabulon
