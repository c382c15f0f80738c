#include "api/variable_factory.h"

#include "api/variable1d.h"
#include "api/variable2d.h"
#include "core/exceptions.h"
#include "model/group.h"
#include "model/model_context.h"

namespace SumaraApi {
namespace {

template <class T>
VariablePtr Make(const std::string& name, const std::shared_ptr<Sumara::IGroup>& group,
                 const std::shared_ptr<Sumara::CControl>& control) {
  if (group->GetNumberOfAxes() == 1) return std::make_shared<Variable1D<T>>(name, group, control);
  return std::make_shared<Variable2D<T>>(name, group, control);
}

}  // namespace

VariablePtr CreateVariable(const std::string& name, const std::shared_ptr<Sumara::IGroup>& group,
                           const std::shared_ptr<Sumara::CControl>& control,
                           std::uint32_t dataType) {
  const std::size_t axes = group->GetNumberOfAxes();
  if (axes != 1 && axes != 2) throw Sumara::CException(170, Sumara::GroupContext(group.get()));
  switch (dataType != 0 ? dataType : group->GetDataType()) {
    case Sumara::kFloatCode:
      return Make<float>(name, group, control);
    case Sumara::kDoubleCode:
      return Make<double>(name, group, control);
    case Sumara::kIntCode:
      return Make<int>(name, group, control);
    default:
      throw Sumara::CException(172, Sumara::SeriesContext(name, group.get()),
                               "Data type not supported");
  }
}

}  // namespace SumaraApi
