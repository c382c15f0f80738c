#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "api/variable.h"

namespace Sumara {
template <class T>
class CSeries2D;
template <class T>
class CGroup2D;
}  // namespace Sumara

namespace SumaraApi {

/// A variable over two independent variables. T is float, double or int.
///
/// Values of the secondary independent variable are named by number, by label or by index from 0;
/// the index reaches values that occur twice or carry floating-point noise. By-value operations
/// take the first match.
///
/// Statistics come from the header while not all variables of the group are loaded, and from the
/// data when they are. A header without statistics leaves the data: figures are then right only
/// once all variables of the group are loaded.
template <class T>
class Variable2D : public Variable {
 public:
  Variable2D(std::string name, std::shared_ptr<Sumara::IGroup> group,
             std::shared_ptr<Sumara::CControl> control,
             std::shared_ptr<IndependentVariables> independentVariables);
  ~Variable2D() override;

  void Unload() override;

  /// The values along the primary axis at one secondary value; only these are read. The reference
  /// is good until `Unload`. \throws Sumara::CException 148, 42
  std::vector<T> const& GetDataAtValue(double const secondaryIndependentVariableValue);
  std::vector<T> const& GetDataAtValue(std::string const& secondaryIndependentVariableValue);
  std::vector<T> const& GetDataAtIndex(size_t secondaryIndependentVariableIndex);

  /// All values: outer index secondary, inner index primary. \throws Sumara::CException 149
  std::vector<std::vector<T>> const& GetDataForAllIndependentVariableValues();

  /// The same values, alive for as long as the pointer is held, also after `Unload`.
  std::shared_ptr<std::vector<T>> ShareDataAtValue(double value);
  std::shared_ptr<std::vector<T>> ShareDataAtValue(std::string const& value);
  std::shared_ptr<std::vector<T>> ShareDataAtIndex(size_t index);

  /// \throws Sumara::CException 167 if there is none of this name or id.
  IndependentVariablePtr GetIndependentVariable(std::string const& independentVariableName) const;
  IndependentVariablePtr GetIndependentVariable(
      IndependentVariableId const independentVariableId) const;

  double GetMeanAtValue(double const secondaryIndependentVariableValue);
  double GetMeanAtValue(std::string const& secondaryIndependentVariableValue);
  double GetMeanAtIndex(size_t secondaryIndependentVariableIndex);
  T GetMaximumAtValue(double const secondaryIndependentVariableValue);
  T GetMaximumAtValue(std::string const& secondaryIndependentVariableValue);
  T GetMaximumAtIndex(size_t secondaryIndependentVariableIndex);
  T GetMinimumAtValue(double const secondaryIndependentVariableValue);
  T GetMinimumAtValue(std::string const& secondaryIndependentVariableValue);
  T GetMinimumAtIndex(size_t secondaryIndependentVariableIndex);

  /// The value of another variable of the group where this one has its extreme at a secondary
  /// value.
  T GetMinimumContemporaneousAtValue(std::string const& contemporaneousVariableName,
                                     std::string const& secondaryIndependentVariableValue);
  T GetMinimumContemporaneousAtValue(std::string const& contemporaneousVariableName,
                                     double const secondaryIndependentVariableValue);
  T GetMinimumContemporaneousAtIndex(std::string const& contemporaneousVariableName,
                                     size_t secondaryIndependentVariableIndex);
  T GetMaximumContemporaneousAtValue(std::string const& contemporaneousVariableName,
                                     std::string const& secondaryIndependentVariableValue);
  T GetMaximumContemporaneousAtValue(std::string const& contemporaneousVariableName,
                                     double const secondaryIndependentVariableValue);
  T GetMaximumContemporaneousAtIndex(std::string const& contemporaneousVariableName,
                                     size_t secondaryIndependentVariableIndex);

 private:
  Sumara::CGroup2D<T>& TypedGroup();
  std::shared_ptr<Sumara::CSeries2D<T>> const& HoldSeries();
  std::shared_ptr<std::vector<T>> ShareVector(std::size_t index);
  std::string ContextAt(std::size_t index) const;
  /// The first secondary value that matches. \throws Sumara::CException 42
  std::size_t IndexOf(double value) const;
  std::size_t IndexOf(std::string const& value) const;
  std::size_t LoadAt(std::string const& value);
  [[noreturn]] void FailAtValue(std::string const& value, const char* reason) const;

  std::shared_ptr<Sumara::CSeries2D<T>> m_series;
  std::shared_ptr<Sumara::CGroup2D<T>> m_typedGroup;
};

extern template class Variable2D<float>;
extern template class Variable2D<double>;
extern template class Variable2D<int>;

}  // namespace SumaraApi
