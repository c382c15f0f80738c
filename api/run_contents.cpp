#include "api/run_contents.h"

#include <algorithm>
#include <utility>

#include "api/directory_listings.h"
#include "api/group.h"
#include "api/narrow_variable.h"
#include "core/error_context.h"
#include "core/exceptions.h"
#include "core/paths.h"
#include "model/control.h"
#include "vocabulary/run_files.h"

namespace SumaraApi {
namespace {

std::shared_ptr<Sumara::CControl> MakeControl(bool keepReadersOpen) {
  auto control = std::make_shared<Sumara::CControl>();
  if (keepReadersOpen) {
    control->SetKeepReadersOpen();
  } else {
    control->ReleaseReaders();
  }
  return control;
}

/// Equal for the spellings of one name in one group.
template <class Holder>
std::uint64_t KeyOf(const Holder& holder) {
  return std::uint64_t{holder.header} << 32 | holder.first;
}

}  // namespace

RunContents::RunContents(std::string directory, std::string runName, bool keepReadersOpen)
    : m_directory(std::move(directory)),
      m_runName(std::move(runName)),
      m_control(MakeControl(keepReadersOpen)) {}

void RunContents::ReleaseReaders() { m_control->ReleaseReaders(); }

std::string RunContents::ListContext(const Holders& known, const std::string& name) const {
  std::string text = "\n Variable name: '" + name + "'\n Run: " + RunPath() +
                     "\n Output groups in run containing this variable:\n";
  for (const Holder& holder : known) text += " '" + ContentsOf(holder).Name() + "'\n";
  return text;
}

// Headers.

void RunContents::ListHeaders() {
  if (HasHeaders()) return;
  std::vector<Header> headers;
  for (const std::string& fileName : FilesOfRun(m_directory, m_runName)) {
    if (IsHeaderExtension(Sumara::ExtensionOf(fileName)))
      headers.push_back({m_directory + fileName, nullptr, nullptr, 0});
  }
  m_headers = std::move(headers);
}

/// Reads a header, or has the registry refuse a group that is of another type than the wanted one.
void RunContents::ReadHeader(Header& header, std::uint32_t targetType) {
  const bool isRead = header.contents != nullptr;
  if (isRead && (targetType == 0 || targetType == header.contents->GetModelGroup()->GetDataType()))
    return;
  auto group =
      m_control->GetGroup(header.path, Sumara::PreviewMode::kWithoutStatistics, targetType);
  if (isRead) return;
  const std::uint32_t type = group->GetDataType();
  header.contents = std::make_shared<GroupContents>(std::move(group), m_control);
  m_readType = m_readCount == 0 || m_readType == type ? type : 0;
  ++m_readCount;
}

void RunContents::ReadHeaders(std::uint32_t targetType) {
  if (HasReadAll() && (targetType == 0 || targetType == m_readType)) return;
  for (Header& header : m_headers) ReadHeader(header, targetType);
}

void RunContents::ReadAsFarAsPossible(std::uint32_t targetType) {
  try {
    ReadHeaders(targetType);
  } catch (const CExceptionBase&) {
    // It is told to whoever needs what that header holds.
  }
}

// Groups.

bool RunContents::IsNameOfGroup(std::string_view groupName) const {
  return std::any_of(m_headers.begin(), m_headers.end(), [&](const Header& header) {
    return header.contents != nullptr && header.contents->Name() == groupName;
  });
}

/// The first group that was handed out under a name, whatever its case.
GroupPtr RunContents::FindInAnyCase(const std::string& name) const {
  const auto found = std::find_if(m_groups.begin(), m_groups.end(), [&](const GroupPtr& group) {
    return Sumara::EqualsNoCase(group->GetName(), name);
  });
  return found == m_groups.end() ? nullptr : *found;
}

GroupPtr RunContents::FindGroup(const std::string& name, std::uint32_t targetType) {
  const auto found = std::find_if(m_groups.begin(), m_groups.end(),
                                  [&](const GroupPtr& group) { return group->GetName() == name; });
  if (found != m_groups.end()) return *found;
  GroupPtr inAnyCase = FindInAnyCase(name);
  // Headers that were not read yet may tell of a group that is spelled so.
  if (inAnyCase != nullptr) ReadAsFarAsPossible(targetType);
  return IsNameOfGroup(name) ? nullptr : inAnyCase;
}

/// The header of a group by name. Where one in another case stands before it, those behind that are
/// read as far as they can be: they may tell of one that is spelled so.
RunContents::Header* RunContents::FindHeader(const std::string& groupName,
                                             std::uint32_t targetType) {
  Header* inAnyCase = nullptr;
  try {
    for (Header& header : m_headers) {
      ReadHeader(header, targetType);
      const std::string& name = header.contents->Name();
      if (name == groupName) return &header;
      if (inAnyCase == nullptr && Sumara::EqualsNoCase(name, groupName)) inAnyCase = &header;
    }
  } catch (const CExceptionBase&) {
    if (inAnyCase == nullptr) throw;
  }
  return inAnyCase;
}

GroupPtr RunContents::HandOut(Header& header, const std::weak_ptr<Run>& run) {
  if (!header.contents->VariableNames().Empty()) header.contents->CheckVariable(0);
  m_groups.push_back(std::make_shared<Group>(header.path, header.contents, run));
  header.group = m_groups.back();
  header.handedOut = ++m_time;
  header.contents->BeginList();
  return header.group;
}

GroupPtr RunContents::LoadGroup(const std::string& name, const std::weak_ptr<Run>& run,
                                std::uint32_t targetType) {
  ListHeaders();
  Header* const header = FindHeader(name, targetType);
  if (header == nullptr) throw Sumara::CException(157, "Group name: '" + name + "'");
  if (header->contents->Name() != name) {
    if (GroupPtr group = FindInAnyCase(name)) return group;
  }
  return header->group != nullptr ? header->group : HandOut(*header, run);
}

void RunContents::LoadAllGroups(const std::weak_ptr<Run>& run, std::uint32_t targetType) {
  ListHeaders();
  std::unordered_map<std::string, bool> names;
  for (const GroupPtr& group : m_groups) names.emplace(group->GetName(), true);
  for (Header& header : m_headers) {
    ReadHeader(header, targetType);
    if (names.emplace(header.contents->Name(), true).second) HandOut(header, run);
  }
}

// Names.

/// The groups read so far that hold a name, in the order of their headers: each where the name is
/// spelled so, else where it stands first in any case.
RunContents::Holders RunContents::HoldersOf(const std::string& name) {
  // Many runs are asked for one name only, which an index would not repay.
  if (m_readCount == 0) return {};
  return std::exchange(m_wasAsked, true) ? LookUp(name) : ScanFor(name);
}

RunContents::Holders RunContents::ScanFor(const std::string& name) const {
  Holders holders;
  for (std::size_t header = 0; header < m_readCount; ++header) {
    const NamePlaces places = m_headers[header].contents->PlacesOf(name);
    if (places.best) holders.push_back({header, *places.best, *places.first});
  }
  return holders;
}

void RunContents::MakeIndex() {
  NameIndex index;
  std::size_t names = 0;
  for (std::size_t header = 0; header < m_readCount; ++header)
    names += m_headers[header].contents->VariableNames().Size();
  index.Reserve(names);
  for (std::size_t header = 0; header < m_readCount; ++header)
    index.Add(m_headers[header].contents->VariableNames());
  m_index = std::move(index);
}

RunContents::Holders RunContents::LookUp(const std::string& name) {
  if (m_index.ListCount() != m_readCount) MakeIndex();
  Holders holders;
  bool isSpelledSo = false;
  m_index.ForEach(name, [&](const NameIndex::Place& found) {
    const bool isFirstOfGroup = holders.empty() || holders.back().header != found.list;
    if (!isFirstOfGroup && isSpelledSo) return;
    const bool isExact = m_headers[found.list].contents->VariableNames()[found.place] == name;
    if (isFirstOfGroup) {
      holders.push_back({found.list, found.place, found.place});
    } else if (isExact) {
      holders.back().place = found.place;
    }
    isSpelledSo = isExact;
  });
  return holders;
}

/// Since when a name is known of a group: 0 if it is not.
std::size_t RunContents::KnownSince(const Holder& holder) const {
  const auto known = m_known.find(KeyOf(holder));
  return known != m_known.end() ? known->second : m_headers[holder.header].handedOut;
}

/// Those of which the name is known, in the order in which they were met.
RunContents::Holders RunContents::KnownOf(const Holders& holders) const {
  Holders known;
  for (Holder holder : holders) {
    holder.knownSince = KnownSince(holder);
    if (holder.knownSince != 0) known.push_back(holder);
  }
  std::sort(known.begin(), known.end(), [](const Holder& a, const Holder& b) {
    return std::pair(a.knownSince, a.header) < std::pair(b.knownSince, b.header);
  });
  return known;
}

RunContents::Holders RunContents::InGroup(const Holders& holders,
                                          const std::string& groupName) const {
  if (groupName.empty()) return holders;
  const bool isSpelledSo = IsNameOfGroup(groupName);
  Holders inGroup;
  for (const Holder& holder : holders) {
    const std::string& name = ContentsOf(holder).Name();
    if (isSpelledSo ? name == groupName : Sumara::EqualsNoCase(name, groupName))
      inGroup.push_back(holder);
  }
  return inGroup;
}

void RunContents::Know(const Holders& holders) {
  if (holders.empty()) return;
  std::vector<std::uint64_t> added;
  added.reserve(holders.size());
  try {
    for (const Holder& holder : holders) {
      const std::size_t handedOut = m_headers[holder.header].handedOut;
      const std::uint64_t key = KeyOf(holder);
      if (m_known.emplace(key, handedOut != 0 ? handedOut : m_time + 1).second)
        added.push_back(key);
    }
  } catch (...) {
    for (const std::uint64_t key : added) m_known.erase(key);
    throw;
  }
  ++m_time;
}

// Variables.

const RunContents::Holder* RunContents::Choose(const Holders& known, const std::string& name,
                                               const std::string& groupName,
                                               bool toleratesAbsence) const {
  if (known.empty()) throw Sumara::CException(159, VariableContext(name, groupName, RunPath()));
  if (groupName.empty()) {
    if (known.size() == 1) return &known.front();
    throw Sumara::CException(165, ListContext(known, name));
  }
  const Holders inGroup = InGroup(known, groupName);
  if (!inGroup.empty()) {
    return &*std::find_if(known.begin(), known.end(), [&](const Holder& holder) {
      return holder.header == inGroup.front().header;
    });
  }
  if (toleratesAbsence) return nullptr;
  throw Sumara::CException(164, ListContext(known, name));
}

void RunContents::CheckDirectory() const {
  if (!Sumara::IsDirectory(m_directory))
    throw Sumara::CException(139, Sumara::DirectoryContext(m_directory));
}

VariablePtr RunContents::VariableOf(const Holder& holder, std::uint32_t targetType) {
  GroupContents& contents = ContentsOf(holder);
  if (contents.IsUnloaded(holder.place)) ReadHeader(m_headers[holder.header], targetType);
  return contents.RunVariable(holder.place);
}

/// Whether one of the holders spells the name so.
bool RunContents::HoldsSpelling(const Holders& holders, const std::string& name) const {
  return std::any_of(holders.begin(), holders.end(), [&](const Holder& holder) {
    return ContentsOf(holder).VariableNames()[holder.place] == name;
  });
}

/// The holder of a name that is known; none if it is to be sought in the headers.
std::optional<RunContents::Holder> RunContents::FindKnown(const std::string& name,
                                                          const std::string& groupName,
                                                          const Holders& holders,
                                                          std::uint32_t targetType) {
  const Holders known = KnownOf(holders);
  if (known.empty()) return std::nullopt;
  // What is known in another case only must not stand for a name that a header spells so.
  if (groupName.empty() && !HoldsSpelling(known, name) && HoldsSpelling(holders, name))
    return std::nullopt;
  // A name that is known of other groups only is sought in the headers of the group that was named.
  const Holder* holder = Choose(known, name, groupName, /*toleratesAbsence=*/true);
  if (holder != nullptr && !groupName.empty() && ContentsOf(*holder).Name() != groupName) {
    // Headers that were not read yet may tell of a group that is spelled so.
    ReadAsFarAsPossible(targetType);
    holder = Choose(known, name, groupName, /*toleratesAbsence=*/true);
  }
  if (holder == nullptr) return std::nullopt;
  return *holder;
}

VariablePtr RunContents::GetVariable(const std::string& name, const std::string& groupName,
                                     std::uint32_t targetType) {
  const std::size_t readBefore = m_readCount;
  Holders holders = HoldersOf(name);
  if (const auto known = FindKnown(name, groupName, holders, targetType))
    return VariableOf(*known, targetType);
  if (!HasHeaders()) {
    CheckDirectory();
    ListHeaders();
  }
  ReadHeaders(targetType);
  if (m_readCount != readBefore) holders = HoldersOf(name);
  const Holders sought = InGroup(holders, groupName);
  for (const Holder& holder : sought) ContentsOf(holder).CheckVariable(holder.place);
  Know(sought);
  const Holders known = KnownOf(holders);
  return VariableOf(*Choose(known, name, groupName, /*toleratesAbsence=*/false), targetType);
}

bool RunContents::UnloadVariable(const std::string& name, const std::string& groupName) {
  const Holders known = KnownOf(HoldersOf(name));
  if (known.empty()) return false;
  const Holder* holder = nullptr;
  try {
    holder = Choose(known, name, groupName, /*toleratesAbsence=*/false);
  } catch (const CExceptionBase& failure) {
    throw Sumara::CException(160, VariableContext(name, groupName, RunPath()), failure.what());
  }
  ContentsOf(*holder).Unload(holder->place);
  return true;
}

}  // namespace SumaraApi
