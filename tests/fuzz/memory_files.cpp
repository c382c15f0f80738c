#include "tests/fuzz/memory_files.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <map>
#include <memory>
#include <system_error>
#include <vector>

#include "core/directory.h"
#include "core/file.h"
#include "core/paths_platform.h"

namespace {

/// Handles begin where the system has none, so that none of its files is taken for one of these.
constexpr int kFirstHandle = 1 << 24;

struct MemoryFile {
  std::string bytes;
  std::uint64_t number = 0;  ///< which file it is
  std::int64_t written = 0;  ///< in writes since the start
};

/// A file has a name until it is removed, and lives until the last who has it open closes it.
struct Disk {
  std::map<std::string, std::shared_ptr<MemoryFile>, std::less<>> names;
  std::vector<std::shared_ptr<MemoryFile>> open;  ///< by handle
  std::uint64_t files = 0;
  std::int64_t writes = 0;
  std::int64_t namesChanged = 0;  ///< in writes since the start, of which it is one

  std::shared_ptr<MemoryFile> Find(std::string_view path) const {
    const auto found = names.find(path);
    return found == names.end() ? nullptr : found->second;
  }

  std::shared_ptr<MemoryFile> FindOrMake(const std::string& path) {
    auto& file = names[path];
    if (file == nullptr) {
      file = std::make_shared<MemoryFile>();
      file->number = ++files;
      namesChanged = ++writes;
    }
    return file;
  }

  void Remove(const std::string& path) {
    if (names.erase(path) != 0) namesChanged = ++writes;
  }

  int HandleOf(std::shared_ptr<MemoryFile> file) {
    const auto free = std::find(open.begin(), open.end(), nullptr);
    const auto handle = kFirstHandle + static_cast<int>(free - open.begin());
    if (free == open.end()) {
      open.push_back(std::move(file));
    } else {
      *free = std::move(file);
    }
    return handle;
  }

  std::shared_ptr<MemoryFile>& Slot(int handle) {
    return open.at(static_cast<std::size_t>(handle - kFirstHandle));
  }
};

Disk& TheDisk() {
  static Disk disk;
  return disk;
}

}  // namespace

namespace Fuzzing::MemoryFiles {

void Write(const std::string& path, std::string_view bytes) {
  Disk& disk = TheDisk();
  const auto file = disk.FindOrMake(path);
  file->bytes = bytes;
  file->written = ++disk.writes;
}

void Remove(const std::string& path) { TheDisk().Remove(path); }

}  // namespace Fuzzing::MemoryFiles

namespace Sumara {

// Files.

int File::Open(const std::string& path, Access access) {
  Close();
  if (path == Fuzzing::MemoryFiles::kDirectory) return EISDIR;
  Disk& disk = TheDisk();
  if (access == Access::kWrite) Fuzzing::MemoryFiles::Write(path, {});
  auto file = disk.Find(path);
  if (file == nullptr) return ENOENT;
  m_size = file->bytes.size();
  m_handle = disk.HandleOf(std::move(file));
  return 0;
}

int File::Close() noexcept {
  if (m_handle != -1) TheDisk().Slot(m_handle).reset();
  m_handle = -1;
  return 0;
}

FileState File::State() const {
  const MemoryFile& file = *TheDisk().Slot(m_handle);
  return {file.number, file.bytes.size(), file.written, file.written};
}

std::size_t File::ReadAt(std::uint64_t offset, std::span<char> target, int& error) const {
  error = 0;
  const std::string& bytes = TheDisk().Slot(m_handle)->bytes;
  if (offset >= bytes.size()) return 0;
  const auto place = static_cast<std::size_t>(offset);
  const std::size_t count = std::min(target.size(), bytes.size() - place);
  if (count > 0) std::memcpy(target.data(), bytes.data() + place, count);
  return count;
}

int File::Write(std::span<const char> bytes) {
  Disk& disk = TheDisk();
  MemoryFile& file = *disk.Slot(m_handle);
  file.bytes.append(bytes.begin(), bytes.end());
  file.written = ++disk.writes;
  return 0;
}

// The directory.

struct DirectoryReader::System {
  std::string last;  ///< the name that was delivered; what comes behind it is next
};

DirectoryReader::DirectoryReader(const std::string& path, const char* word)
    : m_path(path), m_system(std::make_unique<System>()) {
  if (path == Fuzzing::MemoryFiles::kDirectory) return;
  throw std::filesystem::filesystem_error(word, path,
                                          std::make_error_code(std::errc::not_a_directory));
}

DirectoryReader::~DirectoryReader() = default;
DirectoryReader::DirectoryReader(DirectoryReader&&) noexcept = default;
DirectoryReader& DirectoryReader::operator=(DirectoryReader&&) noexcept = default;

const DirectoryEntry* DirectoryReader::Next(const char*) {
  const auto& names = TheDisk().names;
  const auto next = names.upper_bound(m_system->last);
  if (next == names.end()) return nullptr;
  m_system->last = next->first;
  m_entry.name = next->first.substr(m_path.size());
  m_entry.type = EntryType::kFile;
  return &m_entry;
}

// What names stand for.

namespace Platform {

PathStatus StatusOf(const std::string& path) {
  if (path == Fuzzing::MemoryFiles::kDirectory) return {EntryType::kDirectory, 0};
  const auto file = TheDisk().Find(path);
  if (file == nullptr) return {EntryType::kUnknown, ENOENT};
  return {EntryType::kFile, 0, file->bytes.size()};
}

int LastWrite(const std::string& path, FileTime& time) {
  if (path == Fuzzing::MemoryFiles::kDirectory || path == "/.") {
    time = {TheDisk().namesChanged, 0};
    return 0;
  }
  const auto file = TheDisk().Find(path);
  if (file == nullptr) return ENOENT;
  time = {file->written, 0};
  return 0;
}

}  // namespace Platform
}  // namespace Sumara
