#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Sumara {

class ISeries;

/// A variable of a group and, once its data was asked for, its series.
struct SeriesEntry {
  std::shared_ptr<ISeries> series;
  std::string quantity;
};

/// The variables of a group in the order of its header, and the series of those asked for so far.
///
/// A series' position is its place here. What fails changes nothing.
class SeriesTable {
 public:
  std::size_t Size() const { return m_names.size(); }
  const std::vector<std::string>& Names() const { return m_names; }
  /// In the order of the names.
  const std::vector<SeriesEntry>& Entries() const { return m_entries; }

  /// The place of a name that is spelled so; of several the first.
  std::optional<std::size_t> PlaceOfExact(std::string_view name) const;
  /// The place of a name: so spelled, else the first in any case.
  std::optional<std::size_t> PlaceOf(std::string_view name) const;
  /// A name that is not there in any case: `name` with the number behind its last underscore
  /// raised.
  std::string FreeName(const std::string& name) const;

  /// Replaces all by variables without series, of which there are as many names as quantities.
  void SetNames(std::vector<std::string> names, std::vector<std::string> quantities);
  void Append(std::string name, SeriesEntry entry);
  /// Those behind it move up: keep no place over this call.
  void Remove(std::size_t place);
  /// Gives a variable its series, or with none takes it away.
  void SetSeries(std::size_t place, std::shared_ptr<ISeries> series) noexcept;

  /// The first series that is there, or none.
  std::shared_ptr<ISeries> FirstSeries() const;
  /// Calls `visit(ISeries&)` for each series that is there.
  template <class Visit>
  void ForEachSeries(Visit visit) const {
    for (const SeriesEntry& entry : m_entries) {
      if (entry.series != nullptr) visit(*entry.series);
    }
  }

 private:
  enum class Spelling { kExact, kAnyCase };

  std::optional<std::size_t> Find(std::string_view name, Spelling spelling) const;
  void MakeIndex() const;

  std::vector<std::string> m_names;
  std::vector<SeriesEntry> m_entries;
  /// Places of the names by their hash in any case, plus one; 0 where there is none. Made at the
  /// second lookup: most of a run's thousands of names are sought once or never.
  mutable std::vector<std::uint32_t> m_index;
  mutable bool m_wasSearched = false;
};

}  // namespace Sumara
