#include "api/group_contents.h"

#include <algorithm>
#include <utility>

#include "api/variable.h"
#include "api/variable_factory.h"
#include "core/name_list.h"
#include "core/text.h"
#include "model/igroup.h"

namespace SumaraApi {

GroupContents::GroupContents(std::shared_ptr<Sumara::IGroup> group,
                             std::shared_ptr<Sumara::CControl> control)
    : m_group(std::move(group)),
      m_control(std::move(control)),
      m_independentVariables(std::make_shared<IndependentVariables>(m_group)) {}

const std::string& GroupContents::Name() const { return m_group->GetName(); }

const Sumara::NameList& GroupContents::VariableNames() const { return m_group->GetSeriesNames(); }

NamePlaces GroupContents::PlacesOf(std::string_view name) const {
  const Sumara::NameList& names = VariableNames();
  NamePlaces places;
  for (std::size_t place = 0; place < names.Size(); ++place) {
    const bool isExact = names[place] == name;
    if (!isExact && (places.first || !Sumara::EqualsNoCase(names[place], name))) continue;
    if (!places.first) places.first = place;
    places.best = isExact ? place : places.first;
    if (isExact) break;
  }
  return places;
}

void GroupContents::CheckVariable(std::size_t place) const {
  SumaraApi::CheckVariable(VariableNames()[place], *m_group, /*dataType=*/0);
}

VariablePtr GroupContents::Make(std::size_t place) {
  return CreateVariable(VariableNames()[place], m_group, m_control, m_independentVariables,
                        /*dataType=*/0);
}

VariablePtr GroupContents::RunVariable(std::size_t place) {
  const auto known = m_slots.find(place);
  if (known != m_slots.end() && known->second.ofRun != nullptr) return known->second.ofRun;
  VariablePtr variable = Make(place);
  Slot& slot = m_slots[place];
  slot.isUnloaded = false;
  slot.ofRun = variable;
  if (m_hasList && slot.listed == nullptr) slot.listed = variable;
  return variable;
}

void GroupContents::Unload(std::size_t place) {
  Slot& slot = m_slots[place];
  if (slot.ofRun != nullptr) {
    slot.ofRun->Unload();
  } else if (!slot.isUnloaded) {
    m_group->UnloadSeries(
        std::string(VariableNames()[place]));  // for one that nobody has asked for yet
  }
  slot.ofRun.reset();
  slot.isUnloaded = true;
}

bool GroupContents::IsUnloaded(std::size_t place) const {
  const auto known = m_slots.find(place);
  return known != m_slots.end() && known->second.isUnloaded;
}

void GroupContents::BeginList() {
  for (auto& [place, slot] : m_slots) {
    slot.listed = slot.ofRun;
    slot.isUnloaded = false;
  }
  m_hasList = true;
}

VariablePtr GroupContents::ListedVariable(std::size_t place) {
  const auto known = m_slots.find(place);
  if (known != m_slots.end() && known->second.listed != nullptr) return known->second.listed;
  return RunVariable(place);
}

}  // namespace SumaraApi
