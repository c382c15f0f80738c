#include "api/output_group1d.h"

#include <utility>

#include "api/output_parts.h"
#include "model/group1d.h"

namespace SumaraApi {

template <class T>
OutputGroup1D<T>::OutputGroup1D(std::string const& groupPath, std::string const& groupName,
                                std::string const& dataSource, std::string const& groupConfig,
                                IndependentVariable& independentVariable,
                                VariableDataFormat const variableDataFormat)
    : OutputGroup(std::make_shared<Sumara::CGroup1D<T>>(
          DescribeOutput(groupPath, groupName, dataSource, groupConfig, variableDataFormat),
          AxisForOutput(independentVariable))),
      m_typedGroup(std::static_pointer_cast<Sumara::CGroup1D<T>>(GetGroup())) {
  independentVariable.SetGroup(GetGroup(), Sumara::kPrimary);
}

template <class T>
OutputGroup1D<T>::~OutputGroup1D() = default;

template <class T>
std::shared_ptr<Sumara::CSeries1D<T>> OutputGroup1D<T>::AddVariable(std::string const& variableName,
                                                                    std::string const& siUnit) {
  return AddOutputSeries<Sumara::CSeries1D<T>>(*m_typedGroup, variableName, siUnit);
}

template <class T>
void OutputGroup1D<T>::AddVariableWithData(std::string const& variableName,
                                           std::string const& siUnit, std::vector<T> const& data) {
  AddOutputSeriesWithData<Sumara::CSeries1D<T>>(
      *m_typedGroup, variableName, siUnit,
      [&](auto& series) { series.AddSeriesPoints(data, /*check=*/true); });
}

template <class T>
void OutputGroup1D<T>::AddVariableWithData(std::string const& variableName,
                                           std::string const& siUnit, std::vector<T>&& data) {
  AddOutputSeriesWithData<Sumara::CSeries1D<T>>(
      *m_typedGroup, variableName, siUnit,
      [&](auto& series) { series.TakeSeriesPoints(std::move(data), /*check=*/true); });
}

template <class T>
void OutputGroup1D<T>::AppendData(std::string const& variableName, std::vector<T> const& data) {
  FindOutputSeries<Sumara::CSeries1D<T>>(*m_typedGroup, variableName)
      .AddSeriesPoints(data, /*check=*/true);
}

template <class T>
void OutputGroup1D<T>::AppendData(std::string const& variableName, std::vector<T>&& data) {
  FindOutputSeries<Sumara::CSeries1D<T>>(*m_typedGroup, variableName)
      .TakeSeriesPoints(std::move(data), /*check=*/true);
}

template class OutputGroup1D<float>;
template class OutputGroup1D<double>;
template class OutputGroup1D<int>;

}  // namespace SumaraApi
