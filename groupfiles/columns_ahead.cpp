#include "groupfiles/columns_ahead.h"

#include <algorithm>
#include <utility>

#include "core/element_types.h"

namespace Sumara {
namespace {

constexpr unsigned kGrowth = 5;     // each band is 32 times as wide as the last: a walk costs, too
constexpr unsigned kMostBands = 7;  // by then all columns are in one

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
                         m_asked.Add(variable, secondary);
                         target.Filled(variable, secondary);
                         return true;
                       });
}

template <class U>
void ColumnsAhead<U>::Asked::Add(std::size_t ofVariable, std::size_t ofSecondary) {
  severalVariables = severalVariables || variable.value_or(ofVariable) != ofVariable;
  severalSecondary = severalSecondary || secondary.value_or(ofSecondary) != ofSecondary;
  variable = ofVariable;
  secondary = ofSecondary;
}

/// Forgets what was asked for in another layout.
template <class U>
void ColumnsAhead<U>::Adopt(const DataLayout& layout, const DataRequest& request) {
  if (IsOf(layout, request)) return;
  Clear();
  m_layout = layout;
  m_points = request.points;
}

/// Whether a request is not the first, and for more than columns that were dropped.
template <class U>
bool ColumnsAhead<U>::IsAnother(const DataLayout& layout, const DataRequest& request) {
  if (request.points == 0 || request.variables.empty() || layout.variables == 0) return false;
  Adopt(layout, request);
  if (m_handedOut.empty()) return false;
  return !ForEachColumn(layout, request, [&](std::size_t, std::size_t, std::uint64_t base) {
    return m_handedOut.contains(base);
  });
}

/// The band of variables around that of a request, where the first one is `width` wide.
template <class U>
auto ColumnsAhead<U>::NextBand(const DataRequest& request, std::uint64_t width) -> Band {
  const unsigned growth = kGrowth * m_bands;
  m_bands = std::min(m_bands + 1, kMostBands);
  const std::uint64_t all = m_layout.variables;
  const std::uint64_t band = width > all >> growth ? all : width << growth;
  const std::uint64_t first = request.variables.front() / band * band;
  return {first, first + std::min(band, all - first)};
}

template <class U>
std::vector<std::uint64_t> ColumnsAhead<U>::Choose(const DataLayout& layout,
                                                   const DataRequest& request,
                                                   const AheadRule& rule) {
  std::vector<std::uint64_t> bases;
  if (!IsAnother(layout, request)) return bases;
  Asked asked = m_asked;
  std::unordered_set<std::uint64_t> requested;
  ForEachColumn(layout, request,
                [&](std::size_t variable, std::size_t secondary, std::uint64_t base) {
                  asked.Add(variable, secondary);
                  requested.insert(base);
                  return true;
                });
  const bool allSecondary = rule.all || asked.severalSecondary;
  const std::uint64_t secondary = allSecondary ? layout.secondary : 1;
  const std::uint64_t first = allSecondary ? 0 : request.secondaryIndices.front();
  Band band{0, layout.variables};
  if (!rule.all) {
    const std::uint64_t width = std::max<std::uint64_t>(1, rule.together / secondary);
    band = asked.severalVariables ? NextBand(request, width)
                                  : Band{*asked.variable, *asked.variable + 1};
  }
  for (std::uint64_t variable = band.first; variable < band.end; ++variable) {
    for (std::uint64_t s = first; s < first + secondary; ++s) {
      if (bases.size() == rule.most) return bases;
      const std::uint64_t base = layout.Base(variable, s);
      if (requested.contains(base) || m_columns.contains(base) || m_handedOut.contains(base)) {
        continue;
      }
      bases.push_back(base);
    }
  }
  return bases;
}

template <class U>
void ColumnsAhead<U>::MarkHandedOut(const DataLayout& layout, const DataRequest& request) {
  if (request.points == 0) return;
  Adopt(layout, request);
  ForEachColumn(layout, request,
                [&](std::size_t variable, std::size_t secondary, std::uint64_t base) {
                  m_asked.Add(variable, secondary);
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
  m_asked = {};
  m_bands = 0;
}

#define TABULON_INSTANTIATE(U) template class ColumnsAhead<U>;
TABULON_FOR_EACH_ELEMENT_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE

}  // namespace Sumara
