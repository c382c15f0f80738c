// Runs one at a time.

namespace SumaraApi {

class RunsIterator {
 public:
  %feature("docstring") RunsIterator
"Finds runs under a root directory one at a time: all, or those of one name.";
  RunsIterator(std::string const &rootDirectory, std::string const &runName,
               SearchScope const searchScope = SearchScope::RecursiveSearch);
  RunsIterator(std::string const &rootDirectory,
               SearchScope const searchScope = SearchScope::RecursiveSearch);
  virtual ~RunsIterator();

  %operation(get_next_run, GetNextRun,
"The next run that passes the search settings; None when there is none, and from then on.")
  std::shared_ptr<Run> GetNextRun();
};

class RunsIteratorRegex : public RunsIterator {
 public:
  %feature("docstring") RunsIteratorRegex
"Finds, one at a time, runs whose whole name matches an ECMAScript expression.";
  RunsIteratorRegex(std::string const &rootDirectory, std::string const &runNameRegexPattern,
                    SearchScope const searchScope = SearchScope::RecursiveSearch);
};

}  // namespace SumaraApi
