#include <sys/stat.h>

#include <cerrno>

#include "core/paths.h"
#include "core/paths_platform.h"

namespace Sumara {

bool NeedsLongPrefix(std::string_view) { return false; }

std::string SystemPath(std::string_view path) { return std::string(path); }

namespace Platform {
namespace {

EntryType TypeOf(mode_t mode) {
  if (S_ISREG(mode)) return EntryType::kFile;
  return S_ISDIR(mode) ? EntryType::kDirectory : EntryType::kOther;
}

/// \return 0, or the system's error number.
int StatusOf(const std::string& path, struct stat& status) {
  if (path.find('\0') != std::string::npos) return EINVAL;
  while (::stat(path.c_str(), &status) != 0) {
    if (errno != EINTR) return errno;
  }
  return 0;
}

}  // namespace

PathStatus StatusOf(const std::string& path) {
  struct stat status;
  if (const int error = StatusOf(path, status)) return {EntryType::kUnknown, error};
  return {TypeOf(status.st_mode), 0};
}

bool MeansMissing(int error) {
  return error == ENOENT || error == ENOTDIR || error == ENAMETOOLONG || error == EINVAL;
}

int LastWrite(const std::string& path, FileTime& time) {
  struct stat status;
  if (const int error = StatusOf(path, status)) return error;
  time = {status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
  return 0;
}

bool LocalTime(std::int64_t seconds, std::tm& local) {
  const std::time_t moment = seconds;
  return ::localtime_r(&moment, &local) != nullptr;
}

void TranslateLineEnds(std::string&) {}

}  // namespace Platform
}  // namespace Sumara
