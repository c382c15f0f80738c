#pragma once

#include <span>
#include <sstream>
#include <string>
#include <string_view>

#include "core/file.h"
#include "core/io_base.h"

namespace Sumara {

/// A new file that takes what is written to it piece by piece.
///
/// Nothing is held back: a piece is with the system when the call returns, and what was written
/// before a failure stays. Failures are those of a standard stream, `std::ios_base::failure`, and
/// name the bit that is set, the file and the system's reason.
class OutputFile {
 public:
  /// Creates the file, or empties the one that is there.
  explicit OutputFile(std::string path);

  void Write(std::span<const char> bytes);
  /// Closes the file, which may show that what was written did not arrive.
  void Close();

 private:
  std::string m_path;
  File m_file;
};

}  // namespace Sumara

/// A text file of its own: the text is assembled first and written out at once.
class CWriter : public CIOBase {
 public:
  /// Touches no file.
  explicit CWriter(std::string path);
  ~CWriter() override;

  /// Where the text is assembled.
  std::ostream& Text() { return m_text; }

  /// Opens the file, writes the text and closes it.
  /// \throws CIOException 5002, 5007 if the file cannot be opened.
  /// \throws std::ios_base::failure if the text cannot be written.
  void Write();

 private:
  std::ostringstream m_text;
};
