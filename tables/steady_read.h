#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "core/file.h"

namespace Tabulon {

/// A file as a pass over it begins.
struct SteadyStart {
  Sumara::FileState state;
  bool alone = false;  ///< nobody has it open for writing from now on
};

/// A pass over an open file, and the questions that tell whether the file stood still under it.
struct SteadyPass {
  std::function<SteadyStart()> start;
  std::function<Sumara::FileState()> state;
  std::function<void()> pass;
  std::function<std::uint64_t()> fingerprint;  ///< of what the pass delivered
};

/// Makes the pass until what it delivers is the file at one time: nobody wrote during the pass, or
/// the file only grew and two passes delivered the same.
/// \return the state in which the file was read.
/// \throws what the pass throws; CIOException 5009 if the file does not come to rest.
Sumara::FileState ReadSteadily(const std::string& path, const SteadyPass& steady);

/// A number that tells one content of memory from another.
std::uint64_t FingerprintOf(const void* memory, std::size_t size, std::uint64_t start = 0);

}  // namespace Tabulon
