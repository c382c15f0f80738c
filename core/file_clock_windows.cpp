#include <windows.h>

#include <cstdint>

#include "core/file_clock.h"

namespace Sumara {
namespace {

constexpr std::int64_t kTicksPerMillisecond = 10'000;
constexpr DWORD kStepMilliseconds = 20;

}  // namespace

bool ChangedJustNow(const FileState& state) {
  FILETIME now;
  ::GetSystemTimeAsFileTime(&now);
  const auto ticks =
      static_cast<std::int64_t>((std::uint64_t{now.dwHighDateTime} << 32) | now.dwLowDateTime);
  const std::int64_t age = ticks - state.changed;
  return age >= 0 && age < kTicksPerMillisecond * kStepMilliseconds;
}

void WaitForFileClock() { ::Sleep(kStepMilliseconds); }

}  // namespace Sumara
