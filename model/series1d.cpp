#include "model/series1d.h"

#include <utility>

#include "core/error_context.h"
#include "model/axes.h"
#include "model/group.h"
#include "model/model_context.h"

namespace Sumara {
namespace {

/// How the index of an extreme is counted from the first point ever added.
struct IndexRule {
  bool incremental;
  std::uint64_t flushed;
};

/// `SeriesStatistics::Advance` over many points, the first of which has the index `index`.
template <class T>
void AdvanceOver(SeriesStatistics<T>& statistics, std::span<const T> points, std::uint64_t index,
                 IndexRule rule) {
  SeriesStatistics<T> figures =
      statistics;  // apart from the points, so that they stay in registers
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
  statistics = figures;
}

}  // namespace

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
  if (!m_data.empty()) m_statistics.Scan(m_data);
}

template <class T>
void CSeries1D<T>::ClearData(bool keepStatistics) {
  this->CheckChangeable();
  m_data.clear();
  m_statistics.maximumIndex = m_statistics.minimumIndex = 0;
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

template <class T>
void CSeries1D<T>::AddSeriesPoints(std::span<const T> points, bool check) {
  if (check) CheckIncoming(points.size(), AddMode::kAppend, /*expected=*/0);
  if (points.empty()) return;
  const std::uint64_t first = m_data.size();
  m_data.insert(m_data.end(), points.begin(), points.end());
  AdvanceStatistics(first);
}

template <class T>
void CSeries1D<T>::TakeSeriesPoints(std::vector<T>&& points, bool check) {
  if (!m_data.empty()) return AddSeriesPoints(std::span<const T>(points), check);
  if (check) CheckIncoming(points.size(), AddMode::kAppend, /*expected=*/0);
  if (points.empty()) return;
  m_data = std::move(points);
  AdvanceStatistics(/*first=*/0);
}

/// Takes the points from `first` into the running figures.
template <class T>
void CSeries1D<T>::AdvanceStatistics(std::uint64_t first) {
  if (this->m_noPointsYet) m_statistics.Seed(m_data[static_cast<std::size_t>(first++)]);
  this->m_noPointsYet = false;
  const IndexRule rule{this->IsIncremental(), this->FlushedPoints()};
  AdvanceOver(m_statistics, std::span<const T>(m_data).subspan(static_cast<std::size_t>(first)),
              first, rule);
}

#define TABULON_INSTANTIATE(T) template class CSeries1D<T>;
TABULON_FOR_EACH_ELEMENT_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE

}  // namespace Sumara
