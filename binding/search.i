// Runs one at a time.

// The walk has gone on by the time that the script object is made: a run that memory lacks for then
// is not lost, but comes with the next call.
%typemap(out, noblock=1) std::shared_ptr<SumaraApi::Run> SumaraApi::RunsIterator::GetNextRun {
  $result = Binding::Result($1);
  if (!$result) {
    arg1->PutBack($1);
  }
}

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
