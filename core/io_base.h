#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/byte_buffer.h"
#include "core/file_stream.h"

namespace Sumara {
class RowSink;
}

/// How a label is sought in a text file.
struct LabelSearch {
  bool continuation = false;    ///< the value goes on in lines that begin with a blank or a tab
  bool rewind = false;          ///< from the start of the file; else from here
  bool keepPosition = false;    ///< go back after a hit
  bool oneAttempt = false;      ///< look at the next logical line only
  bool quiet = false;           ///< a miss is false, not an error
  bool joinWithBlanks = false;  ///< rows of the value are joined by a blank; else by a line feed
};

/// What `CIOBase` opens a file for. Text is opened in binary too: the line code handles line ends.
enum class FileMode : std::int32_t {
  kReadText = 0,
  kReadTextData = 1,
  kReadBinary = 2,
  kWriteText = 3,
  kWriteBinary = 4
};

/// A file of a run with its path, its mode and its state, and the search for labelled lines in it.
class CIOBase {
 public:
  static constexpr std::uint64_t kUnknownLength = ~std::uint64_t{0};
  using Rows = std::vector<std::vector<std::string>>;

  /// Touches no file. `mode` is a `FileMode`; any other value fails in `Open`.
  CIOBase(std::string path, std::int32_t mode);
  virtual ~CIOBase();
  CIOBase(const CIOBase&) = delete;
  CIOBase& operator=(const CIOBase&) = delete;

  /// Closes the stream and empties the buffer, keeping its capacity.
  virtual void Close();

  /// Opens the file and takes its length.
  /// \return false if it was open already.
  /// \throws CIOException 5000, 5001, 5002, 5007.
  bool Open();

  bool IsOpen() const { return m_stream.IsOpen(); }
  bool IsGood() const { return m_stream.Good(); }
  bool IsReadingBinary() const {
    return m_mode == static_cast<std::int32_t>(FileMode::kReadBinary);
  }
  /// \throws CIOException 5006 while the length is unknown.
  bool IsEmpty() const;
  std::uint64_t GetLength() const { return m_length; }
  std::int32_t GetMode() const { return m_mode; }
  std::uint64_t GetLineNumber() const { return m_lineNumber; }

  /// Clears the stream's flags, goes to the start and sets the line number to 0.
  void Rewind();

  std::string GetDirectory() const;
  std::string GetPath() const { return m_path; }

  /// The stream's flags and the system's last error in words, with the path.
  std::string StreamStateText() const;

  /// Seeks the logical line that begins with `label` and gives its value: tokens joined by one
  /// blank, rows as `LabelSearch` says. Without one attempt, lines are consumed up to the label.
  ///
  /// An empty line directly behind a value sought with `continuation` leaves the fail flag set, so
  /// that the next search without `rewind` is a miss.
  /// \return whether it was found; false only for a quiet search.
  /// \throws CIOException 5014, 5019, 5009; 5018 at the end of the file, also for a quiet search
  ///         that was to go on beyond its next line.
  bool SeekLabel(std::string_view label, std::string& value, const LabelSearch& how);

  /// The same search; the value is the tokens of all its rows. A quote character other than 0 is
  /// honoured as in `SplitTokens`.
  bool SeekLabel(std::string_view label, std::vector<std::string>& tokens, const LabelSearch& how,
                 char quote = '\0');

  /// The same search; a row for each physical line of the value.
  bool SeekLabel(std::string_view label, Rows& rows, const LabelSearch& how, char quote = '\0');

  /// The first token of the next line, without moving; false if there is none or it cannot be read.
  bool PeekLabel(std::string& label);

  /// Goes to the start of the next line that begins with `label`. \throws CIOException 5018.
  void SkipToLabel(std::string_view label);

  /// Reads one line, skipping one empty line for free; counts one line.
  /// \return true if it is not empty.
  /// \throws CIOException 5008 at the end of the file, 5007 on other flags; neither if `tolerant`.
  bool ReadHeaderLine(std::string_view& line, bool tolerant);

  /// `ReadHeaderLine`, with the line copied.
  bool ReadLine(std::string& line, bool tolerant = false);

 protected:
  /// The open file. Derived readers use it directly.
  Sumara::FileStream m_stream;
  std::string m_path;
  std::int32_t m_mode;
  Sumara::ByteBuffer m_buffer;
  std::uint64_t m_length = kUnknownLength;
  std::uint64_t m_lineNumber = 0;

 private:
  void OpenStream(bool reading);
  void ReturnTo(std::uint64_t position);
  std::int32_t RefusalCode() const;
  bool SeekRows(std::string_view label, Sumara::RowSink& sink, const LabelSearch& how, char quote);
  bool FindLine(std::string_view label, Sumara::RowSink& sink, const LabelSearch& how, char quote,
                std::uint64_t origin);
  bool LookAtLine(std::string_view label, Sumara::RowSink& sink, const LabelSearch& how, char quote,
                  std::uint64_t origin);
  bool CollectLogicalLine(std::string_view sought, Sumara::RowSink& sink, bool continuation,
                          char quote);
  bool ReadTextLine(std::string_view& text);
  bool ContinuesOnNextLine();
};
