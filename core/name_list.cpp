#include "core/name_list.h"

#include <algorithm>
#include <utility>

#include "core/text.h"

namespace Sumara {

NameList::NameList(std::initializer_list<std::string_view> names) {
  for (const std::string_view name : names) Append(name);
}

NameList::NameList(const std::vector<std::string>& names) {
  for (const std::string& name : names) Append(name);
}

NameList NameList::Split(std::string text, char quote) {
  NameList list;
  if (text.find('\n') == std::string::npos) {
    list.m_text = std::move(text);
  } else {
    AppendCollapsed(list.m_text, text);  // a token may go over rows
  }
  std::string_view rest = list.m_text;
  std::string_view token;
  while (TakeQuotedPiece(rest, token, quote)) {
    const auto at = static_cast<std::size_t>(token.data() - list.m_text.data());
    list.m_pieces.push_back({at, token.size()});
  }
  return list;
}

void NameList::Append(std::string_view name) {
  const std::size_t at = m_text.size();
  m_text.append(name);
  try {
    m_pieces.push_back({at, name.size()});
  } catch (...) {
    m_text.resize(at);
    throw;
  }
}

void NameList::Remove(std::size_t place) noexcept {
  const Piece gone = m_pieces[place];
  m_pieces.erase(m_pieces.begin() + static_cast<std::ptrdiff_t>(place));
  m_text.erase(gone.at, gone.size);  // who adds and removes for ever takes no more memory
  for (Piece& piece : m_pieces) {
    if (piece.at > gone.at) piece.at -= gone.size;
  }
}

std::vector<std::string> NameList::Strings() const {
  std::vector<std::string> strings;
  strings.reserve(Size());
  for (const std::string_view name : *this) strings.emplace_back(name);
  return strings;
}

bool NameList::operator==(const NameList& other) const {
  return std::equal(begin(), end(), other.begin(), other.end());
}

}  // namespace Sumara
