#include "core/file_stream.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "core/pages.h"

namespace Sumara {
namespace {

constexpr std::size_t kFirstRead = std::size_t{32} * 1024;  // most headers come in one
constexpr std::size_t kLargeRead = std::size_t{256} * 1024;

}  // namespace

void FileStream::Open(const std::string& path, File::Access access) {
  Clear();
  m_position = m_blockStart = 0;
  m_blockSize = 0;
  m_lastError = m_file.Open(path, access);
  m_fail = m_lastError != 0;
}

void FileStream::Close() {
  m_block.reset();
  m_capacity = m_blockSize = 0;
  if (const int error = m_file.Close()) {
    m_fail = true;
    m_lastError = error;
  }
}

void FileStream::Seek(std::uint64_t position) {
  m_eof = false;
  if (!IsOpen()) m_fail = true;
  if (!Fail()) m_position = position;
}

bool FileStream::GetLine(std::string_view& line) {
  line = {};
  if (!Good()) {
    m_fail = true;
    return false;
  }
  std::size_t searched = 0;
  do {
    const std::string_view ahead = Ahead();
    const std::size_t end = ahead.find('\n', searched);
    if (end != std::string_view::npos) {
      line = ahead.substr(0, end);
      m_position += end + 1;
      return true;
    }
    searched = ahead.size();
  } while (Extend());
  line = Ahead();
  m_position += line.size();
  SetEndFlags(line.empty());
  return !Fail();
}

char FileStream::GetBeforeLineFeed() {
  if (!Good()) {
    m_fail = true;
    return '\0';
  }
  if (Ahead().empty() && !Extend()) {
    SetEndFlags(/*nothingRead=*/true);
    return '\0';
  }
  const char next = Ahead().front();
  m_fail = next == '\n';
  if (m_fail) return '\0';
  ++m_position;
  // A stream looks one character further.
  if (Ahead().empty() && !Extend()) SetEndFlags(/*nothingRead=*/false);
  return next;
}

FileBytes FileStream::ReadRest() {
  const std::string_view ahead = Ahead();
  const std::uint64_t end = std::max(Size(), m_position + ahead.size());
  FileBytes rest;
  const auto size = static_cast<std::size_t>(end - m_position);
  rest.data = std::make_unique_for_overwrite<char[]>(size);
  Pages::PreferLarge(rest.data.get(), size);
  std::copy(ahead.begin(), ahead.end(), rest.data.get());
  int error = 0;
  rest.size =
      ahead.size() + m_file.ReadAt(m_position + ahead.size(),
                                   {rest.data.get() + ahead.size(), size - ahead.size()}, error);
  if (error != 0) {
    m_bad = true;
    m_lastError = error;
  }
  return rest;
}

bool FileStream::AtLineStart() {
  if (m_position == 0) return true;
  --m_position;
  const bool isLineStart = (!Ahead().empty() || Extend()) && Ahead().front() == '\n';
  ++m_position;
  return isLineStart;
}

/// What the block holds from the position on.
std::string_view FileStream::Ahead() const {
  const std::uint64_t offset = m_position - m_blockStart;  // wraps round before the block
  if (offset >= m_blockSize) return {};
  return {m_block.get() + offset, m_blockSize - static_cast<std::size_t>(offset)};
}

/// Reads more behind what lies ahead in the block.
bool FileStream::Extend() {
  if (!IsOpen()) return false;
  if (m_position - m_blockStart > m_blockSize) {
    m_blockStart = m_position;
    m_blockSize = 0;
  }
  MakeRoom();
  const std::uint64_t offset = m_blockStart + m_blockSize;
  std::size_t wanted =
      std::min(m_capacity - m_blockSize, m_blockSize == 0 ? kFirstRead : kLargeRead);
  if (offset < Size()) {  // spares the read that would only tell the end
    wanted = static_cast<std::size_t>(std::min<std::uint64_t>(wanted, Size() - offset));
  }
  int error = 0;
  const std::size_t count = m_file.ReadAt(offset, {m_block.get() + m_blockSize, wanted}, error);
  m_blockSize += count;
  if (error != 0) {
    m_bad = true;
    m_lastError = error;
  }
  return count > 0;
}

/// A small file is kept whole, for the seeks back; of a large one goes what lies behind the
/// position.
void FileStream::MakeRoom() {
  if (m_blockSize < m_capacity) return;
  const auto passed = static_cast<std::size_t>(m_position - m_blockStart);
  if (m_capacity >= kLargeRead && passed >= m_capacity / 2) {
    m_blockSize -= passed;
    m_blockStart += passed;
    std::memmove(m_block.get(), m_block.get() + passed, m_blockSize);
    return;
  }
  const std::size_t capacity =
      m_capacity == 0 ? kFirstRead
                      : std::max(kLargeRead, 2 * m_capacity);  // a long line doubles it
  auto block = std::make_unique_for_overwrite<char[]>(capacity);
  if (m_blockSize > 0) std::memcpy(block.get(), m_block.get(), m_blockSize);
  m_block = std::move(block);
  m_capacity = capacity;
}

void FileStream::SetEndFlags(bool nothingRead) {
  if (!m_bad) m_eof = true;
  if (nothingRead) m_fail = true;
}

}  // namespace Sumara
