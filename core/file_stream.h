#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "core/file.h"

namespace Sumara {

/// Bytes of a file, in memory of their own.
struct FileBytes {
  std::unique_ptr<char[]> data;
  std::size_t size = 0;

  std::string_view View() const { return {data.get(), size}; }
};

/// A file read line by line: the position, the flags and the rules of a standard stream, on blocks.
///
/// A line is handed out where it lies in the block, and a seek within the block costs nothing; a
/// standard stream gives up its buffer at each seek, and a header is full of them.
class FileStream {
 public:
  /// Opens the file and clears the flags; sets the fail flag if that fails.
  void Open(const std::string& path, File::Access access);
  /// Sets the fail flag if the file does not close.
  void Close();

  bool IsOpen() const { return m_file.IsOpen(); }
  bool Good() const { return !m_eof && !m_fail && !m_bad; }
  bool Eof() const { return m_eof; }
  bool Fail() const { return m_fail || m_bad; }
  bool Bad() const { return m_bad; }
  void Clear() { m_eof = m_fail = m_bad = false; }

  /// The error number of the system's last refusal; 0 if there was none.
  int LastError() const { return m_lastError; }

  /// The position from the start of the file; known whatever the flags.
  std::uint64_t Tell() const { return m_position; }
  /// Clears the eof flag and moves, unless the fail flag is set.
  void Seek(std::uint64_t position);
  /// When it was opened.
  std::uint64_t Size() const { return m_file.Size(); }
  const File& SystemFile() const { return m_file; }
  File& SystemFile() { return m_file; }

  /// Reads up to the next line feed, which is taken and not delivered, as `std::getline` does: the
  /// eof flag at the end of the file, the fail flag too if nothing was read. The view is good until
  /// the next read.
  /// \return false if the fail flag is set now.
  bool GetLine(std::string_view& line);

  /// Reads one character unless it is a line feed, as `get(buffer, 2)` does: the fail flag if
  /// nothing was read, the eof flag at the end of the file.
  /// \return the character, or 0 if none was read.
  char GetBeforeLineFeed();

  /// All bytes from the position up to the end that the file had when it was opened, in one read;
  /// the position stays. Sets the bad flag if the read fails.
  FileBytes ReadRest();

  /// Whether the file's start or a line feed lies directly before the position.
  bool AtLineStart();

 private:
  std::string_view Ahead() const;
  bool Extend();
  void MakeRoom();
  void SetEndFlags(bool nothingRead);

  File m_file;
  std::unique_ptr<char[]> m_block;
  std::size_t m_capacity = 0;
  std::uint64_t m_blockStart = 0;
  std::size_t m_blockSize = 0;
  std::uint64_t m_position = 0;
  int m_lastError = 0;
  bool m_eof = false;
  bool m_fail = false;
  bool m_bad = false;
};

}  // namespace Sumara
