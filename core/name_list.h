#pragma once

#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace Sumara {

/// A list of texts that stand in one block of memory: a run has hundreds of thousands of names, and
/// most of them are looked at once or never.
///
/// A view of a name is good until the list changes. What fails changes nothing.
class NameList {
 public:
  class Iterator;
  using value_type = std::string_view;
  using iterator = Iterator;
  using const_iterator = Iterator;

  NameList() = default;
  NameList(std::initializer_list<std::string_view> names);
  NameList(const std::vector<std::string>& names);

  /// The tokens of a text, as `SplitTokens` gives them. The list takes over the text.
  /// \param text with no white space but single blanks, and line feeds where rows were joined.
  /// \throws CIOException 5021 if a quote is not closed.
  static NameList Split(std::string text, char quote);

  std::size_t Size() const { return m_pieces.size(); }
  bool Empty() const { return m_pieces.empty(); }
  std::string_view operator[](std::size_t place) const {
    return {m_text.data() + m_pieces[place].at, m_pieces[place].size};
  }
  Iterator begin() const;
  Iterator end() const;

  void Append(std::string_view name);
  /// Those behind it move up.
  void Remove(std::size_t place) noexcept;

  std::vector<std::string> Strings() const;

  bool operator==(const NameList& other) const;

 private:
  struct Piece {
    std::size_t at;
    std::size_t size;
  };

  std::string m_text;
  std::vector<Piece> m_pieces;
};

/// Goes over the names of a list.
class NameList::Iterator {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = std::string_view;
  using difference_type = std::ptrdiff_t;
  using pointer = const std::string_view*;
  using reference = std::string_view;

  Iterator(const NameList& list, std::size_t place) : m_list(&list), m_place(place) {}

  std::string_view operator*() const { return (*m_list)[m_place]; }
  Iterator& operator++() {
    ++m_place;
    return *this;
  }
  Iterator operator++(int) {
    const Iterator before = *this;
    ++m_place;
    return before;
  }
  bool operator==(const Iterator& other) const { return m_place == other.m_place; }

 private:
  const NameList* m_list;
  std::size_t m_place;
};

inline NameList::Iterator NameList::begin() const { return {*this, 0}; }
inline NameList::Iterator NameList::end() const { return {*this, Size()}; }

}  // namespace Sumara
