#pragma once

#include <cstdint>
#include <ctime>
#include <string>

#include "core/directory.h"

// What each platform answers in its own way, for the functions of paths.h and directory.h.

namespace Sumara::Platform {

/// What a path names, links followed, or the system's error number.
struct PathStatus {
  EntryType type = EntryType::kUnknown;
  int error = 0;
  std::uint64_t size = 0;  ///< of a file
};
PathStatus StatusOf(const std::string& path);

/// True for the errors that say that there is nothing of that name, or that there cannot be.
bool MeansMissing(int error);

/// A moment since 1970 in UTC.
struct FileTime {
  std::int64_t seconds = 0;
  std::int64_t nanoseconds = 0;  ///< 0 to 999999999
};

/// \return 0, or the system's error number.
int LastWrite(const std::string& path, FileTime& time);

/// \return false if the moment has no local time.
bool LocalTime(std::int64_t seconds, std::tm& local);

/// Gives text that was read as bytes the line ends of the platform's text mode.
void TranslateLineEnds(std::string& text);

}  // namespace Sumara::Platform
