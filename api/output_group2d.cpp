#include "api/output_group2d.h"

#include "api/output_parts.h"
#include "model/group2d.h"

namespace SumaraApi {

template <class T>
OutputGroup2D<T>::OutputGroup2D(std::string const& groupPath, std::string const& groupName,
                                std::string const& dataSource, std::string const& groupConfig,
                                IndependentVariable& primaryIndependentVariable,
                                IndependentVariable& secondaryIndependentVariable,
                                VariableDataFormat const variableDataFormat)
    : OutputGroup(std::make_shared<Sumara::CGroup2D<T>>(
          DescribeOutput(groupPath, groupName, dataSource, groupConfig, variableDataFormat),
          AxisForOutput(primaryIndependentVariable), AxisForOutput(secondaryIndependentVariable))),
      m_typedGroup(std::static_pointer_cast<Sumara::CGroup2D<T>>(GetGroup())) {
  secondaryIndependentVariable.SetGroup(GetGroup(), Sumara::kSecondary);
  primaryIndependentVariable.SetGroup(GetGroup(), Sumara::kPrimary);
}

template <class T>
OutputGroup2D<T>::~OutputGroup2D() = default;

template <class T>
std::shared_ptr<Sumara::CSeries2D<T>> OutputGroup2D<T>::AddVariable(std::string const& variableName,
                                                                    std::string const& siUnit) {
  return AddOutputSeries<Sumara::CSeries2D<T>>(*m_typedGroup, variableName, siUnit);
}

template <class T>
void OutputGroup2D<T>::AddVariableWithData(std::string const& variableName,
                                           std::string const& siUnit,
                                           std::vector<std::vector<T>> const& data) {
  AddOutputSeriesWithData<Sumara::CSeries2D<T>>(
      *m_typedGroup, variableName, siUnit,
      [&](auto& series) { series.AddSeriesPoints(data, /*check=*/true); });
}

template <class T>
void OutputGroup2D<T>::AppendData(std::string const& variableName,
                                  std::vector<std::vector<T>> const& data) {
  FindOutputSeries<Sumara::CSeries2D<T>>(*m_typedGroup, variableName)
      .AddSeriesPoints(data, /*check=*/true);
}

template class OutputGroup2D<float>;
template class OutputGroup2D<double>;
template class OutputGroup2D<int>;

}  // namespace SumaraApi
