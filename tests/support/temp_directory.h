#pragma once

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace testing_support {

/// A directory of the test's own, removed with all that is in it when the test ends.
class TempDirectory {
 public:
  TempDirectory() {
    static std::atomic<int> counter{0};
    const auto base = std::filesystem::temp_directory_path();
    do {
      m_path = base / ("tabulon_test_" + std::to_string(Seed()) + "_" + std::to_string(counter++));
    } while (!std::filesystem::create_directory(m_path));
    m_path = std::filesystem::canonical(m_path);
  }
  ~TempDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  TempDirectory(const TempDirectory&) = delete;
  TempDirectory& operator=(const TempDirectory&) = delete;

  std::string Path() const { return m_path.string(); }
  std::string Path(const std::string& name) const { return (m_path / name).string(); }

  /// Writes the bytes as they stand; returns the path.
  std::string Write(const std::string& name, std::string_view bytes) const {
    std::string path = Path(name);
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) throw std::runtime_error("cannot write " + path);
    return path;
  }

  /// Writes the words in the byte order of the machine; returns the path.
  template <class T>
  std::string WriteWords(const std::string& name, std::span<const T> words) const {
    return Write(name, {reinterpret_cast<const char*>(words.data()), words.size_bytes()});
  }

  std::string Read(const std::string& name) const {
    std::ifstream file(Path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

  std::string MakeDirectory(const std::string& name) const {
    std::filesystem::create_directories(m_path / name);
    return Path(name);
  }

 private:
  static std::size_t Seed() {
    static const int anchor = 0;  // its address differs from process to process
    return reinterpret_cast<std::size_t>(&anchor) / 64 +
           static_cast<std::size_t>(
               std::filesystem::file_time_type::clock::now().time_since_epoch().count());
  }

  std::filesystem::path m_path;
};

}  // namespace testing_support
