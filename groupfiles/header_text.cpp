#include "groupfiles/header_text.h"

#include <cmath>
#include <type_traits>

#include "core/element_types.h"
#include "core/numbers.h"
#include "core/text.h"

namespace Sumara {
namespace {

void AppendLine(std::string& text, std::string_view label, std::string_view value) {
  text.append(label).append("\t").append(value).append("\n");
}

void AppendQuotedLine(std::string& text, std::string_view label, std::string_view value) {
  text.append(label).append("\t'").append(value).append("'\n");
}

/// Quantity codes stand in quotes only where they would fall apart without.
void AppendQuantity(std::string& text, std::string_view quantity) {
  const bool quoted = ContainsWhitespace(quantity);
  if (quoted) text += '\'';
  text.append(quantity);
  if (quoted) text += '\'';
}

/// Appends the items with a blank between them, each as `append` writes it.
template <class Items, class Append>
void AppendList(std::string& text, const Items& items, Append append) {
  bool first = true;
  for (const auto& item : items) {
    if (!first) text += ' ';
    first = false;
    append(item);
  }
}

template <class Items>
void AppendQuotedList(std::string& text, const Items& items) {
  AppendList(text, items,
             [&](std::string_view item) { text.append("'").append(item).append("'"); });
}

template <class T>
bool IsNegative(T value) {
  if constexpr (std::is_floating_point_v<T>) {
    return std::signbit(value);
  } else {
    return static_cast<std::int32_t>(value) < 0;
  }
}

/// A number of a statistics row; the sign takes the place of a blank, so that numbers line up.
template <class T>
void AppendAligned(std::string& text, T value, int precision) {
  text.append(IsNegative(value) ? "  " : "   ");
  if constexpr (std::is_floating_point_v<T>) {
    AppendScientific(text, value, precision, /*upperCase=*/true);
  } else {
    text.append(std::to_string(static_cast<std::int32_t>(value)));
  }
}

template <class T>
void AppendAlignedRow(std::string& text, const std::vector<T>& values, int precision) {
  for (const T value : values) AppendAligned(text, value, precision);
  text += '\n';
}

void AppendAxisValues(std::string& text, const AxisDescription& axis, int precision) {
  switch (axis.method) {
    case AxisMethod::kStrings:
      text.append("AXITICK\t");
      AppendQuotedList(text, axis.labels);
      break;
    case AxisMethod::kInterval:
      text.append("MIN \t");
      AppendScientific(text, axis.minimum, precision, /*upperCase=*/true);
      text.append("\nSTEP\t");
      AppendScientific(text, axis.step, precision, /*upperCase=*/true);
      break;
    case AxisMethod::kValues:
      text.append("AXIVAL\t");
      AppendList(text, axis.values, [&](double value) { AppendFixed(text, value, precision); });
      break;
  }
  text += '\n';
}

}  // namespace

int RecordLengthOf(std::uint32_t dataType) {
  switch (dataType) {
    case kFloatCode:
    case kIntCode:
      return 4;
    case kDoubleCode:
    case kLongCode:
      return 8;
    case kShortCode:
      return 2;
    default:
      return 0;
  }
}

std::string FormatOf(std::uint32_t dataType) {
  const bool isReal = dataType == kFloatCode || dataType == kDoubleCode;
  return (isReal ? "R*" : "I*") + std::to_string(RecordLengthOf(dataType));
}

std::string DimensionsText(const std::vector<std::uint64_t>& dimensions) {
  std::string text;
  for (const std::uint64_t size : dimensions) {
    if (!text.empty()) text += '\t';
    text.append(std::to_string(size));
  }
  return text;
}

std::string TopText(const HeaderTop& top) {
  std::string text;
  AppendLine(text, "FILE", top.dataFileName);
  AppendLine(text, "ACCESS", top.binary ? "D" : "S");
  AppendLine(text, "FORM", "F");
  AppendLine(text, "RECL", std::to_string(RecordLengthOf(top.dataType)));
  AppendLine(text, "FORMAT", FormatOf(top.dataType));
  AppendQuotedLine(text, "CONTENT", top.content);
  AppendQuotedLine(text, "CONFIG", top.config);
  AppendLine(text, "NDIMENS", std::to_string(top.axisCount + 1));
  AppendLine(text, "DIMENS", DimensionsText(top.dimensions));
  AppendQuotedLine(text, "GENLAB", top.name);
  return text;
}

std::string VariablesText(const HeaderVariables& variables) {
  std::string text = "VARIAB\t";
  AppendQuotedList(text, variables.names);
  text.append("\nVARUNIT\t");
  AppendList(text, variables.quantities,
             [&](std::string_view quantity) { AppendQuantity(text, quantity); });
  text += '\n';
  return text;
}

std::string AxisText(const AxisDescription& axis, int precision) {
  std::string text;
  AppendQuotedLine(text, "AXISLAB", axis.name);
  text.append("AXIUNIT\t");
  AppendQuantity(text, axis.quantity);
  text += '\n';
  AppendLine(text, "AXIMETH", std::to_string(static_cast<std::int32_t>(axis.method)));
  AppendAxisValues(text, axis, precision);
  return text;
}

std::string NamedParametersText(const std::vector<std::string>& lines) {
  std::string text;
  AppendLine(text, "NVARS", std::to_string(lines.size()));
  for (const std::string& line : lines) text.append(line).append("\n");
  return text;
}

template <class T>
std::string UloadsText(const std::vector<std::vector<T>>& rows, int precision) {
  std::string text = "ULOADS";
  for (const auto& row : rows) AppendAlignedRow(text, row, precision);
  return text;
}

#define TABULON_INSTANTIATE(T) \
  template std::string UloadsText(const std::vector<std::vector<T>>&, int);
TABULON_FOR_EACH_ELEMENT_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE

std::string StatisticsText(std::string_view label, const std::vector<double>& values,
                           int precision) {
  std::string text(label);
  AppendAlignedRow(text, values, precision);
  return text;
}

std::string WholeStatisticsText(std::string_view label, const std::vector<double>& values) {
  std::string text(label);
  for (const double value : values) text.append(" ").append(std::to_string(TruncateToInt32(value)));
  text += '\n';
  return text;
}

}  // namespace Sumara
