#include "vocabulary/run_files.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "core/text.h"

namespace SumaraApi {
namespace {

bool IsUnsure(const Sumara::DirectoryEntry& entry) {
  return entry.type == Sumara::EntryType::kLink || entry.type == Sumara::EntryType::kUnknown;
}

}  // namespace

bool IsTerminationFileName(std::string_view fileName) {
  return Sumara::EqualsNoCase(Sumara::ExtensionOf(fileName), kTerminationExtension);
}

bool IsHeaderExtension(std::string_view extension) {
  return extension.size() >= 3 && extension[1] == '%' &&
         std::all_of(extension.begin() + 2, extension.end(), Sumara::IsDigit);
}

std::int32_t HeaderNumberOf(std::string_view extension) {
  if (!IsHeaderExtension(extension)) return -1;
  std::int32_t number = -1;
  const auto read =
      std::from_chars(extension.data() + 2, extension.data() + extension.size(), number);
  return read.ec == std::errc{} ? number : -1;
}

CalculationType CalculationTypeOfExtension(std::string_view extension) {
  if (Sumara::EqualsNoCase(extension, ".$mx")) return CalculationType::UltimateLoadsAnalysis;
  if (Sumara::EqualsNoCase(extension, ".$fp")) return CalculationType::ExtremeLoadExtrapolation;
  if (Sumara::EqualsNoCase(extension, ".sea")) return CalculationType::SeaState;
  return CalculationType::Unknown;
}

DirectoryListing::DirectoryListing(std::string directory) : m_directory(std::move(directory)) {
  Sumara::DirectoryReader reader(m_directory, "directory_iterator::directory_iterator");
  while (const Sumara::DirectoryEntry* entry = reader.Next("directory_iterator::operator++")) {
    const auto at = static_cast<std::uint32_t>(m_entries.size());
    m_entries.push_back(*entry);
    if (IsUnsure(*entry)) m_unsure.push_back(at);
    m_byBaseName.push_back({Sumara::HashNoCase{}(Sumara::StemOf(entry->name)), at});
  }
  std::stable_sort(m_byBaseName.begin(), m_byBaseName.end(),
                   [](const Hashed& a, const Hashed& b) { return a.hash < b.hash; });
}

void DirectoryListing::CheckSearchable() const {
  if (m_entries.empty()) return;
  Sumara::IsRegularFile(m_directory + m_entries.front().name, Sumara::EntryType::kUnknown);
}

/// Whether each of the entries that the directory does not tell of is a regular file.
std::vector<bool> DirectoryListing::AskUnsureEntries() const {
  std::vector<bool> areFiles;
  for (const std::uint32_t at : m_unsure) {
    const Sumara::DirectoryEntry& entry = m_entries[at];
    areFiles.push_back(Sumara::IsRegularFile(m_directory + entry.name, entry.type));
  }
  return areFiles;
}

std::vector<std::string> DirectoryListing::FilesOf(std::string_view runName) const {
  const std::vector<bool> areFiles = AskUnsureEntries();
  const auto isFile = [&](std::uint32_t at) {
    const auto unsure = std::lower_bound(m_unsure.begin(), m_unsure.end(), at);
    if (unsure == m_unsure.end() || *unsure != at)
      return m_entries[at].type == Sumara::EntryType::kFile;
    return static_cast<bool>(areFiles[static_cast<std::size_t>(unsure - m_unsure.begin())]);
  };
  std::vector<std::string> spelledSo;
  std::vector<std::string> others;
  const Hashed sought{Sumara::HashNoCase{}(runName), 0};
  const auto [begin, end] =
      std::equal_range(m_byBaseName.begin(), m_byBaseName.end(), sought,
                       [](const Hashed& a, const Hashed& b) { return a.hash < b.hash; });
  for (auto found = begin; found != end; ++found) {
    const std::string& name = m_entries[found->entry].name;
    const std::string_view stem = Sumara::StemOf(name);
    if (!Sumara::EqualsNoCase(stem, runName) || !isFile(found->entry)) continue;
    (stem == runName ? spelledSo : others).push_back(name);
  }
  for (std::string& other : others) {
    const std::string_view extension = Sumara::ExtensionOf(other);
    const bool isThere =
        std::any_of(spelledSo.begin(), spelledSo.end(), [&](const std::string& name) {
          return Sumara::EqualsNoCase(Sumara::ExtensionOf(name), extension);
        });
    if (!isThere) spelledSo.push_back(std::move(other));
  }
  return spelledSo;
}

}  // namespace SumaraApi
