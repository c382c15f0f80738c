#pragma once

#include <cstdint>

namespace Sumara {

/// What a reader keeps for later requests, and the bound for all readers of the process together.
///
/// Who goes from run to run would else gather the files of all of them. Beyond the limit the reader
/// that was used longest ago gives up what it keeps, and reads its file anew when it is asked
/// again; what was handed out stays. For one thread at a time, as the groups that own the readers.
class KeptData {
 public:
  static constexpr std::uint64_t kDefaultLimit = std::uint64_t{256} << 20;
  /// What an open file counts for: no more than 64 stay open.
  static constexpr std::uint64_t kOpenFile = kDefaultLimit / 64;

  /// In bytes; 0 has nothing kept.
  static void SetLimit(std::uint64_t limit);
  static std::uint64_t Limit();
  /// What is kept now, in bytes.
  static std::uint64_t Total();

  KeptData(const KeptData&) = delete;
  KeptData& operator=(const KeptData&) = delete;

 protected:
  KeptData() = default;
  ~KeptData() { Forget(); }

  /// Says what this reader keeps from now on, and that it was used last.
  void Keep(std::uint64_t bytes);
  /// Says that it keeps nothing.
  void Forget() noexcept;

 private:
  /// Gives up what is kept; ends in `Forget`.
  virtual void DropKept() noexcept = 0;

  static void DropOldest();

  std::uint64_t m_bytes = 0;
  KeptData* m_older = nullptr;
  KeptData* m_newer = nullptr;
};

}  // namespace Sumara
