// Tokens, quotes and the search for labels, held against models on standard streams.
//
// An input is a list of operations, one a line, up to the line "--"; what follows is the file on
// which they run. An operation is a letter, switches and, behind a blank, a label.

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "core/io_base.h"
#include "core/text.h"
#include "tests/fuzz/fuzzing.h"
#include "tests/fuzz/label_model.h"
#include "tests/fuzz/scratch.h"
#include "tests/fuzz/text_model.h"

namespace {

using Fuzzing::ModelFile;
using Fuzzing::RefusalOf;
using Fuzzing::Require;
using Fuzzing::RequireSame;
using Rows = CIOBase::Rows;

// Functions on texts.

std::string Listed(const std::vector<std::string>& tokens) {
  std::string text;
  for (const std::string& token : tokens) text += "<" + token + ">";
  return text;
}

void CheckSplitting(std::string_view text, char quote, bool keepQuotes) {
  std::vector<std::string> found;
  std::vector<std::string> expected;
  const std::string refusal =
      RefusalOf([&] { Sumara::SplitTokens(text, found, quote, keepQuotes); });
  const std::string expectedRefusal =
      RefusalOf([&] { expected = Fuzzing::TokensByModel(text, quote, keepQuotes); });
  RequireSame(refusal, expectedRefusal, "another refusal of a list of tokens");
  if (refusal.empty()) RequireSame(Listed(found), Listed(expected), "other tokens");
}

void CheckTexts(std::string_view text) {
  for (const char quote : {'\0', '\'', '"'}) {
    CheckSplitting(text, quote, /*keepQuotes=*/false);
    CheckSplitting(text, quote, /*keepQuotes=*/true);
  }
  std::string stripped(text);
  Sumara::StripQuotes(stripped);
  RequireSame(stripped, Fuzzing::StripQuotesByModel(text), "other quotes stripped");
  std::string collapsed = "x";
  Sumara::AppendCollapsed(collapsed, text);
  RequireSame(collapsed, "x" + Fuzzing::CollapseByModel(text), "white space collapsed otherwise");
  Require(Sumara::IsOnlyWhitespace(text) == Fuzzing::WordsByModel(text).empty(),
          "white space is told from words otherwise");
}

// The search.

class OpenFile final : public CIOBase {
 public:
  using CIOBase::CIOBase;
  const Sumara::FileStream& Stream() const { return m_stream; }
};

struct Operation {
  char kind = '\0';
  LabelSearch how;
  char quote = '\0';
  std::string label;
};

Operation ReadOperation(std::string_view line) {
  Operation operation;
  if (line.empty()) return operation;
  operation.kind = line.front();
  const std::string_view switches = Fuzzing::TakePiece(line, " ");
  const auto has = [&](char c) { return switches.find(c, 1) != std::string_view::npos; };
  operation.how.continuation = has('c');
  operation.how.rewind = has('r');
  operation.how.keepPosition = has('k');
  operation.how.oneAttempt = has('o');
  operation.how.quiet = has('q');
  operation.how.joinWithBlanks = has('j');
  operation.quote = has('\'') ? '\'' : '\0';
  operation.label = line;
  return operation;
}

/// What an operation gives: its answer and value, or the code of its refusal.
struct Outcome {
  std::int32_t code = 0;
  bool answer = false;
  std::string value;
};

std::string Described(const Rows& rows) {
  std::string text;
  for (const auto& row : rows) text += Listed(row) + "\n";
  return text;
}

std::vector<std::string> Flattened(const Rows& rows) {
  std::vector<std::string> tokens;
  for (const auto& row : rows) tokens.insert(tokens.end(), row.begin(), row.end());
  return tokens;
}

std::string Joined(const Rows& rows, char joint) {
  std::string text;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (i > 0) text += joint;
    text += Fuzzing::JoinWords(rows[i]);
  }
  return text;
}

void Seek(OpenFile& file, const Operation& operation, Outcome& outcome) {
  const auto& [kind, how, quote, label] = operation;
  std::vector<std::string> tokens;
  Rows rows;
  if (kind == 's') {
    outcome.answer = file.SeekLabel(label, outcome.value, how);
  } else if (kind == 't') {
    outcome.answer = file.SeekLabel(label, tokens, how, quote);
    outcome.value = Listed(tokens);
  } else {
    outcome.answer = file.SeekLabel(label, rows, how, quote);
    outcome.value = Described(rows);
  }
}

void Seek(ModelFile& file, const Operation& operation, Outcome& outcome) {
  const auto& [kind, how, quote, label] = operation;
  Rows rows;
  outcome.answer = file.SeekLabel(label, rows, how, kind == 's' ? '\0' : quote);
  if (kind == 's') {
    outcome.value = Joined(rows, how.joinWithBlanks ? ' ' : '\n');
  } else {
    outcome.value = kind == 't' ? Listed(Flattened(rows)) : Described(rows);
  }
}

template <class AnyFile>
Outcome Perform(AnyFile& file, const Operation& operation) {
  Outcome outcome;
  switch (operation.kind) {
    case 's':
    case 't':
    case 'w':
      Seek(file, operation, outcome);
      break;
    case 'p':
      outcome.answer = file.PeekLabel(outcome.value);
      break;
    case 'k':
      file.SkipToLabel(operation.label);
      break;
    case 'l':
      outcome.answer = file.ReadLine(outcome.value, /*tolerant=*/operation.how.quiet);
      break;
    default:
      file.Rewind();
      break;
  }
  return outcome;
}

void CheckOperation(OpenFile& file, ModelFile& model, const Operation& operation) {
  Outcome found;
  Outcome expected;
  try {
    found = Perform(file, operation);
  } catch (const CIOException& refusal) {
    found.code = refusal.ErrorCode();
  }
  try {
    expected = Perform(model, operation);
  } catch (const Fuzzing::Refusal& refusal) {
    expected.code = refusal.code;
  }
  RequireSame(std::to_string(found.code), std::to_string(expected.code), "another refusal");
  Require(found.answer == expected.answer, "another answer");
  // What a miss leaves behind is told only where there was one attempt.
  if (expected.answer || (operation.how.oneAttempt && expected.code == 0)) {
    RequireSame(found.value, expected.value, "another value");
  }
  Require(file.Stream().Tell() == model.Position(), "another position");
  Require(file.Stream().Eof() == model.Eof(), "another end of the file");
  Require(file.Stream().Fail() == model.Fail(), "another fail flag");
  Require(file.GetLineNumber() == model.LineNumber(), "another line number");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view text = Fuzzing::TextOf(data, size);
  std::string_view operations = Fuzzing::TakePiece(text, "\n--\n");
  CheckTexts(text);
  OpenFile file(Fuzzing::Scratch::Instance().Write("run.%01", text),
                static_cast<std::int32_t>(FileMode::kReadText));
  file.Open();
  ModelFile model(text);
  while (!operations.empty()) {
    CheckOperation(file, model, ReadOperation(Fuzzing::TakePiece(operations, "\n")));
  }
  return 0;
}
