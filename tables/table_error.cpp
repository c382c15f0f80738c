#include "tables/table_error.h"

#include <utility>

#include "core/exceptions.h"

namespace Tabulon {
namespace {

constexpr std::size_t kMostFound = 80;

/// The first line of what was found, without a character of UTF-8 cut in two.
std::string FirstLine(std::string text) {
  std::size_t end = text.find_first_of("\r\n");
  if (end == std::string::npos) end = text.size();
  if (end > kMostFound) {
    end = kMostFound;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0u) == 0x80u) --end;
  }
  text.resize(end);
  return text;
}

}  // namespace

TableError::TableError(std::string text, std::int32_t code, std::string path, std::string field,
                       std::string found)
    : m_text(std::move(text)),
      m_code(code),
      m_path(std::move(path)),
      m_field(std::move(field)),
      m_found(FirstLine(std::move(found))) {}

TableError TableError::Of(const CExceptionBase& failure, const std::string& path, std::string field,
                          std::string found) {
  return {failure.Text(), failure.ErrorCode(), path, std::move(field), std::move(found)};
}

void Ask(const StopQuestion& stop) {
  if (stop && stop()) throw Stopped();
}

}  // namespace Tabulon
