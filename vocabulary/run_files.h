#pragma once

#include <functional>
#include <string>
#include <string_view>

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

/// Calls `visit` with the name of each regular file of `directory` whose base name is `runName`,
/// whatever its case, in the order of the directory, until it returns false.
/// \throws std::filesystem::filesystem_error
void ForEachFileOfRun(const std::string& directory, const std::string& runName,
                      const std::function<bool(const std::string& fileName)>& visit);

}  // namespace SumaraApi
