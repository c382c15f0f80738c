#pragma once

#include "core/file.h"

namespace Sumara {

/// Makes a pass over an open file, and makes it anew if somebody wrote meanwhile: where a file is
/// cut under a read the system may give zeros. One that never comes to rest is taken as it comes.
/// \param pass begins from the start each time.
template <class Pass>
void PassAtRest(const File& file, const Pass& pass) {
  constexpr int kMostPasses = 5;
  for (int made = 1;; ++made) {
    const FileState before = file.State();
    pass();
    if (made == kMostPasses || file.State() == before) return;
  }
}

}  // namespace Sumara
