#pragma once

#include <cstdint>

namespace Sumara {

/// How far the writing of a group in chunks has come.
class WritingState {
 public:
  /// Whether the group is being written in chunks.
  bool IsIncremental() const { return m_mode != 0; }
  std::uint32_t Mode() const { return m_mode; }
  void SetMode(std::uint32_t mode) { m_mode = mode; }
  /// The points that earlier chunks hold.
  std::uint64_t FlushedPoints() const { return m_flushedPoints; }
  void SetFlushedPoints(std::uint64_t count) { m_flushedPoints = count; }

  void End() { *this = {}; }

 private:
  std::uint32_t m_mode = 0;
  std::uint64_t m_flushedPoints = 0;
};

}  // namespace Sumara
