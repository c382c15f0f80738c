#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "tests/fuzz/fuzzing.h"
#include "tests/fuzz/scratch.h"

namespace Fuzzing {

/// In memory where the system has such a place.
Scratch::Scratch() {
  std::error_code error;
  const std::filesystem::path memory = "/dev/shm";
  const bool isThere = ::access(memory.c_str(), W_OK) == 0;
  std::string path =
      (isThere ? memory : std::filesystem::temp_directory_path()) / "tabulon_fuzz_XXXXXX";
  if (::mkdtemp(path.data()) == nullptr) Fail("cannot make a directory", path);
  m_directory = std::filesystem::canonical(path, error).string() + "/";
}

Scratch::~Scratch() {
  std::error_code ignored;
  std::filesystem::remove_all(m_directory, ignored);
}

std::string Scratch::Write(const std::string& name, std::string_view bytes) {
  const auto [entry, isNew] = m_files.try_emplace(name, -1);
  int& file = entry->second;
  if (file == -1) {
    file = ::open(Path(name).c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
  }
  const bool isWritten =
      file != -1 && ::ftruncate(file, 0) == 0 &&
      ::pwrite(file, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size());
  if (!isWritten) Fail("cannot write a file", Path(name));
  return Path(name);
}

void Scratch::Remove(const std::string& name) {
  const auto entry = m_files.find(name);
  if (entry == m_files.end()) return;
  ::close(entry->second);
  m_files.erase(entry);
  ::unlink(Path(name).c_str());
}

}  // namespace Fuzzing
