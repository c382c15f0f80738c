#include "model/group_statistics.h"

#include <algorithm>

#include "groupfiles/header_reader.h"
#include "model/group_base.h"
#include "model/model_context.h"

namespace Sumara {

template <class T>
void GroupStatistics<T>::CheckAvailable(std::uint64_t secondary) const {
  const CGroupBase<T>& group = m_group;
  if (!group.IsPreview() && !group.IsWritingIncrementally() && !group.HasData() &&
      Stored(secondary) == nullptr) {
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
const StatisticsBlock<T>* GroupStatistics<T>::Stored(std::uint64_t secondary) const {
  return secondary < m_stored.size() && !m_stored[secondary].uloads.empty() ? &m_stored[secondary]
                                                                            : nullptr;
}

template <class T>
void GroupStatistics<T>::FailWithoutStored() const {
  throw CException(123, GroupContext(&m_group));
}

template <class T>
bool GroupStatistics<T>::IsAllInMemory(std::uint64_t secondary) const {
  if (m_group.GetNumberOfAxes() < 2) return m_group.GetLoadState() == 1;
  const auto& entries = m_group.GetSeriesEntries();
  return std::all_of(entries.begin(), entries.end(), [&](const SeriesEntry& entry) {
    const auto* series = static_cast<const CSeriesBase<T>*>(entry.series.get());
    if (series == nullptr) return false;
    const std::vector<T>* points = series->FindVector(secondary);
    if (points == nullptr) throw CException(10, SeriesContext(series));
    return !points->empty();
  });
}

template <class T>
bool GroupStatistics<T>::AnswersFromStored(std::uint64_t secondary, bool preferComputed) const {
  if (m_group.IsPreview() || !preferComputed) {
    if (Stored(secondary) == nullptr) FailWithoutStored();
    return true;
  }
  if (m_stored.empty() || IsAllInMemory(secondary)) return false;
  if (Stored(secondary) == nullptr) FailWithoutStored();
  return true;
}

template <class T>
StatisticsBlock<T>& GroupStatistics<T>::Computed(std::uint64_t secondary) {
  m_computed.resize(
      static_cast<std::size_t>(std::max<std::uint64_t>(secondary + 1, m_group.CountOfSecondary())));
  return m_computed[secondary];
}

template <class T>
const std::vector<double>& GroupStatistics<T>::Get(StatisticKind kind, std::uint64_t secondary,
                                                   bool preferComputed) {
  CheckAvailable(secondary);
  const auto pick = [&](auto& block) -> auto& {
    switch (kind) {
      case StatisticKind::kMaxTime:
        return block.maxTime;
      case StatisticKind::kMinTime:
        return block.minTime;
      case StatisticKind::kMean:
        return block.mean;
    }
    throw CException(132, GroupContext(&m_group));
  };
  if (AnswersFromStored(secondary, preferComputed)) return pick(*Stored(secondary));
  auto& computed = pick(Computed(secondary));
  ComputeStatistic(computed, kind, secondary);
  return computed;
}

template <class T>
double GroupStatistics<T>::Get(StatisticKind kind, const std::string& name, std::uint64_t secondary,
                               bool preferComputed) {
  const std::vector<double>& values = Get(kind, secondary, preferComputed);
  const std::uint64_t index = m_group.GetSeriesIndex(name, /*exact=*/true);
  if (index >= values.size()) FailWithoutStored();
  return values[index];
}

template <class T>
const typename GroupStatistics<T>::Uloads& GroupStatistics<T>::GetUloads(std::uint64_t secondary,
                                                                         bool preferComputed) {
  CheckAvailable(secondary);
  const bool live = preferComputed && m_group.IsWritingIncrementally() && !m_group.IsPreview();
  if (live && secondary < m_liveUloads.size()) return m_liveUloads[secondary];
  if (!live && AnswersFromStored(secondary, preferComputed)) return Stored(secondary)->uloads;
  Uloads& computed = Computed(secondary).uloads;
  ComputeUloads(computed, secondary);
  return computed;
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
  for (const SeriesEntry& entry : m_group.GetSeriesEntries()) {
    if (entry.series != nullptr) out[place++] = FigureOf(*entry.series, kind, secondary);
  }
}

template <class T>
void GroupStatistics<T>::ComputeUloads(Uloads& out, std::uint64_t secondary) const {
  CheckAvailable(secondary);
  const auto& entries = m_group.GetSeriesEntries();
  const bool always = !m_group.IsWritingIncrementally();
  if (always) out.clear();  // while writing, rows without a new extreme keep their values
  out.resize(2 * entries.size());
  for (auto& row : out) row.resize(entries.size());
  const auto fill = [&](std::vector<T>& row, std::uint64_t index) {
    for (std::size_t j = 0; j < entries.size(); ++j) {
      const auto* series = static_cast<const CSeriesBase<T>*>(entries[j].series.get());
      if (series != nullptr) row[j] = series->DataAtIndex(index, secondary);
    }
  };
  for (std::size_t i = 0; i < entries.size(); ++i) {
    ISeries* series = entries[i].series.get();
    if (series == nullptr) continue;
    if (always || series->HasMaximumChanged(secondary))
      fill(out[2 * i], series->GetMaximumIndex(secondary));
    if (always || series->HasMinimumChanged(secondary))
      fill(out[2 * i + 1], series->GetMinimumIndex(secondary));
  }
}

template <class T>
void GroupStatistics<T>::ComputeLiveUloads() {
  const std::uint64_t count = m_group.CountOfSecondary();
  m_liveUloads.resize(static_cast<std::size_t>(count));
  for (std::uint64_t secondary = 0; secondary < count; ++secondary) {
    ComputeUloads(m_liveUloads[secondary], secondary);
  }
}

template <class T>
void GroupStatistics<T>::ReadStored(CHeaderReader& header, std::uint64_t variableCount) {
  std::vector<StatisticsBlock<T>> blocks;
  // A header that tells of more secondary values than it has blocks ends the loop by itself.
  for (std::uint64_t secondary = 0; secondary < m_group.CountOfSecondary(); ++secondary) {
    auto block = header.template ReadStatistics<T>(variableCount);
    if (!block) break;
    blocks.push_back(std::move(*block));
  }
  m_stored = std::move(blocks);
  m_hasReadStored = true;
}

#define TABULON_INSTANTIATE(T) template class GroupStatistics<T>;
TABULON_FOR_EACH_ELEMENT_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE

}  // namespace Sumara
