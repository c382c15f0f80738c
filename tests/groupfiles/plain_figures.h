#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/error_context.h"
#include "core/exceptions.h"
#include "core/io_base.h"
#include "core/numbers.h"
#include "groupfiles/figure_rows.h"

namespace testing_support {

/// A statistics block with all its values.
template <class T>
struct PlainFigures {
  std::vector<std::vector<T>> uloads;
  std::vector<double> maxTime;
  std::vector<double> minTime;
  std::vector<double> mean;

  bool operator==(const PlainFigures&) const = default;
};

/// All values of the blocks that were found.
template <class T>
std::vector<PlainFigures<T>> FiguresOf(const Sumara::HeaderFigures& header) {
  const Sumara::FigureRows& rows = header.rows;
  const auto count = static_cast<std::size_t>(rows.variableCount);
  const auto line = [&](std::uint64_t block, Sumara::FigureLine which) {
    std::vector<double> values(count);
    Sumara::ReadFigures<double>(header.text.View(), rows.Line(block, which), values);
    return values;
  };
  std::vector<PlainFigures<T>> blocks(static_cast<std::size_t>(rows.BlockCount()));
  for (std::size_t block = 0; block < blocks.size(); ++block) {
    for (std::size_t row = 0; row < 2 * count; ++row) {
      auto& values = blocks[block].uloads.emplace_back(count);
      Sumara::ReadFigures<T>(header.text.View(), rows.UloadsRow(block, row), values);
    }
    blocks[block].maxTime = line(block, Sumara::FigureLine::kMaxTime);
    blocks[block].minTime = line(block, Sumara::FigureLine::kMinTime);
    blocks[block].mean = line(block, Sumara::FigureLine::kMean);
  }
  return blocks;
}

/// Reads statistics blocks the plain way: label by label with the search of a file, a text for
/// each token. What finds rows by counting is held against it.
template <class T>
class PlainFigureReader {
 public:
  /// \param header at the line behind the named parameters.
  PlainFigureReader(CIOBase& header, std::uint64_t variableCount)
      : m_header(header), m_count(variableCount) {}

  std::optional<PlainFigures<T>> Next() {
    CIOBase::Rows rows;
    if (!Seek("ULOADS", rows, {.continuation = true, .oneAttempt = true, .quiet = true}, 119)) {
      std::string label;
      const bool isLine = m_header.PeekLabel(label);
      if (isLine && (label == "MAXTIME" || label == "MINTIME" || label == "MEAN")) Fail(119);
      return std::nullopt;
    }
    if (rows.size() / 2 != m_count || rows.size() % 2 != 0) Fail(119);
    PlainFigures<T> figures;
    for (const auto& row : rows) {
      if (row.size() != m_count) Fail(119);
      Sumara::PopulateFromTokens(row, figures.uloads.emplace_back());
    }
    figures.maxTime = Line("MAXTIME", 120);
    figures.minTime = Line("MINTIME", 121);
    figures.mean = Line("MEAN", 122);
    return figures;
  }

 private:
  [[noreturn]] void Fail(std::int32_t code, const std::string& inner = {}) const {
    throw Sumara::CException(code, Sumara::FileContext(m_header.GetPath()), inner);
  }

  template <class Value>
  bool Seek(const char* label, Value& value, const LabelSearch& how, std::int32_t code) {
    try {
      return m_header.SeekLabel(label, value, how);
    } catch (const CExceptionBase& failure) {
      Fail(code, failure.what());
    }
  }

  std::vector<double> Line(const char* label, std::int32_t code) {
    std::vector<std::string> tokens;
    Seek(label, tokens, {.oneAttempt = true}, code);
    if (tokens.size() != m_count) Fail(code);
    std::vector<double> values;
    Sumara::PopulateFromTokens(tokens, values);
    return values;
  }

  CIOBase& m_header;
  std::uint64_t m_count;
};

}  // namespace testing_support
