#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "groupfiles/group_header.h"

namespace Sumara {

template <class T>
class CGroupBase;
class CHeaderReader;
class ISeries;

/// The kinds of statistic that have one value for each series.
enum class StatisticKind : std::int32_t { kMaxTime = 0, kMinTime = 1, kMean = 2 };

/// The figures of a group: as its header holds them, or computed from its series.
///
/// Data in memory wins over the header, the header wins over partial data, and a group without
/// stored figures is computed from what it has. A figure of a partly loaded group without stored
/// figures closes up over the series that have no data: the values of a later series stand at an
/// earlier place.
template <class T>
class GroupStatistics {
 public:
  using Uloads = std::vector<std::vector<T>>;

  explicit GroupStatistics(CGroupBase<T>& group) : m_group(group) {}

  /// \throws CException 45, 51, 124, 46, 40
  void CheckAvailable(std::uint64_t secondary) const;

  /// One value for each series: the time (value of the primary axis, or index of a labelled text
  /// axis) of the maximum or minimum, or the mean. \throws CException as `CheckAvailable`; 123 if
  /// only the header may answer and does not; 132
  const std::vector<double>& Get(StatisticKind kind, std::uint64_t secondary, bool preferComputed);
  double Get(StatisticKind kind, const std::string& name, std::uint64_t secondary,
             bool preferComputed);

  const std::vector<double>& GetMaxTimes(std::uint64_t secondary, bool preferComputed) {
    return Get(StatisticKind::kMaxTime, secondary, preferComputed);
  }
  const std::vector<double>& GetMinTimes(std::uint64_t secondary, bool preferComputed) {
    return Get(StatisticKind::kMinTime, secondary, preferComputed);
  }
  const std::vector<double>& GetMeans(std::uint64_t secondary, bool preferComputed) {
    return Get(StatisticKind::kMean, secondary, preferComputed);
  }

  /// Row 2i holds the values of all series where series i has its maximum, row 2i + 1 where it has
  /// its minimum.
  const Uloads& GetUloads(std::uint64_t secondary, bool preferComputed);

  void ComputeStatistic(std::vector<double>& out, StatisticKind kind,
                        std::uint64_t secondary) const;
  void ComputeUloads(Uloads& out, std::uint64_t secondary) const;
  /// Brings the rows of incremental writing up to the data now in memory.
  void ComputeLiveUloads();

  void ReadStored(CHeaderReader& header, std::uint64_t variableCount);
  bool HasReadStored() const { return m_hasReadStored; }

 private:
  const StatisticsBlock<T>* Stored(std::uint64_t secondary) const;
  [[noreturn]] void FailWithoutStored() const;
  bool IsAllInMemory(std::uint64_t secondary) const;
  bool AnswersFromStored(std::uint64_t secondary, bool preferComputed) const;
  StatisticsBlock<T>& Computed(std::uint64_t secondary);
  double FigureOf(ISeries& series, StatisticKind kind, std::uint64_t secondary) const;

  CGroupBase<T>& m_group;
  std::vector<StatisticsBlock<T>> m_stored;  ///< one for each secondary index
  std::vector<StatisticsBlock<T>> m_computed;
  std::vector<Uloads> m_liveUloads;
  bool m_hasReadStored = false;
};

}  // namespace Sumara
