#pragma once

#include <cstdint>
#include <optional>

#include "tables/group_table.h"
#include "tables/header_contents.h"

namespace Tabulon {

/// Reads a selection in one pass over the data file.
/// \param roomFor rows for which the caller has room, if that decides.
/// \throws as `GroupTable::Read`
template <class T>
void ReadRows(const HeaderContents& contents, const Selection& selection,
              std::optional<std::uint64_t> roomFor, const Room<T>& room, const StopQuestion& stop);

}  // namespace Tabulon
