// The groups and variables of a run, by name.

#include "api/group.h"
#include "api/narrow_variable.h"
#include "api/process_state.h"
#include "api/run.h"
#include "api/run_contents.h"
#include "core/exceptions.h"
#include "vocabulary/calculation_kinds.h"

namespace SumaraApi {
namespace {

constexpr std::int32_t kFoundInSeveralGroups = 165;

}  // namespace

RunContents& Run::Contents() {
  if (m_contents == nullptr)
    m_contents = std::make_unique<RunContents>(Directory(), GetName(), m_keepsReadersOpen);
  return *m_contents;
}

void Run::ReleaseReaders() {
  m_keepsReadersOpen = false;
  if (m_contents != nullptr) m_contents->ReleaseReaders();
}

// Groups.

void Run::CheckSupported() {
  if (!IsCalculationTypeSupported()) throw Sumara::CException(180, "Run: " + DirectoryAndName());
  NoteLastWrite();
}

GroupPtr Run::GetGroup(std::string const& groupName) {
  if (!Contents().Groups().empty() && !RefreshIfChanged()) {
    if (GroupPtr group = Contents().FindGroup(groupName, State().TargetType())) return group;
  }
  CheckSupported();
  return Contents().LoadGroup(groupName, weak_from_this(), State().TargetType());
}

std::vector<GroupPtr> Run::GetAllGroups() {
  const bool isComplete =
      !Contents().Groups().empty() && !RefreshIfChanged() && Contents().HasAllGroups();
  if (!isComplete) {
    CheckSupported();
    Contents().LoadAllGroups(weak_from_this(), State().TargetType());
  }
  return Contents().Groups();
}

// Variables.

VariablePtr Run::FindVariable(std::string const& variableName, std::string const& groupName) {
  if (variableName.empty()) throw Sumara::CException(158);
  if (Contents().HasHeaders()) RefreshIfChanged();
  NoteLastWrite();
  return Contents().GetVariable(variableName, groupName, State().TargetType());
}

VariablePtr Run::GetVariable(std::string const& variableName) {
  return FindVariable(variableName, {});
}

VariablePtr Run::GetVariableFromSpecificOutputGroup(std::string const& variableName,
                                                    std::string const& specificGroupName) {
  if (specificGroupName.empty())
    throw Sumara::CException(156, VariableContext(variableName, {}, DirectoryAndName()));
  return FindVariable(variableName, specificGroupName);
}

bool Run::Contains(std::string const& variableName, std::size_t dimensions) {
  try {
    return GetVariable(variableName)->GetNumberOfIndependentVariables() == dimensions;
  } catch (const CExceptionBase& failure) {
    return failure.ErrorCode() == kFoundInSeveralGroups;
  }
}

bool Run::ContainsVariable1D(std::string const& variableName) { return Contains(variableName, 1); }
bool Run::ContainsVariable2D(std::string const& variableName) { return Contains(variableName, 2); }

bool Run::UnloadVariable(std::string const& variableName) {
  if (variableName.empty()) throw Sumara::CException(158);
  return Contents().UnloadVariable(variableName, {});
}

bool Run::UnloadVariableFromSpecificGroup(std::string const& variableName,
                                          std::string const& specificGroupName) {
  if (specificGroupName.empty())
    throw Sumara::CException(156, VariableContext(variableName, {}, DirectoryAndName()));
  if (variableName.empty()) throw Sumara::CException(158);
  return Contents().UnloadVariable(variableName, specificGroupName);
}

// Typed variables.

template <class TypedVariable>
std::shared_ptr<TypedVariable> Run::Narrow(const VariablePtr& variable) const {
  return NarrowVariable<TypedVariable>(variable, [this] { return DirectoryAndName(); });
}

template <class T>
std::shared_ptr<Variable1D<T>> Run::GetVariable1D(std::string const& variableName) {
  return Narrow<Variable1D<T>>(GetVariable(variableName));
}

template <class T>
std::shared_ptr<Variable1D<T>> Run::GetVariable1DFromSpecificOutputGroup(
    std::string const& variableName, std::string const& specificGroupName) {
  return Narrow<Variable1D<T>>(GetVariableFromSpecificOutputGroup(variableName, specificGroupName));
}

template <class T>
std::shared_ptr<Variable2D<T>> Run::GetVariable2D(std::string const& variableName) {
  return Narrow<Variable2D<T>>(GetVariable(variableName));
}

template <class T>
std::shared_ptr<Variable2D<T>> Run::GetVariable2DFromSpecificOutputGroup(
    std::string const& variableName, std::string const& specificGroupName) {
  return Narrow<Variable2D<T>>(GetVariableFromSpecificOutputGroup(variableName, specificGroupName));
}

#define TABULON_INSTANTIATE(T)                                                          \
  template std::shared_ptr<Variable1D<T>> Run::GetVariable1D<T>(std::string const&);    \
  template std::shared_ptr<Variable1D<T>> Run::GetVariable1DFromSpecificOutputGroup<T>( \
      std::string const&, std::string const&);                                          \
  template std::shared_ptr<Variable2D<T>> Run::GetVariable2D<T>(std::string const&);    \
  template std::shared_ptr<Variable2D<T>> Run::GetVariable2DFromSpecificOutputGroup<T>( \
      std::string const&, std::string const&);
TABULON_FOR_EACH_PUBLIC_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE

}  // namespace SumaraApi
