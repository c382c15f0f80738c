#pragma once

#if defined(_MSC_VER) && !defined(__clang__)
#include <intrin.h>
#endif

namespace Sumara {

/// Tells the processor of an address that will be read soon. Any address will do.
inline void Prefetch(const void* address) {
#if defined(_MSC_VER) && !defined(__clang__)
  _mm_prefetch(static_cast<const char*>(address), _MM_HINT_T0);
#else
  __builtin_prefetch(address);
#endif
}

}  // namespace Sumara
