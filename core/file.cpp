#include "core/file.h"

#include <utility>

namespace Sumara {

File::File(File&& other) noexcept
    : m_handle(std::exchange(other.m_handle, -1)), m_size(other.m_size) {}

File& File::operator=(File&& other) noexcept {
  if (this != &other) {
    Close();
    m_handle = std::exchange(other.m_handle, -1);
    m_size = other.m_size;
  }
  return *this;
}

}  // namespace Sumara
