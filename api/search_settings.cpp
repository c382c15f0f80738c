#include "api/search_settings.h"

#include "api/process_state.h"

namespace SumaraApi {

void TabulonApi_SearchSettings::SetCalculationTypeFilter(CalculationType calculationTypeFilter) {
  State().filters.calculationType = calculationTypeFilter;
}

void TabulonApi_SearchSettings::SetIncludeUnsupportedCalculations(
    bool includeUnsupportedCalculations) {
  State().filters.includeUnsupported = includeUnsupportedCalculations;
}

void TabulonApi_SearchSettings::SetCompletionStateFilter(CompletionState completionStateFilter) {
  State().filters.completionState = completionStateFilter;
}

void TabulonApi_SearchSettings::SetRunNameCaseSensitivity(CaseSensitivity runNameCaseSensitivity) {
  State().filters.runNameCase = runNameCaseSensitivity;
}

}  // namespace SumaraApi
