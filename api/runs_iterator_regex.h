#pragma once

#include <string>

#include "api/runs_iterator.h"

namespace SumaraApi {

/// Finds, one at a time, runs whose whole name matches an ECMAScript expression.
class RunsIteratorRegex : public RunsIterator {
 public:
  /// \throws Sumara::CException 169 if the expression is empty; the shared walk is the new one
  /// already.
  RunsIteratorRegex(std::string const& rootDirectory, std::string const& runNameRegexPattern,
                    SearchScope const searchScope = SearchScope::RecursiveSearch);
};

}  // namespace SumaraApi
