#include "api/directory_listings.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <optional>
#include <utility>

#include "api/process_state.h"
#include "core/paths.h"

namespace SumaraApi {
namespace {

constexpr std::size_t kMostListings = 4;
constexpr std::int64_t kTicksPerSecond = 10'000'000;

/// None for a directory whose entries cannot be reached.
/// \param directory with a trailing separator.
std::optional<std::int64_t> LastWriteOf(const std::string& directory) {
  try {
    return Sumara::LastWriteTicks(directory + '.');  // itself is reached as each entry is
  } catch (const std::filesystem::filesystem_error&) {
    return std::nullopt;
  }
}

/// Whether a change from `now` on shows another time. File systems count in ticks of the kernel's
/// clock, of up to 10 ms; those that know no fractions of a second, in up to two seconds.
bool IsOlderThanTheClock(std::int64_t lastWrite, std::int64_t now) {
  const bool hasFraction = lastWrite % kTicksPerSecond != 0;
  return now - lastWrite > (hasFraction ? kTicksPerSecond / 20 : 2 * kTicksPerSecond);
}

std::int64_t Now() {
  using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, kTicksPerSecond>>;
  const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration_cast<Ticks>(sinceEpoch).count();
}

}  // namespace

std::shared_ptr<const DirectoryListing> DirectoryListings::Of(const std::string& directory) {
  if (m_ofCall != nullptr && m_ofCall->Directory() == directory) return m_ofCall;
  auto listing = AsItStands(directory);
  if (m_isWithinCall) m_ofCall = listing;
  return listing;
}

std::shared_ptr<const DirectoryListing> DirectoryListings::AsItStands(
    const std::string& directory) {
  const std::int64_t now = Now();
  const std::optional<std::int64_t> lastWrite = LastWriteOf(directory);
  const auto known = std::find_if(m_kept.begin(), m_kept.end(), [&](const Kept& kept) {
    return kept.listing->Directory() == directory;
  });
  if (known != m_kept.end()) {
    if (lastWrite == known->lastWrite) {
      std::rotate(m_kept.begin(), known, known + 1);
      return m_kept.front().listing;
    }
    m_kept.erase(known);
  }
  auto listing = std::make_shared<const DirectoryListing>(directory);
  if (!lastWrite) listing->CheckSearchable();
  if (!lastWrite || !IsOlderThanTheClock(*lastWrite, now)) return listing;
  m_kept.insert(m_kept.begin(), {listing, *lastWrite});
  if (m_kept.size() > kMostListings) m_kept.pop_back();
  return listing;
}

std::vector<std::string> FilesOfRun(const std::string& directory, std::string_view runName) {
  return State().listings.Of(directory)->FilesOf(runName);
}

}  // namespace SumaraApi
