#pragma once

#include <string>
#include <string_view>

namespace Tabulon {

/// Text of Latin-1, in which the table of units is, as UTF-8.
std::string Utf8OfLatin1(std::string_view text);

}  // namespace Tabulon
