#include "tables/module/signals.h"

#include <nanobind/nanobind.h>

namespace Tabulon::Module {

bool SignalWaits::operator()() {
  constexpr auto kPause = std::chrono::milliseconds(100);
  const Clock::time_point now = Clock::now();
  if (now - m_last < kPause) return false;
  m_last = now;
  const nanobind::gil_scoped_acquire locked;
  return PyErr_CheckSignals() != 0;
}

}  // namespace Tabulon::Module
