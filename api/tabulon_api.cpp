#include "api/tabulon_api.h"

#include "api/output_writer.h"
#include "api/process_state.h"
#include "api/run.h"
#include "api/run_search.h"
#include "core/error_context.h"
#include "core/exceptions.h"
#include "core/paths.h"

namespace SumaraApi {
namespace {

std::string CanonicalDirectory(const std::string& directory) {
  constexpr std::int32_t kDirectoryNotFound = 5023;
  std::string path;
  try {
    path = Sumara::NormaliseDirectory(directory);
  } catch (const CIOException& failure) {
    if (failure.ErrorCode() != kDirectoryNotFound) throw;
    throw Sumara::CException(139, Sumara::DirectoryContext(directory));
  }
  Sumara::WithTrailingSeparator(path);
  return path;
}

RunPtr MakeRun(const std::string& path) {
  auto run = std::make_shared<Run>(path, State().bufferedRead);
  run->NoteLastWrite();
  if (!State().runCaching) return run;
  return State().runs.Add(run);
}

}  // namespace

RunPtr TabulonApi::GetRun(std::string const& directory, std::string const& runName) {
  const std::string path = CanonicalDirectory(directory) + runName + Run::TerminationFileExtension;
  RunCache& runs = State().runs;
  RunPtr cached = runs.Find(path);
  if (!Sumara::Exists(path)) {
    runs.Remove(path);
    throw Sumara::CException(cached != nullptr ? 142 : 141, Sumara::FileContext(path));
  }
  if (cached != nullptr) {
    if (!IsOfAnotherName(*cached, path) && !cached->HasChanged()) return cached;
    runs.Remove(path);
  }
  return MakeRun(path);
}

std::vector<RunPtr> TabulonApi::GetRuns(std::string const& rootDirectory,
                                        SearchScope const searchScope) {
  return SearchRuns(rootDirectory, {.pattern = {}, .scope = searchScope});
}

std::vector<RunPtr> TabulonApi::GetRunsMatchingName(std::string const& rootDirectory,
                                                    std::string const& runName,
                                                    SearchScope const searchScope) {
  return SearchRuns(rootDirectory, {.pattern = runName, .scope = searchScope});
}

std::vector<RunPtr> TabulonApi::GetRunsMatchingNameRegex(std::string const& rootDirectory,
                                                         std::string const& runNameRegexPattern,
                                                         SearchScope const searchScope) {
  if (runNameRegexPattern.empty())
    throw Sumara::CException(169, Sumara::DirectoryContext(rootDirectory));
  return SearchRuns(
      rootDirectory,
      {.pattern = runNameRegexPattern, .isRegularExpression = true, .scope = searchScope});
}

void TabulonApi::ClearRuns() { State().runs.Clear(); }

bool TabulonApi::WriteOutput(IOutputSpecification const& outputSpec,
                             OverwriteBehaviour const overwriteBehaviour) {
  return WriteOutputFiles(outputSpec, overwriteBehaviour);
}

}  // namespace SumaraApi
