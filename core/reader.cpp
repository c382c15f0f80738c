#include "core/reader.h"

#include <bit>
#include <limits>
#include <utility>

#include "core/at_rest.h"
#include "core/exceptions.h"
#include "core/numbers.h"
#include "core/paths.h"
#include "core/text.h"

namespace {

template <class T>
constexpr int kWordShift = std::countr_zero(sizeof(T));

/// \return false if the product does not fit.
bool Multiply(std::uint64_t a, std::uint64_t b, std::uint64_t& product) {
  if (b != 0 && a > std::numeric_limits<std::uint64_t>::max() / b) return false;
  product = a * b;
  return true;
}

/// The lines that a text data file of these dimensions should have; 0 if that cannot be told.
std::uint64_t ExpectedLineCount(const std::vector<std::uint64_t>& dimensions) {
  const std::uint64_t points = dimensions.back();
  const bool linePerSecondaryValue = dimensions.size() == 3 && dimensions[0] != 1;
  std::uint64_t lines = points;
  if (linePerSecondaryValue && !Multiply(points, dimensions[1], lines)) return 0;
  return lines;
}

}  // namespace

template <class T, class U>
CReader<T, U>::CReader(std::string path, std::int32_t mode) : CIOBase(std::move(path), mode) {}

template <class T, class U>
CReader<T, U>::~CReader() = default;

template <class T, class U>
void CReader<T, U>::Close() {
  CIOBase::Close();
  m_words = nullptr;
}

template <class T, class U>
bool CReader<T, U>::Reopen(const std::string& path) {
  if (path != m_path) {
    Close();
    m_path = path;
  }
  const bool opened = Open();
  if (opened) Prepare();
  return opened;
}

template <class T, class U>
void CReader<T, U>::Prepare() {
  PrepareForBlocks();
  if (IsReadingBinary() && m_length != 0) FillBuffer();
}

template <class T, class U>
void CReader<T, U>::PrepareForBlocks() {
  if (m_length == kUnknownLength) throw CIOException(5006, m_path);
  if (m_mode == static_cast<std::int32_t>(FileMode::kReadTextData)) {
    m_uniform = false;
    if (m_length != 0) TestUniformity();
  }
  Rewind();
  m_totalWordCount = m_length >> kWordShift<T>;
}

/// Reads the whole file as one block. What was cut off meanwhile is not there.
template <class T, class U>
void CReader<T, U>::FillBuffer() {
  m_words = nullptr;
  m_buffer.Resize(static_cast<std::size_t>(m_length));
  int error = 0;
  std::size_t size = 0;
  const Sumara::File& file = m_stream.SystemFile();
  Sumara::PassAtRest(file, [&] { size = file.ReadAt(0, m_buffer.Bytes(), error); });
  m_buffer.Resize(size);
  m_stream.Close();
  if (error != 0) {
    m_buffer.Clear();
    throw CIOException(5009, m_path, Sumara::SystemErrorText(error));
  }
  if (m_buffer.Empty()) throw CIOException(5003, m_path);
  m_words = reinterpret_cast<const T*>(m_buffer.Data());
  m_totalWordCount = size >> kWordShift<T>;
}

template <class T, class U>
Sumara::File CReader<T, U>::Suspend() {
  Sumara::File file = std::move(m_stream.SystemFile());
  m_stream.Close();
  return file;
}

template <class T, class U>
void CReader<T, U>::Resume(Sumara::File file) {
  m_stream.SystemFile() = std::move(file);
  m_length = m_stream.Size();
}

template <class T, class U>
void CReader<T, U>::TestUniformity() {
  if (m_dimensions.empty()) {
    throw CIOException(5013, "Attempting to assess uniformity of ASCII file: " + m_path);
  }
  m_lineLength = ReadFirstLineLength();
  m_uniform = HasUniformSize();
}

/// The bytes of the first line with its line end.
template <class T, class U>
std::uint64_t CReader<T, U>::ReadFirstLineLength() {
  Rewind();
  std::string_view line;
  try {
    ReadHeaderLine(line, /*tolerant=*/false);
  } catch (const CIOException& failure) {
    throw CIOException(5020, m_path, failure.what());
  }
  return line.size() + 1;
}

template <class T, class U>
bool CReader<T, U>::HasUniformSize() const {
  std::uint64_t size = 0;
  const std::uint64_t lines = ExpectedLineCount(m_dimensions);
  return lines != 0 && Multiply(lines, m_lineLength, size) && size == m_length;
}

template <class T, class U>
void CReader<T, U>::SeekLine(std::uint64_t line) {
  if (!GoToLine(line)) throw CIOException(5008, LineContext(line, {}));
}

/// \return false if the stream has flags now.
template <class T, class U>
bool CReader<T, U>::GoToLine(std::uint64_t line) {
  std::uint64_t position = 0;
  const bool countsLines = m_headerRecordCount > 1 && m_lineNumber < m_headerRecordCount;
  if (m_uniform && !countsLines && Multiply(line, m_lineLength, position)) {
    // That lines are of one length was only concluded from the size of the file: the next line has
    // to stand here, and any other behind a line feed.
    const bool inStep = line != m_lineNumber || m_stream.Tell() == position;
    m_stream.Seek(position);
    m_uniform = inStep && (position > m_length || m_stream.AtLineStart());
    if (m_uniform) {
      m_lineNumber = line;
      return m_stream.Good();
    }
    Rewind();
  }
  CountToLine(line);
  return m_stream.Good();
}

template <class T, class U>
void CReader<T, U>::CountToLine(std::uint64_t line) {
  if (line < m_lineNumber) Rewind();
  std::string_view dropped;
  while (m_lineNumber < line && m_stream.Good()) ReadHeaderLine(dropped, /*tolerant=*/true);
}

template <class T, class U>
std::string_view CReader<T, U>::LineAt(std::uint64_t line, std::string_view context) {
  if (!IsOpen()) throw CIOException(5004, LineContext(line, context));
  if (!IsGood()) throw CIOException(5007, LineContext(line, context));
  if (!GoToLine(line)) throw CIOException(5008, LineContext(line, context));
  std::string_view text;
  try {
    ReadHeaderLine(text, /*tolerant=*/false);
  } catch (const CIOException& failure) {
    throw CIOException(5009, LineContext(line, context), failure.what());
  }
  if (!text.empty() && text.back() == '\r') text.remove_suffix(1);
  return text;
}

template <class T, class U>
void CReader<T, U>::ReadLineValues(std::uint64_t line, std::vector<U>& values,
                                   std::string_view context) {
  Sumara::PopulateFromString(LineAt(line, context), values, values.size());
}

template <class T, class U>
std::string CReader<T, U>::LineContext(std::uint64_t line, std::string_view context) const {
  std::string text = "line number = " + std::to_string(line) + "; path: " + m_path;
  if (!context.empty()) text.append("; ").append(context);
  return text;
}

#define TABULON_INSTANTIATE(T)       \
  template class CReader<T, float>;  \
  template class CReader<T, double>; \
  template class CReader<T, short>;  \
  template class CReader<T, int>;    \
  template class CReader<T, Sumara::Long>;
TABULON_FOR_EACH_ELEMENT_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE
