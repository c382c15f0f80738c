#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/element_types.h"

// Numbers as text, in both directions. The outcome is that of the classic locale's streams; the
// roads are faster, and a test holds both against each other.

namespace Sumara {

/// Reads one number from the front of `text` as `stream >> value` does.
///
/// Leading white space and the characters that a stream would take are removed from `text` also if
/// the conversion fails; `value` is then what a stream stores: 0, or the nearest limit. Without any
/// character to take it stays as it is.
/// \return false if a stream would have set its fail flag.
template <class T>
bool ExtractNumber(std::string_view& text, T& value);

/// Fills `values` from position `start` with the numbers of `text` until the first that fails,
/// overwriting first and appending then.
/// \throws CIOException 5015 if `text` is empty, 5017 if `start` lies beyond the vector.
template <class T>
void PopulateFromString(std::string_view text, std::vector<T>& values, std::size_t start = 0);

/// Converts each of `tokens` on its own to the positions from `start`; a token that fails leaves
/// what a stream stores, an empty one 0.
/// \throws CIOException 5016 if there are no tokens, 5017 if `start` lies beyond the vector.
template <class T>
void PopulateFromTokens(const std::vector<std::string>& tokens, std::vector<T>& values,
                        std::size_t start = 0);

/// Digits after the point that the format gives a number: 15 for the data type double, else 7.
constexpr int PrecisionOf(std::uint32_t dataType) { return dataType == kDoubleCode ? 15 : 7; }

/// Appends `value` in scientific notation, "1.5000000E+00" or with a small "e".
void AppendScientific(std::string& text, double value, int precision, bool upperCase);

/// The most digits after the point that `WriteScientific` takes, and the room that it needs.
inline constexpr int kMostWrittenPrecision = 16;
inline constexpr std::size_t kLongestScientific = 32;

/// As `AppendScientific`, to a place with room for `kLongestScientific` characters.
/// \return the end of the number.
char* WriteScientific(char* at, double value, int precision, bool upperCase);

/// Appends `value` in fixed notation, "1.5000000".
void AppendFixed(std::string& text, double value, int precision);

}  // namespace Sumara
