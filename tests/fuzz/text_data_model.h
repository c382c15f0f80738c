#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "core/element_types.h"
#include "groupfiles/data_layout.h"

// The rules of text data files, told once more: slowly, over the whole text, with streams.

namespace Fuzzing {

/// The lines of a text file as they are addressed: by a seek while all look alike, else by count.
/// So is the first jump over several header records.
class ModelLines {
 public:
  ModelLines(std::string_view text, const std::vector<std::uint64_t>& dimensions,
             std::uint64_t headerRecords)
      : m_text(text), m_counted(headerRecords > 1 ? headerRecords : 0) {
    std::string_view first;
    TakeLine(first);
    m_at = 0;
    m_number = 0;
    m_length = first.size() + 1;
    const std::uint64_t size = m_text.size();
    const bool perSecondary = dimensions.size() == 3 && dimensions[0] != 1;
    const std::uint64_t perPoint = perSecondary ? dimensions[1] : 1;
    // A product beyond the size of the file is not that size, however far beyond.
    const bool fits = perPoint != 0 && dimensions.back() <= size / perPoint;
    const std::uint64_t lines = fits ? dimensions.back() * perPoint : 0;
    m_isUniform = lines != 0 && size % lines == 0 && size / lines == m_length;
  }

  /// The line, if it can be read and is not empty. Lines are asked for in ascending order.
  std::optional<std::string_view> Line(std::uint64_t number) {
    const bool seeks = m_isUniform && m_number >= m_counted;
    if (seeks && number <= m_text.size()) SeekLine(number);
    std::string_view line;
    while (m_number < number && m_at < m_text.size()) TakeLine(line);
    if (m_number != number || !TakeLine(line)) return std::nullopt;
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
  }

 private:
  /// A place that is not behind a line feed, or not where the line before has ended, shows that the
  /// lines are not alike after all.
  void SeekLine(std::uint64_t number) {
    const std::uint64_t place = number * m_length;
    const bool isInStep = number != m_number || m_at == place;
    m_isUniform = isInStep && (place > m_text.size() || place == 0 || m_text[place - 1] == '\n');
    m_at = m_isUniform ? std::min<std::size_t>(place, m_text.size()) : 0;
    m_number = m_isUniform ? number : 0;
  }

  /// One line; a single empty one before it is passed over.
  bool TakeLine(std::string_view& line) {
    line = Cut();
    if (line.empty()) line = Cut();
    ++m_number;
    return !line.empty();
  }

  std::string_view Cut() {
    const std::size_t end = std::min(m_text.find('\n', m_at), m_text.size());
    const std::string_view line = m_text.substr(m_at, end - m_at);
    m_at = std::min(end + 1, m_text.size());
    return line;
  }

  std::string_view m_text;
  std::uint64_t m_counted;  ///< lines at the head, which are gone through one by one
  std::size_t m_at = 0;
  std::uint64_t m_number = 0;
  std::uint64_t m_length = 0;
  bool m_isUniform = false;
};

/// The first `count` numbers of a line, as a stream reads them. \return false if there are fewer.
template <class U>
bool ReadNumbers(std::string_view line, std::uint64_t count, std::vector<U>& values) {
  using Standard = std::conditional_t<std::is_same_v<U, Sumara::Long>, std::int32_t, U>;
  std::istringstream stream{std::string(line)};
  Standard value{};
  for (std::uint64_t i = 0; i < count; ++i) {
    if (!(stream >> value)) return false;
    values.push_back(value);
  }
  return true;
}

/// All values of all points that are complete, in the order of the file.
template <class U>
std::vector<U> ReadByModel(std::string_view text, const std::vector<std::uint64_t>& dimensions,
                           const Sumara::DataLayout& layout) {
  ModelLines lines(text, dimensions, layout.headerRecords);
  std::vector<U> values;
  for (std::uint64_t first = layout.headerRecords;; first += layout.LinesPerPoint()) {
    const std::size_t complete = values.size();
    for (std::uint64_t i = 0; i < layout.LinesPerPoint(); ++i) {
      const auto line = lines.Line(first + i);
      if (line && ReadNumbers(*line, layout.ValuesPerLine(), values)) continue;
      values.resize(complete);
      return values;
    }
  }
}

}  // namespace Fuzzing
