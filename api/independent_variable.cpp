#include "api/independent_variable.h"

#include <utility>

#include "core/error_context.h"
#include "core/exceptions.h"
#include "model/axes.h"
#include "model/igroup.h"
#include "vocabulary/quantity_codes.h"

namespace SumaraApi {
namespace {

/// Makes an axis; its refusals are told in the words of an independent variable.
template <class Axis, class... Arguments>
std::shared_ptr<Sumara::CAxisBase> MakeAxis(const std::string& name, const std::string& siUnit,
                                            Arguments&&... arguments) {
  try {
    return std::make_shared<Axis>(name, CodeForWriting(siUnit),
                                  std::forward<Arguments>(arguments)...);
  } catch (const Sumara::CException& refusal) {
    switch (refusal.ErrorCode()) {
      case 30:
        throw Sumara::CException(177, {}, refusal.what());
      case 31:
        throw Sumara::CException(178, {}, refusal.what());
      case 32:
        throw Sumara::CException(179, {}, refusal.what());
      default:
        throw;
    }
  }
}

AxisTypeId TypeOf(const Sumara::CAxisBase& axis) {
  return static_cast<AxisTypeId>(axis.GetAxisType());
}

}  // namespace

IndependentVariable::IndependentVariable(std::string const& name, std::string const& siUnit,
                                         std::vector<double> const& numericLabels)
    : m_name(name),
      m_siUnit(siUnit),
      m_axisType(AxisTypeId::LabelledValueAxis),
      m_axis(MakeAxis<Sumara::CLabelledValueAxis>(name, siUnit, numericLabels, Sumara::kPrimary)) {}

IndependentVariable::IndependentVariable(std::string const& name, std::string const& siUnit,
                                         std::vector<std::string> const& stringLabels)
    : m_name(name),
      m_siUnit(siUnit),
      m_axisType(AxisTypeId::LabelledStringAxis),
      m_axis(MakeAxis<Sumara::CLabelledStringAxis>(name, siUnit, stringLabels, Sumara::kPrimary)) {}

IndependentVariable::IndependentVariable(std::string const& name, std::string const& siUnit,
                                         double const startValue, double const stepValue)
    : m_name(name),
      m_siUnit(siUnit),
      m_axisType(AxisTypeId::IntervalAxis),
      m_axis(MakeAxis<Sumara::CIntervalAxis>(name, siUnit, startValue, stepValue)) {}

IndependentVariable::IndependentVariable(std::shared_ptr<Sumara::CAxisBase> axis,
                                         std::shared_ptr<Sumara::IGroup> group)
    : m_axisType(TypeOf(*axis)), m_axis(std::move(axis)), m_group(std::move(group)) {}

std::string IndependentVariable::GetName() {
  if (m_name.empty()) m_name = m_axis->GetName();
  return m_name;
}

std::string IndependentVariable::GetSIUnit() {
  if (m_siUnit.empty()) m_siUnit = UnitOfQuantityCode(m_axis->GetQuantity(), /*lenient=*/true);
  return m_siUnit;
}

std::size_t IndependentVariable::GetNumberOfValues() const {
  if (m_group != nullptr)
    return static_cast<std::size_t>(m_group->GetNumberOfPoints(m_axis->GetPosition()));
  switch (m_axisType) {
    case AxisTypeId::IntervalAxis:
      return 0;
    case AxisTypeId::LabelledValueAxis:
      return static_cast<const Sumara::CLabelledValueAxis&>(*m_axis).GetLabels().size();
    case AxisTypeId::LabelledStringAxis:
      return static_cast<const Sumara::CLabelledStringAxis&>(*m_axis).GetLabels().size();
  }
  throw Sumara::CException(129, Sumara::AxisContext(m_axis->GetName()));
}

std::vector<std::string> IndependentVariable::GetValuesAsString() const {
  return m_axis->GetLabelsAsStrings(m_group != nullptr ? m_group->GetDataType()
                                                       : Sumara::kDoubleCode);
}

std::shared_ptr<std::vector<double>> IndependentVariable::ShareValuesAsNumber() const {
  switch (m_axisType) {
    case AxisTypeId::IntervalAxis:
      return static_cast<Sumara::CIntervalAxis&>(*m_axis).ShareValues();
    case AxisTypeId::LabelledValueAxis:
      return static_cast<const Sumara::CLabelledValueAxis&>(*m_axis).ShareLabels();
    case AxisTypeId::LabelledStringAxis:
      throw Sumara::CException(39, Sumara::AxisContext(m_axis->GetName()));
  }
  throw Sumara::CException(129, Sumara::AxisContext(m_axis->GetName()));
}

std::vector<double> const& IndependentVariable::GetValuesAsNumber() const {
  return *ShareValuesAsNumber();
}

void IndependentVariable::SetGroup(std::shared_ptr<Sumara::IGroup> group, std::uint32_t position) {
  m_axis = group->GetAxis(position, /*mustExist=*/true);
  m_group = std::move(group);
}

}  // namespace SumaraApi
