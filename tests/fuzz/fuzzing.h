#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "core/exceptions.h"

/// Takes one input. A process that ends within this call, or an exception that leaves it, is a
/// finding.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace Fuzzing {

inline std::string_view TextOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

/// Ends the process: the library did not keep its word.
[[noreturn]] inline void Fail(const char* words, const std::string& details = {}) {
  std::fprintf(stderr, "FINDING: %s\n%s\n", words, details.c_str());
  std::abort();
}

inline void Require(bool holds, const char* words) {
  if (!holds) Fail(words);
}

inline void RequireSame(const std::string& found, const std::string& expected, const char* words) {
  if (found != expected) Fail(words, "found:\n" + found + "\nexpected:\n" + expected);
}

/// Equality of what is stored: the two zeros differ, and a number that is none equals itself.
template <class A, class B>
bool AreSameBits(const A& a, const B& b) {
  static_assert(sizeof(A) == sizeof(B));
  using Bytes = std::array<std::byte, sizeof(A)>;
  return std::bit_cast<Bytes>(a) == std::bit_cast<Bytes>(b);
}

/// The text of the library's refusal, or nothing if there is none. Any other exception goes on.
template <class Action>
std::string RefusalOf(Action&& action) {
  try {
    std::forward<Action>(action)();
  } catch (const CExceptionBase& refusal) {
    return refusal.what();
  }
  return {};
}

/// Whether each input goes all ways, as in a replay of known ones.
inline bool goesAllWays = false;

/// Choices that the bytes of an input decide, one after the other: where all of several ways would
/// take too long, each input goes one of them.
class Ways {
 public:
  explicit Ways(std::string_view input) : m_state(std::hash<std::string_view>{}(input)) {}

  /// From 0 to `count - 1`.
  std::size_t Pick(std::size_t count) {
    m_state = m_state * 6364136223846793005 + 1442695040888963407;
    return (m_state >> 33) % count;  // the low bits of such a sequence repeat soon
  }

  /// In one input of `count`.
  bool IsTurn(std::size_t count) { return Pick(count) == 0 || goesAllWays; }

 private:
  std::uint64_t m_state;
};

/// The first of the choices.
inline std::size_t PickWay(std::string_view input, std::size_t count) {
  return Ways(input).Pick(count);
}

/// Cuts the piece up to `mark` off the front of `text`; all of it if there is no mark.
inline std::string_view TakePiece(std::string_view& text, std::string_view mark) {
  const std::size_t end = text.find(mark);
  const std::string_view piece = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + mark.size());
  return piece;
}

}  // namespace Fuzzing
