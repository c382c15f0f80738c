#include "tests/tables/failing_allocations.h"

#include <algorithm>
#include <cstdlib>
#include <new>

// A file of its own: a compiler that sees through one half of these operators, and not the other,
// takes them for a mismatch.

namespace {

thread_local long allocationsLeft = -1;

void* Allocated(std::size_t size) {
  if (allocationsLeft == 0) return nullptr;
  if (allocationsLeft > 0) --allocationsLeft;
  return std::malloc(std::max<std::size_t>(size, 1));
}

void* AllocatedOrThrown(std::size_t size) {
  void* const memory = Allocated(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

namespace testing_support {

void SetAllocationsLeft(long count) { allocationsLeft = count; }
long AllocationsLeft() { return allocationsLeft; }

}  // namespace testing_support

void* operator new(std::size_t size) { return AllocatedOrThrown(size); }
void* operator new[](std::size_t size) { return AllocatedOrThrown(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Allocated(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return Allocated(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
