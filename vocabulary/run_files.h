#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/directory.h"
#include "vocabulary/enumerations.h"

// Which names belong to a run. Its files stand in one directory and share a base name, whatever its
// case; the extension says what a file is.

namespace SumaraApi {

inline constexpr std::string_view kTerminationExtension = ".$TE";  ///< makes a run a run
inline constexpr std::string_view kMessageExtension = ".$ME";
inline constexpr std::string_view kVerificationExtension = ".$VE";  ///< written when the run starts

/// Whether a file name is that of a termination file, whatever its case.
bool IsTerminationFileName(std::string_view fileName);

/// Whether an extension is that of a group header: `.%` and digits.
bool IsHeaderExtension(std::string_view extension);

/// The group number of a header, by its extension; -1 if that is no number of 32 bits.
std::int32_t HeaderNumberOf(std::string_view extension);

/// The kind of those calculations that leave no header, by the extension of a file that they do
/// leave, whatever its case; `Unknown` for any other extension.
CalculationType CalculationTypeOfExtension(std::string_view extension);

/// What one directory holds, as it lists it, found by the runs that files belong to.
class DirectoryListing {
 public:
  /// \param directory with a trailing separator.
  /// \throws std::filesystem::filesystem_error named by "directory_iterator".
  explicit DirectoryListing(std::string directory);

  const std::string& Directory() const { return m_directory; }

  /// The names of the regular files whose base name is `runName`, whatever its case, in the order
  /// of the directory. Those whose base name is spelled so come first; of the others those are left
  /// out whose extension came before.
  ///
  /// Of links the targets are asked for anew; one that cannot be followed is an error, whatever its
  /// name.
  /// \throws std::filesystem::filesystem_error with the word "status".
  std::vector<std::string> FilesOf(std::string_view runName) const;

  /// Asks the system for one entry: what the directory tells of them says nothing of whether they
  /// can be reached.
  /// \throws std::filesystem::filesystem_error with the word "status".
  void CheckSearchable() const;

 private:
  struct Hashed {
    std::size_t hash;  ///< of the base name, whatever its case
    std::uint32_t entry;
  };

  std::vector<bool> AskUnsureEntries() const;

  std::string m_directory;
  std::vector<Sumara::DirectoryEntry> m_entries;
  std::vector<Hashed> m_byBaseName;     ///< sorted; of equal hashes in the order of the directory
  std::vector<std::uint32_t> m_unsure;  ///< links, and what the directory tells nothing of
};

}  // namespace SumaraApi
