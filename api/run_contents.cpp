// The groups and variables of a run.

#include <algorithm>
#include <iterator>
#include <utility>

#include "api/group.h"
#include "api/independent_variable.h"
#include "api/narrow_variable.h"
#include "api/process_state.h"
#include "api/run.h"
#include "api/variable_factory.h"
#include "api/variable_map.h"
#include "core/error_context.h"
#include "core/exceptions.h"
#include "core/paths.h"
#include "core/text.h"
#include "model/control.h"
#include "vocabulary/run_files.h"

namespace SumaraApi {
namespace {

constexpr std::int32_t kFoundInSeveralGroups = 165;

}  // namespace

// Contexts.

std::string Run::PlainContext(std::string const& variableName, std::string const& groupName) {
  return VariableContext(variableName, groupName, DirectoryAndName());
}

std::string Run::ListContext(VariableEntries const& entries, std::string const& variableName) {
  std::string text = "\n Variable name: '" + variableName + "'\n Run: " + DirectoryAndName() +
                     "\n Output groups in run containing this variable:\n";
  for (const VariableEntry& entry : entries) text += " '" + entry.group + "'\n";
  return text;
}

// Headers and groups.

bool Run::RefreshIfChanged() {
  if (!HasChanged()) return false;
  m_headerExtensions.clear();
  m_groups.clear();
  m_variables->clear();
  return true;
}

void Run::FindHeaders() {
  NoteLastWrite();
  std::vector<std::string> extensions;
  ForEachFileOfRun(Directory(), Name(), [&](const std::string& fileName) {
    const std::string_view extension = Sumara::ExtensionOf(fileName);
    if (IsHeaderExtension(extension)) extensions.emplace_back(extension);
    return true;
  });
  m_headerExtensions = std::move(extensions);
}

GroupPtr Run::FindGroup(std::string const& groupName) const {
  const auto found = std::find_if(m_groups.begin(), m_groups.end(), [&](const GroupPtr& group) {
    return Sumara::EqualsNoCase(group->GetName(), groupName);
  });
  return found == m_groups.end() ? nullptr : *found;
}

GroupPtr Run::GetGroup(std::string const& groupName) {
  if (!m_groups.empty() && !RefreshIfChanged()) {
    if (GroupPtr group = FindGroup(groupName)) return group;
  }
  LoadGroups(&groupName);
  if (GroupPtr group = FindGroup(groupName)) return group;
  throw Sumara::CException(157, "Group name: '" + groupName + "'");
}

std::vector<GroupPtr> Run::GetAllGroups() {
  const bool complete =
      !m_groups.empty() && !RefreshIfChanged() && m_groups.size() == m_headerExtensions.size();
  if (!complete) LoadGroups(nullptr);
  return m_groups;
}

void Run::LoadGroups(std::string const* filter) {
  if (!IsCalculationTypeSupported()) throw Sumara::CException(180, "Run: " + DirectoryAndName());
  if (m_headerExtensions.empty()) FindHeaders();
  const std::uint32_t targetType = State().TargetType();
  const auto isKnown = [&](const std::string& name) {
    return std::any_of(m_groups.begin(), m_groups.end(),
                       [&](const GroupPtr& group) { return group->GetName() == name; });
  };
  for (const std::string& extension : m_headerExtensions) {
    const std::string path = DirectoryAndName() + extension;
    const auto group =
        m_control->GetGroup(path, Sumara::PreviewMode::kWithoutStatistics, targetType);
    if (filter != nullptr ? !Sumara::EqualsNoCase(group->GetName(), *filter)
                          : isKnown(group->GetName()))
      continue;
    m_groups.push_back(BuildGroup(path, group));
    if (filter != nullptr) return;
  }
}

GroupPtr Run::BuildGroup(std::string const& headerPath,
                         std::shared_ptr<Sumara::IGroup> const& group) {
  std::vector<VariablePtr> variables;
  variables.reserve(group->GetNumberOfSeries());
  for (const std::string& name : group->GetSeriesNames()) {
    VariablePtr variable = KnownVariable(name, group->GetName());
    if (variable == nullptr) {
      variable = CreateVariable(name, group, m_control, /*dataType=*/0);
      EntryFor(name, group->GetName()).variable = variable;
    }
    variables.push_back(std::move(variable));
  }
  std::vector<IndependentVariablePtr> independentVariables;
  for (std::uint32_t position = 0; position < group->GetNumberOfAxes(); ++position) {
    independentVariables.push_back(
        std::make_shared<IndependentVariable>(group->GetAxis(position, /*mustExist=*/true), group));
  }
  return std::make_shared<Group>(headerPath, group, weak_from_this(), std::move(variables),
                                 std::move(independentVariables));
}

// Variables.

Run::VariableEntries* Run::FindEntries(std::string const& variableName) {
  const auto found = m_variables->find(variableName);
  return found == m_variables->end() ? nullptr : &found->second;
}

VariablePtr Run::KnownVariable(std::string const& variableName, std::string const& groupName) {
  VariableEntries* entries = FindEntries(variableName);
  const VariableEntry* entry = entries != nullptr ? FindEntry(*entries, groupName) : nullptr;
  return entry != nullptr ? entry->variable : nullptr;
}

Run::VariableEntry* Run::FindEntry(VariableEntries& entries, std::string const& groupName) {
  const auto found = std::find_if(entries.begin(), entries.end(), [&](const VariableEntry& entry) {
    return Sumara::EqualsNoCase(entry.group, groupName);
  });
  return found == entries.end() ? nullptr : &*found;
}

Run::VariableEntry& Run::EntryFor(std::string const& variableName, std::string const& groupName) {
  VariableEntries& entries = (*m_variables)[variableName];
  VariableEntry* found = FindEntry(entries, groupName);
  return found != nullptr ? *found : entries.emplace_back(VariableEntry{groupName, nullptr});
}

Run::VariableEntry* Run::Disambiguate(VariableEntries& entries, std::string const& variableName,
                                      std::string const& groupName, bool tolerateAbsence) {
  if (entries.empty()) throw Sumara::CException(159, PlainContext(variableName, groupName));
  if (groupName.empty()) {
    if (entries.size() == 1) return &entries.front();
    throw Sumara::CException(kFoundInSeveralGroups, ListContext(entries, variableName));
  }
  VariableEntry* found = FindEntry(entries, groupName);
  if (found != nullptr || tolerateAbsence) return found;
  throw Sumara::CException(164, ListContext(entries, variableName));
}

VariablePtr Run::FindVariable(std::string const& variableName, std::string const& groupName) {
  if (variableName.empty()) throw Sumara::CException(158);
  if (!m_headerExtensions.empty()) RefreshIfChanged();
  if (VariableEntries* entries = FindEntries(variableName)) {
    // A name that stands in other groups only is sought in the headers of the group that was named.
    const VariableEntry* entry =
        Disambiguate(*entries, variableName, groupName, /*tolerateAbsence=*/true);
    if (entry != nullptr && entry->variable != nullptr) return entry->variable;
  }
  return LoadVariable(variableName, groupName);
}

/// Puts a variable into the entry of its group that has none. Of the entries that were `known`
/// before one may hold a variable of that group already; it stays. Groups of one name have an entry
/// each.
void Run::Merge(VariableEntries& entries, std::size_t known, std::string const& groupName,
                VariablePtr variable) {
  bool isKnown = false;
  for (std::size_t i = 0; i < known; ++i) {
    if (!Sumara::EqualsNoCase(entries[i].group, groupName)) continue;
    isKnown = true;
    if (entries[i].variable != nullptr) continue;
    entries[i].variable = std::move(variable);
    return;
  }
  if (!isKnown) entries.push_back({groupName, std::move(variable)});
}

VariablePtr Run::LoadVariable(std::string const& variableName, std::string const& groupName) {
  if (!Sumara::IsDirectory(Directory()))
    throw Sumara::CException(139, Sumara::DirectoryContext(Directory()));
  if (m_headerExtensions.empty()) FindHeaders();
  const std::uint32_t targetType = State().TargetType();
  struct Found {
    std::string name;
    std::string group;
    VariablePtr variable;
  };
  std::vector<Found> found;
  for (const std::string& extension : m_headerExtensions) {
    const auto group = m_control->GetGroup(DirectoryAndName() + extension,
                                           Sumara::PreviewMode::kWithoutStatistics, targetType);
    if (!groupName.empty() && !Sumara::EqualsNoCase(group->GetName(), groupName)) continue;
    std::string name;
    if (!group->FindSeriesName(variableName, name)) continue;
    found.push_back(
        {name, group->GetName(), CreateVariable(name, group, m_control, /*dataType=*/0)});
  }
  if (!found.empty()) {
    VariableEntries& entries = (*m_variables)[found.front().name];
    const std::size_t known = entries.size();
    for (Found& each : found) Merge(entries, known, each.group, std::move(each.variable));
  }
  VariableEntries none;
  VariableEntries* entries = FindEntries(variableName);
  return Disambiguate(entries != nullptr ? *entries : none, variableName, groupName,
                      /*tolerateAbsence=*/false)
      ->variable;
}

VariablePtr Run::GetVariable(std::string const& variableName) {
  VariablePtr variable = FindVariable(variableName, {});
  if (variable == nullptr) throw Sumara::CException(159, PlainContext(variableName, {}));
  return variable;
}

VariablePtr Run::GetVariableFromSpecificOutputGroup(std::string const& variableName,
                                                    std::string const& specificGroupName) {
  if (specificGroupName.empty()) throw Sumara::CException(156, PlainContext(variableName, {}));
  VariablePtr variable = FindVariable(variableName, specificGroupName);
  if (variable == nullptr)
    throw Sumara::CException(159, PlainContext(variableName, specificGroupName));
  return variable;
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

bool Run::Unload(std::string const& variableName, std::string const& groupName) {
  if (variableName.empty()) throw Sumara::CException(158);
  VariableEntries* entries = FindEntries(variableName);
  if (entries == nullptr || entries->empty()) return false;
  VariableEntry* entry = nullptr;
  try {
    entry = Disambiguate(*entries, variableName, groupName, /*tolerateAbsence=*/false);
  } catch (const CExceptionBase& failure) {
    throw Sumara::CException(160, PlainContext(variableName, groupName), failure.what());
  }
  if (entry->variable != nullptr) entry->variable->Unload();
  entry->variable.reset();
  return true;
}

bool Run::UnloadVariable(std::string const& variableName) { return Unload(variableName, {}); }

bool Run::UnloadVariableFromSpecificGroup(std::string const& variableName,
                                          std::string const& specificGroupName) {
  if (specificGroupName.empty()) throw Sumara::CException(156, PlainContext(variableName, {}));
  return Unload(variableName, specificGroupName);
}

// Typed variables.

template <class T>
std::shared_ptr<Variable1D<T>> Run::GetVariable1D(std::string const& variableName) {
  return NarrowVariable<Variable1D<T>>(GetVariable(variableName), DirectoryAndName());
}

template <class T>
std::shared_ptr<Variable1D<T>> Run::GetVariable1DFromSpecificOutputGroup(
    std::string const& variableName, std::string const& specificGroupName) {
  return NarrowVariable<Variable1D<T>>(
      GetVariableFromSpecificOutputGroup(variableName, specificGroupName), DirectoryAndName());
}

template <class T>
std::shared_ptr<Variable2D<T>> Run::GetVariable2D(std::string const& variableName) {
  return NarrowVariable<Variable2D<T>>(GetVariable(variableName), DirectoryAndName());
}

template <class T>
std::shared_ptr<Variable2D<T>> Run::GetVariable2DFromSpecificOutputGroup(
    std::string const& variableName, std::string const& specificGroupName) {
  return NarrowVariable<Variable2D<T>>(
      GetVariableFromSpecificOutputGroup(variableName, specificGroupName), DirectoryAndName());
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
