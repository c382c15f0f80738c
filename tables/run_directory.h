#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/directory.h"
#include "tables/run_list.h"

namespace Tabulon {

/// The files of runs in one directory, put together by their base names in one pass over it.
class RunDirectory {
 public:
  /// \param path with a trailing separator, or empty.
  /// \throws std::filesystem::filesystem_error, Stopped
  RunDirectory(std::string path, const StopQuestion& stop);

  /// The runs, in the natural order of their names.
  std::vector<RunFiles> Runs() const;
  /// The directories in it, by their names, likewise. Links are not among them.
  std::vector<std::string> Directories() const;

 private:
  enum class Kind : std::uint8_t { kNone, kTermination, kMessages, kVerification, kHeader, kOther };
  struct File {
    std::uint32_t name;  ///< where it begins in `m_names`
    std::uint32_t size;
    std::uint32_t stemSize;
    Kind kind;
    std::int32_t number;
    std::int32_t next;  ///< the next file of the same run, or -1
  };
  /// Files whose base names are the same in any case.
  struct Family {
    std::int32_t first = -1;
    bool isRun = false;
  };
  /// A run by its name, with the files of that name in any case.
  struct Named {
    std::string_view name;
    const Family* family;
  };

  static Kind KindOf(std::string_view extension);
  void Take(const Sumara::DirectoryEntry& entry);
  Family& FamilyOf(std::string_view stem);
  void GrowSlots();
  std::string_view NameOf(const File& file) const {
    return std::string_view(m_names).substr(file.name, file.size);
  }
  std::string_view StemOf(const File& file) const { return NameOf(file).substr(0, file.stemSize); }
  void AddNames(const Family& family, std::vector<Named>& names) const;
  RunFiles RunOf(const Named& named) const;
  void AddFile(const File& file, bool isExact, RunFiles& run) const;

  std::string m_path;
  std::string m_names;
  std::vector<File> m_files;
  std::vector<Family> m_families;
  std::vector<std::int32_t> m_slots;  ///< families by the hash of their names; -1 if free
  std::vector<std::string> m_directories;
};

}  // namespace Tabulon
