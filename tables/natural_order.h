#pragma once

#include <string_view>

namespace Tabulon {

/// The order in which people list names with numbers in them: "run2" before "run10".
///
/// Digits compare as the number that they make, all else byte by byte without regard to case; names
/// that differ in neither compare by their bytes, so that only equal names are equal.
/// \return below 0, 0 or above 0.
int CompareNaturally(std::string_view a, std::string_view b);

}  // namespace Tabulon
