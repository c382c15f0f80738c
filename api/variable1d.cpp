#include "api/variable1d.h"

#include <utility>

#include "api/independent_variables.h"
#include "api/variable_statistics.h"
#include "model/control.h"
#include "model/group1d.h"

namespace SumaraApi {

template <class T>
Variable1D<T>::Variable1D(std::string name, std::shared_ptr<Sumara::IGroup> group,
                          std::shared_ptr<Sumara::CControl> control,
                          std::shared_ptr<IndependentVariables> independentVariables)
    : Variable(std::move(name), std::move(group), std::move(control),
               std::move(independentVariables)) {}

template <class T>
Variable1D<T>::~Variable1D() = default;

template <class T>
void Variable1D<T>::Unload() {
  m_series.reset();
  Variable::Unload();
}

template <class T>
std::shared_ptr<Sumara::CSeries1D<T>> const& Variable1D<T>::Load() {
  Wrapped(147, Context(), [&] {
    m_control->GetGroup(m_group->GetPath(), std::vector<std::string>{m_name},
                        m_group->GetDataType());
    m_series = std::dynamic_pointer_cast<Sumara::CSeries1D<T>>(m_group->GetSeries(m_name));
    if (m_series == nullptr) throw Sumara::CException(61, Sumara::GroupContext(m_group.get()));
  });
  return m_series;
}

template <class T>
std::vector<T> const& Variable1D<T>::GetData() {
  return Load()->GetData();
}

template <class T>
std::shared_ptr<std::vector<T>> Variable1D<T>::ShareData() {
  const auto& series = Load();
  return {series, &series->Data()};
}

template <class T>
IndependentVariablePtr Variable1D<T>::GetIndependentVariable() const {
  return m_independentVariables->All().front();
}

template <class T>
Sumara::CGroup1D<T>& Variable1D<T>::TypedGroup() {
  EnsureStatistics();
  if (m_typedGroup == nullptr)
    m_typedGroup = std::dynamic_pointer_cast<Sumara::CGroup1D<T>>(m_group);
  if (m_typedGroup == nullptr) throw Sumara::CException(61, Sumara::GroupContext(m_group.get()));
  return *m_typedGroup;
}

template <class T>
double Variable1D<T>::GetMean() {
  return Wrapped(FailureCodeOf(StatsType::kMean), Context(),
                 [&] { return MeanOf(TypedGroup(), m_name, 0); });
}

template <class T>
T Variable1D<T>::GetMaximum() {
  return Wrapped(FailureCodeOf(StatsType::kMaximum), Context(),
                 [&] { return ExtremeOf(TypedGroup(), m_name, Extremum::kMaximum, 0); });
}

template <class T>
T Variable1D<T>::GetMinimum() {
  return Wrapped(FailureCodeOf(StatsType::kMinimum), Context(),
                 [&] { return ExtremeOf(TypedGroup(), m_name, Extremum::kMinimum, 0); });
}

template <class T>
T Variable1D<T>::GetMaximumContemporaneous(std::string const& contemporaneousVariableName) {
  return Wrapped(FailureCodeOf(Extremum::kMaximum), Context(), [&] {
    return ContemporaneousOf(TypedGroup(), m_name, Extremum::kMaximum, contemporaneousVariableName,
                             0);
  });
}

template <class T>
T Variable1D<T>::GetMinimumContemporaneous(std::string const& contemporaneousVariableName) {
  return Wrapped(FailureCodeOf(Extremum::kMinimum), Context(), [&] {
    return ContemporaneousOf(TypedGroup(), m_name, Extremum::kMinimum, contemporaneousVariableName,
                             0);
  });
}

#define TABULON_INSTANTIATE(T) template class Variable1D<T>;
TABULON_FOR_EACH_PUBLIC_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE

}  // namespace SumaraApi
