#pragma once

#include <span>
#include <string>
#include <vector>

#include "model/series.h"

namespace Sumara {

/// The values of one variable against the primary axis.
///
/// Points are in axis order. Statistics run along with appends, so that a flush may drop the points
/// and keep the figures.
template <class T>
class CSeries1D final : public CSeriesBase<T> {
 public:
  /// \param initialSize that many points of value 0.
  CSeries1D(std::string name, std::string quantity, std::uint64_t initialSize = 0);

  std::uint64_t GetNumberOfPoints() const override;
  bool HasMaximumChanged(std::uint64_t) const override { return Figures().maximumChanged; }
  bool HasMinimumChanged(std::uint64_t) const override { return Figures().minimumChanged; }
  void ComputeStatistics() override;
  void ClearChangedFlags() override { Figures().ClearChangedFlags(); }
  void SnapshotExtremeIndices() override { Figures().SnapshotIndices(); }
  bool HasData() const override { return !m_data.empty(); }
  void ClearData(bool keepStatistics) override;
  void SetLoadState(LoadState state) override { m_loadState = state; }
  std::uint64_t IsLoaded() const override { return m_loadState == LoadState::kLoaded ? 1 : 0; }
  bool IsVectorLoaded(std::uint64_t) const override { return m_loadState == LoadState::kLoaded; }
  std::uint64_t GetNumberOfPointsOnAxis(std::uint32_t position, bool widest) const override;
  const T& DataAtIndex(std::uint64_t index, std::uint64_t secondary = 0) const override;
  const std::vector<T>* FindVector(std::uint64_t) const override { return &m_data; }
  std::vector<T>& VectorToFill(std::uint64_t) override { return m_data; }
  void MarkFilled(std::uint64_t) override { SetLoadState(LoadState::kLoaded); }

  /// Appends `points`; without `check` nothing is tested. Nothing is changed on failure.
  /// \throws CException 13 if `points` is empty, 14 if a labelled primary axis has no label left
  /// for
  ///         one of them, 6 without a group, 7 if it is read-only.
  void AddSeriesPoints(std::span<const T> points, bool check);
  /// The same, where a series without points keeps the vector itself.
  void TakeSeriesPoints(std::vector<T>&& points, bool check);

  const std::vector<T>& GetData() const { return m_data; }
  std::vector<T>& Data() { return m_data; }

 protected:
  SeriesStatistics<T>* FindStatistics(std::uint64_t) const override { return &Figures(); }
  void CheckHasVector(std::uint64_t) const override {}

 private:
  using AddMode = typename CSeriesBase<T>::AddMode;
  void CheckIncoming(std::uint64_t incoming, AddMode mode, std::uint64_t expected) const;
  SeriesStatistics<T>& Figures() const { return m_running.UpTo(m_data); }
  template <class Store>
  void Append(std::size_t count, Store store);

  std::vector<T> m_data;
  LoadState m_loadState = LoadState::kNotFromFile;
  mutable RunningStatistics<T> m_running;
};

}  // namespace Sumara
