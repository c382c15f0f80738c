#include <sys/stat.h>

#include <cerrno>

#include "core/paths_platform.h"

namespace Sumara::Platform {
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
  return {TypeOf(status.st_mode), 0, static_cast<std::uint64_t>(status.st_size)};
}

int LastWrite(const std::string& path, FileTime& time) {
  struct stat status;
  if (const int error = StatusOf(path, status)) return error;
  time = {status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
  return 0;
}

}  // namespace Sumara::Platform
