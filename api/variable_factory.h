#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "api/independent_variables.h"
#include "api/types.h"

namespace Sumara {
class CControl;
class IGroup;
}  // namespace Sumara

namespace SumaraApi {

/// Refuses a variable of another type than the public classes have, or of an odd number of axes.
/// \throws Sumara::CException 170, 172
void CheckVariable(std::string_view name, const Sumara::IGroup& group, std::uint32_t dataType);

/// Makes the variable of a group in the type of code `dataType`, or in the group's own for 0.
/// \throws Sumara::CException 170, 172
VariablePtr CreateVariable(std::string_view name, const std::shared_ptr<Sumara::IGroup>& group,
                           const std::shared_ptr<Sumara::CControl>& control,
                           const IndependentVariablesPtr& independentVariables,
                           std::uint32_t dataType);

}  // namespace SumaraApi
