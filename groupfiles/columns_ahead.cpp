#include "groupfiles/columns_ahead.h"

#include <algorithm>
#include <utility>

#include "core/element_types.h"

namespace Sumara {
namespace {

constexpr unsigned kGrowth = 5;     // each band is 32 times as wide as the last: a walk costs, too
constexpr unsigned kMostBands = 8;  // by then all columns are in one

/// Calls `visit(base)` for each column of a request, until it answers false.
template <class Visit>
bool ForEachColumn(const DataLayout& layout, const DataRequest& request, const Visit& visit) {
  for (const std::size_t variable : request.variables) {
    for (const std::size_t secondary : request.secondaryIndices) {
      if (!visit(variable, secondary, layout.Base(variable, secondary))) return false;
    }
  }
  return true;
}

}  // namespace

template <class U>
bool ColumnsAhead<U>::HandOver(const DataLayout& layout, const DataRequest& request,
                               IDataTarget<U>& target) {
  if (m_columns.empty() || !IsOf(layout, request)) return false;
  const bool all = ForEachColumn(
      layout, request, [&](std::size_t variable, std::size_t secondary, std::uint64_t base) {
        return layout.Holds(variable, secondary) && m_columns.contains(base);
      });
  if (!all) return false;
  return ForEachColumn(layout, request,
                       [&](std::size_t variable, std::size_t secondary, std::uint64_t base) {
                         std::vector<U>& values = target.Values(variable, secondary);
                         m_handedOut.insert(base);
                         if (const auto found = m_columns.find(base); found != m_columns.end()) {
                           values = std::move(found->second);
                           m_bytes -= values.size() * sizeof(U);
                           m_columns.erase(found);
                         }
                         target.Filled(variable, secondary);
                         return true;
                       });
}

/// Whether columns are to be read ahead of a request, and in how many bands that was done before.
template <class U>
std::optional<unsigned> ColumnsAhead<U>::CountRequest(const DataLayout& layout,
                                                      const DataRequest& request) {
  if (request.points == 0 || request.variables.empty()) return std::nullopt;
  if (layout.variables == 0) return std::nullopt;
  if (!IsOf(layout, request)) {
    Clear();
    m_layout = layout;
    m_points = request.points;
  }
  const bool isNew = !ForEachColumn(
      layout, request,
      [&](std::size_t, std::size_t, std::uint64_t base) { return m_handedOut.contains(base); });
  if (!isNew) return std::nullopt;  // a column that was dropped and is asked for again
  m_requests = std::min(m_requests + 1, kMostBands);
  return m_requests == 1 ? std::nullopt : std::optional(m_requests - 2);
}

template <class U>
std::vector<std::uint64_t> ColumnsAhead<U>::Choose(const DataLayout& layout,
                                                   const DataRequest& request,
                                                   const AheadRule& rule) {
  std::vector<std::uint64_t> bases;
  const auto bands = CountRequest(layout, request);
  if (!bands) return bases;
  std::unordered_set<std::uint64_t> requested;
  ForEachColumn(layout, request, [&](std::size_t, std::size_t, std::uint64_t base) {
    return requested.insert(base), true;
  });
  const auto add = [&](std::uint64_t base) {
    if (bases.size() == rule.most) return false;
    if (!requested.contains(base) && !m_columns.contains(base) && !m_handedOut.contains(base)) {
      bases.push_back(base);
    }
    return true;
  };
  const unsigned growth = kGrowth * *bands;
  const std::uint64_t band =
      rule.variables > layout.variables >> growth ? layout.variables : rule.variables << growth;
  const std::uint64_t first = request.variables.front() / band * band;
  const std::uint64_t end = std::min(first + band, layout.variables);
  for (std::uint64_t variable = first; variable < end; ++variable) {
    if (rule.allSecondary) {
      for (std::uint64_t secondary = 0; secondary < layout.secondary; ++secondary) {
        if (!add(layout.Base(variable, secondary))) return bases;
      }
    } else {
      for (const std::size_t secondary : request.secondaryIndices) {
        if (!add(layout.Base(variable, secondary))) return bases;
      }
    }
  }
  return bases;
}

template <class U>
void ColumnsAhead<U>::MarkHandedOut(const DataLayout& layout, const DataRequest& request) {
  if (request.points == 0) return;
  ForEachColumn(layout, request, [&](std::size_t, std::size_t, std::uint64_t base) {
    m_handedOut.insert(base);
    if (const auto found = m_columns.find(base); found != m_columns.end()) {
      m_bytes -= found->second.size() * sizeof(U);
      m_columns.erase(found);
    }
    return true;
  });
}

template <class U>
void ColumnsAhead<U>::Clear() {
  m_columns = {};
  m_handedOut = {};
  m_bytes = 0;
  m_requests = 0;
}

#define TABULON_INSTANTIATE(U) template class ColumnsAhead<U>;
TABULON_FOR_EACH_ELEMENT_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE

}  // namespace Sumara
