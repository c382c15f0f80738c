#include <cerrno>

#include "core/paths.h"
#include "core/paths_platform.h"

namespace Sumara {

bool NeedsLongPrefix(std::string_view path) { return LongPath::NeedsPrefix(path); }

std::string SystemPath(std::string_view path) {
  return NeedsLongPrefix(path) ? LongPath::WithPrefix(path) : std::string(path);
}

namespace Platform {

bool MeansMissing(int error) {
  return error == ENOENT || error == ENOTDIR || error == ENAMETOOLONG || error == EINVAL;
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
