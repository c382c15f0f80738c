#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace SumaraApi {

/// Whether an extension is that of a group header: `.%` and digits.
bool IsHeaderExtension(std::string_view extension);

/// Calls `visit` with the name of each regular file of `directory` whose base name is `runName`,
/// whatever its case, in the order of the directory, until it returns false.
/// \throws std::filesystem::filesystem_error
void ForEachFileOfRun(const std::string& directory, const std::string& runName,
                      const std::function<bool(const std::string& fileName)>& visit);

}  // namespace SumaraApi
