#include "api/independent_variables.h"

#include <cstdint>
#include <utility>

#include "api/independent_variable.h"
#include "model/igroup.h"

namespace SumaraApi {

IndependentVariables::IndependentVariables(std::shared_ptr<Sumara::IGroup> group)
    : m_group(std::move(group)) {}

const std::vector<IndependentVariablePtr>& IndependentVariables::All() {
  if (m_variables.size() < m_group->GetNumberOfAxes())
    m_variables = std::vector<IndependentVariablePtr>(m_group->GetNumberOfAxes());
  for (std::uint32_t position = 0; position < m_variables.size(); ++position) {
    IndependentVariablePtr& variable = m_variables[position];
    if (variable != nullptr && variable->BelongsTo(*m_group)) continue;
    variable = std::make_shared<IndependentVariable>(m_group->GetAxis(position, /*mustExist=*/true),
                                                     m_group);
  }
  return m_variables;
}

}  // namespace SumaraApi
