#include "api/variable_factory.h"

#include <string>

#include "api/variable1d.h"
#include "api/variable2d.h"
#include "core/exceptions.h"
#include "model/igroup.h"
#include "model/model_context.h"

namespace SumaraApi {
namespace {

template <class T>
VariablePtr Make(std::string_view name, const std::shared_ptr<Sumara::IGroup>& group,
                 const std::shared_ptr<Sumara::CControl>& control,
                 const IndependentVariablesPtr& independentVariables) {
  if (group->GetNumberOfAxes() == 1)
    return std::make_shared<Variable1D<T>>(std::string(name), group, control, independentVariables);
  return std::make_shared<Variable2D<T>>(std::string(name), group, control, independentVariables);
}

}  // namespace

void CheckVariable(std::string_view name, const Sumara::IGroup& group, std::uint32_t dataType) {
  const std::size_t axes = group.GetNumberOfAxes();
  if (axes != 1 && axes != 2) throw Sumara::CException(170, Sumara::GroupContext(&group));
  switch (dataType != 0 ? dataType : group.GetDataType()) {
    case Sumara::kFloatCode:
    case Sumara::kDoubleCode:
    case Sumara::kIntCode:
      return;
    default:
      throw Sumara::CException(172, Sumara::SeriesContext(std::string(name), &group),
                               "Data type not supported");
  }
}

VariablePtr CreateVariable(std::string_view name, const std::shared_ptr<Sumara::IGroup>& group,
                           const std::shared_ptr<Sumara::CControl>& control,
                           const IndependentVariablesPtr& independentVariables,
                           std::uint32_t dataType) {
  CheckVariable(name, *group, dataType);
  switch (dataType != 0 ? dataType : group->GetDataType()) {
    case Sumara::kFloatCode:
      return Make<float>(name, group, control, independentVariables);
    case Sumara::kDoubleCode:
      return Make<double>(name, group, control, independentVariables);
    default:
      return Make<int>(name, group, control, independentVariables);
  }
}

}  // namespace SumaraApi
