#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/name_list.h"

namespace Sumara {

class ISeries;

/// The variables of a group in the order of its header, and the series of those asked for so far.
///
/// A series' position is its place here. What fails changes nothing.
class SeriesTable {
 public:
  std::size_t Size() const { return m_names.Size(); }
  const NameList& Names() const { return m_names; }
  /// The quantity codes, in the order of the names.
  const NameList& Quantities() const { return m_quantities; }
  /// The series, in the order of the names; null for those whose data nobody has asked for.
  const std::vector<std::shared_ptr<ISeries>>& Series() const { return m_series; }

  /// The place of a name that is spelled so; of several the first.
  std::optional<std::size_t> PlaceOfExact(std::string_view name) const;
  /// The place of a name: so spelled, else the first in any case.
  std::optional<std::size_t> PlaceOf(std::string_view name) const;
  /// A name that is not there in any case: `name` with the number behind its last underscore
  /// raised.
  std::string FreeName(const std::string& name) const;

  /// Replaces all by variables without series, of which there are as many names as quantities.
  void SetNames(NameList names, NameList quantities);
  void Append(std::string_view name, std::string_view quantity, std::shared_ptr<ISeries> series);
  /// Those behind it move up: keep no place over this call.
  void Remove(std::size_t place) noexcept;
  /// Gives a variable its series, or with none takes it away.
  void SetSeries(std::size_t place, std::shared_ptr<ISeries> series) noexcept;

  /// The first series that is there, or none.
  std::shared_ptr<ISeries> FirstSeries() const;
  /// Calls `visit(ISeries&)` for each series that is there.
  template <class Visit>
  void ForEachSeries(Visit visit) const {
    for (const auto& series : m_series) {
      if (series != nullptr) visit(*series);
    }
  }

 private:
  enum class Spelling { kExact, kAnyCase };

  std::optional<std::size_t> Find(std::string_view name, Spelling spelling) const;
  void MakeIndex() const;

  NameList m_names;
  NameList m_quantities;
  std::vector<std::shared_ptr<ISeries>> m_series;
  /// Places of the names by their hash in any case, plus one; 0 where there is none. Made at the
  /// second lookup: most of a run's thousands of names are sought once or never.
  mutable std::vector<std::uint32_t> m_index;
  mutable bool m_wasSearched = false;
};

}  // namespace Sumara
