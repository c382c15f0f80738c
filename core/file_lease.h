#pragma once

#include <optional>

#include "core/file.h"

namespace Sumara {

/// The system's promise that nobody writes to an open file: no program has it open for writing now,
/// and one that opens it so waits until the lease is gone.
///
/// The system ends a lease by itself after `/proc/sys/fs/lease-break-time`, 45 s by default. Any
/// number of threads may hold one on the same file, each through a `File` of its own.
class FileLease {
 public:
  /// \param file must stay open as long as the lease.
  /// \return nothing where the system does not promise that: on file systems of other machines, for
  ///         files of other users, and where somebody writes.
  static std::optional<FileLease> Of(const File& file);

  FileLease(FileLease&& other) noexcept;
  FileLease& operator=(FileLease&& other) noexcept;
  ~FileLease();

 private:
  explicit FileLease(int handle) : m_handle(handle) {}

  int m_handle;
};

}  // namespace Sumara
