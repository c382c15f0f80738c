#include <utility>

#include "core/file_map.h"

// A mapped file cannot be cut here, but it cannot be replaced or removed either: it is read.

namespace Sumara {

bool IsResident(const File&, std::uint64_t) { return false; }

std::optional<FileMap> FileMap::Of(const File&, std::uint64_t) { return std::nullopt; }

FileMap::FileMap(FileMap&& other) noexcept
    : m_handle(other.m_handle),
      m_lease(std::move(other.m_lease)),
      m_bytes(std::exchange(other.m_bytes, nullptr)),
      m_size(other.m_size) {}

FileMap::~FileMap() = default;

std::span<const char> FileMap::Ready(std::uint64_t, std::size_t) const { return {}; }

bool FileMap::IsReady(std::uint64_t, std::size_t) const { return false; }

void FileMap::Release(std::uint64_t, std::size_t) const {}

}  // namespace Sumara
