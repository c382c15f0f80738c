#include "model/series2d.h"

#include <algorithm>
#include <utility>

#include "core/error_context.h"
#include "model/axes.h"
#include "model/group.h"
#include "model/model_context.h"

namespace Sumara {

template <class T>
CSeries2D<T>::CSeries2D(std::string name, std::string quantity)
    : CSeriesBase<T>(std::move(name), std::move(quantity)) {}

template <class T>
std::uint64_t CSeries2D<T>::GetNumberOfPoints() const {
  if (this->m_group != nullptr && this->m_group->IsPreview()) {
    if (const auto axis = this->m_group->GetAxis(kPrimary, /*mustExist=*/false))
      return axis->GetNumberOfPoints();
  }
  return GetNumberOfPointsOnAxis(kPrimary, /*widest=*/true);
}

template <class T>
bool CSeries2D<T>::HasMaximumChanged(std::uint64_t secondary) const {
  return secondary < m_statistics.size() && m_statistics[secondary].maximumChanged;
}

template <class T>
bool CSeries2D<T>::HasMinimumChanged(std::uint64_t secondary) const {
  return secondary < m_statistics.size() && m_statistics[secondary].minimumChanged;
}

template <class T>
void CSeries2D<T>::ComputeStatistics() {
  if (this->m_group == nullptr) throw CException(6, SeriesContext(this));
  if (m_data.empty()) return;
  m_statistics.assign(m_data.size(), {});
  for (std::size_t s = 0; s < m_data.size(); ++s) {
    if (!m_data[s].empty()) m_statistics[s].Scan(m_data[s]);
  }
}

template <class T>
void CSeries2D<T>::ClearChangedFlags() {
  for (auto& statistics : m_statistics) statistics.ClearChangedFlags();
}

template <class T>
void CSeries2D<T>::SnapshotExtremeIndices() {
  for (auto& statistics : m_statistics) statistics.SnapshotIndices();
}

template <class T>
bool CSeries2D<T>::HasData() const {
  return std::any_of(m_data.begin(), m_data.end(),
                     [](const auto& points) { return !points.empty(); });
}

template <class T>
void CSeries2D<T>::ClearData(bool keepStatistics) {
  this->CheckChangeable();
  for (auto& points : m_data) points.clear();
  for (auto& statistics : m_statistics) statistics.maximumIndex = statistics.minimumIndex = 0;
  if (!keepStatistics) ComputeStatistics();
}

template <class T>
void CSeries2D<T>::SetLoadState(LoadState state) {
  std::fill(m_loadStates.begin(), m_loadStates.end(), state);
}

template <class T>
void CSeries2D<T>::SetLoadState(std::uint64_t secondary, LoadState state) {
  m_loadStates[secondary] = state;
  this->m_statisticsComputed = false;  // a vector that came in later has none yet
}

template <class T>
bool CSeries2D<T>::IsLoaded(std::uint64_t secondary) const {
  return secondary < m_loadStates.size() && m_loadStates[secondary] == LoadState::kLoaded;
}

template <class T>
std::uint64_t CSeries2D<T>::IsLoaded() const {
  return static_cast<std::uint64_t>(
      std::count(m_loadStates.begin(), m_loadStates.end(), LoadState::kLoaded));
}

template <class T>
std::uint64_t CSeries2D<T>::GetNumberOfPointsOnAxis(std::uint32_t position, bool widest) const {
  if (position == kSecondary) return m_data.size();
  if (position != kPrimary) {
    throw CException(37,
                     std::string(AxisPositionText(position)) + "; " + GroupContext(this->m_group));
  }
  if (!widest) return PresentPoints();
  std::size_t most = 0;
  for (const auto& points : m_data) most = std::max(most, points.size());
  return most;
}

template <class T>
const std::vector<T>& CSeries2D<T>::GetVector(std::uint64_t secondary) const {
  if (secondary >= m_data.size()) {
    throw CException(10, "secondary axis value index = " + std::to_string(secondary) + "; " +
                             SeriesContext(this));
  }
  return m_data[secondary];
}

template <class T>
const T& CSeries2D<T>::DataAtIndex(std::uint64_t index, std::uint64_t secondary) const {
  return this->PointAt(GetVector(secondary), index);
}

template <class T>
const std::vector<T>* CSeries2D<T>::FindVector(std::uint64_t secondary) const {
  return secondary < m_data.size() ? &m_data[secondary] : nullptr;
}

template <class T>
SeriesStatistics<T>* CSeries2D<T>::FindStatistics(std::uint64_t secondary) {
  return secondary < m_statistics.size() ? &m_statistics[secondary] : nullptr;
}

template <class T>
void CSeries2D<T>::SetNumberOfVectors(std::uint64_t count) {
  m_data.assign(static_cast<std::size_t>(count), {});
  m_loadStates.resize(static_cast<std::size_t>(count), LoadState::kNotFromFile);
}

template <class T>
void CSeries2D<T>::CheckVectorCount(std::uint64_t count) const {
  this->CheckChangeable();
  if (count == 0) throw CException(13, SeriesContext(this));
  const std::uint64_t secondary = GetNumberOfPointsOnAxis(kSecondary, /*widest=*/true);
  if (secondary == 0 && !this->m_group->IsLabelledAxis(kSecondary)) return;
  if (count != secondary) throw CException(16, SeriesContext(this));
}

template <class T>
void CSeries2D<T>::CheckIncoming(const std::vector<std::vector<T>>& vectors, AddMode mode,
                                 std::uint64_t expected) const {
  CheckVectorCount(vectors.size());
  const bool bound = this->PrimaryLabels() != 0 || this->IsIncremental();
  if (expected == 0) expected = vectors.front().size();
  for (std::size_t s = 0; s < vectors.size(); ++s) {
    const std::uint64_t size = vectors[s].size();
    // Points are added across all vectors: one that is shorter than the first would leave a hole.
    if (bound ? size != expected : size < expected) {
      throw CException(72, SeriesContext(this) +
                               "; number of points expected for consistency across series = " +
                               std::to_string(expected) +
                               "; number of points provided for secondary axis index " +
                               std::to_string(s) + " = " + std::to_string(size));
    }
    this->CheckLabels(mode, size, PresentPoints());
  }
}

template <class T>
void CSeries2D<T>::FitVectors(std::size_t count) {
  if (this->m_noPointsYet || count > m_statistics.size()) m_statistics.resize(count);
  if (this->m_noPointsYet) {
    m_data.assign(count, {});
  } else if (count < m_data.size()) {
    m_data.resize(count);
  }
  if (m_data.size() < count) m_data.resize(count);
}

template <class T>
void CSeries2D<T>::AddSeriesPoint(std::span<const T> values, bool check) {
  if (check) {
    CheckVectorCount(values.size());
    this->CheckLabels(AddMode::kAppend, 1, PresentPoints());
  }
  FitVectors(values.size());
  const bool incremental = this->IsIncremental();
  const std::uint64_t flushed = this->FlushedPoints();
  for (std::size_t s = 0; s < values.size(); ++s) {
    m_data[s].push_back(values[s]);
    const std::uint64_t index = m_data[s].size() - 1;
    if (this->m_noPointsYet) {
      m_statistics[s] = {};
      m_statistics[s].Seed(values[s]);
    } else {
      m_statistics[s].Advance(values[s], index, incremental, index + flushed);
    }
  }
  this->m_noPointsYet = false;
}

template <class T>
void CSeries2D<T>::AddSeriesPoints(const std::vector<std::vector<T>>& vectors, bool check) {
  if (check) CheckIncoming(vectors, AddMode::kAppend, /*expected=*/0);
  if (vectors.empty()) return;
  std::vector<T> point(vectors.size());
  for (std::size_t i = 0; i < vectors.front().size(); ++i) {
    for (std::size_t s = 0; s < vectors.size(); ++s) point[s] = vectors[s].at(i);
    AddSeriesPoint(point, /*check=*/false);
  }
}

#define TABULON_INSTANTIATE(T) template class CSeries2D<T>;
TABULON_FOR_EACH_ELEMENT_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE

}  // namespace Sumara
