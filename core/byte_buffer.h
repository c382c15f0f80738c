#pragma once

#include <cstddef>
#include <span>

namespace Sumara {

/// A block of bytes for a whole data file.
///
/// Unlike a vector it is not zeroed before it is filled, asks for large pages, and hands its pages
/// back to the system when emptied: the address range, and so the capacity, stays.
class ByteBuffer {
 public:
  ByteBuffer() = default;
  ~ByteBuffer();
  ByteBuffer(const ByteBuffer&) = delete;
  ByteBuffer& operator=(const ByteBuffer&) = delete;

  /// Makes room for `size` bytes of unspecified content. \throws std::bad_alloc
  void Resize(std::size_t size);

  /// Empties the buffer and returns its memory; the capacity stays.
  void Clear() noexcept;

  bool Empty() const { return m_size == 0; }
  std::size_t Size() const { return m_size; }
  std::size_t Capacity() const { return m_capacity; }
  char* Data() { return m_data; }
  const char* Data() const { return m_data; }
  std::span<char> Bytes() { return {m_data, m_size}; }

 private:
  void Grow(std::size_t size);

  char* m_data = nullptr;
  std::size_t m_size = 0;
  std::size_t m_capacity = 0;
};

}  // namespace Sumara
