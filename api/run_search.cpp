#include "api/run_search.h"

#include <filesystem>
#include <utility>

#include "api/directory_listings.h"
#include "api/process_state.h"
#include "api/run.h"
#include "core/directory_walk.h"
#include "core/error_context.h"
#include "core/exceptions.h"
#include "core/paths.h"
#include "core/text.h"
#include "vocabulary/calculation_kinds.h"
#include "vocabulary/run_files.h"

namespace SumaraApi {
namespace {

constexpr std::int32_t kFileNotFound = 5022;

bool PassesCalculationFilter(Run& run, CalculationType filter) {
  switch (filter) {
    case CalculationType::AllCalculationTypes:
      return true;
    case CalculationType::AllTurbineSimulations:
      return run.IsTurbineSimulation();
    case CalculationType::AllSupportingCalculations:
      return run.IsSupportingCalculation();
    case CalculationType::AllPostProcessingCalculations:
      return run.IsPostProcessingCalculation();
    default:
      return run.GetCalculationType() == filter;
  }
}

bool PassesCompletionFilter(Run& run, CompletionState filter) {
  if (filter == CompletionState::AllCompletionStates) return true;
  if (filter == CompletionState::UnsuccessfulRunsOnly) return run.WasUnsuccessful();
  return run.GetCompletionState() == filter;
}

std::string CanonicalTerminationPath(Sumara::DirectoryWalk& walk) {
  try {
    return walk.CanonicalEntryPath();
  } catch (const CIOException& failure) {
    if (failure.ErrorCode() != kFileNotFound) throw;
    throw Sumara::CException(141, Sumara::FileContext(walk.EntryPath()));
  }
}

RunPtr CachedOrNewRun(std::string path) {
  RunPtr cached = State().runs.Find(path);
  if (cached != nullptr && !IsOfAnotherName(*cached, path)) return cached;
  return std::make_shared<Run>(std::move(path), State().bufferedRead);
}

std::vector<RunPtr> Walk(const std::string& rootDirectory, const RunQuery& query) {
  RunNameMatcher matcher(query.pattern, query.isRegularExpression);
  const bool takesAll = IsFilterSkipped();
  const DirectoryListings::Call call(State().listings);
  std::vector<RunPtr> found;
  for (Sumara::DirectoryWalk walk(rootDirectory); !walk.AtEnd(); walk.Advance()) {
    if (!IsTerminationFileName(walk.Entry().name)) {
      if (query.scope == SearchScope::RootDirectoryOnly && walk.IsAtDirectory())
        walk.DisableRecursion();
      continue;
    }
    if (!matcher.Matches(walk.Entry().name)) continue;
    RunPtr run = CachedOrNewRun(CanonicalTerminationPath(walk));
    if (takesAll || PassesFilter(*run)) found.push_back(std::move(run));
  }
  return found;
}

}  // namespace

bool RunNameMatcher::Matches(std::string_view fileName) {
  if (m_pattern.empty()) return true;
  const std::string_view name = Sumara::StemOf(fileName);
  const CaseSensitivity sensitivity = State().filters.runNameCase;
  if (m_isRegularExpression) {
    if (!m_expression) m_expression.emplace(m_pattern, sensitivity == CaseSensitivity::IgnoreCase);
    return m_expression->Matches(name);
  }
  if (sensitivity == CaseSensitivity::MatchCase) return name == m_pattern;
  return Sumara::EqualsNoCase(name, m_pattern);
}

bool IsOfAnotherName(const Run& run, const std::string& path) {
  const std::string& own = run.TerminationFilePath();
  return own != path && !Sumara::Exists(own);
}

bool IsFilterSkipped() {
  const SearchFilters& filters = State().filters;
  return filters.calculationType == CalculationType::AllCalculationTypes &&
         filters.completionState == CompletionState::AllCompletionStates &&
         filters.includeUnsupported;
}

bool PassesFilter(Run& run) {
  const SearchFilters& filters = State().filters;
  return PassesCalculationFilter(run, filters.calculationType) &&
         (filters.includeUnsupported || IsSupported(run.GetCalculationTypeFromHeaders())) &&
         PassesCompletionFilter(run, filters.completionState);
}

std::vector<RunPtr> SearchRuns(const std::string& rootDirectory, const RunQuery& query) {
  if (!Sumara::IsDirectory(rootDirectory)) {
    throw Sumara::CException(139, Sumara::DirectoryContext(rootDirectory));
  }
  std::vector<RunPtr> found;
  try {
    found = Walk(rootDirectory, query);
  } catch (const std::filesystem::filesystem_error& failure) {
    throw Sumara::CException(140, Sumara::DirectoryContext(rootDirectory), failure.what());
  }
  if (State().runCaching) State().runs.Replace(found);
  return found;
}

}  // namespace SumaraApi
