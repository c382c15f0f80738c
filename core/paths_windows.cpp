#include <sys/stat.h>

#include <cerrno>
#include <chrono>
#include <filesystem>

#include "core/paths.h"
#include "core/paths_platform.h"

namespace Sumara {

bool NeedsLongPrefix(std::string_view path) { return LongPath::NeedsPrefix(path); }

std::string SystemPath(std::string_view path) {
  return NeedsLongPrefix(path) ? LongPath::WithPrefix(path) : std::string(path);
}

namespace Platform {
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
  if ((status.st_mode & _S_IFMT) == _S_IFREG) return {EntryType::kFile, 0};
  const bool isDirectory = (status.st_mode & _S_IFMT) == _S_IFDIR;
  return {isDirectory ? EntryType::kDirectory : EntryType::kOther, 0};
}

bool MeansMissing(int error) {
  return error == ENOENT || error == ENOTDIR || error == ENAMETOOLONG || error == EINVAL;
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

bool LocalTime(std::int64_t seconds, std::tm& local) {
  return ::_localtime64_s(&local, &seconds) == 0;
}

void TranslateLineEnds(std::string& text) {
  std::size_t end = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool isLineEnd = text[at] == '\r' && at + 1 < text.size() && text[at + 1] == '\n';
    if (!isLineEnd) text[end++] = text[at];
  }
  text.resize(end);
}

}  // namespace Platform
}  // namespace Sumara
