#pragma once

#include <memory>
#include <string>
#include <vector>

#include "api/independent_variable.h"
#include "api/output_group.h"

namespace Sumara {
template <class T>
class CGroup1D;
template <class T>
class CSeries1D;
}  // namespace Sumara

namespace SumaraApi {

/// An output group over one independent variable. T is float, double or int.
template <class T>
class OutputGroup1D : public OutputGroup {
 public:
  /// \param groupPath the path of the header file, with its extension `.%NN`.
  /// \param dataSource CONTENT: "UserDefined", or the short name of a calculation.
  /// \param groupConfig CONFIG: typically TRANSIENT, STATIONARY, LIST or TABLE.
  /// \throws Sumara::CException 56 to 60 and 80 for bad texts.
  OutputGroup1D(std::string const& groupPath, std::string const& groupName,
                std::string const& dataSource, std::string const& groupConfig,
                IndependentVariable& independentVariable,
                VariableDataFormat const variableDataFormat = VariableDataFormat::Binary);
  ~OutputGroup1D() override;

  /// Adds a variable without data. A unit that has a quantity code is written as that code.
  /// \throws Sumara::CException 175, 176, 2 if the name is taken.
  std::shared_ptr<Sumara::CSeries1D<T>> AddVariable(std::string const& variableName,
                                                    std::string const& siUnit);
  void AddVariableWithData(std::string const& variableName, std::string const& siUnit,
                           std::vector<T> const& data);
  void AddVariableWithData(std::string const& variableName, std::string const& siUnit,
                           std::vector<T>&& data);

  /// Appends values along the independent variable.
  /// \throws Sumara::CException 159 if there is no such variable, 13, 14.
  void AppendData(std::string const& variableName, std::vector<T> const& data);
  /// The same; a variable without data takes the vector over.
  void AppendData(std::string const& variableName, std::vector<T>&& data);

 private:
  std::shared_ptr<Sumara::CGroup1D<T>> m_typedGroup;
};

extern template class OutputGroup1D<float>;
extern template class OutputGroup1D<double>;
extern template class OutputGroup1D<int>;

}  // namespace SumaraApi
