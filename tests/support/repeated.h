#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace testing_support {

/// `text`, `count` times over.
inline std::string Repeated(std::string_view text, std::size_t count) {
  std::string all;
  all.reserve(text.size() * count);
  for (std::size_t i = 0; i < count; ++i) all += text;
  return all;
}

}  // namespace testing_support
