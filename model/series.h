#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "core/element_types.h"

namespace Sumara {

class IGroup;

/// How far the data of a series has come from its file.
enum class LoadState : std::uint32_t { kNotFromFile = 0, kLoaded = 1, kWaiting = 2 };

/// One dependent variable of a group. `secondary` is an index of the secondary axis, and means
/// nothing to a series over one axis.
class ISeries {
 public:
  virtual ~ISeries() = default;

  virtual bool IsEqual(const ISeries& other) const { return this == &other; }
  virtual std::uint64_t GetNumberOfPoints() const = 0;
  virtual IGroup* GetGroup() const = 0;
  virtual std::uint32_t GetDataType() const = 0;
  virtual const std::string& GetName() const = 0;
  virtual const std::string& GetQuantity() const = 0;

  // Statistics. Each ensures that they are there. \throws CException 5, 10
  virtual std::uint64_t GetMaximumIndex(std::uint64_t secondary) = 0;
  virtual std::uint64_t GetMinimumIndex(std::uint64_t secondary) = 0;
  virtual double GetMean(std::uint64_t secondary) = 0;
  /// Counted from the first point ever added, across flushes.
  virtual std::uint64_t GetTotalMaximumIndex(std::uint64_t secondary) = 0;
  virtual std::uint64_t GetTotalMinimumIndex(std::uint64_t secondary) = 0;
  virtual bool HasMaximumChanged(std::uint64_t secondary) const = 0;
  virtual bool HasMinimumChanged(std::uint64_t secondary) const = 0;
  virtual void ComputeStatistics() = 0;
  virtual void ClearChangedFlags() = 0;
  virtual void SnapshotExtremeIndices() = 0;
  virtual void ResetStatistics() = 0;

  virtual bool HasData() const = 0;
  /// Empties the data and keeps the capacity. \throws CException 6, 7
  virtual void ClearData(bool keepStatistics) = 0;
  /// \throws CException 8 if the series holds data of another group.
  virtual void SetGroup(IGroup* group) = 0;
  virtual void SetLoadState(LoadState state) = 0;
  /// 1 or 0 for one axis; the number of loaded vectors for two.
  virtual std::uint64_t IsLoaded() const = 0;
  /// Whether the data at a secondary index is loaded.
  virtual bool IsVectorLoaded(std::uint64_t secondary) const = 0;
  /// \param widest of vectors of different lengths take the longest, not the first.
  /// \throws CException 37
  virtual std::uint64_t GetNumberOfPointsOnAxis(std::uint32_t position, bool widest) const = 0;
  /// \throws CException 3
  virtual void Rename(const std::string& name) = 0;
};

/// How the index of an extreme is counted from the first point ever added; without incremental
/// writing it is not.
struct IndexRule {
  bool incremental = false;
  std::uint64_t flushed = 0;
};

/// The figures of one vector of points.
template <class T>
struct SeriesStatistics {
  T maximum{};
  T minimum{};
  T sum{};
  std::uint64_t maximumIndex = 0;
  std::uint64_t minimumIndex = 0;
  std::uint64_t totalMaximumIndex = 0;
  std::uint64_t totalMinimumIndex = 0;
  bool maximumChanged = false;
  bool minimumChanged = false;

  /// The first point of a vector: both extremes. The indices stay.
  void Seed(T value);
  /// Further points, the first of which has the index `index`.
  void Advance(std::span<const T> points, std::uint64_t index, IndexRule rule);
  /// All figures of `points`, of which there is at least one; ties go to the earliest point.
  void Scan(std::span<const T> points);

  void ClearChangedFlags() { maximumChanged = minimumChanged = false; }
  void SnapshotIndices();
};

/// The figures of a vector that points are appended to. A plain write never asks for them: points
/// wait, and are gone through in their order when somebody does.
template <class T>
class RunningStatistics {
 public:
  /// The last `count` points of the vector are new. \param seed the first of them starts anew.
  void Append(std::size_t count, bool seed) {
    m_waiting += count;
    m_seed = m_seed || seed;
  }
  /// The figures of all that was appended; `points` is the vector as it is now.
  SeriesStatistics<T>& UpTo(std::span<const T> points, IndexRule rule = {});
  /// The figures of the whole vector, which holds a point at least.
  void Scan(std::span<const T> points);

 private:
  SeriesStatistics<T> m_figures;
  std::size_t m_waiting = 0;
  bool m_seed = false;
};

/// What series over one and over two axes have in common.
template <class T>
class CSeriesBase : public ISeries {
 public:
  IGroup* GetGroup() const override { return m_group; }
  std::uint32_t GetDataType() const override { return kDataTypeCode<T>; }
  const std::string& GetName() const override { return m_name; }
  const std::string& GetQuantity() const override { return m_quantity; }
  void SetGroup(IGroup* group) override;
  void Rename(const std::string& name) override;

  std::uint64_t GetMaximumIndex(std::uint64_t secondary) override {
    return Ensured(secondary).maximumIndex;
  }
  std::uint64_t GetMinimumIndex(std::uint64_t secondary) override {
    return Ensured(secondary).minimumIndex;
  }
  std::uint64_t GetTotalMaximumIndex(std::uint64_t secondary) override {
    return Ensured(secondary).totalMaximumIndex;
  }
  std::uint64_t GetTotalMinimumIndex(std::uint64_t secondary) override {
    return Ensured(secondary).totalMinimumIndex;
  }
  T GetMaximum(std::uint64_t secondary = 0) { return Ensured(secondary).maximum; }
  T GetMinimum(std::uint64_t secondary = 0) { return Ensured(secondary).minimum; }
  T GetSum(std::uint64_t secondary = 0) { return Ensured(secondary).sum; }
  double GetMean(std::uint64_t secondary) override;
  void ResetStatistics() override;

  /// The point, good until the data changes. \throws CException 10, 9
  virtual const T& DataAtIndex(std::uint64_t index, std::uint64_t secondary) const = 0;
  /// The points at a secondary index, or none if there is no such vector.
  virtual const std::vector<T>* FindVector(std::uint64_t secondary) const = 0;
  /// Where a read puts the data at a secondary index, which it tells when it is there.
  virtual std::vector<T>& VectorToFill(std::uint64_t secondary) = 0;
  virtual void MarkFilled(std::uint64_t secondary) = 0;

 protected:
  /// What a set or an append asks of the number of points; appends make no demand on it.
  enum class AddMode { kAppend = 0, kSet = 1 };

  /// \throws CException 3, 4
  CSeriesBase(std::string name, std::string quantity);

  /// The figures of all that was appended, or none if there is no such vector.
  virtual SeriesStatistics<T>* FindStatistics(std::uint64_t secondary) const = 0;
  virtual void CheckHasVector(std::uint64_t secondary) const = 0;

  bool IsIncremental() const;
  std::uint64_t FlushedPoints() const;
  IndexRule Rule() const { return {IsIncremental(), FlushedPoints()}; }
  /// \throws CException 6, 7
  void CheckChangeable() const;
  /// How many points the primary axis has labels for; 0 if it is an interval axis.
  std::uint64_t PrimaryLabels() const;
  /// \throws CException 14, 15
  void CheckLabels(AddMode mode, std::uint64_t incoming, std::uint64_t present) const;
  const T& PointAt(const std::vector<T>& points, std::uint64_t index) const;

  std::string m_name;
  std::string m_quantity;
  IGroup* m_group = nullptr;
  bool m_noPointsYet = true;
  bool m_statisticsComputed = false;

 private:
  SeriesStatistics<T>& Ensured(std::uint64_t secondary);
};

}  // namespace Sumara
