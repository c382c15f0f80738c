#include <dirent.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "core/directory.h"

namespace Sumara {
namespace {

[[noreturn]] void Fail(const char* word, const std::string& path, int error) {
  throw std::filesystem::filesystem_error(word, path,
                                          std::error_code(error, std::generic_category()));
}

EntryType TypeOf(const dirent& entry) {
  switch (entry.d_type) {
    case DT_REG:
      return EntryType::kFile;
    case DT_DIR:
      return EntryType::kDirectory;
    case DT_LNK:
      return EntryType::kLink;
    case DT_UNKNOWN:
      return EntryType::kUnknown;
    default:
      return EntryType::kOther;
  }
}

bool IsSelfOrParent(std::string_view name) { return name == "." || name == ".."; }

}  // namespace

struct DirectoryReader::System {
  explicit System(DIR* opened) : handle(opened) {}
  ~System() { ::closedir(handle); }
  System(const System&) = delete;
  System& operator=(const System&) = delete;

  DIR* handle;
};

DirectoryReader::DirectoryReader(const std::string& path, const char* word) : m_path(path) {
  if (path.find('\0') != std::string::npos) Fail(word, path, EINVAL);
  DIR* const handle = ::opendir(path.c_str());
  if (handle == nullptr) Fail(word, path, errno);
  m_system = std::make_unique<System>(handle);
}

DirectoryReader::~DirectoryReader() = default;
DirectoryReader::DirectoryReader(DirectoryReader&&) noexcept = default;
DirectoryReader& DirectoryReader::operator=(DirectoryReader&&) noexcept = default;

const DirectoryEntry* DirectoryReader::Next(const char* word) {
  const dirent* entry = nullptr;
  do {
    errno = 0;
    entry = ::readdir(m_system->handle);
    if (entry == nullptr && errno != 0) Fail(word, m_path, errno);
  } while (entry != nullptr && IsSelfOrParent(entry->d_name));
  if (entry == nullptr) return nullptr;
  m_entry.name = entry->d_name;
  m_entry.type = TypeOf(*entry);
  return &m_entry;
}

}  // namespace Sumara
