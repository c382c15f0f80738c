#pragma once

#include <map>
#include <string>
#include <string_view>

namespace Fuzzing {

/// The directory of the process, on disk or in memory, as the library is built. Files are
/// overwritten by each input, so that no time goes into making and removing them.
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
  std::string Write(const std::string& name, std::string_view bytes);

  void Remove(const std::string& name);

 private:
  Scratch();
  ~Scratch();

  std::string m_directory;
  std::map<std::string, int> m_files;  ///< open on disk
};

}  // namespace Fuzzing
