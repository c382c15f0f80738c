#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>

#include "core/file.h"
#include "core/file_lease.h"

namespace Sumara {

/// Whether nearly all of the first `size` bytes of a file lie in the system's memory. False where
/// the system does not tell.
bool IsResident(const File& file, std::uint64_t size);

/// The first bytes of an open file as memory, for the time of one call.
///
/// To read a mapping of a file that another program cuts ends a process. So there is one only where
/// the system promises that nobody can: on a file system of this machine, under a read lease, which
/// lets whoever opens the file for writing wait until the mapping is gone. The system gives leases
/// on files of the user that nobody has open for writing. It ends one by itself after
/// `/proc/sys/fs/lease-break-time`, 45 s by default: keep a mapping for less.
///
/// Any number of threads may map one file, each through a `File` of its own.
class FileMap {
 public:
  /// \param file must stay open as long as the mapping.
  /// \return nothing if there is no such promise or if the file has fewer than `size` bytes: the
  ///         caller then reads.
  static std::optional<FileMap> Of(const File& file, std::uint64_t size);

  FileMap(FileMap&& other) noexcept;
  FileMap& operator=(FileMap&&) = delete;
  ~FileMap();

  std::uint64_t Size() const { return m_size; }

  /// The bytes from `first` on, which can be read without a look at the disk from now on.
  /// \return nothing if they cannot be had.
  std::span<const char> Ready(std::uint64_t first, std::size_t size) const;

  /// Takes no memory for these bytes any more.
  void Release(std::uint64_t first, std::size_t size) const;

 private:
  FileMap(int handle, FileLease lease, char* bytes, std::uint64_t size)
      : m_handle(handle), m_lease(std::move(lease)), m_bytes(bytes), m_size(size) {}

  bool IsReady(std::uint64_t first, std::size_t size) const;

  int m_handle;
  FileLease m_lease;
  char* m_bytes;
  std::uint64_t m_size;
};

}  // namespace Sumara
