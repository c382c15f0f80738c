#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include <filesystem>
#include <string_view>
#include <system_error>

#include "core/directory.h"
#include "core/paths.h"

// The system is asked itself: not every C++ library's iterator knows long paths.

namespace Sumara {
namespace {

std::filesystem::filesystem_error Failure(const char* word, const std::string& path, DWORD error) {
  return {word, path, std::error_code(static_cast<int>(error), std::system_category())};
}

EntryType TypeOf(const WIN32_FIND_DATAW& entry) {
  if ((entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) return EntryType::kLink;
  const bool isDirectory = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  return isDirectory ? EntryType::kDirectory : EntryType::kFile;
}

bool IsSelfOrParent(std::wstring_view name) { return name == L"." || name == L".."; }

}  // namespace

/// A search, with the entry that it has found last.
struct DirectoryReader::System {
  ~System() {
    if (search != INVALID_HANDLE_VALUE) ::FindClose(search);
  }

  /// Goes to the next entry. \return 0, or the number of the system's error.
  DWORD Advance() {
    found = ::FindNextFileW(search, &entry) != 0;
    const DWORD error = found ? ERROR_SUCCESS : ::GetLastError();
    return error == ERROR_NO_MORE_FILES ? ERROR_SUCCESS : error;
  }

  HANDLE search = INVALID_HANDLE_VALUE;
  WIN32_FIND_DATAW entry;
  bool found = true;
  bool delivered = false;  ///< opening the search finds the first entry
};

DirectoryReader::DirectoryReader(const std::string& path, const char* word)
    : m_path(path), m_system(std::make_unique<System>()) {
  if (path.empty() || path.find('\0') != std::string::npos)
    throw Failure(word, path, ERROR_PATH_NOT_FOUND);
  std::string pattern = SystemPath(path);
  WithTrailingSeparator(pattern);
  const std::filesystem::path systemPattern(pattern + '*');
  m_system->search = ::FindFirstFileW(systemPattern.c_str(), &m_system->entry);
  if (m_system->search == INVALID_HANDLE_VALUE) throw Failure(word, path, ::GetLastError());
}

DirectoryReader::~DirectoryReader() = default;
DirectoryReader::DirectoryReader(DirectoryReader&&) noexcept = default;
DirectoryReader& DirectoryReader::operator=(DirectoryReader&&) noexcept = default;

const DirectoryEntry* DirectoryReader::Next(const char* word) {
  DWORD error = m_system->delivered ? m_system->Advance() : ERROR_SUCCESS;
  while (error == ERROR_SUCCESS && m_system->found && IsSelfOrParent(m_system->entry.cFileName)) {
    error = m_system->Advance();
  }
  m_system->delivered = error != ERROR_SUCCESS;  // an entry has to get its name first
  if (error != ERROR_SUCCESS) throw Failure(word, m_path, error);
  if (!m_system->found) return nullptr;
  m_entry.name = std::filesystem::path(m_system->entry.cFileName).string();
  m_entry.type = TypeOf(m_system->entry);
  m_system->delivered = true;
  return &m_entry;
}

}  // namespace Sumara
