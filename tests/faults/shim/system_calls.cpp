#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <type_traits>

#include "faults.h"

namespace {

using Faults::Call;

/// The function of that name in the libraries behind this one.
template <class Function>
Function* Next(const char* name, Function*) {
  return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

/// Fails, or calls the function of that name.
template <class Function, class... Arguments>
auto Ask(Call call, const char* name, Function* itself, Arguments... arguments) {
  using Result = decltype(itself(arguments...));
  if (Faults::IsDue(call) && Faults::Error() != 0) {
    errno = Faults::Error();
    if constexpr (std::is_pointer_v<Result>) {
      return static_cast<Result>(nullptr);
    } else {
      return static_cast<Result>(-1);
    }
  }
  return Next(name, itself)(arguments...);
}

/// Moves bytes with the function of that name: all, half of them, or none.
template <class Function, class Bytes, class... Place>
ssize_t Move(Call call, const char* name, Function* itself, int file, Bytes* bytes,
             std::size_t size, Place... place) {
  if (Faults::IsDue(call)) {
    if (Faults::Error() != 0) {
      errno = Faults::Error();
      return -1;
    }
    size = std::max<std::size_t>(size / 2, std::min<std::size_t>(size, 1));
  }
  return Next(name, itself)(file, bytes, size, place...);
}

template <class Function>
int Open(const char* name, Function* itself, const char* path, int flags, std::va_list& rest) {
  const bool makes = (flags & O_CREAT) != 0;
  return Ask(Call::kOpen, name, itself, path, flags, makes ? va_arg(rest, mode_t) : mode_t{0});
}

}  // namespace

extern "C" {

int open(const char* path, int flags, ...) {
  std::va_list rest;
  va_start(rest, flags);
  const int file = Open("open", open, path, flags, rest);
  va_end(rest);
  return file;
}
int open64(const char* path, int flags, ...) {
  std::va_list rest;
  va_start(rest, flags);
  const int file = Open("open64", open64, path, flags, rest);
  va_end(rest);
  return file;
}

ssize_t read(int file, void* bytes, std::size_t size) {
  return Move(Call::kRead, "read", read, file, bytes, size);
}
ssize_t pread(int file, void* bytes, std::size_t size, off_t offset) {
  return Move(Call::kRead, "pread", pread, file, bytes, size, offset);
}
ssize_t pread64(int file, void* bytes, std::size_t size, off64_t offset) {
  return Move(Call::kRead, "pread64", pread64, file, bytes, size, offset);
}
ssize_t write(int file, const void* bytes, std::size_t size) {
  return Move(Call::kWrite, "write", write, file, bytes, size);
}

/// The file is closed whatever is told.
int close(int file) {
  const int result = Next("close", close)(file);
  if (!Faults::IsDue(Call::kClose) || Faults::Error() == 0) return result;
  errno = Faults::Error();
  return -1;
}

DIR* opendir(const char* path) { return Ask(Call::kDirectory, "opendir", opendir, path); }
dirent* readdir(DIR* directory) { return Ask(Call::kDirectory, "readdir", readdir, directory); }
dirent64* readdir64(DIR* directory) {
  return Ask(Call::kDirectory, "readdir64", readdir64, directory);
}

int stat(const char* path, struct stat* status) noexcept {
  return Ask(Call::kStatus, "stat", static_cast<int (*)(const char*, struct stat*)>(stat), path,
             status);
}
int lstat(const char* path, struct stat* status) noexcept {
  return Ask(Call::kStatus, "lstat", static_cast<int (*)(const char*, struct stat*)>(lstat), path,
             status);
}
int fstat(int file, struct stat* status) noexcept {
  return Ask(Call::kStatus, "fstat", static_cast<int (*)(int, struct stat*)>(fstat), file, status);
}
char* realpath(const char* path, char* resolved) noexcept {
  return Ask(Call::kStatus, "realpath", static_cast<char* (*)(const char*, char*)>(realpath), path,
             resolved);
}
int mkdir(const char* path, mode_t mode) noexcept {
  return Ask(Call::kOpen, "mkdir", static_cast<int (*)(const char*, mode_t)>(mkdir), path, mode);
}

}  // extern "C"
