#include "groupfiles/header_reader.h"

#include <charconv>
#include <utility>

#include "core/error_context.h"
#include "core/numbers.h"
#include "core/text.h"

namespace Sumara {
namespace {

constexpr LabelSearch kForward{.continuation = true};
constexpr LabelSearch kForwardOneLine{};
constexpr LabelSearch kNextLineIfThere{.oneAttempt = true, .quiet = true};

/// A whole number without a sign, from the front of `text`; what a stream would leave is left.
std::optional<std::uint64_t> TakeCount(std::string_view& text) {
  while (!text.empty() && IsSpace(text.front())) text.remove_prefix(1);
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{}) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return value;
}

int ParseInteger(std::string_view text) {
  int value = 0;
  ExtractNumber(text, value);
  return value;
}

/// The integers of DIMENS up to the first token that is none. \throws CIOException 5015
std::vector<std::uint64_t> ParseDimensions(std::string_view text) {
  if (text.empty()) throw CIOException(5015);
  std::vector<std::uint64_t> dimensions;
  while (const auto count = TakeCount(text)) dimensions.push_back(*count);
  return dimensions;
}

}  // namespace

std::uint32_t DataTypeOfFormat(std::string_view format) {
  static constexpr std::pair<std::string_view, std::uint32_t> kFormats[] = {
      {"R*4", kFloatCode}, {"R4", kFloatCode},  {"n/a", kFloatCode}, {"R*8", kDoubleCode},
      {"R8", kDoubleCode}, {"I*2", kShortCode}, {"I2", kShortCode},  {"I*4", kIntCode},
      {"I4", kIntCode},    {"I*8", kLongCode},  {"I8", kLongCode},
  };
  for (const auto& [spelling, code] : kFormats) {
    if (format == spelling) return code;
  }
  return 0;
}

CHeaderReader::CHeaderReader(std::string path)
    : CReader<float, float>(std::move(path), static_cast<std::int32_t>(FileMode::kReadText)) {}

void CHeaderReader::Start() {
  try {
    Open();
    Prepare();
  } catch (const CExceptionBase& failure) {
    throw CException(81, Context(), failure.what());
  }
}

std::string CHeaderReader::Context() const { return FileContext(m_path); }

std::string CHeaderReader::Field(const char* label, std::int32_t code, bool continuation) {
  std::string value;
  try {
    SeekLabel(label, value, continuation ? kForward : kForwardOneLine);
  } catch (const CExceptionBase& failure) {
    throw CException(code, Context(), failure.what());
  }
  return value;
}

std::string CHeaderReader::QuotedField(const char* label, std::int32_t code) {
  std::string value = Field(label, code);
  StripQuotes(value);
  return value;
}

NameList CHeaderReader::QuotedList(std::string value, std::int32_t code) const {
  try {
    return NameList::Split(std::move(value), '\'');
  } catch (const CExceptionBase& failure) {
    throw CException(code, Context(), failure.what());
  }
}

double CHeaderReader::NumberField(const char* label, std::int32_t code) {
  const std::string value = Field(label, code, /*continuation=*/false);
  std::string_view text = value;
  double number = 0.0;
  if (!ExtractNumber(text, number)) throw CException(code, Context());
  return number;
}

HeaderTop CHeaderReader::ReadTop() {
  HeaderTop top;
  SeekLabel("FILE", top.dataFileName, {.rewind = true});
  StripQuotes(top.dataFileName);

  std::string access;
  std::string unused;
  SeekLabel("ACCESS", access, kForward);
  SeekLabel("FORM", unused, kForward);
  SeekLabel("RECL", unused, kForward);  // the word size comes from FORMAT
  if (access != "D" && access != "S") throw CException(97, Context());
  top.binary = access == "D";

  top.dataType = DataTypeOfFormat(Field("FORMAT", 98, /*continuation=*/false));
  if (top.dataType == 0) throw CException(127, Context());
  top.headerRecordCount = ReadHeaderRecordCount();

  top.content = QuotedField("CONTENT", 99);
  top.config = QuotedField("CONFIG", 100);
  const int dimensionCount = ParseInteger(Field("NDIMENS", 101));
  const std::string dimensions = Field("DIMENS", 118);
  top.name = QuotedField("GENLAB", 102);

  if (dimensionCount != 2 && dimensionCount != 3) throw CException(128, Context());
  top.axisCount = static_cast<std::uint32_t>(dimensionCount - 1);
  try {
    top.dimensions = ParseDimensions(dimensions);
  } catch (const CIOException& failure) {
    throw CException(126, Context(), failure.what());
  }
  if (top.dimensions.empty()) throw CException(126, Context());
  return top;
}

std::uint64_t CHeaderReader::ReadHeaderRecordCount() {
  std::string value;
  try {
    if (!SeekLabel("HEADREC", value, kNextLineIfThere)) return 0;
  } catch (const CExceptionBase&) {
    return 0;  // the field behind tells what is wrong with the line
  }
  std::string_view text = value;
  return TakeCount(text).value_or(0);
}

AxisDescription CHeaderReader::ReadAxis(const HeaderTop& top, std::size_t entry) {
  if (entry >= top.dimensions.size()) throw CException(130, Context());
  AxisDescription axis;
  axis.pointCount = top.dimensions[entry];
  axis.name = QuotedField("AXISLAB", 104);
  axis.quantity = QuotedField("AXIUNIT", 105);
  const int method = ParseInteger(Field("AXIMETH", 106));
  if (method < 1 || method > 3) throw CException(129, Context());
  axis.method = static_cast<AxisMethod>(method);
  ReadAxisValues(axis);
  return axis;
}

void CHeaderReader::ReadAxisValues(AxisDescription& axis) {
  switch (axis.method) {
    case AxisMethod::kStrings:
      axis.labels = QuotedList(Field("AXITICK", 109), 110).Strings();
      break;
    case AxisMethod::kInterval:
      axis.minimum = NumberField("MIN", 111);
      axis.step = NumberField("STEP", 112);
      break;
    case AxisMethod::kValues: {
      const std::string value = Field("AXIVAL", 107);
      if (value.empty()) throw CIOException(5015);
      std::string_view text = value;
      double number = 0.0;
      while (!IsOnlyWhitespace(text)) {
        if (!ExtractNumber(text, number)) throw CException(108, Context());
        axis.values.push_back(number);
      }
      break;
    }
  }
}

std::vector<std::string> CHeaderReader::ReadNamedParameters() {
  std::string value;
  std::vector<std::string> lines;
  try {
    if (!SeekLabel("NVARS", value, kNextLineIfThere)) return lines;
    std::string_view text = value;
    const auto count = TakeCount(text);
    if (!count) throw CException(103, Context());
    for (std::uint64_t i = 0; i < *count; ++i) {
      std::string_view line;
      if (!m_stream.GetLine(line)) throw CIOException(5008, StreamStateText());
      ++m_lineNumber;
      if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
      lines.emplace_back(line);
    }
  } catch (const CIOException& failure) {
    throw CException(103, Context(), failure.what());
  }
  return lines;
}

HeaderVariables CHeaderReader::ReadVariables() {
  HeaderVariables variables;
  std::string value;
  try {
    SeekLabel("VARIAB", value, {.continuation = true, .rewind = true});
  } catch (const CExceptionBase& failure) {
    throw CException(113, Context(), failure.what());
  }
  variables.names = QuotedList(std::move(value), 114);
  variables.quantities = QuotedList(Field("VARUNIT", 115), 116);
  if (variables.names.Size() != variables.quantities.Size()) throw CException(117, Context());
  return variables;
}

HeaderFigures CHeaderReader::ReadFigures(std::uint64_t variableCount, std::uint64_t mostBlocks) {
  std::string label;
  // An empty line behind the value before leaves the stream so that nothing is found. Of a header
  // that goes on with other lines the rest is not read.
  if (!IsGood() || mostBlocks == 0 || (PeekLabel(label) && !IsFigureLabel(label))) {
    HeaderFigures none;
    none.rows.variableCount = variableCount;
    return none;
  }
  return ReadFiguresAt(m_stream.Tell(), variableCount, mostBlocks);
}

HeaderFigures CHeaderReader::ReadFiguresAt(std::uint64_t position, std::uint64_t variableCount,
                                           std::uint64_t mostBlocks) {
  HeaderFigures figures;
  m_stream.Seek(position);
  figures.file = m_stream.SystemFile().State();
  figures.start = position;
  figures.text = m_stream.ReadRest();
  figures.size = figures.text.size;
  if (m_stream.Bad()) {
    throw CException(119, Context(), CIOException(5007, StreamStateText()).what());
  }
  figures.rows = FindFigureRows(figures.text.View(), 0, variableCount, mostBlocks, m_path);
  if (figures.rows.BlockCount() == 0) figures.text = {};
  return figures;
}

}  // namespace Sumara
