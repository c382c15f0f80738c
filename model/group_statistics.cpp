#include "model/group_statistics.h"

#include <algorithm>
#include <utility>

#include "model/axes.h"
#include "model/group_loader.h"
#include "model/igroup.h"
#include "model/model_context.h"

namespace Sumara {
namespace {

template <class T>
const CSeriesBase<T>* Typed(const std::shared_ptr<ISeries>& series) {
  return static_cast<const CSeriesBase<T>*>(series.get());
}

FigureLine LineOf(StatisticKind kind, const IGroup& group) {
  switch (kind) {
    case StatisticKind::kMaxTime:
      return FigureLine::kMaxTime;
    case StatisticKind::kMinTime:
      return FigureLine::kMinTime;
    case StatisticKind::kMean:
      return FigureLine::kMean;
  }
  throw CException(132, GroupContext(&group));
}

}  // namespace

template <class T>
void GroupStatistics<T>::CheckAvailable(std::uint64_t secondary) const {
  const IGroup& group = m_group;
  if (!group.IsPreview() && !group.IsWritingIncrementally() && !group.HasData() &&
      !HasStored(secondary)) {
    throw CException(45, GroupContext(&group));
  }
  if (group.GetNumberOfAxes() == 0) throw CException(51, GroupContext(&group));
  if (group.GetPreviewMode() == PreviewMode::kWithoutStatistics)
    throw CException(124, GroupContext(&group));
  if (group.GetNumberOfAxes() < 2) return;
  const std::uint64_t count = group.GetNumberOfPoints(kSecondary);
  if (secondary < count) return;
  throw CException(count == 0 ? 46 : 40,
                   AxisPositionContext(group.GetAxis(kSecondary, /*mustExist=*/true)->GetName(),
                                       kSecondary, &group));
}

template <class T>
void GroupStatistics<T>::FailWithoutStored() const {
  throw CException(123, GroupContext(&m_group));
}

template <class T>
bool GroupStatistics<T>::IsAllInMemory(std::uint64_t secondary) const {
  if (m_group.GetNumberOfAxes() < 2) return m_group.GetLoadState() == 1;
  const auto& all = m_group.GetSeriesByPlace();
  return std::all_of(all.begin(), all.end(), [&](const auto& object) {
    const CSeriesBase<T>* const series = Typed<T>(object);
    if (series == nullptr) return false;
    const std::vector<T>* points = series->FindVector(secondary);
    if (points == nullptr) throw CException(10, SeriesContext(series));
    return !points->empty();
  });
}

/// Whether the series that have an object are filled to one length: no figure of one can be refused
/// then while that of another is not.
template <class T>
bool GroupStatistics<T>::IsOfOneLength(std::uint64_t secondary) const {
  std::size_t length = 0;
  for (const auto& series : m_group.GetSeriesByPlace()) {
    if (series == nullptr) continue;
    const std::vector<T>* const points = Typed<T>(series)->FindVector(secondary);
    if (points == nullptr || points->empty()) return false;
    if (length != 0 && points->size() != length) return false;
    length = points->size();
  }
  return length != 0;
}

template <class T>
bool GroupStatistics<T>::AnswersFromStored(std::uint64_t secondary, bool preferComputed) {
  const bool alone = m_group.IsPreview() || !preferComputed;
  if (!alone && (m_stored.Rows().BlockCount() == 0 || IsAllInMemory(secondary))) return false;
  RestoreStored();
  if (!alone && m_stored.Rows().BlockCount() == 0) return false;
  if (!HasStored(secondary)) FailWithoutStored();
  return true;
}

template <class T>
void GroupStatistics<T>::RestoreStored() {
  if (m_stored.Restore(m_group.GetPath())) return;
  m_hasReadStored = false;
  LoadStoredStatistics(m_group.GetPath(), m_group);
  if (!m_hasReadStored) m_stored.Set({});  // it has other variables now
}

template <class T>
const std::vector<double>& GroupStatistics<T>::Get(StatisticKind kind, std::uint64_t secondary,
                                                   bool preferComputed) {
  CheckAvailable(secondary);
  const FigureLine line = LineOf(kind, m_group);
  const KeptFigures::Use stored(m_stored);
  if (AnswersFromStored(secondary, preferComputed)) {
    m_line.resize(static_cast<std::size_t>(m_stored.Rows().variableCount));
    ReadFigures<double>(stored.Text(), m_stored.Rows().Line(secondary, line), m_line);
  } else {
    ComputeStatistic(m_line, kind, secondary);
  }
  return m_line;
}

template <class T>
double GroupStatistics<T>::Get(StatisticKind kind, const std::string& name, std::uint64_t secondary,
                               bool preferComputed) {
  CheckAvailable(secondary);
  const FigureLine line = LineOf(kind, m_group);
  const auto indexBelow = [&](std::uint64_t count) {
    const std::uint64_t index = m_group.GetSeriesIndex(name, /*exact=*/true);
    if (index >= count) FailWithoutStored();
    return index;
  };
  const KeptFigures::Use stored(m_stored);
  if (AnswersFromStored(secondary, preferComputed)) {
    return ReadFigure<double>(stored.Text(), m_stored.Rows().Line(secondary, line),
                              indexBelow(m_stored.Rows().variableCount));
  }
  // A time may be refused for the sake of another series, which an axis has no value for.
  if (kind == StatisticKind::kMean && !m_group.IsWritingIncrementally() &&
      IsOfOneLength(secondary)) {
    return MeanAt(indexBelow(m_group.GetNumberOfSeries()), secondary);
  }
  ComputeStatistic(m_line, kind, secondary);
  return m_line[static_cast<std::size_t>(indexBelow(m_line.size()))];
}

/// The mean that stands at a place of the computed row, in which gaps close up.
template <class T>
double GroupStatistics<T>::MeanAt(std::uint64_t place, std::uint64_t secondary) const {
  for (const auto& series : m_group.GetSeriesByPlace()) {
    if (series != nullptr && place-- == 0) return series->GetMean(secondary);
  }
  return 0.0;
}

template <class T>
bool GroupStatistics<T>::IsLive(std::uint64_t secondary, bool preferComputed) const {
  return preferComputed && m_group.IsWritingIncrementally() && !m_group.IsPreview() &&
         secondary < m_liveUloads.size();
}

template <class T>
auto GroupStatistics<T>::GetUloads(std::uint64_t secondary, bool preferComputed) -> Uloads {
  CheckAvailable(secondary);
  if (IsLive(secondary, preferComputed)) return m_liveUloads[secondary];
  const KeptFigures::Use stored(m_stored);
  return AnswersFromStored(secondary, preferComputed) ? StoredUloads(secondary, stored.Text())
                                                      : ComputedUloads(secondary);
}

template <class T>
auto GroupStatistics<T>::StoredUloads(std::uint64_t secondary, std::string_view text) const
    -> Uloads {
  const auto count = static_cast<std::size_t>(m_stored.Rows().variableCount);
  Uloads rows(2 * count, std::vector<T>(count));
  for (std::size_t i = 0; i < rows.size(); ++i) {
    ReadFigures<T>(text, m_stored.Rows().UloadsRow(secondary, i), rows[i]);
  }
  return rows;
}

template <class T>
auto GroupStatistics<T>::ComputedUloads(std::uint64_t secondary) -> Uloads {
  Uloads rows;
  if (!m_group.IsWritingIncrementally()) {
    ComputeUloads(rows, secondary);
    return rows;
  }
  ComputeUloads(m_unfinishedUloads, secondary);  // rows without a new extreme keep their values
  return m_unfinishedUloads;
}

template <class T>
T GroupStatistics<T>::ValueIn(const Uloads& rows, std::uint64_t row, std::uint64_t column) const {
  if (row >= rows.size() || column >= rows[row].size()) FailWithoutStored();
  return rows[row][column];
}

template <class T>
T GroupStatistics<T>::GetUload(std::uint64_t series, Extreme extreme, std::uint64_t column,
                               std::uint64_t secondary) {
  CheckAvailable(secondary);
  const std::uint64_t row = 2 * series + static_cast<std::uint64_t>(extreme);
  if (IsLive(secondary, /*preferComputed=*/true)) {
    return ValueIn(m_liveUloads[secondary], row, column);
  }
  const KeptFigures::Use stored(m_stored);
  if (AnswersFromStored(secondary, /*preferComputed=*/true)) {
    const std::uint64_t count = m_stored.Rows().variableCount;
    if (series >= count || column >= count) FailWithoutStored();  // the header tells of fewer
    return ReadFigure<T>(stored.Text(), m_stored.Rows().UloadsRow(secondary, row), column);
  }
  if (!m_group.IsWritingIncrementally() && IsOfOneLength(secondary)) {
    return ValueAtExtreme(series, extreme, column, secondary);
  }
  return ValueIn(ComputedUloads(secondary), row, column);
}

/// A place of the computed table; of a series without object it holds 0.
template <class T>
T GroupStatistics<T>::ValueAtExtreme(std::uint64_t series, Extreme extreme, std::uint64_t column,
                                     std::uint64_t secondary) const {
  const auto& all = m_group.GetSeriesByPlace();
  ISeries* const own = all[series].get();
  const CSeriesBase<T>* const other = Typed<T>(all[column]);
  if (own == nullptr || other == nullptr) return T{};
  return other->DataAtIndex(extreme == Extreme::kMaximum ? own->GetMaximumIndex(secondary)
                                                         : own->GetMinimumIndex(secondary),
                            secondary);
}

template <class T>
double GroupStatistics<T>::FigureOf(ISeries& series, StatisticKind kind,
                                    std::uint64_t secondary) const {
  const auto axis = m_group.GetAxis(kPrimary, /*mustExist=*/true);
  const bool total = m_group.IsWritingIncrementally();
  switch (kind) {
    case StatisticKind::kMean:
      return series.GetMean(secondary);
    case StatisticKind::kMaxTime:
      return axis->GetNumberAtIndex(total ? series.GetTotalMaximumIndex(secondary)
                                          : series.GetMaximumIndex(secondary));
    case StatisticKind::kMinTime:
      return axis->GetNumberAtIndex(total ? series.GetTotalMinimumIndex(secondary)
                                          : series.GetMinimumIndex(secondary));
  }
  throw CException(132, GroupContext(&m_group));
}

template <class T>
void GroupStatistics<T>::ComputeStatistic(std::vector<double>& out, StatisticKind kind,
                                          std::uint64_t secondary) const {
  CheckAvailable(secondary);
  out.assign(m_group.GetNumberOfSeries(), 0.0);
  std::size_t place = 0;  // moves on for a series with data only: gaps close up at the end
  for (const auto& series : m_group.GetSeriesByPlace()) {
    if (series != nullptr) out[place++] = FigureOf(*series, kind, secondary);
  }
}

template <class T>
void GroupStatistics<T>::ComputeUloads(Uloads& out, std::uint64_t secondary) const {
  CheckAvailable(secondary);
  const auto& all = m_group.GetSeriesByPlace();
  const bool always = !m_group.IsWritingIncrementally();
  if (always) out.clear();  // while writing, rows without a new extreme keep their values
  out.resize(2 * all.size());
  for (auto& row : out) row.resize(all.size());
  const auto fill = [&](std::vector<T>& row, std::uint64_t index) {
    for (std::size_t j = 0; j < all.size(); ++j) {
      const CSeriesBase<T>* const series = Typed<T>(all[j]);
      if (series != nullptr) row[j] = series->DataAtIndex(index, secondary);
    }
  };
  for (std::size_t i = 0; i < all.size(); ++i) {
    ISeries* series = all[i].get();
    if (series == nullptr) continue;
    if (always || series->HasMaximumChanged(secondary))
      fill(out[2 * i], series->GetMaximumIndex(secondary));
    if (always || series->HasMinimumChanged(secondary))
      fill(out[2 * i + 1], series->GetMinimumIndex(secondary));
  }
}

template <class T>
void GroupStatistics<T>::ComputeLiveUloads(std::uint64_t secondaryCount) {
  m_liveUloads.resize(static_cast<std::size_t>(secondaryCount));
  for (std::uint64_t secondary = 0; secondary < secondaryCount; ++secondary) {
    ComputeUloads(m_liveUloads[secondary], secondary);
  }
}

template <class T>
void GroupStatistics<T>::SetStored(HeaderFigures figures) {
  m_stored.Set(std::move(figures));
  m_hasReadStored = true;
}

#define TABULON_INSTANTIATE(T) template class GroupStatistics<T>;
TABULON_FOR_EACH_ELEMENT_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE

}  // namespace Sumara
