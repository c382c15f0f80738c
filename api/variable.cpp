#include "api/variable.h"

#include <utility>

#include "api/group_facts.h"
#include "api/independent_variable.h"
#include "api/independent_variables.h"
#include "core/exceptions.h"
#include "model/control.h"
#include "model/igroup.h"
#include "model/model_context.h"
#include "vocabulary/quantity_codes.h"

namespace SumaraApi {

Variable::Variable(std::string name, std::shared_ptr<Sumara::IGroup> group,
                   std::shared_ptr<Sumara::CControl> control,
                   std::shared_ptr<IndependentVariables> independentVariables)
    : m_name(std::move(name)),
      m_group(std::move(group)),
      m_control(std::move(control)),
      m_independentVariables(std::move(independentVariables)) {}

Variable::~Variable() = default;

void Variable::Unload() { m_group->UnloadSeries(m_name); }

std::string Variable::Context() const { return Sumara::SeriesContext(m_name, m_group.get()); }

std::string Variable::GetSIUnit() {
  if (m_siUnit.empty()) {
    try {
      m_siUnit = UnitOfQuantityCode(m_group->GetSeriesQuantity(m_name), /*lenient=*/true);
    } catch (const CExceptionBase& failure) {
      throw Sumara::CException(145, Context(), failure.what());
    }
  }
  return m_siUnit;
}

std::string Variable::GetQuantityCode() const {
  try {
    return m_group->GetSeriesQuantity(m_name);
  } catch (const CExceptionBase& failure) {
    throw Sumara::CException(144, Context(), failure.what());
  }
}

std::size_t Variable::GetNumberOfIndependentVariables() const { return m_group->GetNumberOfAxes(); }
std::string Variable::GetParentGroupName() const { return m_group->GetName(); }
std::uint64_t Variable::GetParentGroupNumber() const { return m_group->GetGroupNumber(); }
std::string Variable::GetParentGroupHeaderFileFullPath() { return m_group->GetPath(); }
double Variable::GetTimeDomainSimulationLength() const { return TimeDomainLengthOf(*m_group); }
std::size_t Variable::GetDataPointCount() const { return DataPointCountOf(*m_group); }
VariableDataType Variable::GetDataType() const { return DataTypeOf(*m_group); }
VariableDataFormat Variable::GetDataFormat() const { return DataFormatOf(*m_group); }

std::vector<IndependentVariablePtr> Variable::GetIndependentVariables() const {
  return m_independentVariables->All();
}

void Variable::EnsureStatistics() {
  if (m_group->GetPreviewMode() == Sumara::PreviewMode::kWithoutStatistics) {
    m_control->GetGroup(m_group->GetPath(), Sumara::PreviewMode::kWithStatistics,
                        Sumara::kFloatCode);
  } else {
    m_control->EnsureStoredStatistics(m_group);
  }
}

}  // namespace SumaraApi
