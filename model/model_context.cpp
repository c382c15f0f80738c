#include "model/model_context.h"

#include <array>
#include <charconv>

#include "core/error_context.h"
#include "model/igroup.h"
#include "model/series.h"

namespace Sumara {

std::string GroupContext(const IGroup* group) {
  if (group == nullptr) return "No further exception context available - group was null";
  return group->Identity().Context();
}

std::string SeriesContext(const ISeries* series) {
  if (series == nullptr) return "No further exception context available - series was null";
  if (series->GetGroup() == nullptr) return "Series name: '" + series->GetName() + "'";
  return SeriesContext(series->GetName(), series->GetGroup());
}

std::string SeriesContext(std::string_view name, const IGroup* group) {
  return SeriesContextIn(name, group == nullptr ? "group was null" : GroupContext(group));
}

std::string SeriesContextIn(std::string_view name, std::string_view groupContext) {
  std::string text = "Series name: '";
  return text.append(name).append("'; ").append(groupContext);
}

std::string AxisValueContext(std::string_view name, std::string_view value) {
  std::string text = AxisContext(name);
  return text.append("; axis value: ").append(value);
}

std::string AxisValueContext(std::string_view name, double value) {
  return AxisValueContext(name, NumberText(value));
}

std::string AxisContext(std::string_view name, std::uint64_t index, const IGroup* group) {
  return AxisContext(name, index) + "; " + GroupContext(group);
}

std::string AxisPositionContext(std::string_view name, std::uint32_t position,
                                const IGroup* group) {
  std::string text = AxisContext(name) + "; ";
  text.append(AxisPositionText(position)).append("; ");
  return text + (group == nullptr ? "group was null" : GroupContext(group));
}

std::string NumberText(double value) {
  constexpr int kStreamPrecision = 6;
  std::array<char, 32> text;
  const auto result = std::to_chars(text.data(), text.data() + text.size(), value,
                                    std::chars_format::general, kStreamPrecision);
  return {text.data(), result.ptr};
}

}  // namespace Sumara
