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
  /// What a caller knows of its way through the file.
  struct Use {
    std::size_t blockSize = 0;  ///< bytes; 0 leaves it to this class
    bool takesAll = false;      ///< a copy of each block costs less than looking at all its pages
  };

  /// The first `size` bytes of `file`, which must stay open as long as this.
  FileBlocks(const File& file, std::uint64_t size, const Use& use);
  FileBlocks(const File& file, std::uint64_t size) : FileBlocks(file, size, Use{}) {}

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
