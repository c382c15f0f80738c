#pragma once

#include <chrono>

namespace Tabulon::Module {

/// Asks the interpreter, every tenth of a second of a call that has released its lock, whether a
/// signal waits whose handler raises: Ctrl-C, say. One object for each call.
class SignalWaits {
 public:
  bool operator()();

 private:
  using Clock = std::chrono::steady_clock;
  Clock::time_point m_last = Clock::now();
};

}  // namespace Tabulon::Module
