#include "core/directory.h"

#include <filesystem>
#include <system_error>

#include "core/paths.h"
#include "core/paths_platform.h"

namespace Sumara {
namespace {

EntryType FollowLink(const std::string& path, EntryType type) {
  if (type != EntryType::kLink && type != EntryType::kUnknown) return type;
  const Platform::PathStatus target = Platform::StatusOf(path);
  if (target.error != 0 && !Platform::MeansMissing(target.error)) {
    throw std::filesystem::filesystem_error("status", path,
                                            std::error_code(target.error, std::generic_category()));
  }
  return target.type;
}

}  // namespace

bool IsRegularFile(const std::string& path, EntryType type) {
  return FollowLink(path, type) == EntryType::kFile;
}

bool IsOwnDirectory(const std::string& path, EntryType type) {
  if (type != EntryType::kUnknown) return type == EntryType::kDirectory;
  std::error_code error;
  return std::filesystem::is_directory(std::filesystem::symlink_status(SystemPath(path), error));
}

bool IsDirectoryEntry(const std::string& path, EntryType type) {
  return FollowLink(path, type) == EntryType::kDirectory;
}

}  // namespace Sumara
