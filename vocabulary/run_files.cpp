#include "vocabulary/run_files.h"

#include <algorithm>
#include <charconv>

#include "core/directory.h"
#include "core/text.h"

namespace SumaraApi {

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

void ForEachFileOfRun(const std::string& directory, const std::string& runName,
                      const std::function<bool(const std::string& fileName)>& visit) {
  Sumara::DirectoryReader entries(directory, "directory_iterator::directory_iterator");
  while (const Sumara::DirectoryEntry* entry = entries.Next("directory_iterator::operator++")) {
    // Most entries tell their type; a link that cannot be followed is an error, whatever its name.
    if (entry->type != Sumara::EntryType::kFile &&
        !Sumara::IsRegularFile(directory + entry->name, entry->type)) {
      continue;
    }
    if (!Sumara::EqualsNoCase(Sumara::StemOf(entry->name), runName)) continue;
    if (!visit(entry->name)) return;
  }
}

}  // namespace SumaraApi
