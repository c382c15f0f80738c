#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/syscall.h>
#endif

#include <algorithm>
#include <cerrno>
#include <limits>
#include <utility>
#include <vector>

#include "core/file_map.h"

namespace Sumara {
namespace {

// The systems without leases have another form of `mincore`, and no use for it.
#ifdef F_SETLEASE

/// A file of which no more than this part is missing is taken for one that lies in memory.
constexpr std::uint64_t kMissingShare = 8;

std::uint64_t PageSize() { return static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE)); }

char* Map(int handle, std::uint64_t size) {
  if (size == 0 || size > std::numeric_limits<std::size_t>::max() / 2) return nullptr;
  void* const bytes =
      ::mmap(nullptr, static_cast<std::size_t>(size), PROT_READ, MAP_SHARED, handle, 0);
  return bytes == MAP_FAILED ? nullptr : static_cast<char*>(bytes);
}

/// The pages of a range of a file that lie in memory; nothing where the system does not tell.
std::optional<std::uint64_t> CountCached(int handle, std::uint64_t first, std::uint64_t size) {
  constexpr long kCacheStat = 451;  // of Linux 6.5: newer than the headers of many systems
  struct Range {
    std::uint64_t first;
    std::uint64_t size;
  } const range{first, size};
  struct Counts {
    std::uint64_t cached, dirty, inWriteback, evicted, evictedLately;
  } counts{};
  if (::syscall(kCacheStat, handle, &range, &counts, 0) != 0) return std::nullopt;
  return counts.cached;
}

std::uint64_t PagesOf(std::uint64_t first, std::uint64_t size) {
  return (first + size - 1) / PageSize() - first / PageSize() + 1;
}

bool ArePagesResident(const char* bytes, std::size_t size) {
  std::vector<unsigned char> told(static_cast<std::size_t>(PagesOf(0, size)));
  return ::mincore(const_cast<char*>(bytes), size, told.data()) == 0 &&
         std::all_of(told.begin(), told.end(), [](unsigned char page) { return (page & 1) != 0; });
}

constexpr std::uint64_t kSamples = 64;

/// Whether nearly all of a file's pages lie in memory; of a large file, as samples tell, the last
/// of its pages among them: a file is read from its front.
std::optional<bool> IsNearlyCached(int handle, std::uint64_t pages) {
  constexpr std::uint64_t kSamplePages = 16;
  const std::uint64_t samples = pages > kSamples * kSamplePages ? kSamples : 1;
  const std::uint64_t size = samples == 1 ? pages : kSamplePages;
  std::uint64_t found = 0;
  for (std::uint64_t i = 1; i <= samples; ++i) {
    const std::uint64_t first = i * pages / samples - size;
    const auto cached = CountCached(handle, first * PageSize(), size * PageSize());
    if (!cached) return std::nullopt;
    found += *cached;
  }
  return found >= samples * size - samples * size / kMissingShare;
}

/// What a few pages tell, the last among them: a file is read from its front.
bool AreSamplesResident(const char* bytes, std::uint64_t pages) {
  const std::uint64_t samples = std::min(pages, kSamples);
  for (std::uint64_t i = 0; i < samples; ++i) {
    const std::uint64_t page = pages - 1 - i * pages / samples;
    if (!ArePagesResident(bytes + page * PageSize(), 1)) return false;
  }
  return true;
}

bool HasBytes(int handle, std::uint64_t size) {
  struct stat told;
  return ::fstat(handle, &told) == 0 && S_ISREG(told.st_mode) &&
         static_cast<std::uint64_t>(told.st_size) >= size;
}

#endif

}  // namespace

#ifdef F_SETLEASE

bool IsResident(const File& file, std::uint64_t size) {
  if (size == 0) return false;
  const std::uint64_t pages = PagesOf(0, size);
  if (const auto cached = IsNearlyCached(file.Handle(), pages)) return *cached;
  char* const bytes = Map(file.Handle(), size);
  if (bytes == nullptr) return false;
  const bool resident = AreSamplesResident(bytes, pages);
  ::munmap(bytes, static_cast<std::size_t>(size));
  return resident;
}

std::optional<FileMap> FileMap::Of(const File& file, std::uint64_t size) {
  std::optional<FileLease> lease = FileLease::Of(file);
  if (!lease) return std::nullopt;
  char* const bytes = HasBytes(file.Handle(), size) ? Map(file.Handle(), size) : nullptr;
  if (bytes == nullptr) return std::nullopt;
  return FileMap(file.Handle(), std::move(*lease), bytes, size);
}

FileMap::~FileMap() {
  if (m_bytes != nullptr) ::munmap(m_bytes, static_cast<std::size_t>(m_size));
}

std::span<const char> FileMap::Ready(std::uint64_t first, std::size_t size) const {
  if (!IsReady(first, size)) return {};
  return {m_bytes + first, size};
}

bool FileMap::IsReady(std::uint64_t first, std::size_t size) const {
  // Pages that lie in memory are mapped fastest one by one, as they are looked at.
  if (CountCached(m_handle, first, size) == PagesOf(first, size)) return true;
  const std::uint64_t start = first / PageSize() * PageSize();
  const auto length = static_cast<std::size_t>(first + size - start);
#ifdef MADV_POPULATE_READ
  // A page that the disk does not give up is told here, and not by a signal.
  if (::madvise(m_bytes + start, length, MADV_POPULATE_READ) == 0) return true;
  if (errno != EINVAL) return false;
#endif
  return ArePagesResident(m_bytes + start, length);  // an old system
}

void FileMap::Release(std::uint64_t first, std::size_t size) const {
  const std::uint64_t start = first / PageSize() * PageSize();
  ::madvise(m_bytes + start, static_cast<std::size_t>(first + size - start), MADV_DONTNEED);
}

#else

bool IsResident(const File&, std::uint64_t) { return false; }
std::optional<FileMap> FileMap::Of(const File&, std::uint64_t) { return std::nullopt; }
FileMap::~FileMap() = default;
std::span<const char> FileMap::Ready(std::uint64_t, std::size_t) const { return {}; }
bool FileMap::IsReady(std::uint64_t, std::size_t) const { return false; }
void FileMap::Release(std::uint64_t, std::size_t) const {}

#endif

FileMap::FileMap(FileMap&& other) noexcept
    : m_handle(other.m_handle),
      m_lease(std::move(other.m_lease)),
      m_bytes(std::exchange(other.m_bytes, nullptr)),
      m_size(other.m_size) {}

}  // namespace Sumara
