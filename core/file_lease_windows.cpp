#include <utility>

#include "core/file_lease.h"

namespace Sumara {

std::optional<FileLease> FileLease::Of(const File&) { return std::nullopt; }

FileLease::FileLease(FileLease&& other) noexcept : m_handle(std::exchange(other.m_handle, -1)) {}

FileLease& FileLease::operator=(FileLease&& other) noexcept {
  std::swap(m_handle, other.m_handle);  // the other one ends what was held here
  return *this;
}

FileLease::~FileLease() = default;

}  // namespace Sumara
