#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

namespace Fuzzing {

/// Decisions taken from the bytes of an input, one after the other; zeros once they are used up.
class ByteSource {
 public:
  explicit ByteSource(std::string_view bytes) : m_bytes(bytes) {}

  bool IsUsedUp() const { return m_bytes.empty(); }

  /// From 0 to `count - 1`, of at most 256.
  std::size_t Pick(std::size_t count) { return Take<std::uint8_t>() % count; }
  bool Toss() { return Pick(2) == 1; }

  template <class Number>
  Number Take() {
    Number number{};
    const std::size_t size = m_bytes.size() < sizeof(Number) ? m_bytes.size() : sizeof(Number);
    std::memcpy(&number, m_bytes.data(), size);
    m_bytes.remove_prefix(size);
    return number;
  }

  std::string_view TakeBytes(std::size_t size) {
    const std::string_view bytes = m_bytes.substr(0, size);
    m_bytes.remove_prefix(bytes.size());
    return bytes;
  }

 private:
  std::string_view m_bytes;
};

}  // namespace Fuzzing
