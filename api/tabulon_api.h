#pragma once

#include <string>
#include <vector>

#include "api/output_specification.h"
#include "api/types.h"

namespace SumaraApi {

/// The front door: from a directory and a name to a run, from a tree to its runs, and from an
/// output specification to files. All operations are static and work on process-wide state.
class TabulonApi {
 public:
  TabulonApi() = delete;

  /// The run `runName` of `directory`, which is not searched further down.
  ///
  /// A run that was asked for before comes from the cache while its termination file stands.
  /// \throws Sumara::CException 139 if there is no such directory, 141 if there is no such run, 142
  /// if
  ///         a cached run is gone.
  static RunPtr GetRun(std::string const& directory, std::string const& runName);

  /// All runs under `rootDirectory` that pass the search settings, in the order of the file system.
  /// \throws Sumara::CException 139 if the root is not a directory, 140 if the search fails.
  static std::vector<RunPtr> GetRuns(std::string const& rootDirectory,
                                     SearchScope const searchScope = SearchScope::RecursiveSearch);

  /// As `GetRuns`, of the runs with this name. There are no wildcards; an empty name matches all.
  static std::vector<RunPtr> GetRunsMatchingName(
      std::string const& rootDirectory, std::string const& runName,
      SearchScope const searchScope = SearchScope::RecursiveSearch);

  /// As `GetRuns`, of the runs whose whole name matches an ECMAScript expression.
  /// \throws Sumara::CException 169 if the expression is empty or, at the first run met, invalid.
  static std::vector<RunPtr> GetRunsMatchingNameRegex(
      std::string const& rootDirectory, std::string const& runNameRegexPattern,
      SearchScope const searchScope = SearchScope::RecursiveSearch);

  /// Empties the run cache. Runs that are still held go on working.
  static void ClearRuns();

  /// Writes an output group: header, data and, unless switched off, a termination file.
  /// \return false if nothing was written since the header exists and must not be overwritten.
  /// \throws Sumara::CException 173 for another format, 174 if the group holds no variables.
  /// \throws std::ios_base::failure if a file cannot be written; what was written so far stays.
  static bool WriteOutput(
      IOutputSpecification const& outputSpec,
      OverwriteBehaviour const overwriteBehaviour = OverwriteBehaviour::OverwriteExistingOutput);
};

}  // namespace SumaraApi
