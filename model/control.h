#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "model/group_number.h"
#include "model/igroup.h"
#include "model/load_request.h"

namespace Sumara {

/// The key of a group in its registry. The number takes no part in equality or hash: a path may
/// stand there once for each preview mode.
struct GroupKey {
  std::uint64_t number = kNoGroupNumber;
  std::string path;
  PreviewMode previewMode = PreviewMode::kFull;

  bool operator==(const GroupKey& other) const {
    return previewMode == other.previewMode && path == other.path;
  }
};

struct GroupKeyHash {
  std::size_t operator()(const GroupKey& key) const { return std::hash<std::string>{}(key.path); }
};

/// The groups of one run, by path and mode.
///
/// It reads a header when its group is not cached yet, turns previews into full groups when their
/// data is asked for, and drops groups again. Callers share the groups.
class CControl {
 public:
  using GroupPtr = std::shared_ptr<IGroup>;
  using Groups = std::unordered_map<GroupKey, GroupPtr, GroupKeyHash>;

  CControl() = default;
  virtual ~CControl() = default;
  CControl(const CControl&) = delete;
  CControl& operator=(const CControl&) = delete;

  /// \throws CException 47 if there is a group of this path and mode.
  void AddGroup(const GroupPtr& group);

  /// \return 0 and the group in `out`, or the code 48; nothing is raised.
  std::uint32_t GetCachedGroup(GroupPtr& out, const std::string& path,
                               PreviewMode previewMode) const;

  /// The cached or read group, without series data. A better group than the one asked for will do:
  /// a full one for a preview, one with statistics for one without. \param targetType the type in
  /// which to hold the data, or 0. \throws CException 66 if the group is cached in another type,
  /// 81, and as `LoadGroup`.
  GroupPtr GetGroup(const std::string& path, PreviewMode previewMode, std::uint32_t targetType);

  /// The group with all data of these series loaded. \throws CException 21, 66, 19, 55, 25
  GroupPtr GetGroup(const std::string& path, const std::vector<std::string>& names,
                    std::uint32_t targetType);
  /// The group with the data of these series at these secondary values. \throws CException 22, 20,
  /// 43 too
  GroupPtr GetGroup(const std::string& path, const std::vector<std::string>& names,
                    const std::vector<double>& secondaryValues, std::uint32_t targetType);
  GroupPtr GetGroup(const std::string& path, const std::vector<std::string>& names,
                    const std::vector<std::string>& secondaryValues, std::uint32_t targetType);
  /// The same by indices; an empty list asks for all.
  GroupPtr GetGroup(const std::string& path, const std::vector<std::size_t>& numbers,
                    const std::vector<std::size_t>& secondaryNumbers, std::uint32_t targetType);

  /// Reads the header at `path`, unless `out` is a preview that has to become full.
  void ReadGroup(GroupPtr& out, const std::string& path, PreviewMode previewMode,
                 std::uint32_t targetType);

  /// Has the header's statistics blocks read into a group that became full without them.
  void EnsureStoredStatistics(const GroupPtr& group);

  /// \throws CException 49 for the end of the table.
  void RemoveGroup(Groups::iterator entry, bool keepReader);
  void RemoveGroup(const std::string& path, PreviewMode previewMode, bool keepReader);

  /// \throws CException 59, 84
  std::string GetGroupFilePath(const IGroup& group, GroupFile kind) const;
  std::string GetFileName(GroupFile kind, std::uint64_t number) const;
  void SetGlobalDirectoryAndRunName(const std::string& directory, const std::string& runName);

  void SetKeepReadersOpen() { m_keepReadersOpen = true; }
  /// Gives back the buffers of all full groups, and from now on after each read.
  void ReleaseReaders();
  bool KeepsReadersOpen() const { return m_keepReadersOpen; }

  const Groups& GetGroups() const { return m_groups; }

 private:
  Groups::iterator Enter(const GroupPtr& group);
  GroupPtr FindForLoad(const std::string& path) const;
  GroupPtr FindExact(const std::string& path, PreviewMode previewMode) const;
  GroupPtr ObtainFull(const std::string& path, std::uint32_t targetType);
  void MakeFull(const GroupPtr& group, const std::string& path);
  void Rekey(const GroupPtr& group, const std::string& path, PreviewMode mode);
  GroupPtr Load(const std::string& path, const LoadRequest& request, std::uint32_t targetType);

  Groups m_groups;
  bool m_globalPathSet = false;
  std::string m_globalDirectory;
  std::string m_runName;
  bool m_keepReadersOpen = true;
};

}  // namespace Sumara
