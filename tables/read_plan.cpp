#include "tables/read_plan.h"

#include <stdexcept>
#include <string>

#include "core/error_context.h"
#include "core/exceptions.h"

namespace Tabulon {
namespace {

/// As many points as an axis may have without a data file that holds them.
constexpr std::uint64_t kMostUnseenPoints = std::uint64_t{1} << 22;

std::uint64_t BytesOfWord(std::uint32_t storedType) {
  return Sumara::VisitElementType(
      storedType, [](auto tag) { return std::uint64_t{sizeof(typename decltype(tag)::Type)}; },
      [] { return std::uint64_t{1}; });
}

std::string OutOf(const char* what, std::size_t position, std::uint64_t count) {
  return std::string(what) + " " + std::to_string(position) + " of " + std::to_string(count);
}

std::uint64_t RowCount(const Selection& selection, std::uint64_t limit) {
  if (selection.step == 0) throw std::invalid_argument("the step between rows must not be 0");
  if (selection.count) return *selection.count;
  return selection.first >= limit ? 0 : (limit - selection.first - 1) / selection.step + 1;
}

void CheckRows(const HeaderContents& contents, const Sumara::RowRange& rows, std::uint64_t within) {
  if (rows.count == 0) return;
  const std::uint64_t steps = rows.count - 1;
  if (rows.first >= within) throw MissingRow(contents, within);
  if (steps > (within - 1 - rows.first) / rows.step) throw MissingRow(contents, within);
}

void CheckVariable(const HeaderContents& contents, std::size_t variable) {
  if (variable >= contents.variables.size())
    throw std::out_of_range(OutOf("variable", variable, contents.variables.size()));
  if (contents.layout.Holds(variable, 0)) return;
  const CIOException cause(5010, "path: " + contents.dataPath);
  const Sumara::CException failure(25, Sumara::FileContext(contents.path), cause.what());
  throw TableError::Of(failure, contents.path, "DIMENS",
                       std::to_string(contents.layout.variables) + " variables");
}

std::vector<std::size_t> SecondaryOf(const HeaderContents& contents, const Selection& selection,
                                     const Sumara::RowRange& rows) {
  const std::uint64_t size = contents.layout.secondary;
  if (selection.secondary) {
    for (const std::size_t position : *selection.secondary) {
      if (position >= size) throw std::out_of_range(OutOf("secondary value", position, size));
    }
    return *selection.secondary;
  }
  if (rows.count == 0 && size > kMostUnseenPoints) {
    throw TableError::Of(Sumara::CException(130, Sumara::FileContext(contents.path)), contents.path,
                         "DIMENS", std::to_string(size) + " secondary values");
  }
  std::vector<std::size_t> all(static_cast<std::size_t>(size));
  for (std::size_t i = 0; i < all.size(); ++i) all[i] = i;
  return all;
}

}  // namespace

std::uint64_t RowsWithin(const HeaderContents& contents, std::uint64_t bytes) {
  const std::uint64_t stride = contents.layout.Stride();
  if (stride == 0) return 0;
  if (contents.top.binary) return bytes / BytesOfWord(contents.top.dataType) / stride;
  return (bytes + 1) / 2 / stride;  // a value takes a digit and what parts it from the next
}

std::uint64_t BytesOfRows(const HeaderContents& contents, std::uint64_t rows) {
  return rows * contents.layout.Stride() * BytesOfWord(contents.top.dataType);
}

ReadPlan PlanOf(const HeaderContents& contents, const Selection& selection, std::uint64_t limit,
                std::uint64_t within) {
  ReadPlan plan;
  plan.rows = {selection.first, RowCount(selection, limit), selection.step};
  for (const std::size_t variable : selection.variables) CheckVariable(contents, variable);
  CheckRows(contents, plan.rows, within);
  const std::vector<std::size_t> secondary = SecondaryOf(contents, selection, plan.rows);
  plan.columns.reserve(selection.variables.size() * secondary.size());
  for (const std::size_t variable : selection.variables) {
    for (const std::size_t position : secondary) plan.columns.push_back({variable, position});
  }
  return plan;
}

TableError MissingRow(const HeaderContents& contents, std::uint64_t row) {
  const CIOException cause(5008, "rows expected = " + std::to_string(contents.RowsExpected()) +
                                     "; rows found = " + std::to_string(row) +
                                     "; path: " + contents.dataPath);
  const Sumara::CException failure(
      25, "Point index = " + std::to_string(row) + "; " + Sumara::FileContext(contents.dataPath),
      cause.what());
  return TableError::Of(failure, contents.dataPath, "rows", std::to_string(row) + " rows");
}

}  // namespace Tabulon
