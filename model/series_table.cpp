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
    for (std::size_t place = 0; place < m_names.Size(); ++place) {
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
  std::vector<std::uint32_t> index(std::bit_ceil(std::max(kFewest, 2 * m_names.Size())));
  for (std::size_t place = 0; place < m_names.Size(); ++place) Enter(index, m_names[place], place);
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

void SeriesTable::SetNames(NameList names, NameList quantities) {
  m_series = std::vector<std::shared_ptr<ISeries>>(names.Size());
  m_names = std::move(names);
  m_quantities = std::move(quantities);
  m_index.clear();
  m_wasSearched = false;
}

void SeriesTable::Append(std::string_view name, std::string_view quantity,
                         std::shared_ptr<ISeries> series) {
  const std::size_t place = Size();
  m_series.push_back(std::move(series));
  try {
    m_names.Append(name);
    m_quantities.Append(quantity);
  } catch (...) {
    if (Size() > place) m_names.Remove(place);
    m_series.pop_back();
    throw;
  }
  if (HasRoom(m_index, Size())) {
    Enter(m_index, name, place);
  } else {
    m_index.clear();
  }
}

void SeriesTable::Remove(std::size_t place) noexcept {
  m_names.Remove(place);
  m_quantities.Remove(place);
  m_series.erase(m_series.begin() + static_cast<std::ptrdiff_t>(place));
  m_index.clear();
}

void SeriesTable::SetSeries(std::size_t place, std::shared_ptr<ISeries> series) noexcept {
  m_series[place] = std::move(series);
}

std::shared_ptr<ISeries> SeriesTable::FirstSeries() const {
  const auto first = std::find_if(m_series.begin(), m_series.end(),
                                  [](const auto& series) { return series != nullptr; });
  return first == m_series.end() ? nullptr : *first;
}

}  // namespace Sumara
