#include <fcntl.h>
#ifdef __linux__
#include <sys/vfs.h>
#endif

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <iterator>
#include <utility>

#include "core/file_lease.h"

namespace Sumara {

#ifdef F_SETLEASE

namespace {

/// Whether a write by another machine cannot pass by the leases of this one.
bool IsOnThisMachine(int handle) {
  constexpr std::uint32_t kLocal[] = {
      0xEF53,      // ext2, ext3, ext4
      0x58465342,  // xfs
      0x9123683E,  // btrfs
      0xF2F52010,  // f2fs
      0x01021994,  // tmpfs
      0x794C7630,  // overlayfs
  };
  struct statfs told;
  return ::fstatfs(handle, &told) == 0 &&
         std::find(std::begin(kLocal), std::end(kLocal), static_cast<std::uint32_t>(told.f_type)) !=
             std::end(kLocal);
}

bool Take(int handle) {
  // The system tells the holder that somebody waits. Nobody needs to know: the lease goes soon. The
  // usual signal would end the process, this one is ignored.
  return ::fcntl(handle, F_SETSIG, SIGURG) == 0 && ::fcntl(handle, F_SETLEASE, F_RDLCK) == 0;
}

}  // namespace

std::optional<FileLease> FileLease::Of(const File& file) {
  if (!IsOnThisMachine(file.Handle()) || !Take(file.Handle())) return std::nullopt;
  return FileLease(file.Handle());
}

// Also where a forked process still has the file.
FileLease::~FileLease() {
  if (m_handle != -1) ::fcntl(m_handle, F_SETLEASE, F_UNLCK);
}

#else

std::optional<FileLease> FileLease::Of(const File&) { return std::nullopt; }
FileLease::~FileLease() = default;

#endif

FileLease::FileLease(FileLease&& other) noexcept : m_handle(std::exchange(other.m_handle, -1)) {}

FileLease& FileLease::operator=(FileLease&& other) noexcept {
  std::swap(m_handle, other.m_handle);  // the other one ends what was held here
  return *this;
}

}  // namespace Sumara
