#include "model/file_writer.h"

#include <ios>
#include <system_error>
#include <utility>

namespace {

[[noreturn]] void FailStream(const char* state, const std::string& path, int error) {
  throw std::ios_base::failure(state + (": " + path), {error, std::generic_category()});
}

void CheckWritten(const std::string& path, int error) {
  if (error != 0) FailStream("ios_base::badbit set", path, error);
}

}  // namespace

namespace Sumara {

OutputFile::OutputFile(std::string path) : m_path(std::move(path)) {
  if (const int error = m_file.Open(m_path, File::Access::kWrite)) {
    FailStream("ios_base::failbit set", m_path, error);
  }
}

void OutputFile::Write(std::span<const char> bytes) { CheckWritten(m_path, m_file.Write(bytes)); }

void OutputFile::Close() { CheckWritten(m_path, m_file.Close()); }

}  // namespace Sumara

CWriter::CWriter(std::string path)
    : CIOBase(std::move(path), static_cast<std::int32_t>(FileMode::kWriteText)) {
  m_text.exceptions(std::ios_base::badbit);  // a text for which memory runs out is not written
}

CWriter::~CWriter() { m_stream.Close(); }

void CWriter::Write() {
  Open();
  CheckWritten(m_path, m_stream.SystemFile().Write(m_text.str()));
  Close();
  if (!IsGood()) CheckWritten(m_path, m_stream.LastError());
}
