#include "api/group.h"

#include <utility>

#include "api/group_contents.h"
#include "api/group_facts.h"
#include "api/independent_variable.h"
#include "api/narrow_variable.h"
#include "api/run.h"
#include "core/exceptions.h"
#include "core/name_list.h"
#include "model/igroup.h"
#include "vocabulary/calculation_kinds.h"

namespace SumaraApi {

Group::Group(std::string headerFilePath, std::shared_ptr<GroupContents> contents,
             std::weak_ptr<Run> run)
    : m_headerFilePath(std::move(headerFilePath)),
      m_contents(std::move(contents)),
      m_run(std::move(run)) {}

const Sumara::IGroup& Group::ModelGroup() const { return *m_contents->GetModelGroup(); }

std::string Group::GetName() const { return m_contents->Name(); }
std::uint64_t Group::GetNumber() const { return ModelGroup().GetGroupNumber(); }

std::size_t Group::GetNumberOfVariables() const { return m_contents->VariableNames().Size(); }
std::size_t Group::GetNumberOfIndependentVariables() const {
  return ModelGroup().GetNumberOfAxes();
}

VariablePtr Group::GetVariable(std::string const& variableName) const {
  if (const auto place = m_contents->PlaceOf(variableName))
    return m_contents->ListedVariable(*place);
  throw Sumara::CException(
      159, "Group name: '" + GetName() + "'; Variable name requested: '" + variableName + "'");
}

std::vector<std::string> Group::GetVariableNames() const {
  return m_contents->VariableNames().Strings();
}

bool Group::ContainsVariable(std::string const& variableName, std::size_t dimensions) const {
  return GetNumberOfIndependentVariables() == dimensions &&
         m_contents->PlaceOf(variableName).has_value();
}

std::vector<IndependentVariablePtr> Group::GetIndependentVariables() const {
  return m_contents->GetIndependentVariables()->All();
}

bool Group::ContainsVariable1D(std::string const& variableName) const {
  return ContainsVariable(variableName, 1);
}
bool Group::ContainsVariable2D(std::string const& variableName) const {
  return ContainsVariable(variableName, 2);
}

IndependentVariablePtr Group::GetIndependentVariable(
    std::string const& independentVariableName) const {
  return FindIndependentVariable(GetIndependentVariables(), independentVariableName,
                                 "Group name: '" + GetName() +
                                     "'; Independent variable name requested: '" +
                                     independentVariableName + "'");
}

IndependentVariablePtr Group::GetIndependentVariable(
    IndependentVariableId const independentVariableId) const {
  return FindIndependentVariable(GetIndependentVariables(), independentVariableId,
                                 "Group name: '" + GetName() + "'");
}

std::string Group::GetCalculationShortName() const { return ModelGroup().GetDataSource(); }
std::string Group::GetCalculationDescriptiveName() const {
  return DescriptiveNameOf(GetCalculationType());
}
CalculationType Group::GetCalculationType() const {
  return CalculationTypeOf(ModelGroup().GetDataSource());
}

double Group::GetTimeDomainSimulationLength() const { return TimeDomainLengthOf(ModelGroup()); }
std::size_t Group::GetDataPointCount() const { return DataPointCountOf(ModelGroup()); }
VariableDataType Group::GetVariableDataType() const { return DataTypeOf(ModelGroup()); }
VariableDataFormat Group::GetVariableDataFormat() const { return DataFormatOf(ModelGroup()); }

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
  typed.reserve(GetNumberOfVariables());
  for (std::size_t place = 0; place < GetNumberOfVariables(); ++place) {
    typed.push_back(NarrowVariable<TypedVariable>(
        m_contents->ListedVariable(place), [&] { return run->GetDirectory() + run->GetName(); }));
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
