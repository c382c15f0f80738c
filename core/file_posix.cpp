#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "core/file.h"
#include "core/paths.h"

namespace Sumara {
namespace {

constexpr std::size_t kLargestTransfer = std::size_t{1} << 30;  // the system's own limit is 2 GiB
constexpr mode_t kNewFileMode = 0666;

// Without blocking, so that a pipe of that name does not hold the caller; files know no difference.
constexpr int kReadFlags = O_RDONLY | O_CLOEXEC | O_NONBLOCK;
constexpr int kWriteFlags = O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NONBLOCK;

int OpenHandle(const std::string& path, int flags) {
  for (;;) {
    const int handle = ::open(path.c_str(), flags, kNewFileMode);
    if (handle != -1) return handle;
    if (errno == EWOULDBLOCK && (flags & O_NONBLOCK) != 0) {
      flags &= ~O_NONBLOCK;  // a file under lease: wait for it
    } else if (errno != EINTR) {
      return -1;
    }
  }
}

/// What is no regular file is not read, since it need not end, nor written, since others listen.
/// \return 0, or an error number.
int RefusalOf(const struct stat& status) {
  if (S_ISREG(status.st_mode)) return 0;
  return S_ISDIR(status.st_mode) ? EISDIR : ENOTSUP;
}

std::int64_t Nanoseconds(const timespec& time) {
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(time.tv_sec) * 1'000'000'000u +
                                   static_cast<std::uint64_t>(time.tv_nsec));
}

}  // namespace

int File::Open(const std::string& path, Access access) {
  Close();
  if (path.find('\0') != std::string::npos) return EINVAL;
  const std::string systemPath = SystemPath(path);
  struct stat status;
  // Opening a pipe for writing would be noticed at its other end.
  if (access == Access::kWrite && ::stat(systemPath.c_str(), &status) == 0) {
    if (const int refusal = RefusalOf(status)) return refusal;
  }
  m_handle = OpenHandle(systemPath, access == Access::kRead ? kReadFlags : kWriteFlags);
  if (m_handle == -1) return errno;
  const int error = ::fstat(m_handle, &status) == 0 ? RefusalOf(status) : errno;
  if (error != 0) {
    Close();
  } else {
    m_size = static_cast<std::uint64_t>(status.st_size);
  }
  return error;
}

int File::Close() noexcept {
  if (m_handle == -1) return 0;
  const int handle = m_handle;
  m_handle = -1;
  return ::close(handle) == 0 || errno == EINTR ? 0 : errno;
}

FileState File::State() const {
  struct stat status;
  if (::fstat(m_handle, &status) != 0) return {};
  return {status.st_ino, static_cast<std::uint64_t>(status.st_size), Nanoseconds(status.st_mtim),
          Nanoseconds(status.st_ctim)};
}

std::size_t File::ReadAt(std::uint64_t offset, std::span<char> target, int& error) const {
  error = 0;
  std::size_t done = 0;
  while (done < target.size()) {
    const std::size_t wanted = std::min(target.size() - done, kLargestTransfer);
    const ssize_t count =
        ::pread(m_handle, target.data() + done, wanted, static_cast<off_t>(offset + done));
    if (count == 0) break;
    if (count > 0) {
      done += static_cast<std::size_t>(count);
    } else if (errno != EINTR) {
      error = errno;
      break;
    }
  }
  return done;
}

int File::Write(std::span<const char> bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(m_handle, bytes.data(), std::min(bytes.size(), kLargestTransfer));
    if (count >= 0) {
      bytes = bytes.subspan(static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      return errno;
    }
  }
  return 0;
}

}  // namespace Sumara
