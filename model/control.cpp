#include "model/control.h"

#include <utility>

#include "core/error_context.h"
#include "core/exceptions.h"
#include "model/group_loader.h"
#include "model/model_context.h"

namespace Sumara {
namespace {

void CheckTargetType(const IGroup& group, std::uint32_t targetType, const std::string& path) {
  if (targetType != 0 && targetType != group.GetDataType()) throw CException(66, FileContext(path));
}

}  // namespace

void CControl::AddGroup(const GroupPtr& group) { Enter(group); }

CControl::Groups::iterator CControl::Enter(const GroupPtr& group) {
  const std::string path = GetGroupFilePath(*group, GroupFile::kHeader);
  if (group->GetFileName().empty()) group->SetPath(path);
  if (group->GetGroupNumber() == kNoGroupNumber)
    group->SetGroupNumber(ParseGroupNumber(group->GetPath()));
  GroupKey key{group->GetGroupNumber(), path, group->GetPreviewMode()};
  if (m_groups.contains(key)) throw CException(47, FileContext(path));
  group->SetRegistryPath(path);
  return m_groups.emplace(std::move(key), group).first;
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

/// Puts a group under another mode. Nothing can fail once its entry is taken out.
void CControl::Rekey(const GroupPtr& group, const std::string& path, PreviewMode mode) {
  GroupKey key{group->GetGroupNumber(), path, mode};
  auto entry = m_groups.extract({kNoGroupNumber, path, group->GetPreviewMode()});
  m_groups.erase(key);
  group->SetPreviewMode(mode);
  entry.key() = std::move(key);
  m_groups.insert(std::move(entry));
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
  auto entered = m_groups.end();
  try {
    out = LoadGroup(path, previewMode, targetType,
                    [&](const GroupPtr& group) { entered = Enter(group); });
  } catch (...) {
    if (entered != m_groups.end()) RemoveGroup(entered, /*keepReader=*/false);
    throw;
  }
}

void CControl::EnsureStoredStatistics(const GroupPtr& group) {
  if (group->HasReadStoredStatistics() || group->IsPreview()) return;
  if (group->GetLoadState() != kNotAllLoaded) return;
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

CControl::GroupPtr CControl::Load(const std::string& path, const LoadRequest& request,
                                  std::uint32_t targetType) {
  CheckNotEmpty(request, path);
  GroupPtr group = ObtainFull(path, targetType);
  const LoadPlaces places = PlacesOf(request, *group);
  if (group->AreLoaded(places.variables, places.secondary)) return group;
  group->LoadSeries(places.variables, places.secondary, m_keepReadersOpen);
  if (group->GetLoadState() == kAllLoaded || !m_keepReadersOpen) group->ResetReader();
  return group;
}

CControl::GroupPtr CControl::GetGroup(const std::string& path,
                                      const std::vector<std::string>& names,
                                      std::uint32_t targetType) {
  return Load(path, {names, AllSecondary{}}, targetType);
}

CControl::GroupPtr CControl::GetGroup(const std::string& path,
                                      const std::vector<std::string>& names,
                                      const std::vector<double>& secondaryValues,
                                      std::uint32_t targetType) {
  return Load(path, {names, secondaryValues}, targetType);
}

CControl::GroupPtr CControl::GetGroup(const std::string& path,
                                      const std::vector<std::string>& names,
                                      const std::vector<std::string>& secondaryValues,
                                      std::uint32_t targetType) {
  return Load(path, {names, secondaryValues}, targetType);
}

CControl::GroupPtr CControl::GetGroup(const std::string& path,
                                      const std::vector<std::size_t>& numbers,
                                      const std::vector<std::size_t>& secondaryNumbers,
                                      std::uint32_t targetType) {
  return Load(path, {numbers, secondaryNumbers}, targetType);
}

void CControl::RemoveGroup(Groups::iterator entry, bool keepReader) {
  if (entry == m_groups.end()) throw CException(49);
  const GroupPtr group = entry->second;
  if (entry->first.previewMode == PreviewMode::kFull && !keepReader) group->CloseReader();
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
