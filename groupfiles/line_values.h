#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace Sumara {

/// Takes numbers of a line of text: converts those at `places`, passes over the others.
///
/// `values[i]` becomes the number at `places[i]`, counted from 0; places rise, and one may come
/// twice. The line is read up to its `count`-th number, wanted or not, or to the first that is
/// none. \return how many numbers it holds, up to `count`. Values whose places lie behind stay as
/// they are.
///
/// Nothing is kept: any number of threads may call it at a time.
template <class U>
std::uint64_t TakeLineValues(std::string_view line, std::uint64_t count,
                             std::span<const std::uint64_t> places, std::span<U> values);

}  // namespace Sumara
