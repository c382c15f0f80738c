#include "api/name_index.h"

#include <algorithm>
#include <bit>

#include "core/text.h"

namespace SumaraApi {
namespace {

std::uint32_t HashOf(std::string_view name) {
  return static_cast<std::uint32_t>(Sumara::HashNoCase{}(name));
}

}  // namespace

void NameIndex::Add(const Sumara::NameList& names) {
  Reserve(names.Size());
  const auto list = static_cast<std::uint32_t>(m_lists.size());
  m_lists.push_back(&names);
  for (std::uint32_t place = 0; place < names.Size(); ++place) {
    const std::uint32_t hash = HashOf(names[place]);
    Slot& slot = m_slots[SlotOf(names[place], hash)];
    const auto link = static_cast<std::uint32_t>(m_links.size());
    m_links.push_back({{list, place}, kNone});
    if (slot.first == kNone) {
      slot.first = link;
      slot.hash = hash;
      ++m_used;
    } else {
      m_links[slot.last].next = link;
    }
    slot.last = link;
  }
}

void NameIndex::Reserve(std::size_t names) {
  if (m_links.size() + names > m_links.capacity())
    m_links.reserve(std::max(m_links.size() + names, 2 * m_links.capacity()));
  const std::size_t wanted = std::bit_ceil(2 * (m_used + names) + 1);
  if (wanted <= m_slots.size()) return;
  std::vector<Slot> slots(wanted);
  slots.swap(m_slots);
  for (const Slot& chain : slots) {
    if (chain.first == kNone) continue;
    std::size_t at = chain.hash & (m_slots.size() - 1);
    while (m_slots[at].first != kNone) at = (at + 1) & (m_slots.size() - 1);
    m_slots[at] = chain;
  }
}

std::size_t NameIndex::SlotOf(std::string_view name) const { return SlotOf(name, HashOf(name)); }

/// The slot of a name, or a free one.
std::size_t NameIndex::SlotOf(std::string_view name, std::uint32_t hash) const {
  std::size_t at = hash & (m_slots.size() - 1);
  while (m_slots[at].first != kNone) {
    const Slot& slot = m_slots[at];
    if (slot.hash == hash && Sumara::EqualsNoCase(NameAt(m_links[slot.first].place), name)) break;
    at = (at + 1) & (m_slots.size() - 1);
  }
  return at;
}

}  // namespace SumaraApi
