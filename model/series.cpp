#include "model/series.h"

#include <algorithm>
#include <utility>

#include "core/text.h"
#include "model/axes.h"
#include "model/igroup.h"
#include "model/model_context.h"

namespace Sumara {

template <class T>
void SeriesStatistics<T>::Seed(T value) {
  maximum = minimum = sum = value;
  maximumChanged = minimumChanged = true;
}

template <class T>
void SeriesStatistics<T>::Advance(std::span<const T> points, std::uint64_t index, IndexRule rule) {
  SeriesStatistics figures = *this;  // apart from the points, so that they stay in registers
  for (const T value : points) {
    if (value > figures.maximum) {
      figures.maximum = value;
      figures.maximumChanged = true;
      figures.maximumIndex = index;
      if (rule.incremental) figures.totalMaximumIndex = index + rule.flushed;
    } else if (value < figures.minimum) {
      figures.minimum = value;
      figures.minimumChanged = true;
      figures.minimumIndex = index;
      if (rule.incremental) figures.totalMinimumIndex = index + rule.flushed;
    }
    figures.sum = AddElements(figures.sum, value);
    ++index;
  }
  *this = figures;
}

template <class T>
void SeriesStatistics<T>::Scan(std::span<const T> points) {
  *this = {};
  Seed(points.front());
  Advance(points.subspan(1), /*index=*/1, {});
  SnapshotIndices();
}

template <class T>
void SeriesStatistics<T>::SnapshotIndices() {
  // An extreme of an earlier chunk has no place in the data now in memory.
  if (maximumChanged) totalMaximumIndex = maximumIndex;
  if (minimumChanged) totalMinimumIndex = minimumIndex;
}

template <class T>
SeriesStatistics<T>& RunningStatistics<T>::UpTo(std::span<const T> points, IndexRule rule) {
  std::size_t next = points.size() - std::min(std::exchange(m_waiting, 0), points.size());
  if (next == points.size()) return m_figures;
  if (std::exchange(m_seed, false)) m_figures.Seed(points[next++]);
  m_figures.Advance(points.subspan(next), next, rule);
  return m_figures;
}

template <class T>
void RunningStatistics<T>::Scan(std::span<const T> points) {
  m_figures.Scan(points);
  m_waiting = 0;
  m_seed = false;
}

template <class T>
CSeriesBase<T>::CSeriesBase(std::string name, std::string quantity)
    : m_name(std::move(name)), m_quantity(std::move(quantity)) {
  if (!IsValidName(m_name)) throw CException(3, SeriesContext(this));
  if (!IsValidName(m_quantity)) throw CException(4, SeriesContext(this));
}

template <class T>
void CSeriesBase<T>::SetGroup(IGroup* group) {
  if (m_group != nullptr && m_group != group && HasData()) throw CException(8, SeriesContext(this));
  m_group = group;
  if (m_group != nullptr && m_group->IsDeserialised()) m_noPointsYet = false;
  ComputeStatistics();
}

template <class T>
void CSeriesBase<T>::Rename(const std::string& name) {
  if (!IsValidName(name)) throw CException(3, SeriesContext(this));
  m_name = name;
}

template <class T>
bool CSeriesBase<T>::IsIncremental() const {
  return m_group != nullptr && m_group->IsWritingIncrementally();
}

template <class T>
std::uint64_t CSeriesBase<T>::FlushedPoints() const {
  return IsIncremental() ? m_group->GetFlushedPointCount() : 0;
}

template <class T>
void CSeriesBase<T>::CheckChangeable() const {
  if (m_group == nullptr) throw CException(6, SeriesContext(this));
  if (m_group->IsReadOnly()) throw CException(7, SeriesContext(this));
}

template <class T>
std::uint64_t CSeriesBase<T>::PrimaryLabels() const {
  return m_group->GetNumberOfLabels(kPrimary);
}

template <class T>
void CSeriesBase<T>::CheckLabels(AddMode mode, std::uint64_t incoming,
                                 std::uint64_t present) const {
  const std::uint64_t labels = PrimaryLabels();
  if (labels == 0) return;
  const bool fits = mode == AddMode::kAppend ? incoming + present <= labels : incoming == labels;
  if (fits) return;
  throw CException(mode == AddMode::kAppend ? 14 : 15,
                   SeriesContext(this) +
                       "; number of primary axis labels = " + std::to_string(labels) +
                       "; number of incoming data points = " + std::to_string(incoming) +
                       "; number of resulting points = " + std::to_string(incoming + present));
}

template <class T>
const T& CSeriesBase<T>::PointAt(const std::vector<T>& points, std::uint64_t index) const {
  if (index >= points.size()) {
    throw CException(9, "index = " + std::to_string(index) + "; " + SeriesContext(this));
  }
  return points[index];
}

template <class T>
SeriesStatistics<T>& CSeriesBase<T>::Ensured(std::uint64_t secondary) {
  if (!IsIncremental()) {
    if (!HasData()) throw CException(5, SeriesContext(this));
    CheckHasVector(secondary);
    if (!m_statisticsComputed) {
      ComputeStatistics();
      m_statisticsComputed = true;
    }
  }
  SeriesStatistics<T>* statistics = FindStatistics(secondary);
  if (statistics == nullptr)
    throw CException(10, "secondary axis value index = " + std::to_string(secondary) + "; " +
                             SeriesContext(this));
  return *statistics;
}

template <class T>
double CSeriesBase<T>::GetMean(std::uint64_t secondary) {
  const auto sum = static_cast<double>(Ensured(secondary).sum);
  const std::vector<T>* points = FindVector(secondary);
  const std::uint64_t count = (points != nullptr ? points->size() : 0) + FlushedPoints();
  return sum / static_cast<double>(count);
}

template <class T>
void CSeriesBase<T>::ResetStatistics() {
  ClearChangedFlags();
  m_noPointsYet = true;
}

#define TABULON_INSTANTIATE(T)         \
  template struct SeriesStatistics<T>; \
  template class RunningStatistics<T>; \
  template class CSeriesBase<T>;
TABULON_FOR_EACH_ELEMENT_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE

}  // namespace Sumara
