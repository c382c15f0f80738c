#include "model/axes.h"

#include <type_traits>
#include <utility>

#include "core/error_context.h"
#include "core/exceptions.h"
#include "core/numbers.h"
#include "core/text.h"
#include "model/igroup.h"
#include "model/model_context.h"

namespace Sumara {
namespace {

std::string Scientific(double value, std::uint32_t dataType) {
  std::string text;
  AppendScientific(text, value, PrecisionOf(dataType), /*upperCase=*/true);
  return text;
}

bool Matches(double label, double value) { return label == value; }
bool Matches(const std::string& label, const std::string& value) {
  return EqualsNoCase(label, value);
}

template <class T>
bool HasEqualLabels(const std::vector<T>& labels) {
  for (std::size_t i = 0; i < labels.size(); ++i) {
    for (std::size_t j = i + 1; j < labels.size(); ++j) {
      if (labels[i] == labels[j]) return true;
    }
  }
  return false;
}

/// So many values of a header alone are computed without a look at the data file.
constexpr std::uint64_t kUnquestionedValues = std::uint64_t{1} << 22;

}  // namespace

CAxisBase::CAxisBase(std::string name, std::string quantity)
    : m_name(std::move(name)), m_quantity(std::move(quantity)) {
  if (!IsValidName(m_name)) throw CException(30);
  if (!IsValidName(m_quantity)) throw CException(31, AxisContext(m_name));
}

std::shared_ptr<CAxisBase> CAxisBase::CopyFor(IGroup* group) {
  BelongTo(group);
  auto copy = Copy();
  copy->SetNumberOfPoints(0);
  return copy;
}

CIntervalAxis::CIntervalAxis(std::string name, std::string quantity, double minimum, double step)
    : CAxisBase(std::move(name), std::move(quantity)), m_minimum(minimum), m_step(step) {
  if (step == 0.0) throw CException(33, AxisContext(m_name));
}

CIntervalAxis::CIntervalAxis(const CIntervalAxis& other)
    : CAxisBase(other),
      m_minimum(other.m_minimum),
      m_step(other.m_step),
      m_values(std::make_shared<std::vector<double>>(*other.m_values)),
      m_group(other.m_group) {}

const double& CIntervalAxis::DataAtIndex(std::uint64_t index) {
  const std::uint64_t count = m_group != nullptr ? m_group->GetNumberOfPoints(m_position) : 0;
  if (index >= count) throw CException(40, AxisContext(m_name, index));
  m_scratchValue = ValueAt(index);
  return m_scratchValue;
}

std::string CIntervalAxis::GetLabelAsString(std::uint64_t index, std::uint32_t dataType) {
  return Scientific(DataAtIndex(index), dataType);
}

std::uint64_t CIntervalAxis::CountForCache() const {
  std::uint64_t count = CAxisBase::GetNumberOfPoints();
  if (count == 0 && m_group != nullptr) count = m_group->GetNumberOfPoints(m_position);
  if (m_group != nullptr && count > kUnquestionedValues) m_group->CheckPointCount(count);
  return count;
}

std::shared_ptr<std::vector<double>> CIntervalAxis::ShareValues() {
  if (m_values->empty()) {
    const std::uint64_t count = CountForCache();
    auto values = std::make_shared<std::vector<double>>(static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < values->size(); ++i) (*values)[i] = ValueAt(i);
    m_values = std::move(values);
  }
  return m_values;
}

const std::vector<std::string>& CIntervalAxis::GetLabelsAsStrings(std::uint32_t dataType) {
  if (m_labelStrings.empty()) {
    const std::uint64_t count = CountForCache();
    // A text takes several times the memory of a value: fewer are made on a header's word alone.
    if (m_group != nullptr) m_group->CheckPointCount(count);
    std::vector<std::string> texts;
    texts.reserve(static_cast<std::size_t>(count));
    for (std::uint64_t i = 0; i < count; ++i) texts.push_back(Scientific(ValueAt(i), dataType));
    m_labelStrings = std::move(texts);
  }
  return m_labelStrings;
}

void CIntervalAxis::SetNumberOfPoints(std::uint64_t count) {
  CAxisBase::SetNumberOfPoints(count);
  m_values = std::make_shared<std::vector<double>>();  // whoever holds the old values keeps them
  m_labelStrings.clear();
}

std::shared_ptr<CAxisBase> CIntervalAxis::Copy() const {
  return std::make_shared<CIntervalAxis>(*this);
}

template <class T>
CLabelledAxis<T>::CLabelledAxis(std::string name, std::string quantity, std::vector<T> labels,
                                std::uint32_t uniquePosition)
    : CAxisBase(std::move(name), std::move(quantity)),
      m_labels(std::make_shared<std::vector<T>>(std::move(labels))) {
  if (m_labels->empty()) throw CException(32, AxisContext(m_name));
  if (uniquePosition == kSecondary && HasEqualLabels(*m_labels))
    throw CException(44, AxisContext(m_name));
}

template <class T>
CLabelledAxis<T>::CLabelledAxis(const CLabelledAxis& other)
    : CAxisBase(other), m_labels(std::make_shared<std::vector<T>>(*other.m_labels)) {}

template <class T>
std::uint64_t CLabelledAxis<T>::GetNumberOfPoints() const {
  return m_position == kPrimary ? m_pointCount : m_labels->size();
}

template <class T>
void CLabelledAxis<T>::CheckIndex(std::uint64_t index) const {
  if (m_labels->empty()) throw CException(34, AxisContext(m_name, index));
  if (index >= m_labels->size()) throw CException(40, AxisContext(m_name, index));
}

template <class T>
const T& CLabelledAxis<T>::DataAtIndex(std::uint64_t index) {
  CheckIndex(index);
  m_scratchValue = (*m_labels)[index];
  return m_scratchValue;
}

template <class T>
std::string CLabelledAxis<T>::GetLabelAsString(std::uint64_t index, std::uint32_t dataType) {
  if constexpr (std::is_same_v<T, double>) {
    return Scientific(DataAtIndex(index), dataType);
  } else {
    return DataAtIndex(index);
  }
}

template <class T>
const std::vector<std::string>& CLabelledAxis<T>::GetLabelsAsStrings(std::uint32_t dataType) {
  if constexpr (std::is_same_v<T, std::string>) {
    return *m_labels;
  } else {
    if (m_labelStrings.empty()) {
      std::vector<std::string> texts;
      texts.reserve(m_labels->size());
      for (const double label : *m_labels) texts.push_back(Scientific(label, dataType));
      m_labelStrings = std::move(texts);
    }
    return m_labelStrings;
  }
}

template <class T>
std::uint32_t CLabelledAxis<T>::GetAxisType() const {
  return std::is_same_v<T, double> ? kLabelledValueAxis : kLabelledStringAxis;
}

template <class T>
double CLabelledAxis<T>::GetNumberAtIndex(std::uint64_t index) {
  if constexpr (std::is_same_v<T, double>) {
    return DataAtIndex(index);
  } else {
    return static_cast<double>(index);
  }
}

template <class T>
std::shared_ptr<CAxisBase> CLabelledAxis<T>::Copy() const {
  return std::make_shared<CLabelledAxis<T>>(*this);
}

template <class T>
std::vector<std::uint64_t> CLabelledAxis<T>::FindIndices(const T& value) const {
  std::vector<std::uint64_t> indices;
  for (std::size_t i = 0; i < m_labels->size(); ++i) {
    if (Matches((*m_labels)[i], value)) indices.push_back(i);
  }
  if (indices.empty()) {
    throw CException(42, AxisValueContext(m_name, value));
  }
  return indices;
}

template class CLabelledAxis<double>;
template class CLabelledAxis<std::string>;

}  // namespace Sumara
