#include <stdlib.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <new>

#include "faults.h"

// The C library's own functions, and those of the address sanitizer where it is loaded.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
__attribute__((weak)) void* __interceptor_malloc(std::size_t size);
__attribute__((weak)) void* __interceptor_calloc(std::size_t count, std::size_t size);
__attribute__((weak)) void* __interceptor_realloc(void* memory, std::size_t size);
__attribute__((weak)) void* __interceptor_memalign(std::size_t alignment, std::size_t size);
}

namespace {

/// Calls the sanitizer's function if there is one, unless the allocation is to fail.
template <class Function, class... Arguments>
void* Allocate(Function* sanitized, Function* plain, Arguments... arguments) {
  if (Faults::IsDue(Faults::Call::kAllocate)) {
    errno = ENOMEM;
    return nullptr;
  }
  return (sanitized != nullptr ? sanitized : plain)(arguments...);
}

void* Aligned(std::size_t alignment, std::size_t size) {
  return Allocate(__interceptor_memalign, __libc_memalign, alignment, size);
}

void* OrThrow(void* memory) {
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

extern "C" void* malloc(std::size_t size) {
  return Allocate(__interceptor_malloc, __libc_malloc, size);
}
extern "C" void* calloc(std::size_t count, std::size_t size) {
  return Allocate(__interceptor_calloc, __libc_calloc, count, size);
}
extern "C" void* realloc(void* memory, std::size_t size) {
  return Allocate(__interceptor_realloc, __libc_realloc, memory, size);
}
extern "C" void* aligned_alloc(std::size_t alignment, std::size_t size) {
  return Aligned(alignment, size);
}
extern "C" int posix_memalign(void** memory, std::size_t alignment, std::size_t size) {
  void* const made = Aligned(alignment, size);
  if (made == nullptr) return ENOMEM;
  *memory = made;
  return 0;
}

/// Memory without a file; files are not mapped by way of this.
extern "C" void* mmap(void* address, std::size_t size, int protection, int flags, int file,
                      off_t offset) noexcept {
  if ((flags & MAP_ANONYMOUS) != 0 && Faults::IsDue(Faults::Call::kAllocate)) {
    errno = ENOMEM;
    return MAP_FAILED;
  }
  return reinterpret_cast<void*>(
      ::syscall(SYS_mmap, address, size, protection, flags, file, offset));
}

// The address sanitizer has operators of its own, which do not come by the functions above.
void* operator new(std::size_t size) { return OrThrow(malloc(size == 0 ? 1 : size)); }
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return malloc(size == 0 ? 1 : size);
}
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept {
  return operator new(size, tag);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  return OrThrow(Aligned(static_cast<std::size_t>(alignment), size));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
  return operator new(size, alignment);
}
void operator delete(void* memory) noexcept { free(memory); }
void operator delete[](void* memory) noexcept { free(memory); }
void operator delete(void* memory, std::size_t) noexcept { free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { free(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { free(memory); }
void operator delete(void* memory, std::align_val_t) noexcept { free(memory); }
void operator delete[](void* memory, std::align_val_t) noexcept { free(memory); }
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept { free(memory); }
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept { free(memory); }
