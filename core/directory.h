#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace Sumara {

enum class EntryType { kFile, kDirectory, kLink, kOther, kUnknown };

/// One name in a directory, with what the directory itself says of its type.
struct DirectoryEntry {
  std::string name;
  EntryType type = EntryType::kUnknown;
};

/// The entries of one directory, without `.` and `..`, in the order in which the system delivers
/// them.
///
/// No entry is asked for its status here: the directory tells most types by itself.
class DirectoryReader {
 public:
  /// \param word the operation that a failure names: "directory_iterator::directory_iterator", say.
  /// \throws std::filesystem::filesystem_error
  DirectoryReader(const std::string& path, const char* word);
  ~DirectoryReader();
  DirectoryReader(DirectoryReader&&) noexcept;
  DirectoryReader& operator=(DirectoryReader&&) noexcept;

  /// The next entry, or none at the end. After a failure the same entry is still the next one.
  /// \throws std::filesystem::filesystem_error named by `word`.
  const DirectoryEntry* Next(const char* word);

  /// The entry that was delivered last.
  const DirectoryEntry& Entry() const { return m_entry; }

  const std::string& Path() const { return m_path; }

 private:
  struct System;
  std::string m_path;
  DirectoryEntry m_entry;
  std::unique_ptr<System> m_system;
};

/// Whether the entry is a regular file, following a link; asks the system only if the entry does
/// not tell.
///
/// \throws std::filesystem::filesystem_error with the word "status"; a vanished entry is no error.
bool IsRegularFile(const std::string& path, EntryType type);

/// Whether the entry is a directory of its own, not a link to one.
bool IsOwnDirectory(const std::string& path, EntryType type);

/// Whether the entry is a directory, as `IsRegularFile`.
bool IsDirectoryEntry(const std::string& path, EntryType type);

}  // namespace Sumara
