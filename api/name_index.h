#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "core/name_list.h"

namespace SumaraApi {

/// Where the names of many lists stand, whatever their case.
///
/// It holds no names: the lists have to stay as they are for as long as it is asked.
class NameIndex {
 public:
  /// A name by its list and its place there.
  struct Place {
    std::uint32_t list;
    std::uint32_t place;
  };

  /// Makes room for so many names more, so that adding them moves nothing.
  void Reserve(std::size_t names);
  /// Takes the next list.
  void Add(const Sumara::NameList& names);
  void Add(Sumara::NameList&&) = delete;
  std::size_t ListCount() const { return m_lists.size(); }

  /// Calls `visit(Place)` for each name that equals `name`, whatever its case, in the order of the
  /// lists and of the places there.
  template <class Visit>
  void ForEach(std::string_view name, Visit visit) const {
    if (m_slots.empty()) return;
    for (std::uint32_t at = m_slots[SlotOf(name)].first; at != kNone; at = m_links[at].next)
      visit(m_links[at].place);
  }

 private:
  static constexpr std::uint32_t kNone = ~std::uint32_t{0};

  /// All names that are equal, as a chain of links. Their hash stands here, so that on the way to
  /// another name nothing else is looked at.
  struct Slot {
    std::uint32_t first = kNone;
    std::uint32_t last = kNone;
    std::uint32_t hash = 0;
  };
  struct Link {
    Place place;
    std::uint32_t next;
  };

  std::string_view NameAt(const Place& place) const { return (*m_lists[place.list])[place.place]; }
  std::size_t SlotOf(std::string_view name) const;
  std::size_t SlotOf(std::string_view name, std::uint32_t hash) const;

  std::vector<const Sumara::NameList*> m_lists;
  std::vector<Slot> m_slots;  ///< a power of two of them, half of them free
  std::vector<Link> m_links;
  std::size_t m_used = 0;  ///< slots with a chain
};

}  // namespace SumaraApi
