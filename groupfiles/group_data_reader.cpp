#include "groupfiles/group_data_reader.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

#include "core/numbers.h"
#include "core/prefetch.h"
#include "groupfiles/text_numbers.h"

namespace Sumara {
namespace {

constexpr std::size_t kBlockBytes = std::size_t{512} * 1024;
constexpr std::uint64_t kPrefetchPoints = 16;

std::string PointText(std::uint64_t point) { return "Point index = " + std::to_string(point); }

template <class U>
void Want(WantedLines<U>& lines, const DataLayout& layout, std::size_t variable,
          std::size_t secondary, std::vector<U>& values) {
  const bool oneLine = layout.LinesPerPoint() == 1 && layout.twoAxes && layout.variables == 1;
  const std::size_t line = oneLine ? 0 : secondary;
  if (lines.size() <= line) lines.resize(line + 1);
  lines[line].push_back({oneLine ? secondary : variable, &values});
}

/// Takes the numbers of one line: converts the wanted ones, passes over the others.
/// \return how many values the line holds, up to `count`.
template <class U>
std::uint64_t TakeValues(std::string_view text, std::uint64_t count,
                         const std::vector<WantedValue<U>>& wanted) {
  auto next = wanted.begin();
  for (std::uint64_t place = 0; place < count; ++place) {
    if (next == wanted.end() || next->place != place) {
      if (!SkipNumber<U>(text)) return place;
      continue;
    }
    U value{};
    if (!ExtractNumber(text, value)) return place;
    for (; next != wanted.end() && next->place == place; ++next) next->values->push_back(value);
  }
  return count;
}

[[noreturn]] void FailShortLine(const DataLayout& layout, std::uint64_t point,
                                std::uint64_t found) {
  if (found == 0) throw CException(layout.twoAxes ? 27 : 26, PointText(point));
  throw CException(layout.twoAxes ? 29 : 28, PointText(point) + "; values expected = " +
                                                 std::to_string(layout.ValuesPerLine()) +
                                                 "; values found = " + std::to_string(found));
}

}  // namespace

/// One requested vector: where its values stand in the file and where they go.
template <class T, class U>
struct CGroupDataReader<T, U>::Column {
  std::size_t variable;
  std::size_t secondaryIndex;
  std::uint64_t base;
  std::vector<U>* values;
};

template <class T, class U>
void CGroupDataReader<T, U>::Close() {
  CReader<T, U>::Close();
  m_table = {};
  m_readBefore = false;
}

template <class T, class U>
std::uint64_t CGroupDataReader<T, U>::Read(const DataLayout& layout, const DataRequest& request,
                                           IDataTarget<U>& target) {
  return this->IsReadingBinary() ? ReadBinary(layout, request, target)
                                 : ReadText(layout, request, target);
}

// Binary files: words by their number.

/// Closes the file at the end of a read, unless the buffer is to stay.
template <class T, class U>
struct CGroupDataReader<T, U>::Closer {
  CGroupDataReader& reader;
  ~Closer() {
    if (!reader.HasBuffer()) reader.CReader<T, U>::Close();
  }
};

template <class T, class U>
void CGroupDataReader<T, U>::PrepareBinary(const DataRequest& request) {
  if (this->HasBuffer() || !this->Open()) return;
  if (request.keepBuffer) {
    this->Prepare();
  } else {
    this->PrepareForBlocks();
  }
}

template <class T, class U>
std::uint64_t CGroupDataReader<T, U>::ReadBinary(const DataLayout& layout,
                                                 const DataRequest& request,
                                                 IDataTarget<U>& target) {
  const Closer closer{*this};
  PrepareBinary(request);
  if (this->IsEmpty()) return 0;
  const std::uint64_t stride = layout.Stride();
  const std::uint64_t held = stride == 0 ? 0 : this->TotalWordCount() / stride;
  const std::uint64_t points = request.points != 0 ? request.points : held;

  std::vector<Column> columns;
  const std::optional<CException> failure = ChooseColumns(layout, request, points, target, columns);
  for (const Column& column : columns) column.values->resize(static_cast<std::size_t>(points));
  if (this->HasBuffer()) {
    Gather(layout, columns);
  } else {
    GatherFromBlocks(layout, columns, target);
  }
  for (const Column& column : columns) target.Filled(column.variable, column.secondaryIndex);
  if (failure) throw CException(*failure);
  return points;
}

/// The vectors to fill, up to the first that the file cannot fill.
/// \return what to say of that one: the vectors before it are delivered all the same.
template <class T, class U>
std::optional<CException> CGroupDataReader<T, U>::ChooseColumns(
    const DataLayout& layout, const DataRequest& request, std::uint64_t points,
    IDataTarget<U>& target, std::vector<Column>& columns) const {
  for (const std::size_t variable : request.variables) {
    for (const std::size_t secondary : request.secondaryIndices) {
      const Column column{variable, secondary, layout.Base(variable, secondary), nullptr};
      if (points != 0 && !layout.Holds(variable, secondary)) {
        return Failure(target, column, 0, CIOException(5010, "path: " + this->GetPath()));
      }
      const std::uint64_t within =
          points == 0 ? 0 : layout.PointsWithin(this->TotalWordCount(), column.base);
      if (within < points) {
        return Failure(target, column, within,
                       BeyondEnd(DataLayout::OffsetOf(within, layout.Stride(), column.base)));
      }
      columns.push_back(column);
      columns.back().values = &target.Values(variable, secondary);
    }
  }
  return std::nullopt;
}

template <class T, class U>
CIOException CGroupDataReader<T, U>::BeyondEnd(std::uint64_t offset) const {
  return CIOException(5008, "word offset = " + std::to_string(offset) +
                                "; m_totalWordCount = " + std::to_string(this->TotalWordCount()) +
                                "; path: " + this->GetPath());
}

template <class T, class U>
CException CGroupDataReader<T, U>::Failure(const IDataTarget<U>& target, const Column& column,
                                           std::uint64_t point, const CIOException& cause) const {
  return CException(25, PointText(point) + "; " + target.SeriesContext(column.variable),
                    cause.what());
}

template <class T, class U>
void CGroupDataReader<T, U>::Gather(const DataLayout& layout, const std::vector<Column>& columns) {
  const std::uint64_t stride = layout.Stride();
  for (const Column& column : columns) {
    U* const values = column.values->data();
    const std::uint64_t points = column.values->size();
    const std::uint64_t ahead = points > kPrefetchPoints ? points - kPrefetchPoints : 0;
    std::uint64_t offset = column.base;
    for (std::uint64_t p = 0; p < points; ++p, offset += stride) {
      // Values of one variable lie far apart: the processor does not foresee the next page.
      if (p < ahead) Prefetch(this->Words() + (offset + stride * kPrefetchPoints));
      values[p] = ConvertElement<U>(this->Words()[offset]);
    }
  }
}

template <class T, class U>
void CGroupDataReader<T, U>::GatherFromBlocks(const DataLayout& layout,
                                              const std::vector<Column>& columns,
                                              const IDataTarget<U>& target) {
  struct Progress {
    std::uint64_t offset;
    std::uint64_t point = 0;
  };
  constexpr std::uint64_t kDone = std::numeric_limits<std::uint64_t>::max();
  const std::uint64_t stride = layout.Stride();
  std::vector<Progress> progress;
  progress.reserve(columns.size());
  for (const Column& column : columns)
    progress.push_back({column.values->empty() ? kDone : column.base});
  const auto earlier = [](const Progress& a, const Progress& b) { return a.offset < b.offset; };

  std::vector<T> block(static_cast<std::size_t>(
      std::min<std::uint64_t>(kBlockBytes / sizeof(T), this->TotalWordCount())));
  while (!progress.empty()) {
    const auto next = std::min_element(progress.begin(), progress.end(), earlier);
    const std::uint64_t first = next->offset;
    if (first == kDone) return;
    const std::uint64_t end = first + this->ReadWords(first, block);
    if (end == first) {  // the file has become shorter since it was opened
      const auto place = static_cast<std::size_t>(next - progress.begin());
      for (const Column& column : columns) *column.values = {};
      throw Failure(target, columns[place], next->point, BeyondEnd(first));
    }
    for (std::size_t i = 0; i < columns.size(); ++i) {
      std::vector<U>& values = *columns[i].values;
      auto& [offset, point] = progress[i];
      for (; offset < end; offset += stride) {
        values[point] = ConvertElement<U>(block[offset - first]);
        if (++point == values.size()) {
          offset = kDone;
          break;
        }
      }
    }
  }
}

// Text files: lines by their number.

template <class T, class U>
std::uint64_t CGroupDataReader<T, U>::ReadText(const DataLayout& layout, const DataRequest& request,
                                               IDataTarget<U>& target) {
  const bool readAll =
      std::exchange(m_readBefore, true) && request.keepBuffer && request.points != 0;
  if (AnswerFromTable(layout, request, target)) return request.points;
  if (readAll && ReadTable(layout, request.points) && AnswerFromTable(layout, request, target)) {
    return request.points;
  }

  WantedLines<U> lines;
  std::vector<std::vector<U>*> columns;
  for (const std::size_t variable : request.variables) {
    for (const std::size_t secondary : request.secondaryIndices) {
      if (!layout.Holds(variable, secondary)) {
        throw CException(25, target.GroupContext(),
                         CIOException(5010, "path: " + this->GetPath()).what());
      }
      columns.push_back(&target.Values(variable, secondary));
      columns.back()->clear();
      Want(lines, layout, variable, secondary, *columns.back());
    }
  }
  if (columns.empty()) return 0;
  std::string failure;
  const std::uint64_t points = ParsePoints(layout, request.points, lines, failure);
  if (request.points != 0 && !failure.empty()) {
    for (auto* column : columns) *column = {};
    throw CException(25, target.GroupContext(), failure);
  }
  for (auto* column : columns) column->resize(static_cast<std::size_t>(points));
  if (this->GetLength() == 0) return 0;
  for (const std::size_t variable : request.variables) {
    for (const std::size_t secondary : request.secondaryIndices) target.Filled(variable, secondary);
  }
  return points;
}

template <class T, class U>
std::uint64_t CGroupDataReader<T, U>::ParsePoints(const DataLayout& layout, std::uint64_t points,
                                                  WantedLines<U>& lines, std::string& failure) {
  const Closer closer{*this};
  this->Open();
  m_fileState = this->m_stream.SystemFile().State();
  this->Prepare();
  if (this->IsEmpty()) return 0;
  // A value takes a byte of the file at least: a header that claims more takes no memory.
  const std::uint64_t room =
      std::min(points, this->GetLength() / std::max<std::uint64_t>(layout.Stride(), 1));
  for (auto& line : lines) {
    std::sort(line.begin(), line.end(),
              [](const auto& a, const auto& b) { return a.place < b.place; });
    for (const auto& wanted : line) wanted.values->reserve(static_cast<std::size_t>(room));
  }
  std::uint64_t point = 0;
  try {
    for (; points == 0 || point < points; ++point) ParsePoint(layout, point, lines);
  } catch (const CExceptionBase& cause) {
    failure = cause.what();
  }
  return point;
}

template <class T, class U>
void CGroupDataReader<T, U>::ParsePoint(const DataLayout& layout, std::uint64_t point,
                                        const WantedLines<U>& lines) {
  static const std::vector<WantedValue<U>> kNothing;
  const std::uint64_t lineCount = layout.LinesPerPoint();
  const std::uint64_t first = layout.headerRecords + point * lineCount;
  for (std::uint64_t line = 0; line < lineCount; ++line) {
    const std::string_view text = this->LineAt(first + line);
    if (text.empty()) throw CIOException(5015);
    const std::uint64_t found =
        TakeValues(text, layout.ValuesPerLine(), line < lines.size() ? lines[line] : kNothing);
    if (found < layout.ValuesPerLine()) FailShortLine(layout, point, found);
  }
}

template <class T, class U>
bool CGroupDataReader<T, U>::ReadTable(const DataLayout& layout, std::uint64_t points) {
  m_table = {};
  const std::uint64_t length = this->GetLength();
  const std::uint64_t columns = layout.Stride();
  if (length == this->kUnknownLength || columns == 0 || columns > length ||
      points > length / columns)
    return false;
  TextTable<U> table;
  table.columns.resize(static_cast<std::size_t>(columns));
  WantedLines<U> lines;
  for (std::size_t secondary = 0; secondary < layout.secondary; ++secondary) {
    for (std::size_t variable = 0; variable < layout.variables; ++variable) {
      Want(lines, layout, variable, secondary, table.columns[layout.Base(variable, secondary)]);
    }
  }
  std::string failure;
  table.points = ParsePoints(layout, points, lines, failure);
  if (!failure.empty() || table.points != points) return false;
  table.file = m_fileState;
  m_table = std::move(table);
  return true;
}

template <class T, class U>
bool CGroupDataReader<T, U>::TableStands() const {
  File file;
  return file.Open(this->GetPath(), File::Access::kRead) == 0 && file.State() == m_table.file;
}

template <class T, class U>
bool CGroupDataReader<T, U>::AnswerFromTable(const DataLayout& layout, const DataRequest& request,
                                             IDataTarget<U>& target) {
  if (m_table.columns.empty() || request.points != m_table.points) return false;
  if (!TableStands()) {
    m_table = {};
    return false;
  }
  const auto held = [&](std::size_t variable) {
    return std::all_of(request.secondaryIndices.begin(), request.secondaryIndices.end(),
                       [&](std::size_t secondary) { return layout.Holds(variable, secondary); });
  };
  if (!std::all_of(request.variables.begin(), request.variables.end(), held)) return false;
  for (const std::size_t variable : request.variables) {
    for (const std::size_t secondary : request.secondaryIndices) {
      target.Values(variable, secondary) = m_table.columns[layout.Base(variable, secondary)];
      target.Filled(variable, secondary);
    }
  }
  return true;
}

template <class U>
std::unique_ptr<CIOBase> MakeGroupDataReader(std::uint32_t storedType, std::string path,
                                             bool binary, std::vector<std::uint64_t> dimensions) {
  const auto mode =
      static_cast<std::int32_t>(binary ? FileMode::kReadBinary : FileMode::kReadTextData);
  return VisitElementType(
      storedType,
      [&](auto tag) -> std::unique_ptr<CIOBase> {
        using Stored = typename decltype(tag)::Type;
        auto reader = std::make_unique<CGroupDataReader<Stored, U>>(std::move(path), mode);
        reader->SetDimensions(std::move(dimensions));
        return reader;
      },
      []() -> std::unique_ptr<CIOBase> { throw CException(65); });
}

#define TABULON_INSTANTIATE(U)                                                               \
  template std::unique_ptr<CIOBase> MakeGroupDataReader<U>(std::uint32_t, std::string, bool, \
                                                           std::vector<std::uint64_t>);
TABULON_FOR_EACH_ELEMENT_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE

}  // namespace Sumara
