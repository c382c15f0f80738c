#pragma once

namespace testing_support {

/// Has all allocations of this thread fail after so many; below 0 none fails.
void SetAllocationsLeft(long count);

long AllocationsLeft();

}  // namespace testing_support
