#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "groupfiles/data_layout.h"

namespace Sumara {

/// Which columns may be read ahead of the requests for them.
struct AheadRule {
  std::uint64_t together = 1;  ///< columns of the first band; each is wider than the last
  bool all = false;            ///< instead of a band all columns there are
  std::uint64_t most = 0;      ///< columns in all
};

/// Columns of a data file that were read together with others, ahead of the requests for them.
///
/// Who asks for a second variable will ask for more, and to read them together costs little more:
/// they share the lines of the file and the processor's cache. A column is moved out when it is
/// asked for; one that was handed out is not read ahead again.
template <class U>
class ColumnsAhead {
 public:
  /// Moves the requested columns to `target` if all of them are here.
  bool HandOver(const DataLayout& layout, const DataRequest& request, IDataTarget<U>& target);

  /// The columns that are worth reading with those of `request`, by their bases in a point.
  ///
  /// None for the first request. Who then asks for another secondary value of the same variable
  /// gets all of that variable; who asks for another variable gets a band of variables around it,
  /// at the secondary index of the request, or at all if several were asked for.
  std::vector<std::uint64_t> Choose(const DataLayout& layout, const DataRequest& request,
                                    const AheadRule& rule);

  /// Takes in a column of `request.points` values.
  void Add(std::uint64_t base, std::vector<U>&& values) {
    m_bytes += values.size() * sizeof(U);
    m_columns.insert_or_assign(base, std::move(values));
  }

  /// Says that the columns of a request were handed out, whether `Choose` was asked or not.
  void MarkHandedOut(const DataLayout& layout, const DataRequest& request);

  /// The memory that a column of so many points takes; all ones if that is beyond 64 bits.
  static std::uint64_t SizeOf(std::uint64_t points) {
    constexpr std::uint64_t kOverhead = 256;
    return DataLayout::OffsetOf(points, sizeof(U), kOverhead);
  }

  bool Empty() const { return m_columns.empty(); }
  std::uint64_t Bytes() const { return m_bytes; }
  void Clear();

 private:
  /// What was asked for so far.
  struct Asked {
    std::optional<std::size_t> variable;
    std::optional<std::size_t> secondary;
    bool severalVariables = false;
    bool severalSecondary = false;

    void Add(std::size_t ofVariable, std::size_t ofSecondary);
  };
  /// Variables `first` to the one before `end`.
  struct Band {
    std::uint64_t first;
    std::uint64_t end;
  };

  void Adopt(const DataLayout& layout, const DataRequest& request);
  bool IsAnother(const DataLayout& layout, const DataRequest& request);
  Band NextBand(const DataRequest& request, std::uint64_t width);
  bool IsOf(const DataLayout& layout, const DataRequest& request) const {
    return layout == m_layout && request.points == m_points;
  }

  DataLayout m_layout;
  std::uint64_t m_points = 0;
  std::unordered_map<std::uint64_t, std::vector<U>> m_columns;
  std::unordered_set<std::uint64_t> m_handedOut;
  std::uint64_t m_bytes = 0;
  Asked m_asked;
  unsigned m_bands = 0;  ///< of variables that were read ahead
};

}  // namespace Sumara
