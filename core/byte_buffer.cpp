#include "core/byte_buffer.h"

#include <new>

#include "core/pages.h"

namespace Sumara {

ByteBuffer::~ByteBuffer() {
  if (m_data != nullptr) Pages::Unmap(m_data, m_capacity);
}

void ByteBuffer::Resize(std::size_t size) {
  if (size > m_capacity) Grow(size);
  if (size > 0 && !Pages::Prepare(m_data, size)) throw std::bad_alloc();
  m_size = size;
}

void ByteBuffer::Grow(std::size_t size) {
  std::size_t capacity = size;
  char* const data = Pages::Map(capacity);
  if (data == nullptr) throw std::bad_alloc();
  if (m_data != nullptr) Pages::Unmap(m_data, m_capacity);
  m_data = data;
  m_capacity = capacity;
  m_size = 0;
}

void ByteBuffer::Clear() noexcept {
  if (m_data != nullptr) Pages::Release(m_data, m_capacity);
  m_size = 0;
}

}  // namespace Sumara
