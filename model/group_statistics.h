#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "groupfiles/kept_figures.h"

namespace Sumara {

class IGroup;
class ISeries;

/// The kinds of statistic that have one value for each series.
enum class StatisticKind : std::int32_t { kMaxTime = 0, kMinTime = 1, kMean = 2 };

/// The figures of a group: as its header holds them, or computed from its series.
///
/// Data in memory wins over the header, the header wins over partial data, and a group without
/// stored figures is computed from what it has. A figure of a partly loaded group without stored
/// figures closes up over the series that have no data: the values of a later series stand at an
/// earlier place.
///
/// Of the header, its text is kept, within a bound for all groups, and the rows that are asked for
/// are converted. A header that was rewritten since its text was given up is read anew.
template <class T>
class GroupStatistics {
 public:
  using Uloads = std::vector<std::vector<T>>;

  explicit GroupStatistics(IGroup& group) : m_group(group) {}

  /// \throws CException 45, 51, 124, 46, 40
  void CheckAvailable(std::uint64_t secondary) const;

  /// One value for each series: the time (value of the primary axis, or index of a labelled text
  /// axis) of the maximum or minimum, or the mean. Good until the next request.
  /// \throws CException as `CheckAvailable`; 123 if only the header may answer and does not; 132
  const std::vector<double>& Get(StatisticKind kind, std::uint64_t secondary, bool preferComputed);
  /// The value of one series, for which no other is computed. \throws CException 1 too
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
  /// its minimum. The table stays with the caller: it may be larger than all that may be kept.
  Uloads GetUloads(std::uint64_t secondary, bool preferComputed);
  /// One value of that table, for which no other is computed: of the series at `column`, where the
  /// one at `series` has its extreme. \throws CException 123 too if there is no such place
  T GetUload(std::uint64_t series, Extreme extreme, std::uint64_t column, std::uint64_t secondary);

  void ComputeStatistic(std::vector<double>& out, StatisticKind kind,
                        std::uint64_t secondary) const;
  void ComputeUloads(Uloads& out, std::uint64_t secondary) const;
  /// Brings the rows of incremental writing up to the data now in memory.
  void ComputeLiveUloads(std::uint64_t secondaryCount);

  void SetStored(HeaderFigures figures);
  bool HasReadStored() const { return m_hasReadStored; }
  /// Whether the header held a block for this secondary index.
  bool HasStored(std::uint64_t secondary) const { return secondary < m_stored.Rows().BlockCount(); }

 private:
  [[noreturn]] void FailWithoutStored() const;
  bool IsAllInMemory(std::uint64_t secondary) const;
  bool IsOfOneLength(std::uint64_t secondary) const;
  bool AnswersFromStored(std::uint64_t secondary, bool preferComputed);
  void RestoreStored();
  bool IsLive(std::uint64_t secondary, bool preferComputed) const;
  Uloads StoredUloads(std::uint64_t secondary, std::string_view text) const;
  Uloads ComputedUloads(std::uint64_t secondary);
  T ValueIn(const Uloads& rows, std::uint64_t row, std::uint64_t column) const;
  T ValueAtExtreme(std::uint64_t series, Extreme extreme, std::uint64_t column,
                   std::uint64_t secondary) const;
  double MeanAt(std::uint64_t place, std::uint64_t secondary) const;
  double FigureOf(ISeries& series, StatisticKind kind, std::uint64_t secondary) const;

  IGroup& m_group;
  KeptFigures m_stored;
  bool m_hasReadStored = false;
  std::vector<double> m_line;  ///< the answer to the last request for one
  Uloads m_unfinishedUloads;   ///< of incremental writing, as long as no chunk has made live ones
  std::vector<Uloads> m_liveUloads;
};

}  // namespace Sumara
