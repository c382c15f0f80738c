#include "groupfiles/binary_data_reader.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <span>
#include <string>
#include <utility>

#include "core/at_rest.h"
#include "core/file_blocks.h"
#include "core/file_lease.h"
#include "core/file_map.h"
#include "core/pages.h"
#include "core/paths.h"
#include "groupfiles/column_gather.h"

namespace Sumara {
namespace {

constexpr std::uint64_t kSmallFile = std::uint64_t{1} << 20;  // read whole in no time
constexpr std::size_t kCacheLine = 64;
constexpr std::uint64_t kSparse = 4;  // fewer than each fourth word is a part of the file

std::string PointText(std::uint64_t point) { return "Point index = " + std::to_string(point); }

/// The next word at or behind a place that any column wants.
struct NextWord {
  std::uint64_t place;
  std::uint64_t point;
  std::size_t column;
};

/// \return one of point `rows.count` if there is none.
NextWord FindNext(std::uint64_t from, const ColumnPlan& plan, const RowRange& rows) {
  NextWord next{std::numeric_limits<std::uint64_t>::max(), rows.count, 0};
  for (std::size_t c = 0; c < plan.bases.size(); ++c) {
    const std::uint64_t point = RowsBefore(from, plan.bases[c], plan.stride, rows);
    if (point >= rows.count) continue;
    const std::uint64_t place = plan.bases[c] + point * plan.stride;
    if (place < next.place) next = {place, point, c};
  }
  return next;
}

}  // namespace

/// One vector to fill: where its values stand in the file and where they go.
template <class T, class U>
struct CBinaryDataReader<T, U>::Column {
  std::size_t variable;
  std::size_t secondaryIndex;
  std::uint64_t base;
  std::vector<U>* values;
  std::vector<U> own{};  ///< of a column that nobody has asked for yet
};

/// Where a file ended too soon, or could not be read.
template <class T, class U>
struct CBinaryDataReader<T, U>::Missing {
  std::uint64_t word;
  int error;
};

/// Leaves behind a read what is to stay for the next.
template <class T, class U>
struct CBinaryDataReader<T, U>::Closer {
  CBinaryDataReader& reader;
  bool keepFile = false;
  ~Closer() {
    if (keepFile && reader.IsOpen()) reader.m_kept = reader.Suspend();
    if (!reader.HasBuffer()) reader.CReader<T, U>::Close();
    const std::uint64_t file = reader.m_kept.IsOpen() ? kOpenFile : 0;
    reader.Keep(reader.m_buffer.Size() + file + reader.m_ahead.Bytes());
  }
};

template <class T, class U>
void CBinaryDataReader<T, U>::Close() {
  Forget();
  CReader<T, U>::Close();
  m_kept.Close();
  m_ahead.Clear();
}

template <class T, class U>
std::uint64_t CBinaryDataReader<T, U>::Read(const DataLayout& layout, const DataRequest& request,
                                            IDataTarget<U>& target) {
  Closer closer{*this};
  if (m_ahead.HandOver(layout, request, target)) return request.points;
  Prepare(request);
  if (this->IsEmpty()) return 0;
  const std::uint64_t stride = layout.Stride();
  const std::uint64_t held = stride == 0 ? 0 : this->TotalWordCount() / stride;
  const std::uint64_t points = request.points != 0 ? request.points : held;

  std::vector<Column> columns;
  const std::optional<CException> failure = ChooseColumns(layout, request, points, target, columns);
  std::vector<Column> ahead;
  if (!failure && request.keepBuffer) ahead = ChooseAhead(layout, request);
  const std::size_t requested = columns.size();
  std::move(ahead.begin(), ahead.end(), std::back_inserter(columns));
  Gather(layout, columns, requested, points, target);
  for (std::size_t i = 0; i < requested; ++i) {
    target.Filled(columns[i].variable, columns[i].secondaryIndex);
  }
  closer.keepFile = request.keepBuffer;
  if (failure) throw CException(*failure);
  if (!request.keepBuffer) return points;
  m_ahead.MarkHandedOut(layout, request);
  for (std::size_t i = requested; i < columns.size(); ++i) {
    m_ahead.Add(columns[i].base, std::move(columns[i].own));
  }
  return points;
}

template <class T, class U>
void CBinaryDataReader<T, U>::Prepare(const DataRequest& request) {
  if (this->HasBuffer()) return;
  if (m_kept.IsOpen()) {
    this->Resume(std::move(m_kept));
  } else if (!this->Open()) {
    return;
  }
  if (request.keepBuffer && IsToBeBuffered()) {
    CReader<T, U>::Prepare();
  } else {
    this->PrepareForBlocks();
  }
}

template <class T, class U>
bool CBinaryDataReader<T, U>::IsToBeBuffered() const {
  const std::uint64_t length = this->GetLength();
  if (length < kSmallFile || length == this->kUnknownLength) return true;
  return length <= Limit() && !FileMap::Of(this->m_stream.SystemFile(), length);
}

/// The vectors to fill, up to the first that the file cannot fill.
/// \return what to say of that one: the vectors before it are delivered all the same.
template <class T, class U>
std::optional<CException> CBinaryDataReader<T, U>::ChooseColumns(
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

/// Columns to gather along, as many as may be kept.
template <class T, class U>
auto CBinaryDataReader<T, U>::ChooseAhead(const DataLayout& layout, const DataRequest& request)
    -> std::vector<Column> {
  if (this->GetLength() < kSmallFile) return {};  // the buffer serves as well
  const std::uint64_t taken = this->m_buffer.Size() + m_ahead.Bytes() + kOpenFile;
  const std::uint64_t room = Limit() > taken ? Limit() - taken : 0;
  const std::uint64_t most = room / ColumnsAhead<U>::SizeOf(request.points);
  std::vector<Column> columns;
  for (const std::uint64_t base :
       m_ahead.Choose(layout, request, {.together = kCacheLine / sizeof(T), .most = most})) {
    if (layout.PointsWithin(this->TotalWordCount(), base) < request.points) continue;
    columns.push_back({0, 0, base, nullptr});
  }
  return columns;
}

template <class T, class U>
CIOException CBinaryDataReader<T, U>::BeyondEnd(std::uint64_t offset) const {
  return CIOException(5008, "word offset = " + std::to_string(offset) +
                                "; m_totalWordCount = " + std::to_string(this->TotalWordCount()) +
                                "; path: " + this->GetPath());
}

template <class T, class U>
CException CBinaryDataReader<T, U>::Failure(const IDataTarget<U>& target, const Column& column,
                                            std::uint64_t point, const CIOException& cause) const {
  return CException(25, PointText(point) + "; " + target.SeriesContext(column.variable),
                    cause.what());
}

/// Fills the vectors of `columns`, of which the first `requested` were asked for; the others go if
/// the file has become too short for them.
template <class T, class U>
void CBinaryDataReader<T, U>::Gather(const DataLayout& layout, std::vector<Column>& columns,
                                     std::size_t requested, std::uint64_t points,
                                     const IDataTarget<U>& target) {
  std::vector<std::vector<U>*> vectors;
  for (Column& column : columns) {
    if (column.values == nullptr) column.values = &column.own;
    column.values->clear();  // the room for what is read is made without a copy
    vectors.push_back(column.values);
  }
  if (points == 0 || columns.empty()) return;
  Pages::Reserve<U>(vectors, static_cast<std::size_t>(points));
  const RowRange rows{0, points, 1};
  std::optional<Missing> missing;
  const auto pass = [&] {
    for (std::vector<U>* const values : vectors) values->clear();
    missing = GatherAll(columns, layout.Stride(), rows);
  };
  if (this->HasBuffer()) {
    pass();  // the file is closed by now
  } else {
    PassAtRest(this->m_stream.SystemFile(), pass);
  }
  if (!missing) return;
  ColumnPlan plan{{}, layout.Stride()};
  columns.resize(requested);
  for (const Column& column : columns) plan.bases.push_back(column.base);
  const NextWord next = FindNext(missing->word, plan, rows);
  if (next.point == points) return;
  for (const Column& column : columns) *column.values = {};
  throw Failure(target, columns[next.column], next.point,
                missing->error == 0
                    ? BeyondEnd(next.place)
                    : CIOException(5009, this->GetPath(), SystemErrorText(missing->error)));
}

/// \return the first word that could not be had.
template <class T, class U>
auto CBinaryDataReader<T, U>::GatherAll(const std::vector<Column>& columns, std::uint64_t stride,
                                        const RowRange& rows) -> std::optional<Missing> {
  std::vector<const Column*> inOrder;  // of the file: neighbours are copied together
  inOrder.reserve(columns.size());
  for (const Column& column : columns) inOrder.push_back(&column);
  std::sort(inOrder.begin(), inOrder.end(),
            [](const Column* a, const Column* b) { return a->base < b->base; });
  const auto isSame = [](const Column* a, const Column* b) { return a->base == b->base; };
  inOrder.erase(std::unique(inOrder.begin(), inOrder.end(), isSame), inOrder.end());
  ColumnPlan plan{{}, stride};
  std::vector<std::vector<U>*> places;
  for (const Column* column : inOrder) {
    plan.bases.push_back(column->base);
    places.push_back(column->values);
  }
  if (this->HasBuffer()) {
    const auto count = static_cast<std::size_t>(this->TotalWordCount());
    AppendColumns<T, U>({{this->Words(), count}, 0}, plan, rows, places);
    return std::nullopt;
  }
  const File& file = this->m_stream.SystemFile();
  const std::uint64_t size = this->TotalWordCount() * sizeof(T);
  const bool takesAll = plan.bases.size() >= stride / kSparse;
  std::optional<FileLease> lease;  // of blocks that are not mapped: they are of one time, too
  if (takesAll && IsResident(file, size)) lease = FileLease::Of(file);
  FileBlocks blocks(file, size, {.takesAll = takesAll});
  for (NextWord next = FindNext(0, plan, rows); next.point != rows.count;) {
    const auto bytes = blocks.At(next.place * sizeof(T));
    const std::size_t count = bytes.size() / sizeof(T);
    if (count == 0) return Missing{next.place, blocks.Error()};
    const std::span<const T> words(reinterpret_cast<const T*>(bytes.data()), count);
    AppendColumns<T, U>({words, next.place}, plan, rows, places);
    next = FindNext(next.place + count, plan, rows);
  }
  return std::nullopt;
}

#define TABULON_INSTANTIATE(T)                 \
  template class CBinaryDataReader<T, float>;  \
  template class CBinaryDataReader<T, double>; \
  template class CBinaryDataReader<T, short>;  \
  template class CBinaryDataReader<T, int>;    \
  template class CBinaryDataReader<T, Long>;
TABULON_FOR_EACH_ELEMENT_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE

}  // namespace Sumara
