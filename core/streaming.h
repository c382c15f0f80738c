#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define TABULON_HAS_STREAMING_STORES
#endif

namespace Sumara {

/// Copies bytes that nobody reads soon, past the processor's caches where it can: a store into a
/// cache first fetches from memory what it overwrites, and drives out what is still of use.
///
/// Call `FinishStreaming` before another thread may look at the target.
inline void StreamCopy(void* target, const void* source, std::size_t size) {
#ifdef TABULON_HAS_STREAMING_STORES
  constexpr std::size_t kLine = 64;
  auto* to = static_cast<char*>(target);
  const auto* from = static_cast<const char*>(source);
  const std::size_t before = (kLine - reinterpret_cast<std::uintptr_t>(to) % kLine) % kLine;
  if (const std::size_t head = std::min(before, size)) {
    std::memcpy(to, from, head);
    to += head;
    from += head;
    size -= head;
  }
  for (; size >= kLine; size -= kLine, to += kLine, from += kLine) {
    for (std::size_t at = 0; at < kLine; at += sizeof(__m128i)) {
      const __m128i words = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + at));
      _mm_stream_si128(reinterpret_cast<__m128i*>(to + at), words);
    }
  }
  if (size > 0) std::memcpy(to, from, size);
#else
  std::memcpy(target, source, size);
#endif
}

/// Has what was streamed come before all that this thread writes from now on.
inline void FinishStreaming() {
#ifdef TABULON_HAS_STREAMING_STORES
  _mm_sfence();
#endif
}

}  // namespace Sumara
