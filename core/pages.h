#pragma once

#include <cstddef>
#include <span>
#include <vector>

// Memory in pages of the system, for `ByteBuffer` and for large vectors.

namespace Sumara::Pages {

/// Address space of at least `size` bytes, rounded up to `size`'s new value; null if there is none.
char* Map(std::size_t& size) noexcept;
void Unmap(char* pages, std::size_t size) noexcept;

/// Has the first `used` bytes of mapped pages ready for use. \return false if memory is out.
bool Prepare(char* pages, std::size_t used) noexcept;

/// Hands the memory back to the system; the address space stays.
void Release(char* pages, std::size_t size) noexcept;

/// Asks for large pages for memory that is not in use yet, if it is enough to be worth it.
void PreferLarge(void* memory, std::size_t size) noexcept;

/// Puts large pages behind blocks that are going to be filled, where they lie side by side and are
/// enough together to be worth it.
void MakeLarge(std::span<std::span<char>> blocks) noexcept;

/// Reserves room for `count` elements: making small pages costs more than the copy into them.
template <class T>
void Reserve(std::vector<T>& elements, std::size_t count) {
  elements.reserve(count);
  PreferLarge(elements.data(), elements.capacity() * sizeof(T));
}

/// Reserves room for `count` elements in each of several vectors, all of which are going to be
/// filled.
template <class T>
void Reserve(std::span<std::vector<T>* const> vectors, std::size_t count) {
  std::vector<std::span<char>> blocks;
  for (std::vector<T>* const elements : vectors) {
    elements->reserve(count);
    blocks.emplace_back(reinterpret_cast<char*>(elements->data()), count * sizeof(T));
  }
  MakeLarge(blocks);
}

}  // namespace Sumara::Pages
