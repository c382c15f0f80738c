#pragma once

// A library that is loaded in front of all others, so that it stands between the extension module
// and the system, and makes the calls fail that it is told to.

namespace Faults {

/// What may fail. The numbers are places in the mask of a plan.
enum class Call { kAllocate, kOpen, kRead, kWrite, kClose, kDirectory, kStatus };

/// Counts a call that is made while a function is watched.
/// \return true if it is to fail; `Error` then tells how.
bool IsDue(Call call);

/// The error number with which calls fail; 0 for one that does less than it was asked for.
int Error();

}  // namespace Faults
