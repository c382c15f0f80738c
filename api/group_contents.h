#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "api/independent_variables.h"
#include "api/types.h"

namespace Sumara {
class CControl;
class IGroup;
class NameList;
}  // namespace Sumara

namespace SumaraApi {

/// Where a name stands in a group.
struct NamePlaces {
  std::optional<std::size_t> best;   ///< so spelled, else the first in any case
  std::optional<std::size_t> first;  ///< in any case
};

/// What scripts see of one group of a run: its variables and its independent variables, each made
/// when it is asked for.
///
/// The run and the list of a `Group` share variables, but not their end: a variable that the run
/// unloads stays in the list.
class GroupContents {
 public:
  GroupContents(std::shared_ptr<Sumara::IGroup> group, std::shared_ptr<Sumara::CControl> control);

  const std::shared_ptr<Sumara::IGroup>& GetModelGroup() const { return m_group; }
  const std::string& Name() const;
  /// In the order of the header.
  const Sumara::NameList& VariableNames() const;
  NamePlaces PlacesOf(std::string_view name) const;
  std::optional<std::size_t> PlaceOf(std::string_view name) const { return PlacesOf(name).best; }

  const IndependentVariablesPtr& GetIndependentVariables() const { return m_independentVariables; }

  /// Refuses a variable that cannot be made. \throws Sumara::CException 170, 172
  void CheckVariable(std::size_t place) const;
  /// The variable that the run hands out for a name.
  VariablePtr RunVariable(std::size_t place);
  /// Releases it with its data. From then on the run hands out another one.
  void Unload(std::size_t place);
  bool IsUnloaded(std::size_t place) const;

  /// Has a list begin, with the variables that the run hands out now.
  void BeginList();
  /// The variable in the list.
  VariablePtr ListedVariable(std::size_t place);

 private:
  struct Slot {
    VariablePtr ofRun;
    VariablePtr listed;
    bool isUnloaded = false;
  };

  VariablePtr Make(std::size_t place);

  std::shared_ptr<Sumara::IGroup> m_group;
  std::shared_ptr<Sumara::CControl> m_control;
  IndependentVariablesPtr m_independentVariables;
  std::unordered_map<std::size_t, Slot> m_slots;  ///< of the names that were asked for
  bool m_hasList = false;
};

}  // namespace SumaraApi
