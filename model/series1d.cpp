#include "model/series1d.h"

#include <utility>

#include "core/error_context.h"
#include "model/axes.h"
#include "model/igroup.h"
#include "model/model_context.h"

namespace Sumara {
template <class T>
CSeries1D<T>::CSeries1D(std::string name, std::string quantity, std::uint64_t initialSize)
    : CSeriesBase<T>(std::move(name), std::move(quantity)),
      m_data(static_cast<std::size_t>(initialSize)) {}

template <class T>
std::uint64_t CSeries1D<T>::GetNumberOfPoints() const {
  if (!m_data.empty()) return m_data.size();
  const IGroup* group = this->m_group;
  return group != nullptr && group->IsPreview()
             ? group->GetAxis(kPrimary, /*mustExist=*/true)->GetNumberOfPoints()
             : 0;
}

template <class T>
void CSeries1D<T>::ComputeStatistics() {
  if (this->m_group == nullptr) throw CException(6, SeriesContext(this));
  if (!m_data.empty()) m_running.Scan(m_data);
}

template <class T>
void CSeries1D<T>::ClearData(bool keepStatistics) {
  this->CheckChangeable();
  SeriesStatistics<T>& figures = Figures();
  m_data.clear();
  figures.maximumIndex = figures.minimumIndex = 0;
  if (m_loadState == LoadState::kLoaded) m_loadState = LoadState::kWaiting;
  if (!keepStatistics) ComputeStatistics();
}

template <class T>
std::uint64_t CSeries1D<T>::GetNumberOfPointsOnAxis(std::uint32_t position, bool) const {
  if (position != kPrimary) {
    throw CException(37,
                     std::string(AxisPositionText(position)) + "; " + GroupContext(this->m_group));
  }
  return m_data.size();
}

template <class T>
const T& CSeries1D<T>::DataAtIndex(std::uint64_t index, std::uint64_t) const {
  return this->PointAt(m_data, index);
}

template <class T>
void CSeries1D<T>::CheckIncoming(std::uint64_t incoming, AddMode mode,
                                 std::uint64_t expected) const {
  this->CheckChangeable();
  if (incoming == 0) throw CException(13, SeriesContext(this));
  if ((this->PrimaryLabels() != 0 || this->IsIncremental()) && expected != 0 &&
      expected != incoming) {
    throw CException(72, SeriesContext(this) +
                             "; number of points expected for consistency across series = " +
                             std::to_string(expected) +
                             "; number of incoming data points = " + std::to_string(incoming));
  }
  this->CheckLabels(mode, incoming, m_data.size());
}

/// Has `store` put the points behind those that are there, and takes them into the figures: at once
/// while the group is written in chunks, else when somebody asks.
template <class T>
template <class Store>
void CSeries1D<T>::Append(std::size_t count, Store store) {
  const IndexRule rule = this->Rule();
  if (rule.incremental) Figures();  // those that wait are counted without the chunks
  store();
  m_running.Append(count, std::exchange(this->m_noPointsYet, false));
  if (rule.incremental) m_running.UpTo(m_data, rule);
}

template <class T>
void CSeries1D<T>::AddSeriesPoints(std::span<const T> points, bool check) {
  if (check) CheckIncoming(points.size(), AddMode::kAppend, /*expected=*/0);
  if (points.empty()) return;
  Append(points.size(), [&] { m_data.insert(m_data.end(), points.begin(), points.end()); });
}

template <class T>
void CSeries1D<T>::TakeSeriesPoints(std::vector<T>&& points, bool check) {
  if (!m_data.empty()) return AddSeriesPoints(std::span<const T>(points), check);
  if (check) CheckIncoming(points.size(), AddMode::kAppend, /*expected=*/0);
  if (points.empty()) return;
  Append(points.size(), [&] { m_data = std::move(points); });
}

#define TABULON_INSTANTIATE(T) template class CSeries1D<T>;
TABULON_FOR_EACH_ELEMENT_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE

}  // namespace Sumara
