#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <system_error>

#include "tests/fuzz/fuzzing.h"

namespace Fuzzing {

/// A directory of the process, in memory where the system has such a place. Files are overwritten
/// by each input, so that no time goes into making and removing them.
class Scratch {
 public:
  static Scratch& Instance() {
    static Scratch scratch;
    return scratch;
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  /// With a separator at its end.
  const std::string& Directory() const { return m_directory; }
  std::string Path(const std::string& name) const { return m_directory + name; }

  /// Gives the file this content. \return its path.
  std::string Write(const std::string& name, std::string_view bytes) {
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

  void Remove(const std::string& name) {
    const auto entry = m_files.find(name);
    if (entry == m_files.end()) return;
    ::close(entry->second);
    m_files.erase(entry);
    ::unlink(Path(name).c_str());
  }

 private:
  Scratch() {
    std::error_code error;
    const std::filesystem::path memory = "/dev/shm";
    const bool isThere = ::access(memory.c_str(), W_OK) == 0;
    std::string path =
        (isThere ? memory : std::filesystem::temp_directory_path()) / "tabulon_fuzz_XXXXXX";
    if (::mkdtemp(path.data()) == nullptr) Fail("cannot make a directory", path);
    m_directory = std::filesystem::canonical(path, error).string() + "/";
  }
  ~Scratch() {
    std::error_code ignored;
    std::filesystem::remove_all(m_directory, ignored);
  }

  std::string m_directory;
  std::map<std::string, int> m_files;
};

}  // namespace Fuzzing
