#include <sys/stat.h>

#include <cerrno>
#include <chrono>
#include <filesystem>

#include "core/paths.h"
#include "core/paths_platform.h"

namespace Sumara::Platform {
namespace {

/// Without separators at its end, which the C library does not take; a root keeps its own.
std::string_view WithoutTrailingSeparators(std::string_view path) {
  while (path.size() > 1 && (path.back() == '\\' || path.back() == '/') &&
         path[path.size() - 2] != ':') {
    path.remove_suffix(1);
  }
  return path;
}

/// \return 0, or the number of the C library's error.
int StatusOf(const std::string& path, struct _stat64& status) {
  if (path.find('\0') != std::string::npos) return EINVAL;
  const std::filesystem::path systemPath(SystemPath(WithoutTrailingSeparators(path)));
  return ::_wstat64(systemPath.c_str(), &status) == 0 ? 0 : errno;
}

}  // namespace

PathStatus StatusOf(const std::string& path) {
  struct _stat64 status;
  if (const int error = StatusOf(path, status)) return {EntryType::kUnknown, error};
  if ((status.st_mode & _S_IFMT) == _S_IFREG) {
    return {EntryType::kFile, 0, static_cast<std::uint64_t>(status.st_size)};
  }
  const bool isDirectory = (status.st_mode & _S_IFMT) == _S_IFDIR;
  return {isDirectory ? EntryType::kDirectory : EntryType::kOther, 0};
}

int LastWrite(const std::string& path, FileTime& time) {
  std::error_code error;
  const auto written = std::filesystem::last_write_time(SystemPath(path), error);
  if (error) return error.value();
  const auto moment = std::chrono::file_clock::to_sys(written).time_since_epoch();
  const auto seconds = std::chrono::floor<std::chrono::seconds>(moment);
  time = {seconds.count(), std::chrono::nanoseconds(moment - seconds).count()};
  return 0;
}

}  // namespace Sumara::Platform
