#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/element_types.h"
#include "core/io_base.h"

/// A `CIOBase` that reads a group's files: a typed view of a binary file held as one block, and the
/// addressing of lines in a text file.
///
/// T is the type of a word in the file, U the type into which values are delivered; each is one of
/// the five element types.
template <class T, class U>
class CReader : public CIOBase {
 public:
  CReader(std::string path, std::int32_t mode);
  ~CReader() override;

  void Close() override;

  /// Goes to another file, or opens the present one again, and prepares it if it was opened now.
  virtual bool Reopen(const std::string& path);

  /// Sets up a newly opened file: tests a text data file for lines of one length; reads a binary
  /// file into the buffer, as one block, and closes it.
  /// \throws CIOException 5003, 5006, 5009, 5013, 5020.
  void Prepare();

  /// As `Prepare` for a binary file that is to be read in blocks: no buffer is filled and the file
  /// stays open.
  void PrepareForBlocks();

  /// The words of the buffer; null until a binary file is prepared.
  const T* Words() const { return m_words; }
  std::uint64_t TotalWordCount() const { return m_totalWordCount; }
  bool HasBuffer() const { return !m_buffer.Empty(); }

  /// Gives the open file away. The reader is closed then; its words and its length stay.
  Sumara::File Suspend();
  /// Goes on with such a file, as if it were opened now.
  void Resume(Sumara::File file);

  /// DIMENS of the header; the uniformity test needs it.
  void SetDimensions(std::vector<std::uint64_t> dimensions) {
    m_dimensions = std::move(dimensions);
  }
  const std::vector<std::uint64_t>& GetDimensions() const { return m_dimensions; }

  /// HEADREC of the header. Two or more lines that are not data need not be as long as the data's
  /// are, whatever the size of the file says: they are counted.
  void SetHeaderRecordCount(std::uint64_t count) { m_headerRecordCount = count; }

  bool IsUniform() const { return m_uniform; }
  std::uint64_t GetLineLength() const { return m_lineLength; }

  /// Goes to the start of a line, counted from 0 with all lines of the file.
  ///
  /// A uniform file is addressed by a seek, as long as a line feed stands before the place and the
  /// line behind the last one that was read stands there; where that is not so, the file is not
  /// uniform after all. The first jump over several header records counts lines. In any other file
  /// lines are read and dropped up to the place, from the start if it lies behind. \throws
  /// CIOException 5008.
  void SeekLine(std::uint64_t line);

  /// The text of a line, without its line end. The view is good until the next read.
  /// \param context the caller's words for the place, added to every failure.
  /// \throws CIOException 5004, 5007, 5008, 5009.
  std::string_view LineAt(std::uint64_t line, std::string_view context = {});

  /// Appends the numbers of a line to `values`, up to the first that fails.
  /// \throws CIOException as `LineAt`, and 5015 for an empty line.
  void ReadLineValues(std::uint64_t line, std::vector<U>& values, std::string_view context = {});

 private:
  void TestUniformity();
  std::uint64_t ReadFirstLineLength();
  bool HasUniformSize() const;
  void FillBuffer();
  bool GoToLine(std::uint64_t line);
  void CountToLine(std::uint64_t line);
  std::string LineContext(std::uint64_t line, std::string_view context) const;

  const T* m_words = nullptr;
  std::uint64_t m_totalWordCount = 0;
  std::uint64_t m_lineLength = 0;
  std::uint64_t m_headerRecordCount = 0;
  bool m_uniform = false;
  std::vector<std::uint64_t> m_dimensions;
};
