#include "api/variable2d.h"

#include <utility>

#include "api/group_facts.h"
#include "api/independent_variables.h"
#include "api/variable_statistics.h"
#include "model/control.h"
#include "model/group2d.h"

namespace SumaraApi {
namespace {

constexpr std::int32_t kSecondaryValueNotFound = 43;

}  // namespace

template <class T>
Variable2D<T>::Variable2D(std::string name, std::shared_ptr<Sumara::IGroup> group,
                          std::shared_ptr<Sumara::CControl> control,
                          std::shared_ptr<IndependentVariables> independentVariables)
    : Variable(std::move(name), std::move(group), std::move(control),
               std::move(independentVariables)) {}

template <class T>
Variable2D<T>::~Variable2D() = default;

template <class T>
void Variable2D<T>::Unload() {
  m_series.reset();
  Variable::Unload();
}

template <class T>
std::string Variable2D<T>::ContextAt(std::size_t index) const {
  return "Secondary independent variable value index: " + std::to_string(index) + "\n" + Context();
}

// Secondary values.

template <class T>
std::size_t Variable2D<T>::IndexOf(double value) const {
  return static_cast<std::size_t>(
      m_group->Axes().IndexOf(Sumara::kSecondary, value, Sumara::LabelMatch::kFirst));
}

template <class T>
std::size_t Variable2D<T>::IndexOf(std::string const& value) const {
  try {
    return static_cast<std::size_t>(
        m_group->Axes().IndexOf(Sumara::kSecondary, value, Sumara::LabelMatch::kFirst));
  } catch (const std::exception& failure) {
    FailAtValue(value, failure.what());
  }
}

template <class T>
void Variable2D<T>::FailAtValue(std::string const& value, const char* reason) const {
  throw Sumara::CException(42, "Secondary independent variable value: " + value + "\n" + Context(),
                           std::string("Labelled secondary axis value not found; ") + reason);
}

// Data.

template <class T>
std::shared_ptr<Sumara::CSeries2D<T>> const& Variable2D<T>::HoldSeries() {
  m_series = std::dynamic_pointer_cast<Sumara::CSeries2D<T>>(m_group->GetSeries(m_name));
  if (m_series == nullptr) throw Sumara::CException(61, Sumara::GroupContext(m_group.get()));
  return m_series;
}

template <class T>
std::shared_ptr<std::vector<T>> Variable2D<T>::ShareVector(std::size_t index) {
  const auto& series = HoldSeries();
  series->GetVector(index);
  return {series, &series->Vector(index)};
}

template <class T>
std::shared_ptr<std::vector<T>> Variable2D<T>::ShareDataAtIndex(size_t index) {
  return Wrapped(148, ContextAt(index), [&] {
    const auto number = static_cast<std::size_t>(m_group->GetSeriesIndex(m_name, /*exact=*/true));
    m_control->GetGroup(m_group->GetPath(), std::vector<std::size_t>{number},
                        std::vector<std::size_t>{index}, m_group->GetDataType());
    return ShareVector(index);
  });
}

template <class T>
std::shared_ptr<std::vector<T>> Variable2D<T>::ShareDataAtValue(double value) {
  return ShareDataAtIndex(IndexOf(value));
}

template <class T>
std::shared_ptr<std::vector<T>> Variable2D<T>::ShareDataAtValue(std::string const& value) {
  if (m_group->GetLabelledStringAxis(Sumara::kSecondary, /*mustExist=*/false) == nullptr) {
    return ShareDataAtIndex(IndexOf(value));
  }
  const std::size_t index = LoadAt(value);
  return Wrapped(148, ContextAt(index), [&] { return ShareVector(index); });
}

/// Loads the data of a label, which is sought exactly there, and gives its index.
template <class T>
std::size_t Variable2D<T>::LoadAt(std::string const& value) {
  try {
    m_control->GetGroup(m_group->GetPath(), std::vector<std::string>{m_name},
                        std::vector<std::string>{value}, m_group->GetDataType());
  } catch (const CExceptionBase& failure) {
    if (failure.ErrorCode() == kSecondaryValueNotFound) FailAtValue(value, failure.what());
    throw Sumara::CException(148, ContextAt(IndexOf(value)), failure.what());
  }
  return IndexOf(value);
}

template <class T>
std::vector<T> const& Variable2D<T>::GetDataAtValue(
    double const secondaryIndependentVariableValue) {
  return *ShareDataAtValue(secondaryIndependentVariableValue);
}

template <class T>
std::vector<T> const& Variable2D<T>::GetDataAtValue(
    std::string const& secondaryIndependentVariableValue) {
  return *ShareDataAtValue(secondaryIndependentVariableValue);
}

template <class T>
std::vector<T> const& Variable2D<T>::GetDataAtIndex(size_t secondaryIndependentVariableIndex) {
  return *ShareDataAtIndex(secondaryIndependentVariableIndex);
}

template <class T>
std::vector<std::vector<T>> const& Variable2D<T>::GetDataForAllIndependentVariableValues() {
  return Wrapped(149, Context(), [&]() -> std::vector<std::vector<T>> const& {
    m_control->GetGroup(m_group->GetPath(), std::vector<std::string>{m_name},
                        m_group->GetDataType());
    return HoldSeries()->GetData();
  });
}

template <class T>
IndependentVariablePtr Variable2D<T>::GetIndependentVariable(
    std::string const& independentVariableName) const {
  return FindIndependentVariable(
      m_independentVariables->All(), independentVariableName,
      "Independent variable name requested: '" + independentVariableName + "'" + Context());
}

template <class T>
IndependentVariablePtr Variable2D<T>::GetIndependentVariable(
    IndependentVariableId const independentVariableId) const {
  return FindIndependentVariable(m_independentVariables->All(), independentVariableId, Context());
}

// Statistics.

template <class T>
Sumara::CGroup2D<T>& Variable2D<T>::TypedGroup() {
  EnsureStatistics();
  if (m_typedGroup == nullptr)
    m_typedGroup = std::dynamic_pointer_cast<Sumara::CGroup2D<T>>(m_group);
  if (m_typedGroup == nullptr) throw Sumara::CException(61, Sumara::GroupContext(m_group.get()));
  return *m_typedGroup;
}

template <class T>
double Variable2D<T>::GetMeanAtIndex(size_t index) {
  return Wrapped(FailureCodeOf(StatsType::kMean), ContextAt(index),
                 [&] { return MeanOf(TypedGroup(), m_name, index); });
}

template <class T>
T Variable2D<T>::GetMaximumAtIndex(size_t index) {
  return Wrapped(FailureCodeOf(StatsType::kMaximum), ContextAt(index),
                 [&] { return ExtremeOf(TypedGroup(), m_name, Extremum::kMaximum, index); });
}

template <class T>
T Variable2D<T>::GetMinimumAtIndex(size_t index) {
  return Wrapped(FailureCodeOf(StatsType::kMinimum), ContextAt(index),
                 [&] { return ExtremeOf(TypedGroup(), m_name, Extremum::kMinimum, index); });
}

template <class T>
T Variable2D<T>::GetMinimumContemporaneousAtIndex(std::string const& contemporaneousVariableName,
                                                  size_t index) {
  return Wrapped(FailureCodeOf(Extremum::kMinimum), ContextAt(index), [&] {
    return ContemporaneousOf(TypedGroup(), m_name, Extremum::kMinimum, contemporaneousVariableName,
                             index);
  });
}

template <class T>
T Variable2D<T>::GetMaximumContemporaneousAtIndex(std::string const& contemporaneousVariableName,
                                                  size_t index) {
  return Wrapped(FailureCodeOf(Extremum::kMaximum), ContextAt(index), [&] {
    return ContemporaneousOf(TypedGroup(), m_name, Extremum::kMaximum, contemporaneousVariableName,
                             index);
  });
}

// The same by value: the value gives the index.

template <class T>
double Variable2D<T>::GetMeanAtValue(double const value) {
  return GetMeanAtIndex(IndexOf(value));
}

template <class T>
double Variable2D<T>::GetMeanAtValue(std::string const& value) {
  return GetMeanAtIndex(IndexOf(value));
}

template <class T>
T Variable2D<T>::GetMaximumAtValue(double const value) {
  return GetMaximumAtIndex(IndexOf(value));
}

template <class T>
T Variable2D<T>::GetMaximumAtValue(std::string const& value) {
  return GetMaximumAtIndex(IndexOf(value));
}

template <class T>
T Variable2D<T>::GetMinimumAtValue(double const value) {
  return GetMinimumAtIndex(IndexOf(value));
}

template <class T>
T Variable2D<T>::GetMinimumAtValue(std::string const& value) {
  return GetMinimumAtIndex(IndexOf(value));
}

template <class T>
T Variable2D<T>::GetMinimumContemporaneousAtValue(std::string const& name,
                                                  std::string const& value) {
  return GetMinimumContemporaneousAtIndex(name, IndexOf(value));
}

template <class T>
T Variable2D<T>::GetMinimumContemporaneousAtValue(std::string const& name, double const value) {
  return GetMinimumContemporaneousAtIndex(name, IndexOf(value));
}

template <class T>
T Variable2D<T>::GetMaximumContemporaneousAtValue(std::string const& name,
                                                  std::string const& value) {
  return GetMaximumContemporaneousAtIndex(name, IndexOf(value));
}

template <class T>
T Variable2D<T>::GetMaximumContemporaneousAtValue(std::string const& name, double const value) {
  return GetMaximumContemporaneousAtIndex(name, IndexOf(value));
}

#define TABULON_INSTANTIATE(T) template class Variable2D<T>;
TABULON_FOR_EACH_PUBLIC_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE

}  // namespace SumaraApi
