#include "core/file_blocks.h"

#include <algorithm>

namespace Sumara {
namespace {

constexpr std::size_t kMappedBlock = std::size_t{2} << 20;
constexpr std::size_t kCachedBlock = std::size_t{256} * 1024;  // stays in the processor's cache
constexpr std::size_t kDistantBlock = std::size_t{1} << 20;
constexpr std::uint64_t kLeastMapped = std::uint64_t{64} * 1024;  // less is read sooner than mapped

std::size_t BlockSize(bool mapped, bool resident, std::uint64_t size, std::size_t wanted) {
  const std::size_t usual = mapped ? kMappedBlock : resident ? kCachedBlock : kDistantBlock;
  const std::size_t block = wanted != 0 ? wanted : usual;
  return static_cast<std::size_t>(std::min<std::uint64_t>(block, size));
}

}  // namespace

FileBlocks::FileBlocks(const File& file, std::uint64_t size, const Use& use)
    : m_file(file),
      m_size(size),
      m_resident(size < kLeastMapped || IsResident(file, size)),
      m_map(m_resident && size >= kLeastMapped && !use.takesAll ? FileMap::Of(file, size)
                                                                : std::nullopt),
      m_blockSize(BlockSize(m_map.has_value(), m_resident, size, use.blockSize)) {}

std::span<const char> FileBlocks::At(std::uint64_t offset) {
  m_error = 0;
  if (offset >= m_size) return {};
  const auto wanted =
      static_cast<std::size_t>(std::min<std::uint64_t>(m_blockSize, m_size - offset));
  if (m_map) {
    if (const auto bytes = Mapped(offset, wanted); !bytes.empty()) return bytes;
    m_map.reset();  // the road that can say what is wrong
  }
  if (m_block == nullptr) m_block = std::make_unique_for_overwrite<char[]>(m_blockSize);
  return {m_block.get(), m_file.ReadAt(offset, {m_block.get(), wanted}, m_error)};
}

std::span<const char> FileBlocks::Mapped(std::uint64_t offset, std::size_t size) {
  if (m_readySize != 0) m_map->Release(m_readyFirst, m_readySize);
  const auto bytes = m_map->Ready(offset, size);
  m_readyFirst = offset;
  m_readySize = bytes.size();
  return bytes;
}

}  // namespace Sumara
