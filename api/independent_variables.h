#pragma once

#include <memory>
#include <vector>

#include "api/types.h"

namespace Sumara {
class IGroup;
}

namespace SumaraApi {

/// The independent variables of a group of a run, primary first, made when they are asked for: one
/// set for the group and all its variables.
class IndependentVariables {
 public:
  explicit IndependentVariables(std::shared_ptr<Sumara::IGroup> group);

  /// In place of one that was taken into an output group since, and belongs there, stands another.
  const std::vector<IndependentVariablePtr>& All();

 private:
  std::shared_ptr<Sumara::IGroup> m_group;
  std::vector<IndependentVariablePtr> m_variables;
};

using IndependentVariablesPtr = std::shared_ptr<IndependentVariables>;

}  // namespace SumaraApi
