#include "tables/run_directory.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "core/text.h"
#include "tables/natural_order.h"
#include "vocabulary/run_files.h"

namespace Tabulon {
namespace {

using Sumara::EntryType;

constexpr const char* kOpen = "directory_iterator::directory_iterator";
constexpr const char* kAdvance = "directory_iterator::operator++";
constexpr std::size_t kFirstSlots = 64;
constexpr std::size_t kEntriesBetweenQuestions = 256;

/// A link that leads nowhere, or in a circle, is no file.
bool IsFile(const std::string& path, EntryType type) {
  try {
    return Sumara::IsRegularFile(path, type);
  } catch (const std::filesystem::filesystem_error&) {
    return false;
  }
}

std::size_t HashNoCase(std::string_view text) {
  std::uint64_t hash = 0xCBF29CE484222325u;
  for (const char c : text) {
    hash = (hash ^ static_cast<unsigned char>(Sumara::ToLower(c))) * 0x100000001B3u;
  }
  return static_cast<std::size_t>(hash ^ (hash >> 29u));
}

}  // namespace

RunDirectory::RunDirectory(std::string path, const StopQuestion& stop)
    : m_path(std::move(path)), m_slots(kFirstSlots, -1) {
  Sumara::DirectoryReader entries(m_path.empty() ? "." : m_path, kOpen);
  for (std::size_t i = 0; const auto* entry = entries.Next(kAdvance); ++i) {
    Take(*entry);
    if (i % kEntriesBetweenQuestions == 0) Ask(stop);
  }
  std::sort(m_directories.begin(), m_directories.end(),
            [](const auto& a, const auto& b) { return CompareNaturally(a, b) < 0; });
}

std::vector<std::string> RunDirectory::Directories() const { return m_directories; }

RunDirectory::Kind RunDirectory::KindOf(std::string_view extension) {
  if (extension.size() < 3) return Kind::kNone;
  if (extension[1] == '%') {
    return SumaraApi::IsHeaderExtension(extension) ? Kind::kHeader : Kind::kNone;
  }
  if (extension.size() != SumaraApi::kTerminationExtension.size() ||
      Sumara::IsDigit(extension.back())) {
    return Kind::kNone;  // data files, most of all
  }
  if (Sumara::EqualsNoCase(extension, SumaraApi::kTerminationExtension)) return Kind::kTermination;
  if (Sumara::EqualsNoCase(extension, SumaraApi::kMessageExtension)) return Kind::kMessages;
  if (Sumara::EqualsNoCase(extension, SumaraApi::kVerificationExtension))
    return Kind::kVerification;
  const bool tells =
      SumaraApi::CalculationTypeOfExtension(extension) != SumaraApi::CalculationType::Unknown;
  return tells ? Kind::kOther : Kind::kNone;
}

void RunDirectory::Take(const Sumara::DirectoryEntry& entry) {
  const std::string_view name = entry.name;
  const bool mayBeDirectory =
      entry.type == EntryType::kDirectory || entry.type == EntryType::kUnknown;
  if (mayBeDirectory && Sumara::IsOwnDirectory(m_path + entry.name, entry.type)) {
    m_directories.push_back(entry.name);
    return;
  }
  const std::string_view extension = Sumara::ExtensionOf(name);
  const Kind kind = KindOf(extension);
  if (kind == Kind::kNone) return;
  if (entry.type != EntryType::kFile && !IsFile(m_path + entry.name, entry.type)) return;
  const std::string_view stem = Sumara::StemOf(name);
  Family& family = FamilyOf(stem);
  m_files.push_back(
      {static_cast<std::uint32_t>(m_names.size()), static_cast<std::uint32_t>(name.size()),
       static_cast<std::uint32_t>(stem.size()), kind,
       kind == Kind::kHeader ? SumaraApi::HeaderNumberOf(extension) : 0, family.first});
  family.first = static_cast<std::int32_t>(m_files.size() - 1);
  family.isRun = family.isRun || kind == Kind::kTermination;
  m_names.append(name);
}

RunDirectory::Family& RunDirectory::FamilyOf(std::string_view stem) {
  if (2 * m_families.size() >= m_slots.size()) GrowSlots();
  std::size_t slot = HashNoCase(stem) & (m_slots.size() - 1);
  for (; m_slots[slot] >= 0; slot = (slot + 1) & (m_slots.size() - 1)) {
    Family& family = m_families[static_cast<std::size_t>(m_slots[slot])];
    if (Sumara::EqualsNoCase(StemOf(m_files[static_cast<std::size_t>(family.first)]), stem))
      return family;
  }
  m_slots[slot] = static_cast<std::int32_t>(m_families.size());
  return m_families.emplace_back();
}

void RunDirectory::GrowSlots() {
  m_slots.assign(4 * m_slots.size(), -1);
  for (std::size_t i = 0; i < m_families.size(); ++i) {
    const File& file = m_files[static_cast<std::size_t>(m_families[i].first)];
    std::size_t slot = HashNoCase(StemOf(file)) & (m_slots.size() - 1);
    while (m_slots[slot] >= 0) slot = (slot + 1) & (m_slots.size() - 1);
    m_slots[slot] = static_cast<std::int32_t>(i);
  }
}

std::vector<RunFiles> RunDirectory::Runs() const {
  std::vector<Named> names;
  for (const Family& family : m_families) {
    if (family.isRun) AddNames(family, names);
  }
  std::sort(names.begin(), names.end(),
            [](const Named& a, const Named& b) { return CompareNaturally(a.name, b.name) < 0; });
  std::vector<RunFiles> runs;
  runs.reserve(names.size());
  for (const Named& run : names) runs.push_back(RunOf(run));
  return runs;
}

/// A run for each spelling of the base name that a termination file has.
void RunDirectory::AddNames(const Family& family, std::vector<Named>& names) const {
  const std::size_t first = names.size();
  for (std::int32_t i = family.first; i >= 0; i = m_files[static_cast<std::size_t>(i)].next) {
    const File& file = m_files[static_cast<std::size_t>(i)];
    if (file.kind != Kind::kTermination) continue;
    const std::string_view name = StemOf(file);
    const bool isKnown =
        std::any_of(names.begin() + static_cast<std::ptrdiff_t>(first), names.end(),
                    [&](const Named& run) { return run.name == name; });
    if (!isKnown) names.push_back({name, &family});
  }
}

RunFiles RunDirectory::RunOf(const Named& named) const {
  const Family& family = *named.family;
  RunFiles run;
  run.directory = m_path;
  run.name = named.name;
  for (const bool exact : {true, false}) {  // files that spell the name as the run does come first
    for (std::int32_t i = family.first; i >= 0; i = m_files[static_cast<std::size_t>(i)].next) {
      const File& file = m_files[static_cast<std::size_t>(i)];
      if ((StemOf(file) == run.name) == exact) AddFile(file, exact, run);
    }
  }
  std::sort(run.headers.begin(), run.headers.end(),
            [](const HeaderFile& a, const HeaderFile& b) { return a.number < b.number; });
  std::sort(run.otherKinds.begin(), run.otherKinds.end());
  return run;
}

void RunDirectory::AddFile(const File& file, bool isExact, RunFiles& run) const {
  const std::string_view name = NameOf(file);
  // Of spellings of an extension the usual one is taken, then the first by its bytes.
  const auto take = [&](std::string& place, std::string_view usual) {
    if (place.empty() || name.substr(file.stemSize) == usual ||
        (Sumara::ExtensionOf(place) != usual && name < place)) {
      place = name;
    }
  };
  const auto takeFirst = [&](std::string& place, std::string_view usual) {
    if (isExact || place.empty()) take(place, usual);
  };
  switch (file.kind) {
    case Kind::kTermination:
      if (isExact) take(run.termination, SumaraApi::kTerminationExtension);
      break;
    case Kind::kMessages:
      takeFirst(run.messages, SumaraApi::kMessageExtension);
      break;
    case Kind::kVerification:
      takeFirst(run.verification, SumaraApi::kVerificationExtension);
      break;
    case Kind::kHeader: {
      const auto same =
          std::find_if(run.headers.begin(), run.headers.end(),
                       [&](const auto& header) { return header.number == file.number; });
      if (same == run.headers.end()) run.headers.push_back({std::string(name), file.number});
      break;
    }
    default:
      run.otherKinds.emplace_back(name.substr(file.stemSize));
  }
}

}  // namespace Tabulon
