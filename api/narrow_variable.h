#pragma once

#include <memory>
#include <string>

#include "api/variable1d.h"
#include "api/variable2d.h"
#include "core/exceptions.h"

namespace SumaraApi {

/// A variable and its run for failures: the name and the group if they are not empty, then the run.
std::string VariableContext(const std::string& variableName, const std::string& groupName,
                            const std::string& runPath);

template <class TypedVariable>
struct DimensionsOf;
template <class T>
struct DimensionsOf<Variable1D<T>> {
  static constexpr std::size_t kValue = 1;
};
template <class T>
struct DimensionsOf<Variable2D<T>> {
  static constexpr std::size_t kValue = 2;
};

/// The typed form of a variable. \param runPath gives the run for a failure.
/// \throws Sumara::CException 166 for null, 161 or 162 for the wrong number of independent
/// variables,
///         163 for the wrong element type
template <class TypedVariable, class RunPath>
std::shared_ptr<TypedVariable> NarrowVariable(const VariablePtr& variable, const RunPath& runPath) {
  constexpr std::size_t kDimensions = DimensionsOf<TypedVariable>::kValue;
  if (variable == nullptr) throw Sumara::CException(166, VariableContext({}, {}, runPath()));
  const auto fail = [&](std::int32_t code) {
    throw Sumara::CException(
        code, VariableContext(variable->GetName(), variable->GetParentGroupName(), runPath()));
  };
  if (variable->GetNumberOfIndependentVariables() != kDimensions)
    fail(kDimensions == 1 ? 161 : 162);
  auto typed = std::dynamic_pointer_cast<TypedVariable>(variable);
  if (typed == nullptr) fail(163);
  return typed;
}

}  // namespace SumaraApi
