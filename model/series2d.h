#pragma once

#include <span>
#include <string>
#include <vector>

#include "model/series.h"

namespace Sumara {

/// The values of one variable against both axes: a vector along the primary axis for each index of
/// the secondary one, each with statistics of its own.
template <class T>
class CSeries2D final : public CSeriesBase<T> {
 public:
  CSeries2D(std::string name, std::string quantity);

  std::uint64_t GetNumberOfPoints() const override;
  bool HasMaximumChanged(std::uint64_t secondary) const override;
  bool HasMinimumChanged(std::uint64_t secondary) const override;
  void ComputeStatistics() override;
  void ClearChangedFlags() override;
  void SnapshotExtremeIndices() override;
  bool HasData() const override;
  void ClearData(bool keepStatistics) override;
  void SetLoadState(LoadState state) override;
  void SetLoadState(std::uint64_t secondary, LoadState state);
  bool IsLoaded(std::uint64_t secondary) const;
  std::uint64_t IsLoaded() const override;
  bool IsVectorLoaded(std::uint64_t secondary) const override { return IsLoaded(secondary); }
  std::uint64_t GetNumberOfPointsOnAxis(std::uint32_t position, bool widest) const override;
  const T& DataAtIndex(std::uint64_t index, std::uint64_t secondary) const override;
  const std::vector<T>* FindVector(std::uint64_t secondary) const override;
  std::vector<T>& VectorToFill(std::uint64_t secondary) override { return m_data[secondary]; }
  void MarkFilled(std::uint64_t secondary) override { SetLoadState(secondary, LoadState::kLoaded); }

  /// Appends one point to each vector; `values` holds one for each secondary index.
  /// \throws CException 13, 16, 14, 6, 7 if `check`; nothing is changed then.
  void AddSeriesPoint(std::span<const T> values, bool check);
  /// Appends `vectors[s][i]`, index by index of the primary axis; the first vector's length counts.
  /// \throws CException 13, 16, 72, 14, 6, 7; nothing is changed then.
  void AddSeriesPoints(const std::vector<std::vector<T>>& vectors, bool check);

  /// Replaces the data by `count` empty vectors.
  void SetNumberOfVectors(std::uint64_t count);
  /// \throws CException 10
  const std::vector<T>& GetVector(std::uint64_t secondary) const;
  std::vector<T>& Vector(std::uint64_t secondary) { return m_data[secondary]; }
  const std::vector<std::vector<T>>& GetData() const { return m_data; }

 protected:
  SeriesStatistics<T>* FindStatistics(std::uint64_t secondary) const override;
  void CheckHasVector(std::uint64_t secondary) const override { GetVector(secondary); }

 private:
  using AddMode = typename CSeriesBase<T>::AddMode;
  void CheckVectorCount(std::uint64_t count) const;
  void CheckIncoming(const std::vector<std::vector<T>>& vectors, AddMode mode,
                     std::uint64_t expected) const;
  void FitVectors(std::size_t count);
  void CatchUp() const;
  template <class PointsOf>
  void Append(std::size_t vectors, PointsOf pointsOf);
  std::uint64_t PresentPoints() const { return m_data.empty() ? 0 : m_data.front().size(); }

  std::vector<std::vector<T>> m_data;
  std::vector<LoadState> m_loadStates;
  mutable std::vector<RunningStatistics<T>> m_running;
};

}  // namespace Sumara
