#pragma once

#include <string>
#include <string_view>

// Files that are held in memory, in place of those of the system: what the fuzzer runs on. They all
// lie in the root directory.

namespace Fuzzing::MemoryFiles {

inline constexpr const char* kDirectory = "/";

/// Gives the file this content. Who has it open sees that, as on a disk.
void Write(const std::string& path, std::string_view bytes);

void Remove(const std::string& path);

}  // namespace Fuzzing::MemoryFiles
