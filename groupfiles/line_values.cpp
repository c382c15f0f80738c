#include "groupfiles/line_values.h"

#include "core/numbers.h"
#include "groupfiles/text_numbers.h"

namespace Sumara {

template <class U>
std::uint64_t TakeLineValues(std::string_view line, std::uint64_t count,
                             std::span<const std::uint64_t> places, std::span<U> values) {
  std::size_t next = 0;
  for (std::uint64_t place = 0; place < count; ++place) {
    if (next == places.size() || places[next] != place) {
      if (!SkipNumber<U>(line)) return place;
      continue;
    }
    U value{};
    if (!ExtractNumber(line, value)) return place;
    for (; next < places.size() && places[next] == place; ++next) values[next] = value;
  }
  return count;
}

#define TABULON_INSTANTIATE(U)                                           \
  template std::uint64_t TakeLineValues(std::string_view, std::uint64_t, \
                                        std::span<const std::uint64_t>, std::span<U>);
TABULON_FOR_EACH_ELEMENT_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE

}  // namespace Sumara
