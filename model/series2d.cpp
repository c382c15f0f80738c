#include "model/series2d.h"

#include <algorithm>
#include <utility>

#include "core/error_context.h"
#include "model/axes.h"
#include "model/igroup.h"
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
SeriesStatistics<T>* CSeries2D<T>::FindStatistics(std::uint64_t secondary) const {
  if (secondary >= m_running.size()) return nullptr;
  const std::vector<T>* const points = FindVector(secondary);
  return &m_running[secondary].UpTo(points != nullptr ? std::span<const T>(*points)
                                                      : std::span<const T>());
}

/// Takes the points that wait into the figures, before the vectors change.
template <class T>
void CSeries2D<T>::CatchUp() const {
  for (std::size_t s = 0; s < m_running.size(); ++s) FindStatistics(s);
}

template <class T>
bool CSeries2D<T>::HasMaximumChanged(std::uint64_t secondary) const {
  const SeriesStatistics<T>* const figures = FindStatistics(secondary);
  return figures != nullptr && figures->maximumChanged;
}

template <class T>
bool CSeries2D<T>::HasMinimumChanged(std::uint64_t secondary) const {
  const SeriesStatistics<T>* const figures = FindStatistics(secondary);
  return figures != nullptr && figures->minimumChanged;
}

template <class T>
void CSeries2D<T>::ComputeStatistics() {
  if (this->m_group == nullptr) throw CException(6, SeriesContext(this));
  if (m_data.empty()) return;
  m_running.assign(m_data.size(), {});
  for (std::size_t s = 0; s < m_data.size(); ++s) {
    if (!m_data[s].empty()) m_running[s].Scan(m_data[s]);
  }
}

template <class T>
void CSeries2D<T>::ClearChangedFlags() {
  for (std::size_t s = 0; s < m_running.size(); ++s) FindStatistics(s)->ClearChangedFlags();
}

template <class T>
void CSeries2D<T>::SnapshotExtremeIndices() {
  for (std::size_t s = 0; s < m_running.size(); ++s) FindStatistics(s)->SnapshotIndices();
}

template <class T>
bool CSeries2D<T>::HasData() const {
  return std::any_of(m_data.begin(), m_data.end(),
                     [](const auto& points) { return !points.empty(); });
}

template <class T>
void CSeries2D<T>::ClearData(bool keepStatistics) {
  this->CheckChangeable();
  for (std::size_t s = 0; s < m_running.size(); ++s) {
    SeriesStatistics<T>& figures = *FindStatistics(s);
    figures.maximumIndex = figures.minimumIndex = 0;
  }
  for (auto& points : m_data) points.clear();
  std::replace(m_loadStates.begin(), m_loadStates.end(), LoadState::kLoaded, LoadState::kWaiting);
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
void CSeries2D<T>::SetNumberOfVectors(std::uint64_t count) {
  CatchUp();
  std::vector<std::vector<T>> data(static_cast<std::size_t>(count));
  m_loadStates.resize(static_cast<std::size_t>(count), LoadState::kNotFromFile);
  m_data = std::move(data);
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
  if (this->m_noPointsYet) {
    m_data.assign(count, {});
    m_running.assign(count, {});
    return;
  }
  if (count > m_running.size()) m_running.resize(count);
  if (count < m_data.size()) CatchUp();
  m_data.resize(count);
}

/// Appends `pointsOf(s)` to each vector, and takes it into the figures: at once while the group is
/// written in chunks, else when somebody asks.
template <class T>
template <class PointsOf>
void CSeries2D<T>::Append(std::size_t vectors, PointsOf pointsOf) {
  FitVectors(vectors);
  const IndexRule rule = this->Rule();
  if (rule.incremental) CatchUp();  // those that wait are counted without the chunks
  std::size_t done = 0;
  try {
    for (; done < vectors; ++done) {
      const std::span<const T> points = pointsOf(done);
      m_data[done].insert(m_data[done].end(), points.begin(), points.end());
    }
  } catch (...) {
    while (done-- > 0) m_data[done].resize(m_data[done].size() - pointsOf(done).size());
    throw;
  }
  const bool seed = std::exchange(this->m_noPointsYet, false);
  for (std::size_t s = 0; s < vectors; ++s) {
    m_running[s].Append(pointsOf(s).size(), seed);
    if (rule.incremental) m_running[s].UpTo(m_data[s], rule);
  }
}

template <class T>
void CSeries2D<T>::AddSeriesPoint(std::span<const T> values, bool check) {
  if (check) {
    CheckVectorCount(values.size());
    this->CheckLabels(AddMode::kAppend, 1, PresentPoints());
  }
  Append(values.size(), [&](std::size_t s) { return values.subspan(s, 1); });
}

template <class T>
void CSeries2D<T>::AddSeriesPoints(const std::vector<std::vector<T>>& vectors, bool check) {
  if (check) CheckIncoming(vectors, AddMode::kAppend, /*expected=*/0);
  if (vectors.empty() || vectors.front().empty()) return;
  const std::size_t count = vectors.front().size();
  for (const auto& points : vectors) static_cast<void>(points.at(count - 1));
  Append(vectors.size(), [&](std::size_t s) { return std::span(vectors[s]).first(count); });
}

#define TABULON_INSTANTIATE(T) template class CSeries2D<T>;
TABULON_FOR_EACH_ELEMENT_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE

}  // namespace Sumara
