#pragma once

#include "core/file.h"

namespace Sumara {

/// Whether a file was changed so lately that a further change may leave its times as they are: the
/// clock that stamps files goes in steps. A file that seems to come from the future, by the clock
/// of another machine, was not.
bool ChangedJustNow(const FileState& state);

/// Sleeps until what was written up to now is no longer written just now.
void WaitForFileClock();

}  // namespace Sumara
