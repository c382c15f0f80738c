#pragma once

#include "api/types.h"

namespace SumaraApi {

/// The filters of all searches for several runs. Process-wide; objects hold nothing. They do not
/// apply to `TabulonApi::GetRun`, and no value is validated.
class TabulonApi_SearchSettings {
 public:
  /// A category or a single type; default `AllCalculationTypes`.
  static void SetCalculationTypeFilter(CalculationType calculationTypeFilter);

  /// Whether runs of unsupported calculations are found; default true. Excluding them costs time:
  /// the directory of each run is read.
  static void SetIncludeUnsupportedCalculations(bool includeUnsupportedCalculations);

  /// Default `AllCompletionStates`.
  static void SetCompletionStateFilter(CompletionState completionStateFilter);

  /// Default `IgnoreCase`.
  static void SetRunNameCaseSensitivity(CaseSensitivity runNameCaseSensitivity);
};

}  // namespace SumaraApi
