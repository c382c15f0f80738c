#pragma once

#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "core/exceptions.h"
#include "core/io_base.h"
#include "tests/fuzz/text_model.h"

// The search for labelled lines, told once more step by step on a standard stream. A refusal is the
// code that it would have.

namespace Fuzzing {

/// A failure of the model, by the code of the library's.
struct Refusal {
  std::int32_t code;
};

class ModelFile {
 public:
  using Rows = CIOBase::Rows;

  explicit ModelFile(std::string_view text) : m_stream(std::string(text)) {}

  std::uint64_t Position() {
    return static_cast<std::uint64_t>(
        std::streamoff{m_stream.rdbuf()->pubseekoff(0, std::ios::cur, std::ios::in)});
  }
  bool Eof() const { return m_stream.eof(); }
  bool Fail() const { return m_stream.fail(); }
  std::uint64_t LineNumber() const { return m_lineNumber; }

  bool SeekLabel(const std::string& label, Rows& rows, const LabelSearch& how, char quote) {
    if (label.empty()) throw Refusal{5014};
    const std::uint64_t origin = Position();
    if (how.rewind) GoTo(0);
    if (m_stream.good()) {
      const bool isFound = FindLine(label, rows, how, quote, origin);
      if (isFound && !how.keepPosition) return true;
      GoTo(origin);
      if (isFound) return true;
    }
    if (how.quiet) return false;
    throw Refusal{how.oneAttempt ? 5019 : 5018};
  }

  bool PeekLabel(std::string& label) {
    const std::uint64_t origin = Position();
    bool isLabel = false;
    try {
      std::vector<std::string> tokens;
      ReadTokens(tokens, '\0');
      isLabel = !tokens.empty();
      if (isLabel) label = tokens.front();
    } catch (const Refusal&) {
      isLabel = false;
    }
    GoTo(origin);
    return isLabel;
  }

  void SkipToLabel(const std::string& label) {
    if (label.empty()) throw Refusal{5014};
    const std::uint64_t origin = Position();
    if (!m_stream.good()) throw Refusal{5018};
    Rows rows;
    while (m_stream.good()) {
      const std::uint64_t start = Position();
      if (TryLine(label, rows, {}, '\0', origin)) {
        GoTo(start);
        return;
      }
    }
    GoTo(origin);
    throw Refusal{5018};
  }

  bool ReadLine(std::string& line, bool tolerant) {
    line.clear();
    std::getline(m_stream, line);
    if (line.empty() && m_stream.good()) std::getline(m_stream, line);
    ++m_lineNumber;
    if (!line.empty()) return true;
    if (tolerant || m_stream.good()) return false;
    throw Refusal{m_stream.eof() ? 5008 : 5007};
  }

  void Rewind() {
    GoTo(0);
    m_lineNumber = 0;
  }

 private:
  void GoTo(std::uint64_t position) {
    m_stream.clear();
    m_stream.seekg(static_cast<std::streamoff>(position));
  }

  bool FindLine(const std::string& label, Rows& rows, const LabelSearch& how, char quote,
                std::uint64_t origin) {
    while (m_stream.good()) {
      if (TryLine(label, rows, how, quote, origin)) return true;
      rows.clear();
      if (how.oneAttempt) return false;
    }
    return false;
  }

  /// Looks at one logical line; a failure goes back to where the search began.
  bool TryLine(const std::string& label, Rows& rows, const LabelSearch& how, char quote,
               std::uint64_t origin) {
    try {
      return CollectLine(label, rows, how.continuation, quote);
    } catch (const Refusal&) {
      const bool atEnd = m_stream.eof();
      GoTo(origin);
      if (!atEnd) throw;
      rows.clear();
      if (how.quiet && how.oneAttempt) return false;
      throw Refusal{5018};
    }
  }

  bool CollectLine(const std::string& label, Rows& rows, bool continuation, char quote) {
    rows.clear();
    std::vector<std::string> tokens;
    try {
      const bool isLine = ReadTokens(tokens, quote);
      if (isLine && tokens.empty()) throw Refusal{5009};
      if (tokens.empty() || tokens.front() != label) return false;
      rows.emplace_back(tokens.begin() + 1, tokens.end());
      while (continuation && ContinuesOnNextLine()) ReadTokens(rows.emplace_back(), quote);
    } catch (const Refusal&) {
      throw Refusal{5009};
    }
    return true;
  }

  bool ReadTokens(std::vector<std::string>& tokens, char quote) {
    std::string line;
    if (!ReadLine(line, /*tolerant=*/false)) return false;
    if (line.back() == '\r') line.pop_back();
    try {
      tokens = TokensByModel(line, quote, /*keepQuotes=*/false);
    } catch (const CIOException& failure) {
      throw Refusal{failure.ErrorCode()};
    }
    return true;
  }

  bool ContinuesOnNextLine() {
    const std::uint64_t start = Position();
    char next[2] = {};
    m_stream.get(next, sizeof(next));
    if (m_stream.fail()) return false;
    m_stream.seekg(static_cast<std::streamoff>(start));
    return next[0] == ' ' || next[0] == '\t';
  }

  std::istringstream m_stream;
  std::uint64_t m_lineNumber = 0;
};

}  // namespace Fuzzing
