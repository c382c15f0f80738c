#include "model/group_axes.h"

#include <algorithm>

#include "model/model_context.h"

namespace Sumara {

void GroupAxes::Refuse(std::uint32_t position) const {
  throw CException(position < m_axes.size() ? 38 : 37, m_context());
}

bool GroupAxes::IsLabelled(std::uint32_t position) const {
  return position >= m_axes.size() || m_axes[position]->GetAxisType() != kIntervalAxis;
}

std::size_t GroupAxes::LabelCount(std::uint32_t position) const {
  if (const auto values = Find<CLabelledValueAxis>(position)) return values->GetLabels().size();
  if (const auto texts = Find<CLabelledStringAxis>(position)) return texts->GetLabels().size();
  return 0;
}

template <class Axis, class Value>
std::uint64_t GroupAxes::LabelIndex(const Axis& axis, const Value& value, LabelMatch match) const {
  if (match == LabelMatch::kFirst) {
    const auto& labels = axis.GetLabels();
    const auto exact = std::find(labels.begin(), labels.end(), value);
    if (exact != labels.end()) return static_cast<std::uint64_t>(exact - labels.begin());
  }
  const std::vector<std::uint64_t> indices = axis.FindIndices(value);
  if (match == LabelMatch::kFirst || indices.size() == 1) return indices.front();
  throw CException(44, AxisValueContext(axis.GetName(), value) + "; " + m_context());
}

std::uint64_t GroupAxes::IndexOf(std::uint32_t position, double value, LabelMatch match) const {
  const auto interval = match == LabelMatch::kFirst ? Find<CIntervalAxis>(position) : nullptr;
  if (interval == nullptr) {
    return LabelIndex(*Get<CLabelledValueAxis>(position), value, match);
  }
  const std::vector<double>& values = interval->GetValues();
  const auto found = std::find(values.begin(), values.end(), value);
  if (found != values.end()) return static_cast<std::uint64_t>(found - values.begin());
  throw CException(42, AxisValueContext(interval->GetName(), value));
}

std::uint64_t GroupAxes::IndexOf(std::uint32_t position, const std::string& label,
                                 LabelMatch match) const {
  const auto texts = Find<CLabelledStringAxis>(position);
  if (texts == nullptr) return IndexOf(position, std::stod(label), match);
  return LabelIndex(*texts, label, match);
}

}  // namespace Sumara
