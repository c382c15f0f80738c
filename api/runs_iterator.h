#pragma once

#include <string>
#include <utility>

#include "api/types.h"

namespace SumaraApi {

/// Finds runs one at a time.
///
/// All iterators share one walk of a directory tree: a new one takes it over, and an older one, if
/// asked again, goes on with the new walk under its own name and scope. Runs found so are never
/// cached.
class RunsIterator {
 public:
  /// Runs named `runName`, compared as the search settings say; an empty name matches all.
  /// \throws std::filesystem::filesystem_error if the root cannot be walked.
  RunsIterator(std::string const& rootDirectory, std::string const& runName,
               SearchScope const searchScope = SearchScope::RecursiveSearch);
  explicit RunsIterator(std::string const& rootDirectory,
                        SearchScope const searchScope = SearchScope::RecursiveSearch);
  virtual ~RunsIterator() = default;

  /// The next run that passes the search settings; null at the end, and from then on.
  RunPtr GetNextRun();
  /// Takes back a run that its caller could not use: the next call gives it again.
  void PutBack(RunPtr run) noexcept { m_putBack = std::move(run); }

 protected:
  struct RegularExpression {};
  RunsIterator(RegularExpression, std::string const& rootDirectory, std::string const& pattern,
               SearchScope searchScope);

 private:
  bool m_isRegularExpression;
  std::string m_pattern;
  SearchScope m_searchScope;
  RunPtr m_putBack;
};

}  // namespace SumaraApi
