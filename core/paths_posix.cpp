#include <cerrno>

#include "core/paths.h"
#include "core/paths_platform.h"

namespace Sumara {

bool NeedsLongPrefix(std::string_view) { return false; }

std::string SystemPath(std::string_view path) { return std::string(path); }

namespace Platform {

bool MeansMissing(int error) {
  return error == ENOENT || error == ENOTDIR || error == ENAMETOOLONG || error == EINVAL;
}

bool LocalTime(std::int64_t seconds, std::tm& local) {
  const std::time_t moment = seconds;
  return ::localtime_r(&moment, &local) != nullptr;
}

void TranslateLineEnds(std::string&) {}

}  // namespace Platform
}  // namespace Sumara
