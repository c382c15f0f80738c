#include "groupfiles/text_data_reader.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <tuple>
#include <utility>

#include "core/exceptions.h"
#include "groupfiles/column_gather.h"
#include "groupfiles/line_values.h"

namespace Sumara {
namespace {

constexpr std::size_t kRowsBytes =
    std::size_t{32} * 1024;  // stays in the processor's nearest cache

std::string PointText(std::uint64_t point) { return "Point index = " + std::to_string(point); }

[[noreturn]] void FailShortLine(const DataLayout& layout, std::uint64_t point,
                                std::uint64_t found) {
  if (found == 0) throw CException(layout.twoAxes ? 27 : 26, PointText(point));
  throw CException(layout.twoAxes ? 29 : 28, PointText(point) + "; values expected = " +
                                                 std::to_string(layout.ValuesPerLine()) +
                                                 "; values found = " + std::to_string(found));
}

}  // namespace

/// One vector to fill: the place of its values among the lines of a point, and where they go.
template <class U>
struct CTextDataReader<U>::Column {
  std::uint64_t line;
  std::uint64_t place;
  std::uint64_t base;
  std::vector<U>* values;
  std::vector<U> own{};  ///< of a column that nobody has asked for yet

  static Column Of(const DataLayout& layout, std::uint64_t base, std::vector<U>* values) {
    return {base / layout.ValuesPerLine(), base % layout.ValuesPerLine(), base, values};
  }
};

/// Wanted values of some points, in the order of the file, before they go to their columns.
template <class U>
class CTextDataReader<U>::Rows {
 public:
  /// Room for as many points as go together well, but for no more than the file can hold.
  Rows(const std::vector<Column>& columns, std::uint64_t pointsInFile) {
    for (const Column& column : columns) m_columns.push_back(&column);
    std::sort(m_columns.begin(), m_columns.end(), [](const Column* a, const Column* b) {
      return std::tie(a->line, a->place) < std::tie(b->line, b->place);
    });
    const auto isSame = [](const Column* a, const Column* b) { return a->base == b->base; };
    m_columns.erase(std::unique(m_columns.begin(), m_columns.end(), isSame), m_columns.end());
    for (const Column* column : m_columns) {
      m_plan.bases.push_back(m_places.size());
      m_places.push_back(column->place);
      m_targets.push_back(column->values);
    }
    m_plan.stride = m_columns.size();
    const std::uint64_t together = kRowsBytes / (m_columns.size() * sizeof(U));
    m_most = static_cast<std::size_t>(std::max<std::uint64_t>(1, std::min(together, pointsInFile)));
    m_values.resize(m_most * m_columns.size());
  }

  void Reserve(std::size_t points) {
    for (std::vector<U>* const values : m_targets) values->reserve(points);
  }

  /// Takes the wanted values of a line of the present point.
  /// \return how many values the line holds, up to `count`.
  std::uint64_t Take(std::uint64_t line, std::string_view text, std::uint64_t count) {
    std::size_t end = m_next;
    while (end < m_columns.size() && m_columns[end]->line == line) ++end;
    const std::size_t size = end - m_next;
    const std::uint64_t found = TakeLineValues<U>(
        text, count, std::span<const std::uint64_t>(m_places).subspan(m_next, size),
        std::span<U>(m_values).subspan(m_count * m_columns.size() + m_next, size));
    m_next = end;
    return found;
  }

  void EndPoint() {
    m_next = 0;
    if (++m_count == m_most) Deliver();
  }

  /// Appends the points that are complete to the columns.
  void Deliver() {
    AppendColumns<U, U>({m_values, 0}, m_plan, {0, m_count, 1}, m_targets);
    m_count = 0;
  }

 private:
  std::vector<const Column*> m_columns;
  std::vector<std::uint64_t> m_places;
  ColumnPlan m_plan;
  std::vector<std::vector<U>*> m_targets;
  std::vector<U> m_values;
  std::size_t m_most = 1;   ///< points that `m_values` has room for
  std::size_t m_count = 0;  ///< points that are complete
  std::size_t m_next = 0;   ///< the first column that the present point has no value for yet
};

/// Closes the file at the end of a read.
template <class U>
struct CTextDataReader<U>::Closer {
  CTextDataReader& reader;
  ~Closer() { reader.CReader<U, U>::Close(); }
};

template <class U>
void CTextDataReader<U>::Close() {
  Forget();
  CReader<U, U>::Close();
  m_ahead.Clear();
}

template <class U>
std::uint64_t CTextDataReader<U>::Read(const DataLayout& layout, const DataRequest& request,
                                       IDataTarget<U>& target) {
  if (!m_ahead.Empty() && !StandsAsItWas()) DropAhead();
  if (m_ahead.HandOver(layout, request, target)) {
    Keep(m_ahead.Bytes());
    return request.points;
  }
  std::vector<Column> columns = ChooseColumns(layout, request, target);
  if (columns.empty()) return 0;
  const std::size_t requested = columns.size();
  if (request.keepBuffer) {
    std::vector<Column> ahead = ChooseAhead(layout, request);
    std::move(ahead.begin(), ahead.end(), std::back_inserter(columns));
    for (Column& column : columns) {
      if (column.values == nullptr) column.values = &column.own;
    }
  }
  std::string failure;
  const FileState before = m_fileState;
  const std::uint64_t points = ParsePoints(layout, request.points, columns, failure);
  if (!m_ahead.Empty() && m_fileState != before) DropAhead();
  if (request.points != 0 && !failure.empty()) {
    for (const Column& column : columns) *column.values = {};
    throw CException(25, target.GroupContext(), failure);
  }
  if (this->GetLength() == 0) return 0;
  for (const std::size_t variable : request.variables) {
    for (const std::size_t secondary : request.secondaryIndices) target.Filled(variable, secondary);
  }
  if (!request.keepBuffer) return points;
  m_ahead.MarkHandedOut(layout, request);
  for (std::size_t i = requested; i < columns.size(); ++i) {
    m_ahead.Add(columns[i].base, std::move(columns[i].own));
  }
  Keep(m_ahead.Bytes());
  return points;
}

template <class U>
auto CTextDataReader<U>::ChooseColumns(const DataLayout& layout, const DataRequest& request,
                                       IDataTarget<U>& target) const -> std::vector<Column> {
  std::vector<Column> columns;
  for (const std::size_t variable : request.variables) {
    for (const std::size_t secondary : request.secondaryIndices) {
      if (!layout.Holds(variable, secondary)) {
        throw CException(25, target.GroupContext(),
                         CIOException(5010, "path: " + this->GetPath()).what());
      }
      std::vector<U>& values = target.Values(variable, secondary);
      values.clear();
      columns.push_back(Column::Of(layout, layout.Base(variable, secondary), &values));
    }
  }
  return columns;
}

/// Columns to convert along, as many as may be kept.
template <class U>
auto CTextDataReader<U>::ChooseAhead(const DataLayout& layout, const DataRequest& request)
    -> std::vector<Column> {
  std::vector<Column> columns;
  const std::uint64_t stride = layout.Stride();
  const std::uint64_t length = this->GetLength();
  if (length == this->kUnknownLength || stride > length || request.points > length / stride) {
    return columns;  // the first request, or a header that claims more than the file can hold
  }
  const std::uint64_t room = Limit() - std::min(Limit(), m_ahead.Bytes());
  const std::uint64_t most = room / ColumnsAhead<U>::SizeOf(request.points);
  for (const std::uint64_t base : m_ahead.Choose(layout, request, {.all = true, .most = most})) {
    columns.push_back(Column::Of(layout, base, nullptr));
  }
  return columns;
}

template <class U>
std::uint64_t CTextDataReader<U>::ParsePoints(const DataLayout& layout, std::uint64_t points,
                                              const std::vector<Column>& columns,
                                              std::string& failure) {
  const Closer closer{*this};
  this->SetHeaderRecordCount(layout.headerRecords);
  this->Open();
  m_fileState = this->m_stream.SystemFile().State();
  this->Prepare();
  if (this->IsEmpty()) return 0;
  // A value takes a byte of the file at least: a header that claims more takes no memory.
  const std::uint64_t pointsInFile =
      this->GetLength() / std::max<std::uint64_t>(layout.Stride(), 1);
  Rows rows(columns, pointsInFile);
  rows.Reserve(static_cast<std::size_t>(std::min(points, pointsInFile)));
  std::uint64_t point = 0;
  try {
    for (; points == 0 || point < points; ++point) ParsePoint(layout, point, rows);
  } catch (const CExceptionBase& cause) {
    failure = cause.what();
  }
  rows.Deliver();
  return point;
}

template <class U>
void CTextDataReader<U>::ParsePoint(const DataLayout& layout, std::uint64_t point, Rows& rows) {
  const std::uint64_t lineCount = layout.LinesPerPoint();
  const std::uint64_t first = layout.headerRecords + point * lineCount;
  for (std::uint64_t line = 0; line < lineCount; ++line) {
    const std::string_view text = this->LineAt(first + line);
    if (text.empty()) throw CIOException(5015);
    const std::uint64_t found = rows.Take(line, text, layout.ValuesPerLine());
    if (found < layout.ValuesPerLine()) FailShortLine(layout, point, found);
  }
  rows.EndPoint();
}

template <class U>
void CTextDataReader<U>::DropAhead() {
  m_ahead.Clear();
  Forget();
}

template <class U>
bool CTextDataReader<U>::StandsAsItWas() const {
  File file;
  return file.Open(this->GetPath(), File::Access::kRead) == 0 && file.State() == m_fileState;
}

#define TABULON_INSTANTIATE(U) template class CTextDataReader<U>;
TABULON_FOR_EACH_ELEMENT_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE

}  // namespace Sumara
