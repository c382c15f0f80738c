#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace Sumara {

/// An open file of the system; closed with the object. All platform differences of reading and
/// writing bytes stand behind it.
class File {
 public:
  enum class Access { kRead, kWrite };  ///< writing creates or truncates

  File() = default;
  ~File() { Close(); }
  File(File&& other) noexcept;
  File& operator=(File&& other) noexcept;

  /// \return 0, or the system's error number. A directory does not open as a file.
  int Open(const std::string& path, Access access);
  int Close() noexcept;
  bool IsOpen() const { return m_handle != -1; }

  /// The present size in bytes; all ones if the system does not tell.
  std::uint64_t Size() const;

  /// A value that changes with the file's content: last write in the finest ticks of the system.
  std::int64_t Stamp() const;

  /// Reads up to `target.size()` bytes at `offset`; fewer only at the end or on an error.
  /// \param error the system's error number, 0 if there is none.
  std::size_t ReadAt(std::uint64_t offset, std::span<char> target, int& error) const;

  /// Appends `bytes`. \return 0, or the system's error number.
  int Write(std::span<const char> bytes);

 private:
  int m_handle = -1;
};

}  // namespace Sumara
