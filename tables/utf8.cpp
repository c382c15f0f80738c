#include "tables/utf8.h"

namespace Tabulon {

std::string Utf8OfLatin1(std::string_view text) {
  std::string utf8;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80u) {
      utf8 += c;
    } else {
      utf8 += static_cast<char>(0xC0u | (byte >> 6u));
      utf8 += static_cast<char>(0x80u | (byte & 0x3Fu));
    }
  }
  return utf8;
}

}  // namespace Tabulon
