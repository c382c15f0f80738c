#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>
#include <windows.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>

#include "core/file.h"
#include "core/paths.h"

namespace Sumara {
namespace {

constexpr std::size_t kLargestTransfer = std::size_t{1} << 30;
constexpr int kReadFlags = _O_RDONLY | _O_BINARY | _O_NOINHERIT;
constexpr int kWriteFlags = _O_WRONLY | _O_CREAT | _O_TRUNC | _O_BINARY | _O_NOINHERIT;

HANDLE SystemHandle(int handle) { return reinterpret_cast<HANDLE>(::_get_osfhandle(handle)); }

std::uint64_t Joined(DWORD high, DWORD low) { return (std::uint64_t{high} << 32) | low; }

OVERLAPPED At(std::uint64_t offset) {
  OVERLAPPED place{};
  place.Offset = static_cast<DWORD>(offset & 0xFFFFFFFFu);
  place.OffsetHigh = static_cast<DWORD>(offset >> 32);
  return place;
}

}  // namespace

int File::Open(const std::string& path, Access access) {
  Close();
  if (path.find('\0') != std::string::npos) return EINVAL;
  const std::filesystem::path systemPath(SystemPath(path));
  const bool reading = access == Access::kRead;
  // Readers admit everybody, a writer admits readers only.
  if (const int error =
          ::_wsopen_s(&m_handle, systemPath.c_str(), reading ? kReadFlags : kWriteFlags,
                      reading ? _SH_DENYNO : _SH_DENYWR, _S_IREAD | _S_IWRITE)) {
    return error;
  }
  if (::GetFileType(SystemHandle(m_handle)) != FILE_TYPE_DISK) {
    Close();
    return ENOTSUP;
  }
  m_size = static_cast<std::uint64_t>(::_filelengthi64(m_handle));
  return 0;
}

int File::Close() noexcept {
  if (m_handle == -1) return 0;
  const int handle = m_handle;
  m_handle = -1;
  return ::_close(handle) == 0 ? 0 : errno;
}

FileState File::State() const {
  BY_HANDLE_FILE_INFORMATION told;
  FILE_BASIC_INFO times;
  const HANDLE handle = SystemHandle(m_handle);
  if (!::GetFileInformationByHandle(handle, &told)) return {};
  if (!::GetFileInformationByHandleEx(handle, FileBasicInfo, &times, sizeof times)) return {};
  return {Joined(told.nFileIndexHigh, told.nFileIndexLow),
          Joined(told.nFileSizeHigh, told.nFileSizeLow), times.LastWriteTime.QuadPart,
          times.ChangeTime.QuadPart};
}

std::size_t File::ReadAt(std::uint64_t offset, std::span<char> target, int& error) const {
  error = 0;
  std::size_t done = 0;
  while (done < target.size()) {
    const auto wanted = static_cast<DWORD>(std::min(target.size() - done, kLargestTransfer));
    OVERLAPPED place = At(offset + done);
    DWORD count = 0;
    if (!::ReadFile(SystemHandle(m_handle), target.data() + done, wanted, &count, &place)) {
      if (::GetLastError() != ERROR_HANDLE_EOF) error = EIO;
      break;
    }
    if (count == 0) break;
    done += count;
  }
  return done;
}

int File::Write(std::span<const char> bytes) {
  while (!bytes.empty()) {
    const auto wanted = static_cast<unsigned>(std::min(bytes.size(), kLargestTransfer));
    const int count = ::_write(m_handle, bytes.data(), wanted);
    if (count < 0) return errno;
    bytes = bytes.subspan(static_cast<std::size_t>(count));
  }
  return 0;
}

}  // namespace Sumara
