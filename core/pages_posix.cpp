#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

#include "core/pages.h"

namespace Sumara::Pages {
namespace {

constexpr std::size_t kLargePage = std::size_t{2} << 20;
constexpr std::size_t kLargeBlock =
    2 * kLargePage;  // from here on large pages are worth asking for

std::size_t PageSize() { return static_cast<std::size_t>(::sysconf(_SC_PAGESIZE)); }

std::size_t RoundUp(std::size_t size, std::size_t unit) { return (size + unit - 1) / unit * unit; }

char* MapBytes(std::size_t size) {
  void* const pages =
      ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  return pages == MAP_FAILED ? nullptr : static_cast<char*>(pages);
}

/// Maps more than is wanted and gives back what lies before and behind the aligned part.
char* MapAligned(std::size_t size) {
  char* const pages = MapBytes(size + kLargePage);
  if (pages == nullptr) return nullptr;
  const auto address = reinterpret_cast<std::uintptr_t>(pages);
  const std::size_t before = RoundUp(address, kLargePage) - address;
  if (before > 0) ::munmap(pages, before);
  if (before < kLargePage) ::munmap(pages + before + size, kLargePage - before);
  PreferLarge(pages + before, size);
  return pages + before;
}

/// The last large block that a thread gave up, for when it wants such a block again.
///
/// Making pages costs more than filling them, and a script that goes from run to run asks for the
/// same again. The system may take the pages of the spare block whenever it wants memory.
struct SpareBlock {
  char* pages = nullptr;
  std::size_t size = 0;

  ~SpareBlock();
};
constexpr std::size_t kMostSpare = std::size_t{512} << 20;
thread_local SpareBlock spare;
thread_local bool spareIsGone =
    false;  // at the end of the thread: what is given up then goes at once

SpareBlock::~SpareBlock() {
  spareIsGone = true;
  if (pages != nullptr) ::munmap(pages, size);
}

/// The spare block if it serves for `size` bytes without wasting as much again; `size` becomes its
/// own.
char* TakeSpare(std::size_t& size) {
  if (spareIsGone || spare.pages == nullptr || spare.size < size || spare.size / 2 > size)
    return nullptr;
  size = spare.size;
  return std::exchange(spare.pages, nullptr);
}

/// Keeps a block as the spare one. \return false if it is to be unmapped.
bool KeepSpare(char* pages, std::size_t size) {
#ifdef MADV_FREE
  if (spareIsGone || size < kLargeBlock || size > kMostSpare ||
      ::madvise(pages, size, MADV_FREE) != 0)
    return false;
  if (spare.pages != nullptr) ::munmap(spare.pages, spare.size);
  spare.pages = pages;
  spare.size = size;
  return true;
#else
  return false;
#endif
}

}  // namespace

char* Map(std::size_t& size) noexcept {
  if (size > std::numeric_limits<std::size_t>::max() / 2) return nullptr;
  const bool large = size >= kLargeBlock;
  size = RoundUp(size, large ? kLargePage : PageSize());
  if (!large) return MapBytes(size);
  char* const pages = TakeSpare(size);
  return pages != nullptr ? pages : MapAligned(size);
}

void Unmap(char* pages, std::size_t size) noexcept {
  if (!KeepSpare(pages, size)) ::munmap(pages, size);
}

bool Prepare(char*, std::size_t) noexcept { return true; }

void Release(char* pages, std::size_t size) noexcept { ::madvise(pages, size, MADV_DONTNEED); }

void PreferLarge(void* memory, std::size_t size) noexcept {
#ifdef MADV_HUGEPAGE
  if (size < kLargeBlock) return;
  const auto address = reinterpret_cast<std::uintptr_t>(memory);
  const std::size_t before = RoundUp(address, PageSize()) - address;
  ::madvise(static_cast<char*>(memory) + before, size - before, MADV_HUGEPAGE);
#endif
}

// The allocator writes a few words in front of each block: the system makes no large page any more
// where one of its small pages is in use, unless it is told to put them together.
void MakeLarge(std::span<std::span<char>> blocks) noexcept {
#ifdef __linux__
  constexpr int kCollapse = 25;  // of Linux 6.1: newer than the headers of many systems
  std::sort(blocks.begin(), blocks.end(),
            [](const auto& a, const auto& b) { return a.data() < b.data(); });
  const std::size_t page = PageSize();
  char* first = nullptr;
  std::uintptr_t end = 0;
  const auto make = [&] {
    const std::size_t size = end - reinterpret_cast<std::uintptr_t>(first);
    if (size >= kLargeBlock) ::madvise(first, size, kCollapse);
  };
  for (const std::span<char> block : blocks) {
    const auto address = reinterpret_cast<std::uintptr_t>(block.data());
    if (const std::size_t within = address % page; address - within > end) {
      make();
      first = block.data() - within;
    }
    end = RoundUp(address + block.size(), page);
  }
  make();
#endif
}

}  // namespace Sumara::Pages
