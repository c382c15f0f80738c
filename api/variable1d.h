#pragma once

#include <memory>
#include <string>
#include <vector>

#include "api/variable.h"

namespace Sumara {
template <class T>
class CSeries1D;
template <class T>
class CGroup1D;
}  // namespace Sumara

namespace SumaraApi {

/// A variable over one independent variable. T is float, double or int.
///
/// Statistics come from the header while not all variables of the group are loaded, and from the
/// data when they are. A header without statistics leaves the data: figures are then right only
/// once all variables of the group are loaded.
template <class T>
class Variable1D : public Variable {
 public:
  Variable1D(std::string name, std::shared_ptr<Sumara::IGroup> group,
             std::shared_ptr<Sumara::CControl> control,
             std::shared_ptr<IndependentVariables> independentVariables);
  ~Variable1D() override;

  void Unload() override;

  /// The values in the order of the file, read on the first request. The reference is good until
  /// `Unload`. \throws Sumara::CException 147
  std::vector<T> const& GetData();

  /// The same values, alive for as long as the pointer is held, also after `Unload`.
  std::shared_ptr<std::vector<T>> ShareData();

  IndependentVariablePtr GetIndependentVariable() const;

  /// \throws Sumara::CException 150
  double GetMean();
  /// \throws Sumara::CException 151
  T GetMaximum();
  /// \throws Sumara::CException 152
  T GetMinimum();

  /// The value of another variable of the group where this one has its maximum.
  /// \throws Sumara::CException 154
  T GetMaximumContemporaneous(std::string const& contemporaneousVariableName);
  /// The same at the minimum. \throws Sumara::CException 155
  T GetMinimumContemporaneous(std::string const& contemporaneousVariableName);

 private:
  std::shared_ptr<Sumara::CSeries1D<T>> const& Load();
  Sumara::CGroup1D<T>& TypedGroup();

  std::shared_ptr<Sumara::CSeries1D<T>> m_series;
  std::shared_ptr<Sumara::CGroup1D<T>> m_typedGroup;
};

extern template class Variable1D<float>;
extern template class Variable1D<double>;
extern template class Variable1D<int>;

}  // namespace SumaraApi
