#include "core/time_text.h"

#include <array>
#include <cstddef>
#include <cstdio>

namespace Sumara {

std::string TimeText(const std::tm& time) {
  constexpr long long kFirstYear = 1900;
  std::array<char, 96> text;  // whatever stands in the fields
  // "%Y" of strftime gives years before 1000 fewer digits.
  const int size = std::snprintf(text.data(), text.size(), "%04lld-%02d-%02d %02d:%02d:%02d",
                                 kFirstYear + time.tm_year, time.tm_mon + 1, time.tm_mday,
                                 time.tm_hour, time.tm_min, time.tm_sec);
  return {text.data(), static_cast<std::size_t>(size)};
}

}  // namespace Sumara
