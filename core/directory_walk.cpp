#include "core/directory_walk.h"

#include <cstddef>
#include <filesystem>
#include <utility>

#include "core/paths.h"

namespace Sumara {
namespace {

constexpr const char* kOpen = "recursive_directory_iterator::recursive_directory_iterator";
constexpr const char* kAdvance = "recursive_directory_iterator::operator++";

}  // namespace

DirectoryWalk::DirectoryWalk(const std::string& root) {
  Enter(root, root, kOpen);
  if (m_levels.empty()) return;
  m_levels.front().canonical = NormaliseDirectory(root);
  WithTrailingSeparator(m_levels.front().canonical);
}

void DirectoryWalk::Enter(const std::string& path, const std::string& canonical, const char* word) {
  Level level{DirectoryReader(path, word), path, canonical};
  WithTrailingSeparator(level.path);
  WithTrailingSeparator(level.canonical);
  if (level.reader.Next(word) == nullptr) return NextOrLeave(word);
  m_levels.push_back(std::move(level));
  m_descends = true;
}

void DirectoryWalk::NextOrLeave(const char* word) {
  // A directory is left only when the one above has told its next entry.
  std::size_t depth = m_levels.size();
  while (depth > 0 && m_levels[depth - 1].reader.Next(word) == nullptr) --depth;
  m_levels.erase(m_levels.begin() + static_cast<std::ptrdiff_t>(depth), m_levels.end());
  m_descends = true;
}

void DirectoryWalk::Advance() {
  if (AtEnd()) return;
  if (m_descends && IsOwnDirectory(EntryPath(), Entry().type)) {
    Enter(EntryPath(), m_levels.back().canonical + Entry().name, kAdvance);
  } else {
    NextOrLeave(kAdvance);
  }
}

std::string DirectoryWalk::CanonicalEntryPath() const {
  const EntryType type = Entry().type;
  const bool isItself = type == EntryType::kFile || type == EntryType::kDirectory;
  return isItself ? m_levels.back().canonical + Entry().name : NormaliseFilePath(EntryPath());
}

}  // namespace Sumara
