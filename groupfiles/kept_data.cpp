#include "groupfiles/kept_data.h"

namespace Sumara {
namespace {

/// The readers that keep something, in the order of their last use.
struct Keepers {
  KeptData* oldest = nullptr;
  KeptData* newest = nullptr;
  std::uint64_t total = 0;
  std::uint64_t limit = KeptData::kDefaultLimit;
};
constinit Keepers keepers;  // for the process: that is what is bounded

}  // namespace

void KeptData::SetLimit(std::uint64_t limit) {
  keepers.limit = limit;
  DropOldest();
}

std::uint64_t KeptData::Limit() { return keepers.limit; }

std::uint64_t KeptData::Total() { return keepers.total; }

void KeptData::Keep(std::uint64_t bytes) {
  Forget();
  if (bytes == 0) return;
  m_bytes = bytes;
  m_older = keepers.newest;
  (m_older != nullptr ? m_older->m_newer : keepers.oldest) = this;
  keepers.newest = this;
  keepers.total += bytes;
  DropOldest();
}

void KeptData::Forget() noexcept {
  if (m_bytes == 0) return;
  keepers.total -= m_bytes;
  (m_older != nullptr ? m_older->m_newer : keepers.oldest) = m_newer;
  (m_newer != nullptr ? m_newer->m_older : keepers.newest) = m_older;
  m_bytes = 0;
  m_older = m_newer = nullptr;
}

void KeptData::DropOldest() {
  while (keepers.total > keepers.limit) keepers.oldest->DropKept();
}

}  // namespace Sumara
