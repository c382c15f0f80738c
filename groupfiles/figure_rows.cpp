#include "groupfiles/figure_rows.h"

#include <algorithm>
#include <string>

#include "core/element_types.h"
#include "core/error_context.h"
#include "core/exceptions.h"
#include "core/label_search.h"
#include "core/numbers.h"
#include "core/text.h"

namespace Sumara {
namespace {

constexpr std::int32_t kBadStream = 5007;
constexpr std::int32_t kNotOnNextLine = 5019;
constexpr std::int32_t kNotUpToTheEnd = 5018;

/// What a look at the next line gives.
enum class Look {
  kFound,
  kOther,    ///< another label, or none behind an empty line
  kBlank,    ///< only white space
  kEnd,      ///< no line is left
  kRefused,  ///< the look before has run into the end, or into an empty line
};

/// Lines of a text, by the rules of the search for labels: those of a stream.
class LineCursor {
 public:
  LineCursor(std::string_view text, std::size_t at)
      : m_text(text), m_at(std::min(at, text.size())) {}

  std::size_t At() const { return m_at; }

  /// Looks whether the next line has the label `sought`, past one empty line; `values` is then the
  /// rest of it. If not, the cursor stays, and `label` is what stands there.
  Look LookFor(std::string_view sought, std::string_view& label, std::string_view& values);

  /// Takes the next line if it continues the one before.
  bool TakeContinuation(std::string_view& values);

 private:
  std::string_view TakeLine();
  Look StayAt(std::size_t origin, Look look) {
    m_at = origin;
    m_good = true;
    return look;
  }

  std::string_view m_text;
  std::size_t m_at;
  bool m_good = true;
};

std::string_view LineCursor::TakeLine() {
  const std::size_t end = std::min(m_text.find('\n', m_at), m_text.size());
  const std::string_view line = m_text.substr(m_at, end - m_at);
  m_good = end != m_text.size();
  m_at = m_good ? end + 1 : end;
  return line;
}

Look LineCursor::LookFor(std::string_view sought, std::string_view& label,
                         std::string_view& values) {
  label = {};
  if (!m_good) return Look::kRefused;
  const std::size_t origin = m_at;
  values = TakeLine();
  if (values.empty() && m_good) values = TakeLine();
  if (values.empty()) return StayAt(origin, m_good ? Look::kOther : Look::kEnd);
  const bool isLabelled = TakeToken(values, label);
  if (!isLabelled) return StayAt(origin, m_good ? Look::kBlank : Look::kEnd);
  return label == sought ? Look::kFound : StayAt(origin, Look::kOther);
}

bool LineCursor::TakeContinuation(std::string_view& values) {
  if (m_good) m_good = m_at < m_text.size() && m_text[m_at] != '\n';
  if (!m_good || (m_text[m_at] != ' ' && m_text[m_at] != '\t')) return false;
  values = TakeLine();
  return true;
}

/// `IsSpace` as 1 or 0, in arithmetic of bytes.
constexpr std::uint8_t SpaceBit(char c) {
  const auto fromTab = static_cast<std::uint8_t>(c - '\t');
  const bool isControl = fromTab <= '\r' - '\t';
  return static_cast<std::uint8_t>(static_cast<std::uint8_t>(c == ' ') |
                                   static_cast<std::uint8_t>(isControl));
}

/// Whether a value begins at a place, as 1 or 0: behind white space, and with something else.
constexpr std::uint8_t BeginsValue(char before, char here) {
  return static_cast<std::uint8_t>(SpaceBit(before) & (SpaceBit(here) ^ 1));
}

/// The number of tokens. The loop without a branch, over bytes only, is one that compilers turn
/// into vector code: the rows of a wide group are most of its header.
std::uint64_t CountTokens(std::string_view text) {
  constexpr std::size_t kBlock = 128;  // fewer than a byte can count
  if (text.empty()) return 0;
  std::uint64_t count = IsSpace(text.front()) ? 0 : 1;
  std::size_t at = 1;
  for (; text.size() - at >= kBlock; at += kBlock) {
    const char* const block = text.data() + (at - 1);  // from the character before
    std::uint8_t ofBlock = 0;
    for (std::size_t i = 0; i < kBlock; ++i) {
      ofBlock = static_cast<std::uint8_t>(ofBlock + BeginsValue(block[i], block[i + 1]));
    }
    count += ofBlock;
  }
  for (; at < text.size(); ++at) count += BeginsValue(text[at - 1], text[at]);
  return count;
}

std::size_t PlaceOf(std::string_view header, std::string_view values) {
  return static_cast<std::size_t>(values.data() - header.data());
}

/// Finds the rows of one block of `header`.
class BlockFinder {
 public:
  BlockFinder(std::string_view header, std::size_t start, FigureRows& rows, std::string_view path)
      : m_header(header), m_cursor(header, start), m_rows(rows), m_path(path) {}

  bool Find() {
    if (!FindUloads()) return false;
    FindFigureLine("MAXTIME", 120);
    FindFigureLine("MINTIME", 121);
    FindFigureLine("MEAN", 122);
    return true;
  }

  std::size_t End() const { return m_cursor.At(); }

 private:
  bool FindUloads();
  void FindFigureLine(const char* label, std::int32_t code);
  void AddFigures(std::string_view values, std::int32_t code) {
    if (CountTokens(values) != m_rows.variableCount) throw BlockFailure(code);
    m_rows.places.push_back(PlaceOf(m_header, values));
  }
  CException BlockFailure(std::int32_t code, std::string inner = {}) const {
    return CException(code, FileContext(m_path), std::move(inner));
  }

  std::string_view m_header;
  LineCursor m_cursor;
  FigureRows& m_rows;
  std::string_view m_path;
};

bool BlockFinder::FindUloads() {
  std::string_view label;
  std::string_view values;
  const Look look = m_cursor.LookFor("ULOADS", label, values);
  if (look == Look::kBlank) throw BlockFailure(119, UnreadableLine("ULOADS", {}, m_path).what());
  if (look != Look::kFound) {
    if (IsFigureLabel(label)) throw BlockFailure(119);
    return false;
  }
  std::uint64_t count = 0;
  do {
    // The first row has told that the file holds as many values: twice the number is no overflow.
    if (count / 2 >= m_rows.variableCount) throw BlockFailure(119);
    AddFigures(values, 119);
    ++count;
  } while (m_cursor.TakeContinuation(values));
  if (count != 2 * m_rows.variableCount) throw BlockFailure(119);
  return true;
}

void BlockFinder::FindFigureLine(const char* label, std::int32_t code) {
  std::string_view found;
  std::string_view values;
  switch (m_cursor.LookFor(label, found, values)) {
    case Look::kFound:
      return AddFigures(values, code);
    case Look::kBlank:
      throw BlockFailure(code, UnreadableLine(label, {}, m_path).what());
    case Look::kOther:
      throw BlockFailure(code, LabelNotFound(label, m_path, kNotOnNextLine).what());
    case Look::kEnd:
      throw BlockFailure(code, LabelNotFound(label, m_path, kNotUpToTheEnd).what());
    case Look::kRefused:
      throw BlockFailure(code, LabelNotFound(label, m_path, kNotOnNextLine, kBadStream).what());
  }
}

template <class T>
T TakeFigure(std::string_view& row) {
  std::string_view token;
  TakeToken(row, token);
  T value{};
  ExtractNumber(token, value);
  return value;
}

std::string_view LineAt(std::string_view header, std::size_t place) {
  const std::string_view rest = header.substr(place);
  return rest.substr(0, rest.find('\n'));
}

}  // namespace

bool IsFigureLabel(std::string_view label) {
  return label == "ULOADS" || label == "MAXTIME" || label == "MINTIME" || label == "MEAN";
}

std::optional<std::size_t> FindFigureBlock(std::string_view header, std::size_t start,
                                           FigureRows& rows, std::string_view path) {
  const std::size_t present = rows.places.size();
  BlockFinder finder(header, start, rows, path);
  try {
    if (finder.Find()) return finder.End();
  } catch (...) {
    rows.places.resize(present);
    throw;
  }
  return std::nullopt;
}

FigureRows FindFigureRows(std::string_view header, std::size_t start, std::uint64_t variableCount,
                          std::uint64_t mostBlocks, std::string_view path) {
  FigureRows rows;
  rows.variableCount = variableCount;
  std::optional<std::size_t> next = start;
  for (std::uint64_t block = 0; block < mostBlocks && next; ++block) {
    next = FindFigureBlock(header, *next, rows, path);
  }
  return rows;
}

std::uint64_t CountFigures(std::string_view header, std::size_t place) {
  return CountTokens(LineAt(header, place));
}

template <class T>
void ReadFigures(std::string_view header, std::size_t place, std::span<T> values) {
  std::string_view row = LineAt(header, place);
  for (T& value : values) value = TakeFigure<T>(row);
}

template <class T>
T ReadFigure(std::string_view header, std::size_t place, std::uint64_t column) {
  std::string_view row = LineAt(header, place);
  std::string_view passed;
  for (std::uint64_t i = 0; i < column; ++i) TakeToken(row, passed);
  return TakeFigure<T>(row);
}

#define TABULON_INSTANTIATE(T)                                            \
  template void ReadFigures(std::string_view, std::size_t, std::span<T>); \
  template T ReadFigure(std::string_view, std::size_t, std::uint64_t);
TABULON_FOR_EACH_ELEMENT_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE

}  // namespace Sumara
