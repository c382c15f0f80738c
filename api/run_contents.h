#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "api/group_contents.h"
#include "api/name_index.h"
#include "api/types.h"
#include "core/text.h"

namespace Sumara {
class CControl;
}

namespace SumaraApi {

/// The headers, groups and variables of a run, as they stood when they were first asked for.
///
/// Headers are listed at the first question and read when a name may stand in them. A variable's
/// name is known of a group once it was sought there, or once the group itself was handed out; a
/// plain name counts the groups of which it is known. Names of groups and variables are found so
/// spelled, else in any case. What fails leaves all as it was, but for headers that were read.
///
/// Once there are headers, the run has found its termination file in the directory before it asks:
/// the directory is not looked for again.
class RunContents {
 public:
  /// \param runPath the run's files without their extension.
  RunContents(std::string directory, std::string runName, bool keepReadersOpen);

  bool HasHeaders() const { return !m_headers.empty(); }
  /// Gives back the buffers of the groups, and from now on after each read.
  void ReleaseReaders();

  /// The groups handed out so far, first the one that was asked for first.
  const std::vector<GroupPtr>& Groups() const { return m_groups; }
  /// One of them by name; null if there is none, or if one that was not handed out is spelled so.
  GroupPtr FindGroup(const std::string& name, std::uint32_t targetType);
  /// \param targetType the data type code in which to hold groups, or 0 for that in their files.
  /// \throws Sumara::CException 157 if there is none of this name, and as the registry.
  GroupPtr LoadGroup(const std::string& name, const std::weak_ptr<Run>& run,
                     std::uint32_t targetType);
  /// Whether there is a group for each header.
  bool HasAllGroups() const { return m_groups.size() == m_headers.size(); }
  /// Hands out a group for each name.
  void LoadAllGroups(const std::weak_ptr<Run>& run, std::uint32_t targetType);

  /// \param groupName empty to seek in all groups.
  /// \throws Sumara::CException 139, 159, 164, 165
  VariablePtr GetVariable(const std::string& name, const std::string& groupName,
                          std::uint32_t targetType);
  /// \return false for a name that is not known. \throws Sumara::CException 160
  bool UnloadVariable(const std::string& name, const std::string& groupName);

 private:
  struct Header {
    std::string path;
    std::shared_ptr<GroupContents> contents;  ///< null until it is read
    GroupPtr group;                           ///< null until it is handed out
    std::size_t handedOut = 0;                ///< when that was, or 0
  };
  /// A name in a group.
  struct Holder {
    std::size_t header;
    std::size_t place;
    std::size_t first;           ///< the first place of that name in any case
    std::size_t knownSince = 0;  ///< the time since which it is known of the group, or 0
  };
  using Holders = std::vector<Holder>;

  GroupContents& ContentsOf(const Holder& holder) const {
    return *m_headers[holder.header].contents;
  }
  std::string RunPath() const { return m_directory + m_runName; }

  void ListHeaders();
  void ReadHeader(Header& header, std::uint32_t targetType);
  void ReadHeaders(std::uint32_t targetType);
  void ReadAsFarAsPossible(std::uint32_t targetType);
  bool HasReadAll() const { return m_readCount == m_headers.size(); }
  Header* FindHeader(const std::string& groupName, std::uint32_t targetType);
  GroupPtr FindInAnyCase(const std::string& name) const;
  bool IsNameOfGroup(std::string_view groupName) const;
  GroupPtr HandOut(Header& header, const std::weak_ptr<Run>& run);

  Holders HoldersOf(const std::string& name);
  Holders ScanFor(const std::string& name) const;
  Holders LookUp(const std::string& name);
  void MakeIndex();
  std::size_t KnownSince(const Holder& holder) const;
  Holders KnownOf(const Holders& holders) const;
  Holders InGroup(const Holders& holders, const std::string& groupName) const;
  void Know(const Holders& holders);
  const Holder* Choose(const Holders& known, const std::string& name, const std::string& groupName,
                       bool toleratesAbsence) const;
  bool HoldsSpelling(const Holders& holders, const std::string& name) const;
  std::optional<Holder> FindKnown(const std::string& name, const std::string& groupName,
                                  const Holders& holders, std::uint32_t targetType);
  VariablePtr VariableOf(const Holder& holder, std::uint32_t targetType);
  void CheckDirectory() const;
  std::string ListContext(const Holders& known, const std::string& name) const;

  std::string m_directory;  ///< with a trailing separator
  std::string m_runName;
  std::shared_ptr<Sumara::CControl> m_control;
  std::vector<Header> m_headers;  ///< in the order of the directory
  std::size_t m_readCount = 0;    ///< the first ones have been read
  std::uint32_t m_readType = 0;   ///< the data type that all of them have, or 0 if they differ
  std::vector<GroupPtr> m_groups;
  std::unordered_map<std::uint64_t, std::size_t> m_known;  ///< since when, by `KeyOf` a holder
  std::size_t m_time = 0;
  NameIndex m_index;  ///< of the headers read, from the second question on
  bool m_wasAsked = false;
};

}  // namespace SumaraApi
