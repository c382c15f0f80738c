#pragma once

#include <cstdint>
#include <string>

namespace Sumara {

/// A number that no group has: the group number is not assigned.
inline constexpr std::uint64_t kNoGroupNumber = ~std::uint64_t{0};

/// The files of a group.
enum class GroupFile : std::uint32_t { kHeader = 0, kData = 1 };

/// The number that a header's file name says: the digits behind its last ".%".
/// \throws CException 80, 60
std::uint64_t ParseGroupNumber(const std::string& path);

/// ".%" or ".$" and the number, with a leading zero below 10. \throws CException 67 for no number.
std::string GroupNumberToExtension(std::uint64_t number, GroupFile kind);

}  // namespace Sumara
