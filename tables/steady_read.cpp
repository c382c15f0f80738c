#include "tables/steady_read.h"

#include <cstring>
#include <optional>

#include "core/exceptions.h"
#include "core/file_clock.h"

namespace Tabulon {
namespace {

constexpr int kMostPasses = 5;

/// Whether a change from now on shows in the file's state, or cannot happen.
bool IsAtRest(const SteadyStart& start) {
  return start.alone || !Sumara::ChangedJustNow(start.state);
}

bool OnlyGrew(const Sumara::FileState& before, const Sumara::FileState& after) {
  return after.file == before.file && after.size > before.size;
}

}  // namespace

Sumara::FileState ReadSteadily(const std::string& path, const SteadyPass& steady) {
  std::optional<std::uint64_t> last;
  for (int attempt = 0; attempt < kMostPasses; ++attempt) {
    SteadyStart start = steady.start();
    bool atRest = IsAtRest(start);
    if (!atRest) {
      Sumara::WaitForFileClock();
      start = steady.start();
      atRest = IsAtRest(start);
    }
    steady.pass();
    const Sumara::FileState after = steady.state();
    if (atRest && after == start.state) return after;
    const std::uint64_t fingerprint = steady.fingerprint();
    if (last == fingerprint && OnlyGrew(start.state, after)) return after;
    last = fingerprint;
  }
  throw CIOException(5009, path, "The file was written again and again while it was read");
}

std::uint64_t FingerprintOf(const void* memory, std::size_t size, std::uint64_t start) {
  constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15u;
  const auto* bytes = static_cast<const char*>(memory);
  std::uint64_t sum = start ^ (size * kFactor);
  for (; size > 0; bytes += sizeof(std::uint64_t)) {
    const std::size_t taken = size < sizeof(std::uint64_t) ? size : sizeof(std::uint64_t);
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, taken);
    size -= taken;
    sum = (sum ^ word) * kFactor;
    sum ^= sum >> 32;
    if (taken < sizeof(std::uint64_t)) break;
  }
  return sum;
}

}  // namespace Tabulon
