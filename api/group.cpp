#include "api/group.h"

#include <algorithm>
#include <utility>

#include "api/group_facts.h"
#include "api/independent_variable.h"
#include "api/narrow_variable.h"
#include "api/run.h"
#include "core/exceptions.h"
#include "core/text.h"
#include "model/group.h"
#include "vocabulary/calculation_kinds.h"

namespace SumaraApi {

Group::Group(std::string headerFilePath, std::shared_ptr<Sumara::IGroup> group,
             std::weak_ptr<Run> run, std::vector<VariablePtr> variables,
             std::vector<IndependentVariablePtr> independentVariables)
    : m_headerFilePath(std::move(headerFilePath)),
      m_group(std::move(group)),
      m_run(std::move(run)),
      m_variables(std::move(variables)),
      m_independentVariables(std::move(independentVariables)) {}

std::string Group::GetName() const { return m_group->GetName(); }
std::uint64_t Group::GetNumber() const { return m_group->GetGroupNumber(); }

VariablePtr Group::GetVariable(std::string const& variableName) const {
  for (const VariablePtr& variable : m_variables) {
    if (Sumara::EqualsNoCase(variable->GetName(), variableName)) return variable;
  }
  throw Sumara::CException(
      159, "Group name: '" + GetName() + "'; Variable name requested: '" + variableName + "'");
}

std::vector<std::string> Group::GetVariableNames() const {
  std::vector<std::string> names;
  names.reserve(m_variables.size());
  for (const VariablePtr& variable : m_variables) names.push_back(variable->GetName());
  return names;
}

bool Group::ContainsVariable(std::string const& variableName, std::size_t dimensions) const {
  return m_independentVariables.size() == dimensions &&
         std::any_of(m_variables.begin(), m_variables.end(), [&](const VariablePtr& variable) {
           return Sumara::EqualsNoCase(variable->GetName(), variableName);
         });
}

bool Group::ContainsVariable1D(std::string const& variableName) const {
  return ContainsVariable(variableName, 1);
}
bool Group::ContainsVariable2D(std::string const& variableName) const {
  return ContainsVariable(variableName, 2);
}

IndependentVariablePtr Group::GetIndependentVariable(
    std::string const& independentVariableName) const {
  return FindIndependentVariable(m_independentVariables, independentVariableName,
                                 "Group name: '" + GetName() +
                                     "'; Independent variable name requested: '" +
                                     independentVariableName + "'");
}

IndependentVariablePtr Group::GetIndependentVariable(
    IndependentVariableId const independentVariableId) const {
  return FindIndependentVariable(m_independentVariables, independentVariableId,
                                 "Group name: '" + GetName() + "'");
}

std::string Group::GetCalculationShortName() const { return m_group->GetDataSource(); }
std::string Group::GetCalculationDescriptiveName() const {
  return DescriptiveNameOf(GetCalculationType());
}
CalculationType Group::GetCalculationType() const {
  return CalculationTypeOf(m_group->GetDataSource());
}

double Group::GetTimeDomainSimulationLength() const { return TimeDomainLengthOf(*m_group); }
std::size_t Group::GetDataPointCount() const { return DataPointCountOf(*m_group); }
VariableDataType Group::GetVariableDataType() const { return DataTypeOf(*m_group); }
VariableDataFormat Group::GetVariableDataFormat() const { return DataFormatOf(*m_group); }

RunPtr Group::LockRun() const {
  RunPtr run = m_run.lock();
  if (run == nullptr) throw Sumara::CException(171, "Group path: " + m_headerFilePath);
  return run;
}

template <class T>
std::shared_ptr<Variable1D<T>> Group::GetVariable1D(std::string const& variableName) const {
  return LockRun()->GetVariable1DFromSpecificOutputGroup<T>(variableName, GetName());
}

template <class T>
std::shared_ptr<Variable2D<T>> Group::GetVariable2D(std::string const& variableName) const {
  return LockRun()->GetVariable2DFromSpecificOutputGroup<T>(variableName, GetName());
}

template <class TypedVariable>
std::vector<std::shared_ptr<TypedVariable>> Group::NarrowAll() const {
  const RunPtr run = LockRun();
  std::vector<std::shared_ptr<TypedVariable>> typed;
  typed.reserve(m_variables.size());
  for (const VariablePtr& variable : m_variables) {
    typed.push_back(NarrowVariable<TypedVariable>(variable, run->GetDirectory() + run->GetName()));
  }
  return typed;
}

template <class T>
std::vector<std::shared_ptr<Variable1D<T>>> Group::GetAllVariables1D() const {
  return NarrowAll<Variable1D<T>>();
}

template <class T>
std::vector<std::shared_ptr<Variable2D<T>>> Group::GetAllVariables2D() const {
  return NarrowAll<Variable2D<T>>();
}

#define TABULON_INSTANTIATE(T)                                                               \
  template std::shared_ptr<Variable1D<T>> Group::GetVariable1D<T>(std::string const&) const; \
  template std::shared_ptr<Variable2D<T>> Group::GetVariable2D<T>(std::string const&) const; \
  template std::vector<std::shared_ptr<Variable1D<T>>> Group::GetAllVariables1D<T>() const;  \
  template std::vector<std::shared_ptr<Variable2D<T>>> Group::GetAllVariables2D<T>() const;
TABULON_FOR_EACH_PUBLIC_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE

}  // namespace SumaraApi
