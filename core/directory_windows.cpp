#include <filesystem>
#include <system_error>

#include "core/directory.h"
#include "core/paths.h"

namespace Sumara {
namespace {

void Check(const char* word, const std::string& path, const std::error_code& error) {
  if (error) throw std::filesystem::filesystem_error(word, path, error);
}

EntryType TypeOf(const std::filesystem::directory_entry& entry) {
  std::error_code error;
  const auto type = entry.symlink_status(error).type();
  if (error) return EntryType::kUnknown;
  switch (type) {
    case std::filesystem::file_type::regular:
      return EntryType::kFile;
    case std::filesystem::file_type::directory:
      return EntryType::kDirectory;
    case std::filesystem::file_type::symlink:
      return EntryType::kLink;
    default:
      return EntryType::kUnknown;
  }
}

}  // namespace

struct DirectoryReader::System {
  std::filesystem::directory_iterator iterator;
  bool started = false;
};

DirectoryReader::DirectoryReader(const std::string& path, const char* word)
    : m_path(path), m_system(std::make_unique<System>()) {
  std::error_code error;
  m_system->iterator = std::filesystem::directory_iterator(SystemPath(path), error);
  Check(word, path, error);
}

DirectoryReader::~DirectoryReader() = default;
DirectoryReader::DirectoryReader(DirectoryReader&&) noexcept = default;
DirectoryReader& DirectoryReader::operator=(DirectoryReader&&) noexcept = default;

const DirectoryEntry* DirectoryReader::Next(const char* word) {
  std::error_code error;
  if (m_system->started && m_system->iterator != std::filesystem::end(m_system->iterator)) {
    m_system->iterator.increment(error);
  }
  m_system->started = true;
  Check(word, m_path, error);
  if (m_system->iterator == std::filesystem::end(m_system->iterator)) return nullptr;
  m_entry.name = m_system->iterator->path().filename().string();
  m_entry.type = TypeOf(*m_system->iterator);
  return &m_entry;
}

}  // namespace Sumara
