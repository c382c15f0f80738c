// The bound of one allocation, where no sanitizer watches it: bytes of an input must not decide how
// much memory is taken.

#include <cstdlib>
#include <new>

#include "tests/fuzz/fuzzing.h"

namespace {

constexpr std::size_t kMostBytes = std::size_t{64} << 20;

}  // namespace

void* operator new(std::size_t size) {
  Fuzzing::Require(size <= kMostBytes, "more memory at once than the input justifies");
  if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
