#include "tables/steady_read.h"

#include <cstring>
#include <optional>

#include "core/exceptions.h"
#include "core/file_clock.h"

namespace Tabulon {
namespace {

constexpr int kMostPasses = 5;

bool OnlyGrew(const Sumara::FileState& before, const Sumara::FileState& after) {
  return after.file == before.file && after.size > before.size;
}

}  // namespace

void ReadSteadily(const std::string& path, const SteadyPass& steady) {
  std::optional<std::uint64_t> last;
  for (int attempt = 0; attempt < kMostPasses; ++attempt) {
    bool atRest = steady.start();
    Sumara::FileState before = steady.state();
    if (!atRest && Sumara::ChangedJustNow(before)) {
      Sumara::WaitForFileClock();
      atRest = steady.start();
      before = steady.state();
    }
    atRest = atRest || !Sumara::ChangedJustNow(before);
    steady.pass();
    const Sumara::FileState after = steady.state();
    if (atRest && after == before) return;
    const std::uint64_t fingerprint = steady.fingerprint();
    if (last == fingerprint && OnlyGrew(before, after)) return;
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
