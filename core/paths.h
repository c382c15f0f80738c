#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Questions to the file system, in the library's own words for failure. Paths are narrow strings.

namespace Sumara {

/// The separator that the library puts into paths that it forms.
#ifdef _WIN32
inline constexpr char kSeparator = '\\';
#else
inline constexpr char kSeparator = '/';
#endif

/// The platform rules for paths that need the prefix `\\?\`, as pure string work for every
/// platform.
namespace LongPath {
bool NeedsPrefix(std::string_view path);
std::string WithPrefix(std::string_view path, bool force = false);
}  // namespace LongPath

/// True if this platform wants the long form of `path`: never where paths have no such limit.
bool NeedsLongPrefix(std::string_view path);

/// The form of `path` in which this platform's calls take it.
std::string SystemPath(std::string_view path);

/// Whether a file or directory exists, following links. A missing parent is a false.
/// \throws CIOException 5026 on any other failure.
bool Exists(const std::string& path);

/// \throws CIOException 5027 if the question cannot be answered.
bool IsDirectory(const std::string& path);

/// The size in bytes of a file, or nothing where there is none of that name or it cannot be told.
std::optional<std::uint64_t> FileSize(const std::string& path);

/// Makes the directory and its parents. \throws CIOException 5028.
void CreateDirectories(const std::string& path);

/// The canonical path of an existing file. \throws CIOException 5022, 5024.
std::string NormaliseFilePath(const std::string& path);

/// The canonical path of an existing directory. \throws CIOException 5023, 5025.
std::string NormaliseDirectory(const std::string& path);

/// The last write in ticks of 100 ns.
/// \throws std::filesystem::filesystem_error with the word "last_write_time".
std::int64_t LastWriteTicks(const std::string& path);

/// The last write in local time, for example "2024-03-01 09:05:07".
/// \throws CIOException 5022 if the file is missing.
std::string LastWriteTimeText(const std::string& path);

/// The whole of a file, read as text.
/// \throws CIOException 5022 with `context` as inner exception if the file is missing.
std::string ReadWholeFile(const std::string& path, const std::string& context, bool trim);

/// The path up to and including its last `/` or `\`; empty if it has neither.
std::string DirectoryOf(std::string_view path);

/// Adds the platform's separator if the path is not empty and does not end in one.
void WithTrailingSeparator(std::string& path);

/// The system's words for an error number.
std::string SystemErrorText(int error);

}  // namespace Sumara
