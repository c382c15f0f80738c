// Adds a millisecond to each call that opens or reads a file, as a network drive does. Linux only;
// loaded with LD_PRELOAD.
#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdarg>
#include <ctime>

namespace {

void WaitAMillisecond() {
  const timespec millisecond{0, 1'000'000};
  nanosleep(&millisecond, nullptr);
}

template <class Function>
Function Next(const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" int open(const char* path, int flags, ...) {
  static const auto next = Next<int (*)(const char*, int, ...)>("open");
  std::va_list rest;
  va_start(rest, flags);
  const int mode = va_arg(rest, int);
  va_end(rest);
  WaitAMillisecond();
  return next(path, flags, mode);
}

extern "C" ssize_t read(int handle, void* bytes, size_t size) {
  static const auto next = Next<ssize_t (*)(int, void*, size_t)>("read");
  WaitAMillisecond();
  return next(handle, bytes, size);
}

extern "C" ssize_t pread(int handle, void* bytes, size_t size, off_t at) {
  static const auto next = Next<ssize_t (*)(int, void*, size_t, off_t)>("pread");
  WaitAMillisecond();
  return next(handle, bytes, size, at);
}
