#include "core/io_base.h"

#include <utility>

#include "core/exceptions.h"
#include "core/paths.h"

CIOBase::CIOBase(std::string path, std::int32_t mode) : m_path(std::move(path)), m_mode(mode) {}

CIOBase::~CIOBase() { m_stream.Close(); }

void CIOBase::Close() {
  m_stream.Close();
  m_buffer.Clear();
}

bool CIOBase::Open() {
  if (IsOpen()) return false;
  m_length = kUnknownLength;
  if (m_path.empty()) throw CIOException(5002, m_path);
  const bool reading = m_mode < static_cast<std::int32_t>(FileMode::kWriteText);
  OpenStream(reading);
  if (reading) m_length = m_stream.Size();
  return true;
}

void CIOBase::OpenStream(bool reading) {
  const bool known = m_mode >= 0 && m_mode <= static_cast<std::int32_t>(FileMode::kWriteBinary);
  if (known) {
    m_stream.Open(m_path, reading ? Sumara::File::Access::kRead : Sumara::File::Access::kWrite);
    if (m_stream.Good()) return;
  }
  // Only a file that did not open is asked for, which spares the others a call of the system.
  if (reading && !Sumara::Exists(m_path)) throw CIOException(5000, m_path);
  if (!known) throw CIOException(5001, m_path);
  throw CIOException(5007, StreamStateText());
}

bool CIOBase::IsEmpty() const {
  if (m_length == kUnknownLength) throw CIOException(5006, m_path);
  return m_length == 0;
}

void CIOBase::Rewind() {
  m_stream.Clear();
  m_stream.Seek(0);
  m_lineNumber = 0;
}

std::string CIOBase::GetDirectory() const { return Sumara::DirectoryOf(m_path); }

std::string CIOBase::StreamStateText() const {
  std::string text;
  const auto add = [&text](bool flag, const char* words) {
    if (flag) text.append(text.empty() ? "" : "; ").append(words);
  };
  add(m_stream.Eof(), "eofbit: unexpected end of file");
  add(m_stream.Fail(),
      "failbit: last operation on stream invalid - check file or directory exists, path does not "
      "contain illegal characters, and file is not locked by another process");
  add(m_stream.Bad(), "badbit: loss of stream integrity");
  const std::string systemText = Sumara::SystemErrorText(m_stream.LastError());
  if (!systemText.empty()) text.append("\nFurther information: ").append(systemText);
  return text.append("\nPath: ").append(m_path);
}

bool CIOBase::ReadHeaderLine(std::string_view& line, bool tolerant) {
  m_stream.GetLine(line);
  if (line.empty() && m_stream.Good()) m_stream.GetLine(line);
  ++m_lineNumber;
  if (!line.empty()) return true;
  if (tolerant || m_stream.Good()) return false;
  throw CIOException(m_stream.Eof() ? 5008 : 5007, StreamStateText());
}

bool CIOBase::ReadLine(std::string& line, bool tolerant) {
  std::string_view text;
  const bool isLine = ReadHeaderLine(text, tolerant);
  line.assign(text);
  return isLine;
}
