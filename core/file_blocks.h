#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include "core/file_map.h"

namespace Sumara {

/// The bytes of an open file, block by block, for the time of one call.
///
/// What lies in the system's memory is looked at where it lies, if that can be done safely; all
/// else is read, in large pieces if it comes from a disk or over a network. A block that is asked
/// for takes the memory of the one before.
///
/// Nothing is shared: any number of threads may read one file, each through a `File` and blocks of
/// its own.
class FileBlocks {
 public:
  /// The first `size` bytes of `file`, which must stay open as long as this. Blocks have at most
  /// `most` bytes if that is not 0.
  FileBlocks(const File& file, std::uint64_t size, std::size_t most = 0);

  /// The bytes from `offset` up to the end of a block. Fewer than that only at the end of the file
  /// or where it cannot be read; none if there are none. Good until the next call.
  /// \throws std::bad_alloc
  std::span<const char> At(std::uint64_t offset);

  /// The system's error number of the last call; 0 if the file only ended.
  int Error() const { return m_error; }

  bool IsMapped() const { return m_map.has_value(); }

 private:
  std::span<const char> Mapped(std::uint64_t offset, std::size_t size);

  const File& m_file;
  std::uint64_t m_size;
  bool m_resident;
  std::optional<FileMap> m_map;
  std::size_t m_blockSize;
  std::unique_ptr<char[]> m_block;  ///< none as long as the file is mapped
  std::uint64_t m_readyFirst = 0;   ///< what is mapped now
  std::size_t m_readySize = 0;
  int m_error = 0;
};

}  // namespace Sumara
