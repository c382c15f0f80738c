#include "api/output_group.h"

#include <utility>

#include "model/igroup.h"

namespace SumaraApi {

OutputGroup::OutputGroup(std::shared_ptr<Sumara::IGroup> group) : m_group(std::move(group)) {}

OutputGroup::~OutputGroup() = default;

std::string OutputGroup::GetPath() const { return m_group->GetPath(); }

std::string OutputGroup::GetGroupName() const { return m_group->GetName(); }

std::string OutputGroup::GetDataSource() const { return m_group->GetDataSource(); }

std::string OutputGroup::GetGroupConfig() const { return m_group->GetConfig(); }

VariableDataFormat OutputGroup::GetVariableDataFormat() const {
  return m_group->IsBinary() ? VariableDataFormat::Binary : VariableDataFormat::ASCII;
}

std::string OutputGroup::GetDataFilePath() const { return m_group->GetDataFilePath(); }

}  // namespace SumaraApi
