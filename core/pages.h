#pragma once

#include <cstddef>

// Memory in whole pages of the system, for `ByteBuffer`.

namespace Sumara::Pages {

/// Address space of at least `size` bytes, rounded up to `size`'s new value; null if there is none.
char* Map(std::size_t& size) noexcept;
void Unmap(char* pages, std::size_t size) noexcept;

/// Has the first `used` bytes of mapped pages ready for use. \return false if memory is out.
bool Prepare(char* pages, std::size_t used) noexcept;

/// Hands the memory back to the system; the address space stays.
void Release(char* pages, std::size_t size) noexcept;

}  // namespace Sumara::Pages
