#include "api/group_facts.h"

#include <cmath>

#include "api/independent_variable.h"
#include "core/exceptions.h"
#include "core/text.h"
#include "model/igroup.h"
#include "model/model_context.h"

namespace SumaraApi {

double TimeDomainLengthOf(const Sumara::IGroup& group) {
  const auto axis = group.GetIntervalAxis(Sumara::kPrimary, /*mustExist=*/false);
  if (axis == nullptr || !Sumara::EqualsNoCase(axis->GetName(), "Time")) {
    throw Sumara::CException(168, Sumara::GroupContext(&group),
                             "Did not find primary interval axis");
  }
  constexpr double kFourDecimals = 10000.0;
  return std::round(axis->GetStep() * static_cast<double>(axis->GetNumberOfPoints()) *
                    kFourDecimals) /
         kFourDecimals;
}

std::size_t DataPointCountOf(const Sumara::IGroup& group) {
  return static_cast<std::size_t>(
      group.GetAxis(Sumara::kPrimary, /*mustExist=*/true)->GetNumberOfPoints());
}

VariableDataType DataTypeOf(const Sumara::IGroup& group) {
  switch (group.GetDataType()) {
    case Sumara::kFloatCode:
      return VariableDataType::Float32;
    case Sumara::kDoubleCode:
      return VariableDataType::Float64;
    case Sumara::kIntCode:
      return VariableDataType::Int32;
    default:
      throw Sumara::CException(172, Sumara::GroupContext(&group), "Data precision not supported");
  }
}

VariableDataFormat DataFormatOf(const Sumara::IGroup& group) {
  return group.IsBinary() ? VariableDataFormat::Binary : VariableDataFormat::ASCII;
}

IndependentVariablePtr FindIndependentVariable(const std::vector<IndependentVariablePtr>& variables,
                                               const std::string& name,
                                               const std::string& context) {
  for (const IndependentVariablePtr& variable : variables) {
    if (Sumara::EqualsNoCase(variable->GetName(), name)) return variable;
  }
  throw Sumara::CException(167, context);
}

IndependentVariablePtr FindIndependentVariable(const std::vector<IndependentVariablePtr>& variables,
                                               IndependentVariableId id,
                                               const std::string& context) {
  const auto index = static_cast<std::size_t>(static_cast<std::uint32_t>(id));
  if (index >= variables.size()) throw Sumara::CException(167, context);
  return variables[index];
}

}  // namespace SumaraApi
