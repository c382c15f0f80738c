#include "api/runs_iterator.h"

#include <utility>

#include "api/process_state.h"
#include "api/run.h"
#include "api/run_search.h"
#include "api/runs_iterator_regex.h"
#include "core/directory_walk.h"
#include "core/error_context.h"
#include "core/exceptions.h"
#include "vocabulary/run_files.h"

namespace SumaraApi {

// The interface of scripts takes texts by reference.
// NOLINTNEXTLINE(modernize-pass-by-value)
RunsIterator::RunsIterator(std::string const& rootDirectory, std::string const& runName,
                           SearchScope const searchScope)
    : m_isRegularExpression(false), m_pattern(runName), m_searchScope(searchScope) {
  State().walk = std::make_unique<Sumara::DirectoryWalk>(rootDirectory);
}

RunsIterator::RunsIterator(std::string const& rootDirectory, SearchScope const searchScope)
    : RunsIterator(rootDirectory, std::string(), searchScope) {}

RunsIterator::RunsIterator(RegularExpression, std::string const& rootDirectory,
                           std::string const& pattern, SearchScope searchScope)
    : RunsIterator(rootDirectory, pattern, searchScope) {
  m_isRegularExpression = true;
}

RunsIteratorRegex::RunsIteratorRegex(std::string const& rootDirectory,
                                     std::string const& runNameRegexPattern,
                                     SearchScope const searchScope)
    : RunsIterator(RegularExpression{}, rootDirectory, runNameRegexPattern, searchScope) {
  if (runNameRegexPattern.empty())
    throw Sumara::CException(169, Sumara::DirectoryContext(rootDirectory));
}

RunPtr RunsIterator::GetNextRun() {
  if (m_putBack != nullptr) return std::exchange(m_putBack, nullptr);
  Sumara::DirectoryWalk* walk = State().walk.get();
  RunNameMatcher matcher(m_pattern, m_isRegularExpression);
  const bool takesAll = IsFilterSkipped();
  while (walk != nullptr && !walk->AtEnd()) {
    RunPtr run;
    // Each entry is asked for its status, so that a link that cannot be followed is an error here.
    if (!walk->IsAtRegularFile() || !IsTerminationFileName(walk->Entry().name)) {
      if (m_searchScope == SearchScope::RootDirectoryOnly && walk->IsAtDirectory())
        walk->DisableRecursion();
    } else if (matcher.Matches(walk->Entry().name)) {
      run = std::make_shared<Run>(walk->CanonicalEntryPath(), State().bufferedRead);
      if (!takesAll && !PassesFilter(*run)) run.reset();
    }
    walk->Advance();
    if (run != nullptr) return run;
  }
  return nullptr;
}

}  // namespace SumaraApi
