#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// The words in which an exception says where it happened. What needs a group or a series for its
// words stands in model/model_context.h and is built from these.

namespace Sumara {

/// "File path: " and the path.
std::string FileContext(std::string_view path);

/// "Directory: " and the path.
std::string DirectoryContext(std::string_view path);

/// "Axis name: '" and the name and "'".
std::string AxisContext(std::string_view name);

/// The axis name, "; axis index: " and the index.
std::string AxisContext(std::string_view name, std::uint64_t index);

/// The axis name, "; " and the file context.
std::string AxisContextWithPath(std::string_view name, std::string_view path);

/// "Primary axis", "Secondary axis" or "Unknown axis".
std::string_view AxisPositionText(std::uint32_t position);

}  // namespace Sumara
