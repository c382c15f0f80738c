#pragma once

#include <cstdint>
#include <optional>

#include "tables/read_plan.h"

// What a selection comes to for the data file as it is.

namespace Tabulon {

/// Bytes of the data file. \throws CIOException 5000, 5007
std::uint64_t DataSizeOf(const HeaderContents& contents);

/// \param size bytes of the data file. Of a text file all lines are counted.
Rows CountRowsOf(const HeaderContents& contents, std::uint64_t size, const StopQuestion& stop);

/// The plan of a call.
/// \param room rows for which the caller has room, if that decides.
/// \param size bytes of the data file.
/// \throws as `PlanOf`
ReadPlan PlanFor(const HeaderContents& contents, const Selection& selection,
                 std::optional<std::uint64_t> room, std::uint64_t size, const StopQuestion& stop);

}  // namespace Tabulon
