#include "core/error_context.h"

namespace Sumara {

std::string FileContext(std::string_view path) { return std::string("File path: ").append(path); }

std::string DirectoryContext(std::string_view path) {
  return std::string("Directory: ").append(path);
}

std::string AxisContext(std::string_view name) {
  return std::string("Axis name: '").append(name).append("'");
}

std::string AxisContext(std::string_view name, std::uint64_t index) {
  return AxisContext(name).append("; axis index: ").append(std::to_string(index));
}

std::string AxisContextWithPath(std::string_view name, std::string_view path) {
  return AxisContext(name).append("; ").append(FileContext(path));
}

std::string_view AxisPositionText(std::uint32_t position) {
  switch (position) {
    case 0:
      return "Primary axis";
    case 1:
      return "Secondary axis";
    default:
      return "Unknown axis";
  }
}

}  // namespace Sumara
