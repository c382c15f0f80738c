#include "core/file.h"

#include <utility>

namespace Sumara {

File::File(File&& other) noexcept : m_handle(std::exchange(other.m_handle, -1)) {}

File& File::operator=(File&& other) noexcept {
  if (this != &other) {
    Close();
    m_handle = std::exchange(other.m_handle, -1);
  }
  return *this;
}

}  // namespace Sumara
