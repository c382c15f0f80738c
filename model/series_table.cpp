#include "model/series_table.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <system_error>
#include <utility>

#include "core/text.h"

namespace Sumara {
namespace {

/// Of names that differ in case only, and of equal ones, the first that is met stands here.
class FirstMatch {
 public:
  FirstMatch(std::string_view name, bool anyCase) : m_name(name), m_anyCase(anyCase) {}

  /// Takes a name at a place; true if no later one can be better.
  bool Meet(std::string_view present, std::size_t place) {
    if (present.size() != m_name.size()) return false;
    if (present == m_name) {
      m_place = place;
      return true;
    }
    if (m_anyCase && !m_place && EqualsNoCase(present, m_name)) m_place = place;
    return false;
  }
  std::optional<std::size_t> Place() const { return m_place; }

 private:
  std::string_view m_name;
  bool m_anyCase;
  std::optional<std::size_t> m_place;
};

/// Puts a place into the first free slot from that of its hash on, so that of names with one hash
/// the earlier is met first.
void Enter(std::vector<std::uint32_t>& index, std::string_view name, std::size_t place) {
  const std::size_t mask = index.size() - 1;
  std::size_t slot = HashNoCase{}(name)&mask;
  while (index[slot] != 0) slot = (slot + 1) & mask;
  index[slot] = static_cast<std::uint32_t>(place + 1);
}

/// Half of the slots stay free at least.
bool HasRoom(const std::vector<std::uint32_t>& index, std::size_t names) {
  return 2 * names <= index.size();
}

}  // namespace

std::optional<std::size_t> SeriesTable::PlaceOfExact(std::string_view name) const {
  return Find(name, Spelling::kExact);
}

std::optional<std::size_t> SeriesTable::PlaceOf(std::string_view name) const {
  return Find(name, Spelling::kAnyCase);
}

std::optional<std::size_t> SeriesTable::Find(std::string_view name, Spelling spelling) const {
  FirstMatch match(name, spelling == Spelling::kAnyCase);
  if (!std::exchange(m_wasSearched, true)) {
    for (std::size_t place = 0; place < m_names.size(); ++place) {
      if (match.Meet(m_names[place], place)) break;
    }
    return match.Place();
  }
  if (m_index.empty()) MakeIndex();
  const std::size_t mask = m_index.size() - 1;
  for (std::size_t slot = HashNoCase{}(name)&mask; m_index[slot] != 0; slot = (slot + 1) & mask) {
    const std::size_t place = m_index[slot] - 1;
    if (match.Meet(m_names[place], place)) break;
  }
  return match.Place();
}

void SeriesTable::MakeIndex() const {
  constexpr std::size_t kFewest = 16;
  std::vector<std::uint32_t> index(std::bit_ceil(std::max(kFewest, 2 * m_names.size())));
  for (std::size_t place = 0; place < m_names.size(); ++place) Enter(index, m_names[place], place);
  m_index = std::move(index);
}

std::string SeriesTable::FreeName(const std::string& name) const {
  std::string stem = name;
  std::uint64_t number = 0;
  const std::size_t underscore = name.rfind('_');
  if (underscore != std::string::npos && underscore > 0) {
    const char* const first = name.data() + underscore + 1;
    const auto [end, error] = std::from_chars(first, name.data() + name.size(), number);
    if (error == std::errc{} && end == name.data() + name.size()) {
      stem.resize(underscore);
    } else {
      number = 0;
    }
  }
  std::string candidate;
  do {
    candidate = stem + "_" + std::to_string(++number);
  } while (PlaceOf(candidate));
  return candidate;
}

void SeriesTable::SetNames(std::vector<std::string> names, std::vector<std::string> quantities) {
  std::vector<SeriesEntry> entries;
  entries.reserve(names.size());
  for (std::string& quantity : quantities) entries.push_back({nullptr, std::move(quantity)});
  m_names = std::move(names);
  m_entries = std::move(entries);
  m_index.clear();
  m_wasSearched = false;
}

void SeriesTable::Append(std::string name, SeriesEntry entry) {
  m_names.push_back(std::move(name));
  try {
    m_entries.push_back(std::move(entry));
  } catch (...) {
    m_names.pop_back();
    throw;
  }
  if (HasRoom(m_index, m_names.size())) {
    Enter(m_index, m_names.back(), m_names.size() - 1);
  } else {
    m_index.clear();
  }
}

void SeriesTable::Remove(std::size_t place) {
  const auto offset = static_cast<std::ptrdiff_t>(place);
  m_names.erase(m_names.begin() + offset);
  m_entries.erase(m_entries.begin() + offset);
  m_index.clear();
}

void SeriesTable::SetSeries(std::size_t place, std::shared_ptr<ISeries> series) noexcept {
  m_entries[place].series = std::move(series);
}

std::shared_ptr<ISeries> SeriesTable::FirstSeries() const {
  for (const SeriesEntry& entry : m_entries) {
    if (entry.series != nullptr) return entry.series;
  }
  return nullptr;
}

}  // namespace Sumara
