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
  Level level{DirectoryReader(path, word), path, canonical, /*isSearchable=*/false};
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
  const EntryType type = Entry().type;
  const bool mayHoldMore = type == EntryType::kDirectory || type == EntryType::kUnknown;
  if (m_descends && mayHoldMore && IsOwnDirectory(EntryPath(), type)) {
    Enter(EntryPath(), m_levels.back().canonical + Entry().name, kAdvance);
  } else {
    NextOrLeave(kAdvance);
  }
}

bool DirectoryWalk::IsAt(EntryType type, bool (*asksSystem)(const std::string&, EntryType)) {
  Level& level = m_levels.back();
  if (!level.isSearchable) asksSystem(EntryPath(), EntryType::kUnknown);
  level.isSearchable = true;
  return Entry().type == type || asksSystem(EntryPath(), Entry().type);
}

std::string DirectoryWalk::CanonicalEntryPath() {
  const EntryType type = Entry().type;
  const bool isItself = type == EntryType::kFile || type == EntryType::kDirectory;
  if (!isItself) return NormaliseFilePath(EntryPath());
  Level& level = m_levels.back();
  // An entry that has vanished meanwhile counts as the directory told it.
  if (!level.isSearchable) Exists(EntryPath());
  level.isSearchable = true;
  return level.canonical + Entry().name;
}

}  // namespace Sumara
