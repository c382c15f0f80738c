#include <execinfo.h>

#include <array>

#include "faults.h"

// Objects of Python only pass through: its headers are not needed.
struct PyObject;
extern "C" __attribute__((weak)) PyObject* PyObject_CallObject(PyObject* function,
                                                               PyObject* arguments);

namespace {

struct Plan {
  unsigned calls = 0;  ///< a bit for each kind
  int error = 0;
  long first = 0;  ///< counted from 1; 0 for none
  long last = 0;
};

Plan plan;
bool isWatching = false;
long count = 0;

// Where the first failure was.
std::array<void*, 24> frames;
int frameCount = 0;

/// The first call loads a library, which must not happen amid an allocation.
[[maybe_unused]] const int kLoaded = ::backtrace(frames.data(), 1);

}  // namespace

namespace Faults {

bool IsDue(Call call) {
  if (!isWatching || (plan.calls >> static_cast<unsigned>(call) & 1u) == 0) return false;
  ++count;
  if (count < plan.first || count > plan.last) return false;
  if (frameCount == 0) {
    isWatching = false;
    frameCount = ::backtrace(frames.data(), static_cast<int>(frames.size()));
    isWatching = true;
  }
  return true;
}

int Error() { return plan.error; }

}  // namespace Faults

/// Has the calls from `first` to `last` fail, of those of the kinds in `calls`.
extern "C" void faults_plan(unsigned calls, int error, long first, long last) {
  plan = {calls, error, first, last};
}

/// Calls a function of Python under the plan.
extern "C" PyObject* faults_call(PyObject* function, PyObject* arguments) {
  count = 0;
  frameCount = 0;
  isWatching = true;
  PyObject* const result = PyObject_CallObject(function, arguments);
  isWatching = false;
  return result;
}

/// How many calls were counted in the last watched function.
extern "C" long faults_count() { return count; }

/// The place of the first failure in the last watched function, innermost first.
extern "C" int faults_frames(void** target, int size) {
  int told = 0;
  while (told < frameCount && told < size) {
    target[told] = frames[static_cast<std::size_t>(told)];
    ++told;
  }
  return told;
}
