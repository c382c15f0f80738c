#include <algorithm>

#include "core/paths.h"

namespace Sumara::LongPath {
namespace {

constexpr std::string_view kPrefix = R"(\\?\)";
constexpr std::string_view kSharePrefix = R"(\\?\UNC\)";
constexpr std::size_t kShortestAbsolute = 3;
constexpr std::size_t kFirstLongLength = 248;  // a directory must leave room for a short file name

bool HasPrefix(std::string_view path) { return path.substr(0, kPrefix.size()) == kPrefix; }

bool BeginsWithShare(std::string_view path) {
  return path.substr(0, 2) == R"(\\)" || path.substr(0, 2) == "//";
}

bool BeginsWithDrive(std::string_view path) {
  return path.size() >= kShortestAbsolute && path[1] == ':' && (path[2] == '\\' || path[2] == '/');
}

}  // namespace

bool NeedsPrefix(std::string_view path) {
  return !HasPrefix(path) && path.size() >= kFirstLongLength &&
         (BeginsWithDrive(path) || BeginsWithShare(path));
}

std::string WithPrefix(std::string_view path, bool force) {
  if (path.size() < kShortestAbsolute || (!force && !NeedsPrefix(path))) return {};
  std::string result;
  if (BeginsWithShare(path)) {
    result.append(kSharePrefix).append(path.substr(2));
  } else if (BeginsWithDrive(path)) {
    result.append(kPrefix).append(path);
  }
  std::replace(result.begin(), result.end(), '/', '\\');
  return result;
}

}  // namespace Sumara::LongPath
