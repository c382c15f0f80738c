#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace Sumara {

/// What tells one state of a file from another. Programs that copy files keep the time of the last
/// write, so that time alone is not enough.
struct FileState {
  std::uint64_t file = 0;  ///< which file of the system it is
  std::uint64_t size = 0;
  std::int64_t written = 0;  ///< last write of the content, in the finest ticks of the system
  std::int64_t changed = 0;  ///< last change of the content or of what is told of it

  bool operator==(const FileState&) const = default;
};

/// An open file of the system; closed with the object. All platform differences of reading and
/// writing bytes stand behind it.
class File {
 public:
  enum class Access { kRead, kWrite };  ///< writing creates or truncates

  File() = default;
  ~File() { Close(); }
  File(File&& other) noexcept;
  File& operator=(File&& other) noexcept;

  /// \return 0, or the system's error number. Only regular files open: no directory, pipe or
  /// device.
  int Open(const std::string& path, Access access);
  int Close() noexcept;
  bool IsOpen() const { return m_handle != -1; }
  /// The system's own handle, for what stands in files of the platform.
  int Handle() const { return m_handle; }

  /// The size in bytes when the file was opened.
  std::uint64_t Size() const { return m_size; }

  FileState State() const;

  /// Reads up to `target.size()` bytes at `offset`; fewer only at the end or on an error.
  /// \param error the system's error number, 0 if there is none.
  std::size_t ReadAt(std::uint64_t offset, std::span<char> target, int& error) const;

  /// Appends `bytes`. \return 0, or the system's error number.
  int Write(std::span<const char> bytes);

 private:
  int m_handle = -1;
  std::uint64_t m_size = 0;
};

}  // namespace Sumara
