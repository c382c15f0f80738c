#include "core/directory_walk.h"

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
  m_levels.push_back(std::move(level));
  NextOrLeave(word);
}

void DirectoryWalk::NextOrLeave(const char* word) {
  m_descends = true;
  while (!m_levels.empty()) {
    if (const DirectoryEntry* entry = m_levels.back().reader.Next(word)) {
      m_entry = *entry;
      return;
    }
    m_levels.pop_back();
  }
}

void DirectoryWalk::Advance() {
  if (AtEnd()) return;
  if (m_descends && IsOwnDirectory(EntryPath(), m_entry.type)) {
    Enter(EntryPath(), m_levels.back().canonical + m_entry.name, kAdvance);
  } else {
    NextOrLeave(kAdvance);
  }
}

std::string DirectoryWalk::CanonicalEntryPath() const {
  const bool isItself = m_entry.type == EntryType::kFile || m_entry.type == EntryType::kDirectory;
  return isItself ? m_levels.back().canonical + m_entry.name : NormaliseFilePath(EntryPath());
}

}  // namespace Sumara
