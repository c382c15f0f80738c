#pragma once

#include <string>
#include <vector>

#include "core/directory.h"

namespace Sumara {

/// A walk over all entries below a directory, each before what it holds, in the order of the file
/// system. Links to directories are not followed.
///
/// The walk knows the canonical path of each entry from that of its root, without asking the
/// system. Whether the entries of a directory can be reached is asked of the system once, at the
/// first one that somebody asks for.
class DirectoryWalk {
 public:
  /// \throws std::filesystem::filesystem_error with the word
  ///         "recursive_directory_iterator::recursive_directory_iterator"
  explicit DirectoryWalk(const std::string& root);

  bool AtEnd() const { return m_levels.empty(); }
  const DirectoryEntry& Entry() const { return m_levels.back().reader.Entry(); }
  /// The path of the entry, as the root was given.
  std::string EntryPath() const { return m_levels.back().path + Entry().name; }
  /// The canonical path of the entry. \throws CIOException 5022, 5024, 5026
  std::string CanonicalEntryPath();

  /// Whether the entry is of this type, links followed.
  /// \throws std::filesystem::filesystem_error with the word "status"
  bool IsAtRegularFile() { return IsAt(EntryType::kFile, &IsRegularFile); }
  bool IsAtDirectory() { return IsAt(EntryType::kDirectory, &IsDirectoryEntry); }

  /// Has the next `Advance` pass over what the entry holds.
  void DisableRecursion() { m_descends = false; }

  /// Goes to the next entry. A directory that cannot be entered is an error. After any failure the
  /// walk is where it was.
  /// \throws std::filesystem::filesystem_error with the word
  /// "recursive_directory_iterator::operator++"
  void Advance();

 private:
  struct Level {
    DirectoryReader reader;
    std::string path;       ///< with a trailing separator
    std::string canonical;  ///< likewise
    bool isSearchable;      ///< known to be so; until then each entry is asked for
  };

  void Enter(const std::string& path, const std::string& canonical, const char* word);
  void NextOrLeave(const char* word);
  bool IsAt(EntryType type, bool (*asksSystem)(const std::string&, EntryType));

  std::vector<Level> m_levels;
  bool m_descends = true;
};

}  // namespace Sumara
