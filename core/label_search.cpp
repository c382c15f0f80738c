#include "core/label_search.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/io_base.h"
#include "core/text.h"

// The search for labelled lines. A logical line is a line whose first token is its label, with the
// lines behind it that begin with a blank or a tab; each of these gives a row of the value.

namespace Sumara {

/// Takes the value of a logical line, row by row.
class RowSink {
 public:
  virtual ~RowSink() = default;
  virtual void Clear() = 0;
  virtual void AddRow(std::string_view text) = 0;
};

CIOException LabelNotFound(std::string_view label, std::string_view path, std::int32_t code,
                           std::int32_t refusal) {
  std::string context = "label sought = ";
  context.append(label).append("; path: ").append(path);
  return CIOException(code, std::move(context),
                      refusal == 0 ? std::string() : IOErrorText(refusal));
}

CIOException UnreadableLine(std::string_view sought, std::string_view current,
                            std::string_view path, std::string_view reason) {
  std::string context = "label sought = ";
  context.append(sought).append("; current label = ").append(current);
  context.append("; path: ").append(path);
  return CIOException(5009, std::move(context), std::string(reason));
}

}  // namespace Sumara

namespace {

/// The tokens of all rows as one text: joined by one blank, rows by `joint`.
class TextSink final : public Sumara::RowSink {
 public:
  TextSink(std::string& value, char joint) : m_value(value), m_joint(joint) {}

  void Clear() override { m_value.clear(); }

  void AddRow(std::string_view text) override {
    if (std::exchange(m_started, true)) {
      m_value += m_joint;
    } else {
      m_value.clear();
    }
    Sumara::AppendCollapsed(m_value, Sumara::TrimSpace(text));
  }

 private:
  std::string& m_value;
  char m_joint;
  bool m_started = false;
};

/// The tokens of all rows as one list.
class TokenSink final : public Sumara::RowSink {
 public:
  TokenSink(std::vector<std::string>& tokens, char quote) : m_tokens(tokens), m_quote(quote) {}

  void Clear() override { m_tokens.clear(); }

  void AddRow(std::string_view text) override {
    if (!std::exchange(m_started, true)) m_tokens.clear();
    Sumara::SplitTokens(text, m_tokens, m_quote);
  }

 private:
  std::vector<std::string>& m_tokens;
  char m_quote;
  bool m_started = false;
};

/// The tokens, a list for each row.
class TableSink final : public Sumara::RowSink {
 public:
  using Rows = CIOBase::Rows;
  TableSink(Rows& rows, char quote) : m_rows(rows), m_quote(quote) {}

  void Clear() override { m_rows.clear(); }

  void AddRow(std::string_view text) override {
    if (!std::exchange(m_started, true)) m_rows.clear();
    auto& row = m_rows.emplace_back();
    if (m_rows.size() > 1) row.reserve(m_rows.front().size());  // rows of a table are alike
    Sumara::SplitTokens(text, row, m_quote);
  }

 private:
  Rows& m_rows;
  char m_quote;
  bool m_started = false;
};

/// Takes the label off the front of a line. A quote character counts as in `SplitTokens`.
bool TakeLabel(std::string_view& text, std::string& label, char quote) {
  if (quote != '\0') return Sumara::TakeQuotedToken(text, label, quote);
  std::string_view token;
  const bool isLabel = Sumara::TakeToken(text, token);
  label.assign(token);
  return isLabel;
}

/// The rest of a line that is not wanted must still be well formed.
void CheckQuotes(std::string_view text, char quote) {
  std::string token;
  while (quote != '\0' && Sumara::TakeQuotedToken(text, token, quote)) {
  }
}

/// Takes one step of reading a logical line; `current` is the label so far.
template <class Step>
void Collect(std::string_view sought, std::string_view current, std::string_view path, Step step) {
  try {
    step();
  } catch (const CExceptionBase& failure) {
    throw Sumara::UnreadableLine(sought, current, path, failure.what());
  }
}

}  // namespace

bool CIOBase::SeekLabel(std::string_view label, std::string& value, const LabelSearch& how) {
  TextSink sink(value, how.joinWithBlanks ? ' ' : '\n');
  return SeekRows(label, sink, how, '\0');
}

bool CIOBase::SeekLabel(std::string_view label, std::vector<std::string>& tokens,
                        const LabelSearch& how, char quote) {
  TokenSink sink(tokens, quote);
  return SeekRows(label, sink, how, quote);
}

bool CIOBase::SeekLabel(std::string_view label, Rows& rows, const LabelSearch& how, char quote) {
  TableSink sink(rows, quote);
  return SeekRows(label, sink, how, quote);
}

bool CIOBase::PeekLabel(std::string& label) {
  const std::uint64_t origin = m_stream.Tell();
  bool isLabel = false;
  try {
    std::string_view text;
    isLabel = ReadTextLine(text) && TakeLabel(text, label, '\0');
  } catch (const CExceptionBase&) {
    isLabel = false;
  }
  ReturnTo(origin);
  return isLabel;
}

void CIOBase::SkipToLabel(std::string_view label) {
  if (label.empty()) throw CIOException(5014, m_path);
  const std::uint64_t origin = m_stream.Tell();
  std::string ignored;
  TextSink sink(ignored, ' ');
  const std::int32_t refusal = RefusalCode();
  std::uint64_t lineStart = origin;
  bool found = false;
  while (refusal == 0 && !found && m_stream.Good()) {
    lineStart = m_stream.Tell();
    found = LookAtLine(label, sink, {}, '\0', origin);
  }
  if (refusal == 0) ReturnTo(found ? lineStart : origin);
  if (!found) throw Sumara::LabelNotFound(label, m_path, 5018, refusal);
}

bool CIOBase::SeekRows(std::string_view label, Sumara::RowSink& sink, const LabelSearch& how,
                       char quote) {
  if (label.empty()) throw CIOException(5014, m_path);
  const std::uint64_t origin = m_stream.Tell();
  if (how.rewind) {
    m_stream.Clear();
    m_stream.Seek(0);
  }
  const std::int32_t refusal = RefusalCode();
  if (refusal == 0) {
    const bool found = FindLine(label, sink, how, quote, origin);
    if (found && !how.keepPosition) return true;
    ReturnTo(origin);
    if (found) return true;
  }
  if (how.quiet) return false;
  throw Sumara::LabelNotFound(label, m_path, how.oneAttempt ? 5019 : 5018, refusal);
}

bool CIOBase::FindLine(std::string_view label, Sumara::RowSink& sink, const LabelSearch& how,
                       char quote, std::uint64_t origin) {
  while (m_stream.Good()) {
    if (LookAtLine(label, sink, how, quote, origin)) return true;
    if (how.oneAttempt) {
      sink.Clear();
      return false;
    }
  }
  return false;
}

/// Collects the next logical line. A failure leaves the stream at `origin`, without flags.
bool CIOBase::LookAtLine(std::string_view label, Sumara::RowSink& sink, const LabelSearch& how,
                         char quote, std::uint64_t origin) {
  try {
    return CollectLogicalLine(label, sink, how.continuation, quote);
  } catch (const CExceptionBase&) {
    const bool atEnd = m_stream.Eof();
    ReturnTo(origin);
    if (!atEnd) throw;
    if (how.quiet && how.oneAttempt) return false;  // a header may end behind its last axis
    throw Sumara::LabelNotFound(label, m_path, 5018);
  }
}

/// Reads the next line and, if it has the label, gives `sink` its value. A line of another label is
/// consumed, but not its continuation lines.
/// \return whether the line has the label.
/// \throws CIOException 5009
bool CIOBase::CollectLogicalLine(std::string_view sought, Sumara::RowSink& sink, bool continuation,
                                 char quote) {
  std::string_view text;
  std::string label;
  bool isLine = false;
  bool isLabelled = false;
  Collect(sought, /*current=*/"", m_path, [&] {
    isLine = ReadTextLine(text);
    isLabelled = TakeLabel(text, label, quote);
    if (label == sought) {
      sink.AddRow(text);
    } else {
      CheckQuotes(text, quote);
    }
  });
  if (isLine && !isLabelled) throw Sumara::UnreadableLine(sought, /*current=*/"", m_path);
  if (label != sought) return false;
  Collect(sought, sought, m_path, [&] {
    while (continuation && ContinuesOnNextLine()) {
      ReadTextLine(text);
      sink.AddRow(text);
    }
  });
  return true;
}

/// Reads a line, without a carriage return at its end.
bool CIOBase::ReadTextLine(std::string_view& text) {
  const bool isLine = ReadHeaderLine(text, /*tolerant=*/false);
  if (isLine && text.back() == '\r') text.remove_suffix(1);
  return isLine;
}

/// Looks at the first character of the next line. An empty line, or none, leaves the fail flag set.
bool CIOBase::ContinuesOnNextLine() {
  const std::uint64_t lineStart = m_stream.Tell();
  const char first = m_stream.GetBeforeLineFeed();
  if (m_stream.Fail()) return false;
  m_stream.Seek(lineStart);
  return first == ' ' || first == '\t';
}

void CIOBase::ReturnTo(std::uint64_t position) {
  m_stream.Clear();
  m_stream.Seek(position);
}

/// The code for a stream that cannot be searched, or 0.
std::int32_t CIOBase::RefusalCode() const {
  if (!IsOpen()) return 5004;
  return IsGood() ? 0 : 5007;
}
