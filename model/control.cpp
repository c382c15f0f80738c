#include "model/control.h"

#include <algorithm>
#include <numeric>
#include <type_traits>
#include <utility>

#include "core/error_context.h"
#include "core/exceptions.h"
#include "model/group_loader.h"
#include "model/model_context.h"

namespace Sumara {
namespace {

std::vector<std::size_t> AllOf(std::uint64_t count) {
  std::vector<std::size_t> indices(static_cast<std::size_t>(count));
  std::iota(indices.begin(), indices.end(), std::size_t{0});
  return indices;
}

std::uint64_t SecondaryCount(const IGroup& group) {
  return group.GetNumberOfAxes() < 2 ? 1 : group.GetNumberOfPoints(kSecondary);
}

std::vector<std::size_t> AllSecondary(const IGroup& group) {
  const std::uint64_t count = SecondaryCount(group);
  group.CheckPointCount(count);
  return AllOf(count);
}

void CheckTargetType(const IGroup& group, std::uint32_t targetType, const std::string& path) {
  if (targetType != 0 && targetType != group.GetDataType()) throw CException(66, FileContext(path));
}

void CheckRequestedCount(std::int32_t code, std::size_t requested, std::uint64_t present) {
  if (requested <= present) return;
  throw CException(code, "Requested: " + std::to_string(requested) +
                             " item(s); Present: " + std::to_string(present) + " item(s)");
}

std::string ItemContext(const std::string& item) { return "Requested item: '" + item + "'"; }

std::vector<std::size_t> SelectSeries(const IGroup& group, const std::vector<std::string>& names) {
  CheckRequestedCount(19, names.size(), group.GetNumberOfSeries());
  std::vector<std::size_t> indices;
  for (const std::string& name : names) {
    try {
      indices.push_back(static_cast<std::size_t>(group.GetSeriesIndex(name, /*exact=*/true)));
    } catch (const CException&) {
      throw CException(55, ItemContext(name));
    }
  }
  return indices;
}

/// What is asked for twice is read once, and all in the order of the file.
std::vector<std::size_t> AsSet(std::vector<std::size_t> indices) {
  std::sort(indices.begin(), indices.end());
  indices.erase(std::unique(indices.begin(), indices.end()), indices.end());
  return indices;
}

/// Values are found by exact equality, of equal ones the first.
template <class Value>
std::vector<std::size_t> SelectValues(const std::vector<Value>& labels,
                                      const std::vector<Value>& wanted) {
  CheckRequestedCount(20, wanted.size(), labels.size());
  std::vector<std::size_t> indices;
  for (const Value& value : wanted) {
    const auto found = std::find(labels.begin(), labels.end(), value);
    if (found == labels.end()) {
      if constexpr (std::is_same_v<Value, double>) {
        throw CException(43, ItemContext(NumberText(value)));
      } else {
        throw CException(43, ItemContext(value));
      }
    }
    indices.push_back(static_cast<std::size_t>(found - labels.begin()));
  }
  return indices;
}

std::vector<std::size_t> SelectSecondary(const IGroup& group, const std::vector<double>& values) {
  if (const auto axis = group.GetIntervalAxis(kSecondary, /*mustExist=*/false)) {
    return SelectValues(axis->GetValues(), values);
  }
  return SelectValues(group.GetNumericLabels(kSecondary), values);
}

std::vector<std::size_t> SelectSecondary(const IGroup& group,
                                         const std::vector<std::string>& values) {
  return SelectValues(group.GetStringLabels(kSecondary), values);
}

std::vector<std::size_t> SelectNumbers(const IGroup& group,
                                       const std::vector<std::size_t>& numbers) {
  if (numbers.empty()) return AllOf(group.GetNumberOfSeries());
  CheckRequestedCount(19, numbers.size(), group.GetNumberOfSeries());
  for (const std::size_t number : numbers) {
    if (number >= group.GetNumberOfSeries())
      throw CException(55, ItemContext(std::to_string(number)));
  }
  return numbers;
}

std::vector<std::size_t> SelectSecondaryNumbers(const IGroup& group,
                                                const std::vector<std::size_t>& numbers) {
  if (numbers.empty()) return AllSecondary(group);
  CheckRequestedCount(20, numbers.size(), SecondaryCount(group));
  for (const std::size_t number : numbers) {
    if (number < SecondaryCount(group)) continue;
    const auto axis = group.GetAxis(kSecondary, /*mustExist=*/true);
    throw CException(40, AxisContext(axis->GetName(), number, &group));
  }
  return numbers;
}

template <class Item>
void CheckNotEmpty(std::int32_t code, const std::vector<Item>& items, const std::string& path) {
  if (items.empty()) throw CException(code, FileContext(path));
}

}  // namespace

void CControl::AddGroup(const GroupPtr& group) {
  const std::string path = GetGroupFilePath(*group, GroupFile::kHeader);
  if (group->GetFileName().empty()) group->SetPath(path);
  if (group->GetGroupNumber() == kNoGroupNumber)
    group->SetGroupNumber(ParseGroupNumber(group->GetPath()));
  GroupKey key{group->GetGroupNumber(), path, group->GetPreviewMode()};
  if (m_groups.contains(key)) throw CException(47, FileContext(path));
  if (!group->IsPreview()) m_groupsByPath.insert(path);
  m_groups.emplace(std::move(key), group);
  group->SetRegistryPath(path);
}

CControl::GroupPtr CControl::FindExact(const std::string& path, PreviewMode previewMode) const {
  const auto found = m_groups.find({kNoGroupNumber, path, previewMode});
  return found == m_groups.end() ? nullptr : found->second;
}

std::uint32_t CControl::GetCachedGroup(GroupPtr& out, const std::string& path,
                                       PreviewMode previewMode) const {
  constexpr std::uint32_t kNotFound = 48;
  GroupPtr group = FindExact(path, previewMode);
  if (group == nullptr) return kNotFound;
  out = std::move(group);
  return 0;
}

void CControl::Rekey(const GroupPtr& group, const std::string& path, PreviewMode mode) {
  m_groups.erase({kNoGroupNumber, path, group->GetPreviewMode()});
  group->SetPreviewMode(mode);
  m_groups.insert_or_assign({group->GetGroupNumber(), path, mode}, group);
  if (mode == PreviewMode::kFull) m_groupsByPath.insert(path);
}

void CControl::MakeFull(const GroupPtr& group, const std::string& path) {
  group->CheckDataFileHasData();
  Rekey(group, path, PreviewMode::kFull);
}

CControl::GroupPtr CControl::GetGroup(const std::string& path, PreviewMode previewMode,
                                      std::uint32_t targetType) {
  const bool wantsPreview = previewMode != PreviewMode::kFull;
  GroupPtr group = FindExact(path, previewMode);
  if (group == nullptr && previewMode == PreviewMode::kWithoutStatistics) {
    group = FindExact(path, PreviewMode::kWithStatistics);
  }
  if (group == nullptr && previewMode == PreviewMode::kWithStatistics) {
    if (GroupPtr preview = FindExact(path, PreviewMode::kWithoutStatistics)) {
      LoadStoredStatistics(path, *preview);
      Rekey(preview, path, PreviewMode::kWithStatistics);
      return preview;
    }
  }
  if (group == nullptr && wantsPreview) group = FindExact(path, PreviewMode::kFull);
  if (group == nullptr && !wantsPreview) {
    if (GroupPtr preview = FindForLoad(path)) {
      CheckTargetType(*preview, targetType, path);
      MakeFull(preview, path);
      return preview;
    }
  }
  if (group != nullptr) {
    CheckTargetType(*group, targetType, path);
    return group;
  }
  ReadGroup(group, path, previewMode, targetType);
  return group;
}

void CControl::ReadGroup(GroupPtr& out, const std::string& path, PreviewMode previewMode,
                         std::uint32_t targetType) {
  if (out != nullptr && out->IsPreview() && previewMode == PreviewMode::kFull) return;
  GroupPtr entered;
  try {
    out = LoadGroup(path, previewMode, targetType, [&](const GroupPtr& group) {
      AddGroup(group);
      entered = group;
    });
  } catch (...) {
    if (entered != nullptr)
      RemoveGroup(entered->GetRegistryPath(), previewMode, /*keepReader=*/false);
    throw;
  }
}

void CControl::EnsureStoredStatistics(const GroupPtr& group) {
  if (group->HasReadStoredStatistics() || group->IsPreview() || group->GetLoadState() != 2) return;
  LoadStoredStatistics(group->GetPath(), *group);
}

CControl::GroupPtr CControl::FindForLoad(const std::string& path) const {
  for (const PreviewMode mode :
       {PreviewMode::kWithoutStatistics, PreviewMode::kWithStatistics, PreviewMode::kFull}) {
    if (GroupPtr group = FindExact(path, mode)) return group;
  }
  return nullptr;
}

CControl::GroupPtr CControl::ObtainFull(const std::string& path, std::uint32_t targetType) {
  GroupPtr group = FindForLoad(path);
  if (group == nullptr) ReadGroup(group, path, PreviewMode::kFull, targetType);
  if (group == nullptr) throw CException(63, FileContext(path));
  CheckTargetType(*group, targetType, path);
  if (group->IsPreview()) {
    MakeFull(group, path);
    m_groups.erase({kNoGroupNumber, path, PreviewMode::kWithStatistics});
  }
  return group;
}

CControl::GroupPtr CControl::Load(const std::string& path, std::uint32_t targetType,
                                  const Select& variables, const Select& secondary) {
  GroupPtr group = ObtainFull(path, targetType);
  const auto chosenVariables = AsSet(variables(*group));
  const auto chosenSecondary = AsSet(secondary(*group));
  if (group->GetLoadState() == 1) return group;
  group->LoadSeries(chosenVariables, chosenSecondary, m_keepReadersOpen);
  if (group->GetLoadState() == 1 || !m_keepReadersOpen) group->ResetReader();
  return group;
}

CControl::GroupPtr CControl::GetGroup(const std::string& path,
                                      const std::vector<std::string>& names,
                                      std::uint32_t targetType) {
  CheckNotEmpty(21, names, path);
  return Load(
      path, targetType, [&](const IGroup& group) { return SelectSeries(group, names); },
      AllSecondary);
}

CControl::GroupPtr CControl::GetGroup(const std::string& path,
                                      const std::vector<std::string>& names,
                                      const std::vector<double>& secondaryValues,
                                      std::uint32_t targetType) {
  CheckNotEmpty(21, names, path);
  CheckNotEmpty(22, secondaryValues, path);
  return Load(
      path, targetType, [&](const IGroup& group) { return SelectSeries(group, names); },
      [&](const IGroup& group) { return SelectSecondary(group, secondaryValues); });
}

CControl::GroupPtr CControl::GetGroup(const std::string& path,
                                      const std::vector<std::string>& names,
                                      const std::vector<std::string>& secondaryValues,
                                      std::uint32_t targetType) {
  CheckNotEmpty(21, names, path);
  CheckNotEmpty(22, secondaryValues, path);
  return Load(
      path, targetType, [&](const IGroup& group) { return SelectSeries(group, names); },
      [&](const IGroup& group) { return SelectSecondary(group, secondaryValues); });
}

CControl::GroupPtr CControl::GetGroup(const std::string& path,
                                      const std::vector<std::size_t>& numbers,
                                      const std::vector<std::size_t>& secondaryNumbers,
                                      std::uint32_t targetType) {
  return Load(
      path, targetType, [&](const IGroup& group) { return SelectNumbers(group, numbers); },
      [&](const IGroup& group) { return SelectSecondaryNumbers(group, secondaryNumbers); });
}

void CControl::RemoveGroup(Groups::iterator entry, bool keepReader) {
  if (entry == m_groups.end()) throw CException(49);
  const GroupPtr group = entry->second;
  if (entry->first.previewMode == PreviewMode::kFull && !keepReader) {
    group->CloseReader();
    m_groupsByPath.erase(entry->first.path);
  }
  m_groups.erase(entry);
}

void CControl::RemoveGroup(const std::string& path, PreviewMode previewMode, bool keepReader) {
  if (previewMode == PreviewMode::kFull) {
    RemoveGroup(m_groups.find({kNoGroupNumber, path, previewMode}), keepReader);
    return;
  }
  if (previewMode == PreviewMode::kWithStatistics) {
    m_groups.erase({kNoGroupNumber, path, PreviewMode::kWithoutStatistics});
  }
  m_groups.erase({kNoGroupNumber, path, previewMode});
}

std::string CControl::GetGroupFilePath(const IGroup& group, GroupFile kind) const {
  const std::string directory = group.GetDirectory();
  if (directory.empty()) return m_globalDirectory + GetFileName(kind, group.GetGroupNumber());
  const std::string name = kind == GroupFile::kHeader ? group.GetFileName()
                           : kind == GroupFile::kData ? group.GetDataFileName()
                                                      : std::string();
  if (name.empty()) throw CException(59, GroupContext(&group));
  return directory + name;
}

std::string CControl::GetFileName(GroupFile kind, std::uint64_t number) const {
  if (!m_globalPathSet) throw CException(84, "extension = " + std::to_string(number));
  return m_runName + GroupNumberToExtension(number, kind);
}

void CControl::SetGlobalDirectoryAndRunName(const std::string& directory,
                                            const std::string& runName) {
  m_globalDirectory = directory;
  m_runName = runName;
  m_globalPathSet = true;
}

void CControl::ReleaseReaders() {
  m_keepReadersOpen = false;
  for (const auto& [key, group] : m_groups) {
    if (group->IsReadOnly() && group->GetPreviewMode() == PreviewMode::kFull) group->ResetReader();
  }
}

}  // namespace Sumara
