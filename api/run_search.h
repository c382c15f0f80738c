#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "api/name_expression.h"
#include "api/types.h"

namespace SumaraApi {

/// What a search looks for, beside the search settings.
struct RunQuery {
  std::string pattern;  ///< a name or an expression; empty matches any name
  bool isRegularExpression = false;
  SearchScope scope = SearchScope::RecursiveSearch;
};

/// Whether the base name of a file is the one that is sought. An expression is compiled at the
/// first name, so that a bad one is noticed there and not before.
class RunNameMatcher {
 public:
  RunNameMatcher(const std::string& pattern, bool isRegularExpression)
      : m_pattern(pattern), m_isRegularExpression(isRegularExpression) {}

  /// \throws Sumara::CException 169
  bool Matches(std::string_view fileName);

 private:
  const std::string& m_pattern;
  bool m_isRegularExpression;
  std::optional<NameExpression> m_expression;
};

/// Whether a run that is cached for the termination file at `path` is that of a file of another
/// spelling that is no longer there.
bool IsOfAnotherName(const Run& run, const std::string& path);

/// Whether the settings let every run pass, so that nothing has to be asked of a run.
bool IsFilterSkipped();

/// Whether the settings let a run pass; what they ask for is cached in the run.
bool PassesFilter(Run& run);

/// \throws Sumara::CException 139, 140, 141, 169
std::vector<RunPtr> SearchRuns(const std::string& rootDirectory, const RunQuery& query);

}  // namespace SumaraApi
