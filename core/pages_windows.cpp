#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include <limits>

#include "core/pages.h"

namespace Sumara::Pages {

char* Map(std::size_t& size) noexcept {
  constexpr std::size_t kUnit = std::size_t{64} * 1024;  // address space is given out in these
  if (size > std::numeric_limits<std::size_t>::max() / 2) return nullptr;
  size = (size + kUnit - 1) / kUnit * kUnit;
  return static_cast<char*>(::VirtualAlloc(nullptr, size, MEM_RESERVE, PAGE_READWRITE));
}

void Unmap(char* pages, std::size_t) noexcept { ::VirtualFree(pages, 0, MEM_RELEASE); }

bool Prepare(char* pages, std::size_t used) noexcept {
  return ::VirtualAlloc(pages, used, MEM_COMMIT, PAGE_READWRITE) != nullptr;
}

void Release(char* pages, std::size_t size) noexcept { ::VirtualFree(pages, size, MEM_DECOMMIT); }

void PreferLarge(void*, std::size_t) noexcept {}

void MakeLarge(std::span<std::span<char>>) noexcept {}

}  // namespace Sumara::Pages
