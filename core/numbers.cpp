#include "core/numbers.h"

#include "core/exceptions.h"

namespace Sumara {
namespace {

void RequireStart(std::size_t start, std::size_t size) {
  if (start <= size) return;
  throw CIOException(5017, "start index = " + std::to_string(start) +
                               "; container size = " + std::to_string(size));
}

}  // namespace

template <class T>
void PopulateFromString(std::string_view text, std::vector<T>& values, std::size_t start) {
  if (text.empty()) throw CIOException(5015);
  RequireStart(start, values.size());
  T value{};
  for (std::size_t at = start; ExtractNumber(text, value); ++at) {
    if (at < values.size()) {
      values[at] = value;
    } else {
      values.push_back(value);
    }
  }
}

template <class T>
void PopulateFromTokens(const std::vector<std::string>& tokens, std::vector<T>& values,
                        std::size_t start) {
  if (tokens.empty()) throw CIOException(5016);
  RequireStart(start, values.size());
  if (values.size() < start + tokens.size()) values.resize(start + tokens.size());
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    std::string_view text = tokens[i];
    T value{};
    ExtractNumber(text, value);
    values[start + i] = value;
  }
}

#define TABULON_INSTANTIATE(T)                                                      \
  template void PopulateFromString(std::string_view, std::vector<T>&, std::size_t); \
  template void PopulateFromTokens(const std::vector<std::string>&, std::vector<T>&, std::size_t);
TABULON_FOR_EACH_ELEMENT_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE

}  // namespace Sumara
