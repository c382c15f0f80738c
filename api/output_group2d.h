#pragma once

#include <memory>
#include <string>
#include <vector>

#include "api/independent_variable.h"
#include "api/output_group.h"

namespace Sumara {
template <class T>
class CGroup2D;
template <class T>
class CSeries2D;
}  // namespace Sumara

namespace SumaraApi {

/// An output group over two independent variables. T is float, double or int.
///
/// Data comes as one vector along the primary variable for each value of the secondary one, in
/// order.
template <class T>
class OutputGroup2D : public OutputGroup {
 public:
  /// As `OutputGroup1D`, with a secondary independent variable.
  OutputGroup2D(std::string const& groupPath, std::string const& groupName,
                std::string const& dataSource, std::string const& groupConfig,
                IndependentVariable& primaryIndependentVariable,
                IndependentVariable& secondaryIndependentVariable,
                VariableDataFormat const variableDataFormat = VariableDataFormat::Binary);
  ~OutputGroup2D() override;

  std::shared_ptr<Sumara::CSeries2D<T>> AddVariable(std::string const& variableName,
                                                    std::string const& siUnit);
  void AddVariableWithData(std::string const& variableName, std::string const& siUnit,
                           std::vector<std::vector<T>> const& data);

  /// \throws Sumara::CException 159 if there is no such variable, 13, 14, 16, 72.
  void AppendData(std::string const& variableName, std::vector<std::vector<T>> const& data);

 private:
  std::shared_ptr<Sumara::CGroup2D<T>> m_typedGroup;
};

extern template class OutputGroup2D<float>;
extern template class OutputGroup2D<double>;
extern template class OutputGroup2D<int>;

}  // namespace SumaraApi
