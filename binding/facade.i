// TabulonApi: all operations are static, there are no objects of it.

namespace SumaraApi {

class TabulonApi {
 public:
  %operation(get_run, GetRun,
"One run of one directory, which is not searched further down; the search settings do not apply.

RuntimeError if there is no such directory or run.")
  static std::shared_ptr<Run> GetRun(std::string const &directory, std::string const &runName);

  %operation(_get_runs_native_array, GetRuns,
"All runs under a root directory that pass the search settings, as a tuple.

The search goes down the tree unless the scope is SearchScope_RootDirectoryOnly.")
  static std::vector<std::shared_ptr<Run> > GetRuns(
      std::string const &rootDirectory,
      SearchScope const searchScope = SearchScope::RecursiveSearch);

  %operation(_get_runs_matching_name_native_array, GetRunsMatchingName,
"All runs of one name under a root directory that pass the search settings, as a tuple.")
  static std::vector<std::shared_ptr<Run> > GetRunsMatchingName(
      std::string const &rootDirectory, std::string const &runName,
      SearchScope const searchScope = SearchScope::RecursiveSearch);

  %operation(_get_runs_matching_name_regex_native_array, GetRunsMatchingNameRegex,
"All runs under a root directory whose whole name matches an ECMAScript expression, as a tuple.

RuntimeError if the expression is empty or invalid.")
  static std::vector<std::shared_ptr<Run> > GetRunsMatchingNameRegex(
      std::string const &rootDirectory, std::string const &runNameRegexPattern,
      SearchScope const searchScope = SearchScope::RecursiveSearch);

  %operation(clear_runs, ClearRuns,
"Removes all runs from the cache. A run that is still held goes on working.")
  static void ClearRuns();

  %operation(write_output, WriteOutput,
"Writes an output group: header, data and, unless switched off, a termination file.

False if nothing was written because the header exists and must not be overwritten.")
  static bool WriteOutput(IOutputSpecification const &outputSpec,
                          OverwriteBehaviour const overwriteBehaviour =
                              OverwriteBehaviour::OverwriteExistingOutput);
};

}  // namespace SumaraApi
