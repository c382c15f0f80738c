#include <chrono>
#include <thread>

#include "core/file_clock.h"

namespace Sumara {
namespace {

// The coarsest clock of a kernel steps every 10 ms.
constexpr std::chrono::nanoseconds kStep = std::chrono::milliseconds(15);

}  // namespace

bool ChangedJustNow(const FileState& state) {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  const auto age = std::chrono::duration_cast<std::chrono::nanoseconds>(now) -
                   std::chrono::nanoseconds(state.changed);
  return age >= std::chrono::nanoseconds::zero() && age < kStep;
}

void WaitForFileClock() { std::this_thread::sleep_for(kStep); }

}  // namespace Sumara
