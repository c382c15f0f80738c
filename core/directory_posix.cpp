#include <dirent.h>

#include <cerrno>
#include <filesystem>
#include <new>
#include <system_error>

#include "core/directory.h"

namespace Sumara {
namespace {

[[noreturn]] void Fail(const char* word, const std::string& path, int error) {
  if (error == ENOMEM) throw std::bad_alloc();
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
  System() = default;
  ~System() {
    if (handle != nullptr) ::closedir(handle);
  }
  System(const System&) = delete;
  System& operator=(const System&) = delete;

  /// Has the next entry in `ahead`, or none at the end. \return 0, or the system's error number.
  int LookAhead() {
    while (ahead == nullptr || IsSelfOrParent(ahead->d_name)) {
      errno = 0;
      ahead = ::readdir(handle);
      if (ahead == nullptr && errno != EINTR) return errno;
    }
    return 0;
  }

  DIR* handle = nullptr;
  const dirent* ahead = nullptr;  ///< found, and not delivered yet
};

DirectoryReader::DirectoryReader(const std::string& path, const char* word)
    : m_path(path), m_system(std::make_unique<System>()) {
  if (path.find('\0') != std::string::npos) Fail(word, path, EINVAL);
  do {
    m_system->handle = ::opendir(path.c_str());
  } while (m_system->handle == nullptr && errno == EINTR);
  if (m_system->handle == nullptr) Fail(word, path, errno);
}

DirectoryReader::~DirectoryReader() = default;
DirectoryReader::DirectoryReader(DirectoryReader&&) noexcept = default;
DirectoryReader& DirectoryReader::operator=(DirectoryReader&&) noexcept = default;

const DirectoryEntry* DirectoryReader::Next(const char* word) {
  if (const int error = m_system->LookAhead()) Fail(word, m_path, error);
  if (m_system->ahead == nullptr) return nullptr;
  m_entry.name = m_system->ahead->d_name;
  m_entry.type = TypeOf(*m_system->ahead);
  m_system->ahead = nullptr;
  return &m_entry;
}

}  // namespace Sumara
