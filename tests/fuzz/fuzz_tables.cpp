// A group is opened as a table, read in ways that must agree, and reduced.
//
// An input is a header, a mark in a line of its own, and the data file. Which rows and columns are
// wanted is taken from the end of the data.

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "core/element_types.h"
#include "tables/group_table.h"
#include "tests/fuzz/byte_source.h"
#include "tests/fuzz/fuzzing.h"
#include "tests/fuzz/scratch.h"

namespace {

using Fuzzing::ByteSource;
using Fuzzing::Require;
using Tabulon::GroupTable;
using Tabulon::Reduction;
using Tabulon::Selection;
using Tabulon::Shape;
using Tabulon::TableError;

constexpr std::uint64_t kMostPositions = 5;  // of variables and of secondary values
constexpr std::uint64_t kMostRows = 500;

/// What `call` gives, or nothing if the files are refused. Any other exception is a finding.
template <class Call>
auto Tried(const Call& call) -> std::optional<decltype(call())> {
  try {
    return call();
  } catch (const TableError& refusal) {
    Require(!refusal.Text().empty() && !refusal.Path().empty(), "a refusal without words or place");
    return std::nullopt;
  }
}

template <class T>
std::optional<std::vector<T>> ValuesOf(const GroupTable& table, const Selection& selection) {
  return Tried([&] {
    const Shape shape = table.ShapeOf(selection);
    std::vector<T> values(shape.columns * shape.rows);
    table.Read<T>(selection, std::span<T>(values));
    return values;
  });
}

/// Some of the columns and rows; positions are those that the header has.
Selection Chosen(const GroupTable& table, std::uint64_t rows, ByteSource& source) {
  const auto& dimensions = table.Dimensions();
  const std::uint64_t variables =
      std::min<std::uint64_t>({dimensions.front(), table.Variables().size(), kMostPositions});
  const std::uint64_t secondary = table.Axes().size() > 1 ? dimensions[1] : 1;
  Selection selection;
  if (variables == 0 || secondary == 0) return selection;
  selection.secondary.emplace();
  for (std::size_t i = 0; i < 1 + source.Pick(kMostPositions); ++i)
    selection.variables.push_back(source.Pick(static_cast<std::size_t>(variables)));
  for (std::size_t i = 0; i < 1 + source.Pick(2); ++i)
    selection.secondary->push_back(
        source.Pick(static_cast<std::size_t>(std::min(secondary, kMostPositions))));
  selection.first = source.Pick(3);
  selection.step = 1 + source.Pick(3);
  if (source.Toss()) {
    const std::uint64_t most = std::min(rows, kMostRows);
    const std::uint64_t first = std::min(selection.first, most);
    selection.count = (most - first + selection.step - 1) / selection.step;
  }
  return selection;
}

/// Columns that are read one by one are those that are read together.
template <class T>
void CheckColumns(const GroupTable& table, const Selection& selection,
                  const std::vector<T>& values) {
  const Shape shape = table.ShapeOf(selection);
  std::size_t column = 0;
  for (const std::size_t variable : selection.variables) {
    for (const std::size_t secondary : *selection.secondary) {
      Selection one = selection;
      one.variables = {variable};
      one.secondary = {{secondary}};
      const auto alone = ValuesOf<T>(table, one);
      Require(alone && std::equal(alone->begin(), alone->end(),
                                  values.begin() + static_cast<std::ptrdiff_t>(column * shape.rows),
                                  Fuzzing::AreSameBits<T, T>),
              "a column alone has other values than among others");
      ++column;
    }
  }
}

/// The figures are those of the values.
template <class T>
void CheckFigures(const Shape& shape, const Reduction& figures, const std::vector<T>& values) {
  for (std::size_t c = 0; c < shape.columns; ++c) {
    std::vector<double> finite;
    for (std::size_t r = 0; r < shape.rows; ++r) {
      const auto value = static_cast<double>(values[c * shape.rows + r]);
      if (std::isfinite(value)) finite.push_back(value);
    }
    Require(figures.count[c] == static_cast<std::int64_t>(finite.size()), "another count");
    Require(figures.notFinite[c] == static_cast<std::int64_t>(shape.rows - finite.size()),
            "another count of values that are not finite");
    if (finite.empty()) continue;
    const auto [least, most] = std::minmax_element(finite.begin(), finite.end());
    Require(figures.minimum[c] == *least && figures.maximum[c] == *most, "another extreme");
    const double room = 1e-9 * std::max(std::abs(*least), std::abs(*most));
    Require(!std::isfinite(figures.mean[c]) ||
                (figures.mean[c] >= *least - room && figures.mean[c] <= *most + room),
            "a mean beyond the extremes");
    Require(!(figures.deviation[c] < 0), "a deviation below zero");
  }
}

template <class T>
void CheckReads(const GroupTable& table, const Selection& selection) {
  const auto values = ValuesOf<T>(table, selection);
  const auto figures = Tried([&] { return table.Reduce(selection); });
  Require(values.has_value() == figures.has_value(), "read and reduced by different rules");
  if (!values) return;
  CheckColumns<T>(table, selection, *values);
  CheckFigures<T>(table.ShapeOf(selection), *figures, *values);
}

void Check(const GroupTable& table, ByteSource& source) {
  Tried([&] { return table.DataSize(); });
  const auto rows = Tried([&] { return table.CountRows(); });
  const Selection selection = Chosen(table, rows ? rows->found : 0, source);
  if (selection.variables.empty()) return;
  Tried([&] { return table.Figures({selection.variables.front()}, selection.variables.back()); });
  switch (table.StoredType()) {
    case Sumara::kFloatCode:
      CheckReads<float>(table, selection);
      break;
    case Sumara::kDoubleCode:
      CheckReads<double>(table, selection);
      break;
    default:
      CheckReads<int>(table, selection);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view input = Fuzzing::TextOf(data, size);
  Fuzzing::Scratch& scratch = Fuzzing::Scratch::Instance();
  const std::string path =
      scratch.Write("run.%01", std::string(Fuzzing::TakePiece(input, "\n#####\n")) + "\n");
  scratch.Write("run.$01", input);
  ByteSource source(input.substr(input.size() - std::min<std::size_t>(input.size(), 16)));
  const auto table = Tried([&] { return GroupTable::Open(path); });
  // A header may lead to any file; what is not the input's own has no place here.
  if (table && table->DataPath() == scratch.Path("run.$01")) Check(*table, source);
  return 0;
}
