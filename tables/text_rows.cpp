#include "tables/text_rows.h"

#include <algorithm>
#include <numeric>
#include <string>

#include "core/error_context.h"
#include "core/exceptions.h"
#include "core/text.h"
#include "groupfiles/line_values.h"

namespace Tabulon {
namespace {

constexpr std::uint64_t kLinesBetweenQuestions = 256;
constexpr std::uint64_t kBytesBetweenQuestions = std::uint64_t{1} << 20;

/// `order` applied to `items`.
template <class Item>
std::vector<Item> Permuted(const std::vector<Item>& items, const std::vector<std::size_t>& order) {
  std::vector<Item> permuted;
  permuted.reserve(items.size());
  for (const std::size_t place : order) permuted.push_back(items[place]);
  return permuted;
}

TableError BadRow(const HeaderContents& contents, std::uint64_t row, std::string_view cause,
                  std::string_view line) {
  const Sumara::CException failure(
      25, "Point index = " + std::to_string(row) + "; " + Sumara::FileContext(contents.dataPath),
      std::string(cause));
  return TableError::Of(failure, contents.dataPath, "rows", std::string(line.substr(0, 200)));
}

}  // namespace

template <class U>
TextRows<U>::TextRows(const HeaderContents& contents)
    : m_contents(contents),
      m_file(contents.dataPath, static_cast<std::int32_t>(FileMode::kReadTextData)) {
  m_file.SetDimensions(Sumara::DataDimensions(contents.top.dimensions, contents.top.axisCount));
  m_file.SetHeaderRecordCount(contents.layout.headerRecords);
  m_file.Open();
}

template <class U>
void TextRows<U>::Take(const ReadPlan& plan) {
  for (std::size_t c = 0; c < plan.columns.size(); ++c) Want(c, plan.columns[c]);
  for (WantedLine& line : m_lines) {
    std::vector<std::size_t> order(line.places.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return line.places[a] < line.places[b]; });
    line.places = Permuted(line.places, order);
    line.columns = Permuted(line.columns, order);
    line.values.resize(line.places.size());
  }
}

template <class U>
void TextRows<U>::Want(std::size_t column, const WantedColumn& wanted) {
  const bool oneLine = m_contents.layout.LinesPerPoint() == 1;
  const std::size_t line = oneLine ? 0 : wanted.secondary;
  if (m_lines.size() <= line) m_lines.resize(line + 1);
  const bool bySecondary = oneLine && m_contents.layout.twoAxes && m_contents.layout.variables == 1;
  m_lines[line].places.push_back(bySecondary ? wanted.secondary : wanted.variable);
  m_lines[line].columns.push_back(column);
}

template <class U>
SteadyStart TextRows<U>::Restart() {
  m_lease.reset();
  if (!m_isFresh) {
    m_file.Close();
    m_file.Open();
  }
  m_isFresh = false;
  m_lease = Sumara::FileLease::Of(m_file.OpenFile());
  const Sumara::FileState state = State();
  m_file.Prepare();
  return {state, m_lease.has_value()};
}

template <class U>
void TextRows<U>::Read(const Sumara::RowRange& rows, std::span<U* const> columns,
                       const StopQuestion& stop) {
  Ask(stop);
  for (std::uint64_t i = 0; i < rows.count; ++i) {
    ReadRow(rows.first + i * rows.step, i, columns, stop);
  }
}

/// Reads a line, with questions on the way to it.
template <class U>
std::string_view TextRows<U>::LineAt(std::uint64_t line, const StopQuestion& stop) {
  while (!m_file.IsUniform() && m_file.GetLineNumber() + kLinesBetweenQuestions < line) {
    m_file.SeekLine(m_file.GetLineNumber() + kLinesBetweenQuestions);
    Ask(stop);
  }
  const std::string_view text = m_file.LineAt(line);
  m_unasked += text.size();
  if (m_unasked >= kBytesBetweenQuestions) {
    m_unasked = 0;
    Ask(stop);
  }
  return text;
}

template <class U>
void TextRows<U>::ReadRow(std::uint64_t row, std::uint64_t at, std::span<U* const> columns,
                          const StopQuestion& stop) {
  const std::uint64_t lineCount = m_contents.layout.LinesPerPoint();
  const std::uint64_t first = m_contents.layout.headerRecords + row * lineCount;
  for (std::uint64_t line = 0; line < lineCount; ++line) {
    std::string_view text;
    try {
      text = LineAt(first + line, stop);
    } catch (const CExceptionBase& cause) {
      if (m_file.GetLength() != 0 && !m_file.IsGood()) throw MissingRow(m_contents, row);
      throw BadRow(m_contents, row, cause.what(), {});
    }
    const std::uint64_t found = TakeLine(text, line);
    if (found < m_contents.layout.ValuesPerLine()) {
      if (IsTorn(row) || Sumara::IsOnlyWhitespace(text)) throw MissingRow(m_contents, row);
      const Sumara::CException cause(
          m_contents.layout.twoAxes ? 29 : 28,
          "Point index = " + std::to_string(row) +
              "; values expected = " + std::to_string(m_contents.layout.ValuesPerLine()) +
              "; values found = " + std::to_string(found));
      throw BadRow(m_contents, row, cause.what(), text);
    }
    if (IsTorn(row)) throw MissingRow(m_contents, row);
    if (line >= m_lines.size()) continue;
    const WantedLine& wanted = m_lines[static_cast<std::size_t>(line)];
    for (std::size_t v = 0; v < wanted.columns.size(); ++v)
      columns[wanted.columns[v]][at] = wanted.values[v];
  }
}

/// Takes the wanted values of a line. \return how many it holds, up to those of a line.
template <class U>
std::uint64_t TextRows<U>::TakeLine(std::string_view text, std::uint64_t line) {
  const std::uint64_t count = m_contents.layout.ValuesPerLine();
  if (line >= m_lines.size()) return Sumara::TakeLineValues<U>(text, count, {}, {});
  WantedLine& wanted = m_lines[static_cast<std::size_t>(line)];
  return Sumara::TakeLineValues<U>(text, count, wanted.places, wanted.values);
}

/// Whether the line that was read last has no end, in a row that is not the last expected: its last
/// number may be cut.
template <class U>
bool TextRows<U>::IsTorn(std::uint64_t row) const {
  return !m_file.IsGood() && row + 1 != m_contents.RowsExpected();
}

template <class U>
Rows TextRows<U>::Count(const StopQuestion& stop) {
  Rows rows{m_contents.RowsExpected(), 0, false};
  if (m_file.GetLength() == 0 || m_contents.layout.Stride() == 0) return rows;
  const std::uint64_t lineCount = m_contents.layout.LinesPerPoint();
  std::uint64_t lines = 0;
  bool whole = true;
  while (whole && m_file.IsGood()) {
    std::string_view text;
    try {
      text = LineAt(m_contents.layout.headerRecords + lines, stop);
    } catch (const CIOException&) {
      break;  // the end
    }
    if (Sumara::IsOnlyWhitespace(text)) break;
    if (!m_file.IsGood()) {
      whole = Sumara::TakeLineValues<U>(text, m_contents.layout.ValuesPerLine(), {}, {}) ==
                  m_contents.layout.ValuesPerLine() &&
              lines + 1 == m_contents.RowsExpected() * lineCount;
    }
    if (whole) ++lines;
  }
  rows.found = lines / lineCount;
  rows.torn = !whole || lines % lineCount != 0;
  return rows;
}

template class TextRows<float>;
template class TextRows<double>;
template class TextRows<int>;

}  // namespace Tabulon
